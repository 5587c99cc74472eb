// A heading of a report text, of level 1 (`h1`, the main heading) or 2
// (`h2`, a sub-heading). Its text is the element's content with whitespace
// normalised; a heading without text does not load.
#ifndef DOCUMENT_R_TEXTHEADER_H
#define DOCUMENT_R_TEXTHEADER_H

#include "core/r_string.h"
#include "document/r_text.h"

class R_TextHeader : public R_Text {
 public:
  // Requires: header_level is 1 or 2.
  explicit R_TextHeader(int header_level);

  int getLevel() const { return header_level; }
  const R_String& getText() const { return text; }

  void loadText(const char* content, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) override;
  void load(R_InputStream& stream, bool* ok) override;
  void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  void save(R_OutputStream& stream) const override;

  int getOutputKind() const override { return header_level; }
  int getBinaryCode() const override { return header_level == 1 ? '2' : '8'; }
  const char* getTag() const override { return header_level == 1 ? "h1" : "h2"; }
  bool isEmptyTag() const override { return false; }
  // writeHeader with 0 for the main heading, 1 for a sub-heading.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;

 private:
  R_String text;
  const int header_level;
};

#endif
