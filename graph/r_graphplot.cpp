#include "graph/r_graphplot.h"

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutput.h"

namespace {

bool loadSingle(R_Equation& equation, const char* text, const R_FileStatistics& statistics) {
  return text && equation.loadExpression(text, statistics) && equation.getMethodCount() == 1;
}

void writeExpression(R_XMLTextOutput& xml, const char* name, const R_Equation& equation,
                     const R_FileStatistics& statistics) {
  R_String text;
  equation.getText(text, statistics);
  xml.writeAttribute(name, text.get());
}

}  // namespace

bool R_GraphPlot::loadXML(const R_XMLParameters& attributes, const R_FileStatistics& statistics) {
  int bits = 0;
  if (attributes.isParameterValue("connect", "yes")) bits |= flagConnected;
  if (attributes.isParameterValue("size", "small")) bits |= flagSmall;
  if (!attributes.isParameterValue("type", "secondary")) bits |= flagPrimary;
  if (!attributes.isParameterValue("marks", "no")) bits |= flagMarks;
  bool loaded = loadSingle(method, attributes.getParameter("method"), statistics);
  const char* arrow_text = attributes.getParameter("arrow");
  if (arrow_text) {
    bits |= flagArrow;
    loaded = loadSingle(arrow, arrow_text, statistics) && loaded;
  }
  flags.set(bits);
  return loaded;
}

void R_GraphPlot::saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const {
  xml.openTag("plot");
  writeExpression(xml, "method", method, statistics);
  xml.writeAttribute("connect", isConnected() ? "yes" : "no");
  xml.writeAttribute("size", isSmall() ? "small" : "normal");
  xml.writeAttribute("marks", hasMarks() ? "yes" : "no");
  xml.writeAttribute("type", isPrimary() ? "primary" : "secondary");
  if (hasArrow()) writeExpression(xml, "arrow", arrow, statistics);
  xml.endEmptyTag();
}

void R_GraphPlot::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  flags.load(stream, ok);
  method.load(stream, ok);
  if (*ok && method.getMethodCount() != 1) *ok = false;
  if (!hasArrow()) return;
  arrow.load(stream, ok);
  if (*ok && arrow.getMethodCount() != 1) *ok = false;
}

void R_GraphPlot::save(R_OutputStream& stream) const {
  flags.save(stream);
  method.save(stream);
  if (hasArrow()) arrow.save(stream);
}
