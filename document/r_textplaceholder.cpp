#include "document/r_textplaceholder.h"

#include <cassert>

#include "xml/r_xmltextoutput.h"

R_TextPlaceholder::R_TextPlaceholder(int element_type) : R_Text(element_type) {
  assert(element_type == typeGraph || element_type == typeAuxogram);
}

int R_TextPlaceholder::getBinaryCode() const { return getType() == typeGraph ? '6' : '9'; }

const char* R_TextPlaceholder::getTag() const { return getType() == typeGraph ? "graph" : "auxogram"; }

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
