#include "graph/r_textgraph.h"

#include <algorithm>
#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_integer.h"
#include "core/r_outputstream.h"
#include "formula/r_calcequation.h"
#include "graph/r_graphblockdata.h"
#include "graph/r_graphcalculator.h"
#include "graph/r_graphcontainer.h"
#include "graph/r_graphdraw.h"
#include "graph/r_graphlayout.h"
#include "graph/r_graphreference.h"
#include "knowledge/r_file.h"
#include "knowledge/r_filestatistics.h"
#include "knowledge/r_graphreflines.h"
#include "output/r_outputinterface.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

enum Code { codeBlock, codeCaption };
const char* const kTags[] = {"block", "caption"};

const int kMinPriority = 1;
const int kMaxPriority = 1000;

// Blocks are created as they are read, so a damaged count costs nothing.
const int kMaxPrealloc = 64;

}  // namespace

R_TextGraph::~R_TextGraph() {
  for (R_GraphBlockData* block : blocks) delete block;
}

const R_GraphBlockData& R_TextGraph::getBlock(int index) const {
  assert(index >= 0 && index < getBlockCount());
  return *blocks[index];
}

bool R_TextGraph::isBlockAvailable(const R_File& file, const R_Proband& proband, const R_Number& age,
                                   const R_GraphBlockData& block) const {
  if (!block.getCondition().isValid()) return true;
  R_CalcEquation calculation(block.getCondition());
  return calculation.evaluate(file, &proband, age, -1, 0) && calculation.isTrue();
}

void R_TextGraph::loadText(const char* text, const R_FileStatistics& statistics_in, R_XMLErrorReporter* reporter_in) {
  assert(text && blocks.empty() && caption.isEmpty());
  statistics = &statistics_in;
  reporter = reporter_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool parsed = R_parseTagged(parser, *this, kTags, text);
  if (parsed && blocks.empty()) {
    parser.report("no blocks defined");
    parsed = false;
  }
  if (parsed && caption.isEmpty()) {
    parser.report("no caption defined");
    parsed = false;
  }
  setOK(parsed);
  statistics = nullptr;
  reporter = nullptr;
}

const char* R_TextGraph::receive(int code, const char* text, const R_XMLParameters& parameters) {
  switch (code) {
    case codeBlock: return receiveBlock(text, parameters);
    case codeCaption: return caption.setNormalized(text, false) ? nullptr : "graph caption undefined";
  }
  return "unrecognized code in graph";
}

// The variable with index 0 cannot be a block's variable. A block whose
// content fails stays in the graph; the load fails.
const char* R_TextGraph::receiveBlock(const char* text, const R_XMLParameters& parameters) {
  int var = statistics->getVarIndex(parameters.getParameter("var"));
  if (var <= 0) return "wrong block variable";
  int analysed = parameters.isParameterValue("analysed", "sd") ? 1 : 0;
  const char* priority_text = parameters.getParameter("priority");
  if (!priority_text) return "priority undefined";
  R_Integer priority;
  priority.setFromText(priority_text);
  if (priority.get() < kMinPriority || priority.get() > kMaxPriority)
    return "priority not in allowed interval (0,1000)";
  R_GraphBlockData* block = new R_GraphBlockData(analysed, priority.get(), var);
  blocks.push_back(block);
  return block->loadXML(text, *statistics, reporter) ? nullptr : "block load error";
}

void R_TextGraph::writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics_in) const {
  R_writeTextElement(xml, "caption", caption.get());
  for (const R_GraphBlockData* block : blocks) block->saveXML(xml, statistics_in);
}

void R_TextGraph::load(R_InputStream& stream, bool* ok) {
  assert(blocks.empty());
  if (!*ok) return;
  caption.load(stream, ok);
  R_Integer count;
  count.load(stream, ok);
  if (count.get() <= 0) *ok = false;
  blocks.reserve(static_cast<size_t>(std::min(std::max(count.get(), 0), kMaxPrealloc)));
  while (*ok && getBlockCount() < count.get()) {
    R_Integer var(stream, ok);
    R_Integer analysed(stream, ok);
    R_Integer priority(stream, ok);
    // Values that the XML form cannot give are damage.
    if (var.get() <= 0 || (analysed.get() != 0 && analysed.get() != 1) || priority.get() < kMinPriority ||
        priority.get() > kMaxPriority)
      *ok = false;
    if (!*ok) break;
    blocks.push_back(new R_GraphBlockData(analysed.get(), priority.get(), var.get()));
    blocks.back()->load(stream, ok);
  }
  setOK(*ok && getBlockCount() == count.get());
}

void R_TextGraph::save(R_OutputStream& stream) const {
  caption.save(stream);
  R_Integer(getBlockCount()).save(stream);
  for (const R_GraphBlockData* block : blocks) {
    R_Integer(block->getVariable()).save(stream);
    R_Integer(block->getAnalysed()).save(stream);
    R_Integer(block->getPriority()).save(stream);
    block->save(stream);
  }
}

bool R_TextGraph::write(const R_File& file, const R_Proband& proband, const R_Number& age,
                        R_OutputInterface& output) const {
  // A damaged binary file may name a variable that the file lacks.
  int var_count = file.getStatistics().getVarCount();
  R_GraphContainer container(std::max(getBlockCount(), 1));
  for (const R_GraphBlockData* block : blocks) {
    if (block->getVariable() < var_count && isBlockAvailable(file, proband, age, *block)) container.add(block);
  }
  if (container.getCount() == 0 || !container.prepare()) return true;
  R_GraphCalculator calculator(file, proband, age, container);
  if (!calculator.ok()) return true;
  R_GraphReference reference(container, calculator, file, proband);
  if (!reference.ok()) return true;
  int kind = output.isGraphInSD() ? R_GraphRefLines::sdKind : R_GraphRefLines::percentileKind;
  R_GraphLayout layout(container, reference, calculator, file.getGraphRefLines().getFormat(kind), output);
  if (!layout.ok()) return true;
  R_GraphDraw painter(container, reference, calculator, layout, file.getGraphRefLines().getFormat(kind), output);
  painter.draw(caption.get());
  return true;
}
