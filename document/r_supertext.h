// One report text of the knowledge file. This version refuses every load
// until the real class arrives.
#ifndef DOCUMENT_R_SUPERTEXT_H
#define DOCUMENT_R_SUPERTEXT_H

#include "core/r_string.h"
#include "xml/r_xmlrecipient.h"

class R_FileStatistics;
class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_SuperText : public R_XMLRecipient {
 public:
  R_SuperText() {}

  const R_String& getId() const { return id; }

  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  R_String id;
};

#endif
