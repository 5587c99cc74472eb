#include "document/r_textplaceholder.h"

#include "xml/r_xmltextoutput.h"

void R_TextPlaceholder::loadText(const char* text, const R_FileStatistics&, R_XMLErrorReporter*) {
  setOK(content.setNormalized(text, false));
}

void R_TextPlaceholder::load(R_InputStream& stream, bool* ok) {
  content.load(stream, ok);
  setOK(*ok && !content.isEmpty());
}

// The content is XML already; escaping it would turn its tags into text.
void R_TextPlaceholder::writeContent(R_XMLTextOutput& xml, const R_FileStatistics&) const {
  xml.writeRaw(content.get());
}

void R_TextPlaceholder::save(R_OutputStream& stream) const { content.save(stream); }

bool R_TextPlaceholder::write(const R_File&, const R_Proband&, const R_Number&, R_OutputInterface&) const {
  return true;
}
