#include "document/r_textheader.h"

#include <cassert>

#include "output/r_outputinterface.h"
#include "xml/r_xmltextoutput.h"

R_TextHeader::R_TextHeader(int level) : R_Text(typeHeader), header_level(level) {
  assert(level == 1 || level == 2);
}

void R_TextHeader::loadText(const char* content, const R_FileStatistics&, R_XMLErrorReporter*) {
  setOK(text.setNormalized(content, false));
}

void R_TextHeader::load(R_InputStream& stream, bool* ok) {
  text.load(stream, ok);
  setOK(*ok);
}

void R_TextHeader::writeContent(R_XMLTextOutput& xml, const R_FileStatistics&) const { xml.writeString(text); }

void R_TextHeader::save(R_OutputStream& stream) const { text.save(stream); }

bool R_TextHeader::write(const R_File&, const R_Proband&, const R_Number&, R_OutputInterface& output) const {
  output.writeHeader(header_level - 1, text.get());
  return true;
}
