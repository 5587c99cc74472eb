#include "formula/r_namedequation.h"

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutput.h"

bool R_NamedEquation::loadXML(const R_XMLParameters& parameters,
                              const R_FileStatistics& statistics) {
  name.set(parameters.getParameter("name"));
  const char* method = parameters.getParameter("method");
  if (method) loadExpression(method, statistics);
  return isDefined();
}

void R_NamedEquation::saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const {
  output.writeAttribute("name", name.get());
  R_String text;
  if (getText(text, statistics, textLimit)) output.writeAttribute("method", text.get());
}

void R_NamedEquation::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  int present = stream.readByte();
  if (present < 0) *ok = false;
  if (present != 1) return;
  name.load(stream, ok);
  R_Equation::load(stream, ok);
  if (*ok && getMethodCount() != 1) *ok = false;
}

void R_NamedEquation::save(R_OutputStream& stream) const {
  if (!isDefined()) {
    stream.put(0);
    return;
  }
  stream.put(1);
  name.save(stream);
  R_Equation::save(stream);
}
