// A paragraph of a report text. It keeps only the stored form that
// R_TextTranslator makes of its mark-up: plain bytes with the codes \b \c
// (bold on, off), \i \j (italics on, off), \L<id>\ (link to a text of this
// file), \E<url>\ (outside link) and \V<NAME>\ (a variable's value, computed
// for the proband at output time). The stored form passes through the
// binary form unchanged. Written back as XML, the mark-up goes out escaped
// (&lt;b&gt;), which the reader, knowing no entities, takes as plain text:
// a paragraph keeps its mark-up in the binary form only.
#ifndef DOCUMENT_R_TEXTPARAGRAPH_H
#define DOCUMENT_R_TEXTPARAGRAPH_H

#include "core/r_string.h"
#include "document/r_text.h"

class R_TextParagraph : public R_Text {
 public:
  R_TextParagraph() : R_Text(typeParagraph) {}

  const R_String& getStored() const { return stored; }

  // Ok when the whitespace-normalised content is not empty and translates.
  void loadText(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) override;
  void load(R_InputStream& stream, bool* ok) override;
  void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  void save(R_OutputStream& stream) const override;

  int getOutputKind() const override { return 0; }
  int getBinaryCode() const override { return '1'; }
  const char* getTag() const override { return "p"; }
  bool isEmptyTag() const override { return false; }
  // One paragraph, its text in plain font with bold and italic runs. A
  // value that cannot be computed writes nothing; one that computes to no
  // single number writes "?". Nothing at all for an empty stored text.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;

 private:
  R_String stored;
};

#endif
