// One report text of the knowledge file: an id (how inserts and links find
// it), a table-of-contents title (empty for a working text that is only
// inserted), free meta information, an optional condition, and its
// elements in document order. Made empty by R_File, loaded once from XML or
// binary, unchanged afterwards. Owns its elements. Not copyable.
//
// Messages of an XML load come innermost first: an element's own lines,
// then the line of the refused element, then "Error while processing
// text." as the last line of a failed load.
#ifndef DOCUMENT_R_SUPERTEXT_H
#define DOCUMENT_R_SUPERTEXT_H

#include <vector>

#include "core/r_string.h"
#include "formula/r_equation.h"
#include "xml/r_xmlrecipient.h"

class R_File;
class R_FileStatistics;
class R_InputStream;
class R_Number;
class R_OutputInterface;
class R_OutputStream;
class R_Proband;
class R_Text;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_SuperText : public R_XMLRecipient {
 public:
  // How many levels of insert are followed below the top-level text.
  static const int insertDepthLimit = 5;

  R_SuperText() : statistics(nullptr), reporter(nullptr) {}
  ~R_SuperText() override;

  const R_String& getId() const { return id; }
  const R_String& getTitle() const { return title; }
  const R_String& getMeta() const { return meta; }
  // Invalid when the text has none.
  const R_Equation& getCondition() const { return condition; }
  int getCount() const { return static_cast<int>(txt.size()); }
  // Requires: 0 <= index < getCount().
  const R_Text& getElement(int index) const { return *txt[index]; }

  // True without a condition; otherwise whether it evaluates to true for
  // `proband` (a failed evaluation counts as false).
  bool isAvailable(const R_File& file, const R_Proband& proband, const R_Number& age) const;
  // Writes the elements that are ok and whose conditions hold, following
  // inserts (an unknown id writes nothing). At `depth` 0 the document is
  // opened and closed around them; below insertDepthLimit levels nothing is
  // written and the answer is false. The text's own condition is not asked.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age, R_OutputInterface& output,
             int depth) const;

  // Fills the text from the inner text of a `text` element; variable names
  // are resolved through `statistics`. Messages go to `reporter` (may be
  // null). Requires: nothing loaded yet.
  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // The inner text of the `text` element: id, toc, the elements.
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  // Type byte 48, title, meta, id, condition, element count, then each
  // element as its code byte, its condition and its own fields. An unknown
  // code or an element that is not ok clears `ok`. Requires: nothing
  // loaded yet.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  const char* receiveCondition(const char* text);
  const char* receiveElement(int code, const char* text, const R_XMLParameters& parameters);
  bool checkLoaded(class R_XMLParser& parser) const;
  void writeElement(const R_Text& element, const R_File& file, const R_Proband& proband, const R_Number& age,
                    R_OutputInterface& output, int depth) const;
  static void saveElementXML(const R_Text& element, R_XMLTextOutput& output, const R_FileStatistics& statistics);

  std::vector<R_Text*> txt;  // owned elements, in document order
  R_String title;
  R_String meta;
  R_String id;
  R_Equation condition;
  const R_FileStatistics* statistics;  // during the XML load only
  R_XMLErrorReporter* reporter;        // during the XML load only
};

#endif
