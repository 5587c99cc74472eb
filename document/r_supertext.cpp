#include "document/r_supertext.h"

#include <algorithm>
#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_integer.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "document/r_textheader.h"
#include "document/r_texthrule.h"
#include "document/r_textimage.h"
#include "document/r_textinsert.h"
#include "document/r_textparagraph.h"
#include "document/r_texttable.h"
#include "formula/r_calcequation.h"
#include "graph/r_textauxogram.h"
#include "graph/r_textgraph.h"
#include "knowledge/r_file.h"
#include "knowledge/r_knowledgexml.h"
#include "output/r_outputinterface.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

enum Code { codeId, codeTitle, codeMeta, codeCondition, codeFirstElement };

// The element kinds by XML tag. The tag table of the XML load lists the four
// fields of the text and then these tags, so an element's receive code is
// codeFirstElement plus its row here.
struct ElementKind {
  const char* tag;
  R_Text* (*make)();
};
const ElementKind kKinds[] = {
    {"p", [] { return static_cast<R_Text*>(new R_TextParagraph()); }},
    {"hr", [] { return static_cast<R_Text*>(new R_TextHRule()); }},
    {"h1", [] { return static_cast<R_Text*>(new R_TextHeader(1)); }},
    {"h2", [] { return static_cast<R_Text*>(new R_TextHeader(2)); }},
    {"img", [] { return static_cast<R_Text*>(new R_TextImage()); }},
    {"table", [] { return static_cast<R_Text*>(new R_TextTable()); }},
    {"graph", [] { return static_cast<R_Text*>(new R_TextGraph()); }},
    {"insert", [] { return static_cast<R_Text*>(new R_TextInsert()); }},
    {"auxogram", [] { return static_cast<R_Text*>(new R_TextAuxogram()); }},
};
const int kKindCount = sizeof kKinds / sizeof kKinds[0];

const char* const kTags[] = {"id", "toc:title", "toc:meta", "toc:if", "p",     "hr",       "h1",
                             "h2", "img",       "table",    "graph",  "insert", "auxogram"};
static_assert(sizeof kTags / sizeof kTags[0] == codeFirstElement + kKindCount, "a tag for each element kind");

// Elements are created as they are read, so a damaged count costs nothing.
const int kMaxPrealloc = 64;

// Each element knows its own code; a code of none gives null.
R_Text* makeByBinaryCode(int code) {
  for (const ElementKind& kind : kKinds) {
    R_Text* element = kind.make();
    if (element->getBinaryCode() == code) return element;
    delete element;
  }
  return nullptr;
}

// A failed evaluation counts as false.
bool holds(const R_Equation& condition, const R_File& file, const R_Proband& proband, const R_Number& age) {
  R_CalcEquation calculation(condition);
  return calculation.evaluate(file, &proband, age, -1, 0) && calculation.isTrue();
}

}  // namespace

R_SuperText::~R_SuperText() {
  for (R_Text* element : txt) delete element;
}

bool R_SuperText::isAvailable(const R_File& file, const R_Proband& proband, const R_Number& age) const {
  return !condition.isValid() || holds(condition, file, proband, age);
}

bool R_SuperText::write(const R_File& file, const R_Proband& proband, const R_Number& age,
                        R_OutputInterface& output, int depth) const {
  if (depth > insertDepthLimit) return false;
  if (depth == 0) output.beginDocument();
  for (const R_Text* element : txt) {
    if (!element->isOK()) continue;
    if (element->getCondition().isValid() && !holds(element->getCondition(), file, proband, age)) continue;
    writeElement(*element, file, proband, age, output, depth);
  }
  if (depth == 0) output.endDocument();
  return true;
}

// An insert opens no block of its own, and the inserted text's condition is
// not asked.
void R_SuperText::writeElement(const R_Text& element, const R_File& file, const R_Proband& proband,
                               const R_Number& age, R_OutputInterface& output, int depth) const {
  if (element.getType() == R_Text::typeInsert) {
    int index = file.findText(static_cast<const R_TextInsert&>(element).getRef().get());
    if (index >= 0) file.getText(index)->write(file, proband, age, output, depth + 1);
    return;
  }
  output.beginBlock(element.getOutputKind());
  element.write(file, proband, age, output);
  output.endBlock();
}

