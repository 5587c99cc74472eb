#include "graph/r_graphrefdata.h"

#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutput.h"

int R_GraphRefData::getSex() const {
  assert(isSexDefined());
  return flags.hasBits(R_graphRefMale) ? 0 : 1;
}

bool R_GraphRefData::load(const R_XMLParameters& attributes) {
  const char* text = attributes.getParameter("age");
  if (text) age.setFromText(text);
  if (attributes.isParameterValue("sex", "male")) flags.set(R_graphRefMale);
  if (attributes.isParameterValue("sex", "female")) flags.set(R_graphRefFemale);
  if (attributes.isParameterValue("show", "yes")) flags |= R_graphRefShow;
  text = attributes.getParameter("x_from");
  if (text) x_from.parse(text);
  text = attributes.getParameter("x_to");
  if (text) x_to.parse(text);
  flags |= R_graphRefDefined;
  return true;
}

void R_GraphRefData::saveXML(R_XMLTextOutput& xml) const {
  if (age.isDefined()) xml.writeAttribute("age", age);
  if (isSexDefined()) xml.writeAttribute("sex", getSex() == 0 ? "male" : "female");
  xml.writeAttribute("show", isShown() ? "yes" : "no");
  if (isRangeX()) {
    xml.writeAttribute("x_from", x_from);
    xml.writeAttribute("x_to", x_to);
  }
}

void R_GraphRefData::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  flags.load(stream, ok);
  age.load(stream, ok);
  x_from.load(stream, ok);
  x_to.load(stream, ok);
  if (*ok) flags |= R_graphRefDefined;
}

void R_GraphRefData::save(R_OutputStream& stream) const {
  flags.save(stream);
  age.save(stream);
  x_from.save(stream);
  x_to.save(stream);
}
