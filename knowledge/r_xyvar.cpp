#include "knowledge/r_xyvar.h"

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_string.h"
#include "core/r_typecodes.h"
#include "knowledge/r_filestatistics.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"xvar", "yvar", "avar"};
const int kTagCount = sizeof kTags / sizeof kTags[0];
const char* const kUnknownName[] = {"wrong x variable", "wrong y variable", "wrong anamnestic variable"};
static_assert(sizeof kUnknownName / sizeof kUnknownName[0] == kTagCount, "one message per element");

void saveName(R_XMLTextOutput& output, const char* tag, int var_index, const R_FileStatistics& statistics) {
  // An index that names no variable, which only a damaged binary file holds,
  // is left out rather than read past the table.
  if (var_index < 0 || var_index >= statistics.getVarCount()) return;
  R_writeTextElement(output, tag, statistics.getVarName(var_index));
}

}  // namespace

R_XYVar::R_XYVar() : STATS(nullptr), avar(-1), yvar(-1), xvar(-1) {}

R_XYVar::R_XYVar(int a_var, int x_var, int y_var) : STATS(nullptr), avar(a_var), yvar(y_var), xvar(x_var) {}

R_XYVar::R_XYVar(const R_XYVar& other)
    : R_XMLRecipient(), STATS(nullptr), avar(other.avar), yvar(other.yvar), xvar(other.xvar) {}

R_XYVar& R_XYVar::operator=(const R_XYVar& other) {
  avar = other.avar;
  yvar = other.yvar;
  xvar = other.xvar;
  return *this;
}

bool R_XYVar::isDefined() const { return (xvar.get() > -1 && yvar.get() > -1) || avar.get() > -1; }

bool R_XYVar::loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) {
  avar = yvar = xvar = -1;
  STATS = &statistics;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  STATS = nullptr;
  // A reference names either an anamnestic variable or an X-Y pair.
  if (ok && avar.get() >= 0 && xvar.get() >= 0 && yvar.get() >= 0) {
    parser.report("Both anamnestic and followed reference index.");
    ok = false;
  }
  if (!ok) parser.report("Error while processing X-Y variable definition.");
  return ok;
}

const char* R_XYVar::receive(int code, const char* text, const R_XMLParameters&) {
  if (code < 0 || code >= kTagCount) return "unrecognized code in xyvar";
  R_String name;
  name.setNormalized(text);
  int found = STATS->getVarIndex(name.get());
  R_Integer* targets[] = {&xvar, &yvar, &avar};
  targets[code]->set(found);
  return found < 0 ? kUnknownName[code] : nullptr;
}

void R_XYVar::saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const {
  saveName(output, "avar", avar.get(), statistics);
  saveName(output, "xvar", xvar.get(), statistics);
  saveName(output, "yvar", yvar.get(), statistics);
}

void R_XYVar::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeXYVar)) {
    *ok = false;
    return;
  }
  avar.load(stream, ok);
  xvar.load(stream, ok);
  yvar.load(stream, ok);
}

void R_XYVar::save(R_OutputStream& stream) const {
  stream.put(R_TypeXYVar);
  avar.save(stream);
  xvar.save(stream);
  yvar.save(stream);
}
