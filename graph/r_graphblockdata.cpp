#include "graph/r_graphblockdata.h"

#include <algorithm>
#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_integer.h"
#include "core/r_outputstream.h"
#include "graph/r_graphplot.h"
#include "knowledge/r_filestatistics.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

enum Code { codeRefData, codePlot, codeTargetPoint, codeRangePoint, codeCondition };
const char* const kTags[] = {"refdata", "plot", "targetpoint", "targetrange:targetpoint", "condition"};

// Plots are created as they are read, so a damaged count costs nothing.
const int kMaxPrealloc = 64;

}  // namespace

R_GraphBlockData::R_GraphBlockData(int analysed_in, int priority_in, int var_in)
    : statistics(nullptr), priority(priority_in), analysed(analysed_in), var(var_in) {
  assert(analysed == 0 || analysed == 1);
  assert(priority >= 1 && priority <= 1000);
  assert(var >= 0);
  for (auto& target : targets) target.reset(new R_NamedEquation());
}

R_GraphBlockData::~R_GraphBlockData() {
  for (R_GraphPlot* plot : plots) delete plot;
}

const R_NamedEquation& R_GraphBlockData::getTarget(int index) const {
  assert(index >= 0 && index < R_graphBlockTargetCount);
  return *targets[index];
}

const R_GraphPlot& R_GraphBlockData::getPlot(int index) const {
  assert(index >= 0 && index < getPlotCount());
  return *plots[index];
}

bool R_GraphBlockData::loadXML(const char* textXML, const R_FileStatistics& statistics_in,
                               R_XMLErrorReporter* reporter) {
  assert(textXML && plots.empty());
  statistics = &statistics_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool loaded = R_parseTagged(parser, *this, kTags, textXML);
  statistics = nullptr;
  if (loaded && !isAnalysedSD() && !refdata.isDefined()) {
    parser.report("reference data must be defined in plot");
    loaded = false;
  }
  return loaded;
}

const char* R_GraphBlockData::receive(int code, const char*, const R_XMLParameters& parameters) {
  switch (code) {
    case codeRefData: return receiveRefData(parameters);
    case codePlot: return receivePlot(parameters);
    case codeTargetPoint:
      if (targets[0]->isDefined()) return "only one target point allowed";
      return receiveTarget(0, parameters, "target point error");
    case codeRangePoint:
      if (!targets[1]->isDefined()) return receiveTarget(1, parameters, "target range error");
      if (!targets[2]->isDefined()) return receiveTarget(2, parameters, "target range error");
      return "only two points in target range allowed";
    case codeCondition: return receiveCondition(parameters);
  }
  return "unknown code in graph block";
}

const char* R_GraphBlockData::receiveRefData(const R_XMLParameters& parameters) {
  if (refdata.isDefined()) return "only one instance of reference data allowed";
  return refdata.load(parameters) ? nullptr : "reference data error";
}

// A plot that breaks the rules stays in the block; the load fails.
const char* R_GraphBlockData::receivePlot(const R_XMLParameters& parameters) {
  R_GraphPlot* plot = new R_GraphPlot();
  plots.push_back(plot);
  return plot->loadXML(parameters, *statistics) ? nullptr : "plot definition error";
}

const char* R_GraphBlockData::receiveTarget(int index, const R_XMLParameters& parameters, const char* fault) {
  targets[index].reset(new R_NamedEquation());
  return targets[index]->loadXML(parameters, *statistics) ? nullptr : fault;
}

const char* R_GraphBlockData::receiveCondition(const R_XMLParameters& parameters) {
  if (condition.getMethodCount() > 0) return "duplicate condition";
  const char* text = parameters.getParameter("if");
  if (!text) return "no method defined in condition";
  if (!condition.loadExpression(text, *statistics) || condition.getMethodCount() != 1)
    return "wrong condition format";
  return nullptr;
}

void R_GraphBlockData::saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics_in) const {
  xml.openTag("block");
  // Only a damaged binary file holds an index that the statistics lack.
  xml.writeAttribute("var", var < statistics_in.getVarCount() ? statistics_in.getVarName(var) : "");
  if (isAnalysedSD()) xml.writeAttribute("analysed", "sd");
  xml.writeAttribute("priority", R_Integer(priority));
  xml.endOpenTag();
  R_String text;
  if (condition.isValid() && condition.getText(text, statistics_in)) {
    xml.openTag("condition");
    xml.writeAttribute("if", text.get());
    xml.endEmptyTag();
  }
  if (refdata.isDefined()) {
    xml.openTag("refdata");
    refdata.saveXML(xml);
    xml.endEmptyTag();
  }
  for (const R_GraphPlot* plot : plots) plot->saveXML(xml, statistics_in);
  saveTarget(xml, 0, statistics_in);
  if (targets[1]->isDefined() || targets[2]->isDefined()) {
    R_openElement(xml, "targetrange");
    saveTarget(xml, 1, statistics_in);
    saveTarget(xml, 2, statistics_in);
    xml.closeTag("targetrange");
  }
  xml.closeTag("block");
}

void R_GraphBlockData::saveTarget(R_XMLTextOutput& xml, int index, const R_FileStatistics& statistics_in) const {
  if (!targets[index]->isDefined()) return;
  xml.openTag("targetpoint");
  targets[index]->saveXML(xml, statistics_in);
  xml.endEmptyTag();
}

void R_GraphBlockData::load(R_InputStream& stream, bool* ok) {
  assert(plots.empty());
  if (!*ok) return;
  R_Integer count;
  count.load(stream, ok);
  if (count.get() < 0) *ok = false;
  condition.load(stream, ok);
  refdata.load(stream, ok);
  for (auto& target : targets) target->load(stream, ok);
  plots.reserve(static_cast<size_t>(std::min(std::max(count.get(), 0), kMaxPrealloc)));
  while (*ok && getPlotCount() < count.get()) {
    plots.push_back(new R_GraphPlot());
    plots.back()->load(stream, ok);
  }
}

void R_GraphBlockData::save(R_OutputStream& stream) const {
  R_Integer(getPlotCount()).save(stream);
  condition.save(stream);
  refdata.save(stream);
  for (const auto& target : targets) target->save(stream);
  for (const R_GraphPlot* plot : plots) plot->save(stream);
}
