// Stands in for the element whose drawing is not part of this engine yet,
// the auxogram (`auxogram`). It keeps the element's XML
// content, whitespace normalised, and gives it back unchanged in both stored
// forms, so that a knowledge file loses nothing on its way through; it
// writes nothing to a document. Its binary form is the kept XML content as
// one string, which only this stand-in reads.
#ifndef DOCUMENT_R_TEXTPLACEHOLDER_H
#define DOCUMENT_R_TEXTPLACEHOLDER_H

#include "core/r_string.h"
#include "document/r_text.h"

class R_TextPlaceholder : public R_Text {
 public:
  R_TextPlaceholder() : R_Text(typeAuxogram) {}

  const R_String& getContent() const { return content; }

  // Ok for any content that is not blank.
  void loadText(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) override;
  void load(R_InputStream& stream, bool* ok) override;
  void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  void save(R_OutputStream& stream) const override;

  int getOutputKind() const override { return 4; }
  int getBinaryCode() const override { return '9'; }
  const char* getTag() const override { return "auxogram"; }
  bool isEmptyTag() const override { return false; }
  // Writes nothing.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;

 private:
  R_String content;  // the element's XML content
};

#endif
