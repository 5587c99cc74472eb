#include "document/r_textnamed.h"

#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutput.h"

void R_TextNamed::loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics&) {
  setOK(name.setNormalized(attributes.getParameter(attribute), false));
}

void R_TextNamed::load(R_InputStream& stream, bool* ok) {
  name.load(stream, ok);
  setOK(*ok);
}

void R_TextNamed::save(R_OutputStream& stream) const { name.save(stream); }

void R_TextNamed::writeAttributes(R_XMLTextOutput& xml, const R_FileStatistics&) const {
  xml.writeAttribute(attribute, name.get());
}
