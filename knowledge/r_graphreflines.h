// The knowledge file's one definition of the lines that graphs draw over a
// reference without a percentile list of its own: once as percentiles and
// once as SD scores. Both lists are required by a load. Owned by R_File,
// immutable after load, not copyable.
#ifndef KNOWLEDGE_R_GRAPHREFLINES_H
#define KNOWLEDGE_R_GRAPHREFLINES_H

#include "knowledge/r_graphreflinesinpercentiles.h"
#include "knowledge/r_graphreflinesinsd.h"
#include "xml/r_xmlrecipient.h"

class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XMLTextOutput;

class R_GraphRefLines : public R_XMLRecipient {
 public:
  enum { percentileKind = 0, sdKind = 1 };

  R_GraphRefLines();
  R_GraphRefLines(const R_GraphRefLines&) = delete;
  R_GraphRefLines& operator=(const R_GraphRefLines&) = delete;

  // Kind 0 gives the percentile lines, kind 1 the SD lines.
  // Requires: kind is 0 or 1.
  const R_GraphRefLinesFormat& getFormat(int kind) const;
  const R_GraphRefLinesInPercentiles& getPercentileLines() const { return percentiles; }
  const R_GraphRefLinesInSD& getSDLines() const { return sds; }
  // Both lists have at least one line.
  bool isComplete() const;
  // A load has started; a second one is not allowed.
  bool isLoaded() const;

  // Fills both lists from the inner text of a `graphlines` element. False,
  // with the reasons reported, when either list is missing, broken or out of
  // range. Requires: !isLoaded().
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output) const;

  // The SD list, then the percentile list; a load also checks both as the
  // XML load does. Requires for load: !isLoaded().
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  bool checkLoaded(R_XMLParser& parser);
  static void saveListXML(R_XMLTextOutput& output, const char* tag, const R_List& list);

  R_GraphRefLinesInSD sds;
  R_GraphRefLinesInPercentiles percentiles;
  R_XMLErrorReporter* reporter;  // borrowed during loadXML only
};

#endif
