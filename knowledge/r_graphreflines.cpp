#include "knowledge/r_graphreflines.h"

#include <cassert>

#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"percentilelines:list", "sdslines:list"};

}  // namespace

R_GraphRefLines::R_GraphRefLines() : reporter(nullptr) {}

const R_GraphRefLinesFormat& R_GraphRefLines::getFormat(int kind) const {
  assert(kind == percentileKind || kind == sdKind);
  if (kind == percentileKind) return percentiles;
  return sds;
}

bool R_GraphRefLines::isComplete() const { return percentiles.getLineCount() > 0 && sds.getLineCount() > 0; }

bool R_GraphRefLines::isLoaded() const { return percentiles.getList().isLoaded() || sds.getList().isLoaded(); }

bool R_GraphRefLines::loadXML(const char* textXML, R_XMLErrorReporter* load_reporter) {
  reporter = load_reporter;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  reporter = nullptr;
  // Both tests run, so a definition without either list is told both faults.
  if (ok) ok = checkLoaded(parser);
  if (!ok) parser.report("Error while processing percentile/SDS line definitions.");
  return ok;
}

bool R_GraphRefLines::checkLoaded(R_XMLParser& parser) {
  bool percentiles_ok = percentiles.prepare();
  if (!percentiles_ok) parser.report("Wrong data in percentile definitions.");
  bool sds_ok = sds.isOK();
  if (!sds_ok) parser.report("Wrong data in SD line definitions.");
  return percentiles_ok && sds_ok;
}

const char* R_GraphRefLines::receive(int code, const char* text, const R_XMLParameters&) {
  if (code == 0) {
    if (percentiles.getList().isLoaded()) return "duplicate percentile lines definition";
    return percentiles.getList().loadXML(text, reporter) ? nullptr : "error loading percentile lines";
  }
  if (code == 1) {
    if (sds.getList().isLoaded()) return "duplicate SD lines definition";
    return sds.getList().loadXML(text, reporter) ? nullptr : "error loading SD lines";
  }
  return "wrong code in line definitions";
}

void R_GraphRefLines::saveXML(R_XMLTextOutput& output) const {
  saveListXML(output, "sdslines", sds.getList());
  saveListXML(output, "percentilelines", percentiles.getList());
}

void R_GraphRefLines::saveListXML(R_XMLTextOutput& output, const char* tag, const R_List& list) {
  R_openElement(output, tag);
  R_openElement(output, "list");
  list.saveXML(output);
  output.closeTag("list");
  output.closeTag(tag);
}

void R_GraphRefLines::load(R_InputStream& stream, bool* ok) {
  sds.getList().load(stream, ok);
  percentiles.getList().load(stream, ok);
  if (*ok && !sds.isOK()) *ok = false;
  if (*ok && !percentiles.prepare()) *ok = false;
}

void R_GraphRefLines::save(R_OutputStream& stream) const {
  sds.getList().save(stream);
  percentiles.getList().save(stream);
}