bool R_SuperText::loadXML(const char* textXML, const R_FileStatistics& statistics_in,
                          R_XMLErrorReporter* reporter_in) {
  assert(txt.empty() && id.isEmpty());
  statistics = &statistics_in;
  reporter = reporter_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  if (ok) ok = checkLoaded(parser);
  if (!ok) parser.report("Error while processing text.");
  statistics = nullptr;
  reporter = nullptr;
  return ok;
}

bool R_SuperText::checkLoaded(R_XMLParser& parser) const {
  bool ok = true;
  if (txt.empty()) {
    parser.report("No text blocks defined.");
    ok = false;
  }
  if (id.isEmpty()) {
    parser.report("Text ID missing.");
    ok = false;
  }
  return ok;
}

const char* R_SuperText::receive(int code, const char* text, const R_XMLParameters& parameters) {
  switch (code) {
    case codeId: return id.setNormalized(text, false) ? nullptr : "no id defined";
    case codeTitle: return title.setNormalized(text, false) ? nullptr : "no title defined";
    case codeMeta: return meta.setNormalized(text, false) ? nullptr : "no metainformation defined";
    case codeCondition: return receiveCondition(text);
  }
  if (code >= codeFirstElement && code < codeFirstElement + kKindCount) return receiveElement(code, text, parameters);
  return "unrecognized code in text";
}

const char* R_SuperText::receiveCondition(const char* text) {
  if (condition.getMethodCount() > 0) return "duplicate condition";
  R_String expression;
  expression.setNormalized(text);
  return condition.loadExpression(expression.get(), *statistics) ? nullptr : "error loading condition";
}

// The element stays in the text whether or not it loaded. A bad `if` is no
// fault: the element then has no condition.
const char* R_SuperText::receiveElement(int code, const char* text, const R_XMLParameters& parameters) {
  R_Text* element = kKinds[code - codeFirstElement].make();
  element->setCondition(parameters.getParameter("if"), *statistics);
  element->loadAttributes(parameters, *statistics);
  element->loadText(text, *statistics, reporter);
  txt.push_back(element);
  return element->isOK() ? nullptr : "text block data error";
}

void R_SuperText::saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics_in) const {
  R_writeTextElement(output, "id", id.get());
  R_openElement(output, "toc");
  R_String expression;
  if (condition.isValid() && condition.getText(expression, statistics_in))
    R_writeTextElement(output, "if", expression.get());
  if (!title.isEmpty()) R_writeTextElement(output, "title", title.get());
  if (!meta.isEmpty()) R_writeTextElement(output, "meta", meta.get());
  output.closeTag("toc");
  for (const R_Text* element : txt) saveElementXML(*element, output, statistics_in);
}

void R_SuperText::saveElementXML(const R_Text& element, R_XMLTextOutput& output,
                                 const R_FileStatistics& statistics) {
  output.openTag(element.getTag());
  R_String expression;
  if (element.getConditionText(expression, statistics)) output.writeAttribute("if", expression.get());
  element.writeAttributes(output, statistics);
  if (element.isEmptyTag()) {
    output.endEmptyTag();
    return;
  }
  output.endOpenTag();
  element.writeContent(output, statistics);
  output.closeTag(element.getTag());
}

void R_SuperText::load(R_InputStream& stream, bool* ok) {
  assert(txt.empty() && id.isEmpty());
  if (!*ok) return;
  if (!stream.checkType(R_TypeSuperText)) {
    *ok = false;
    return;
  }
  title.load(stream, ok);
  meta.load(stream, ok);
  id.load(stream, ok);
  condition.load(stream, ok);
  R_Integer count;
  count.load(stream, ok);
  if (count.get() < 0) *ok = false;
  txt.reserve(static_cast<size_t>(std::min(std::max(count.get(), 0), kMaxPrealloc)));
  while (*ok && getCount() < count.get()) {
    R_Text* element = makeByBinaryCode(stream.readByte());
    if (!element) {
      *ok = false;
      break;
    }
    txt.push_back(element);
    element->loadCondition(stream, ok);
    element->load(stream, ok);
    if (!element->isOK()) *ok = false;
  }
}

void R_SuperText::save(R_OutputStream& stream) const {
  stream.put(R_TypeSuperText);
  title.save(stream);
  meta.save(stream);
  id.save(stream);
  condition.save(stream);
  R_Integer(getCount()).save(stream);
  for (const R_Text* element : txt) {
    stream.put(element->getBinaryCode());
    element->saveCondition(stream);
    element->save(stream);
  }
}
