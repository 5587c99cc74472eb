#include "graph/r_auxogramline.h"

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_filestatistics.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutput.h"

bool R_AuxogramLine::loadXML(const R_XMLParameters& attributes, const R_FileStatistics& statistics) {
  var.set(statistics.getVarIndex(attributes.getParameter("var")));
  const char* method = attributes.getParameter("method");
  if (method) equation.loadExpression(method, statistics);
  return ok();
}

void R_AuxogramLine::saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const {
  xml.openTag("auxogramline");
  int index = var.get();
  xml.writeAttribute("var", index >= 0 && index < statistics.getVarCount() ? statistics.getVarName(index) : "");
  R_String text;
  equation.getText(text, statistics);
  xml.writeAttribute("method", text.get());
  xml.endEmptyTag();
}

void R_AuxogramLine::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeAuxogramLine)) {
    *ok = false;
    return;
  }
  var.load(stream, ok);
  equation.load(stream, ok);
}

void R_AuxogramLine::save(R_OutputStream& stream) const {
  stream.put(R_TypeAuxogramLine);
  var.save(stream);
  equation.save(stream);
}
