#include "formula/r_equation.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "formula/r_equationtranslator.h"
#include "formula/r_formulaconstants.h"
#include "formula/r_formulavocabulary.h"
#include "knowledge/r_filestatistics.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const int kComputeCode = 0;

// The keyword whose code is '$' and `code`; null for a code of no keyword.
const char* sourceOfCode(char code) {
  for (const R_FormulaKeyword& keyword : R_formulaKeywords) {
    if (keyword.code[0] == '$' && keyword.code[1] == code) return keyword.word;
  }
  return nullptr;
}

// A chain reads back with ':' for every run of separators between methods.
void appendChain(const char* definition, std::string& text) {
  for (const char* p = definition; *p; ++p) {
    if (!R_isBlank(static_cast<unsigned char>(*p)))
      text += *p;
    else if (!R_isBlank(static_cast<unsigned char>(p[1])))
      text += ':';
  }
}

// Operators whose characters the XML reader cannot take back (a '<' or '>'
// in element text or an attribute breaks the tag structure, and the escaped
// forms are not decoded on reading) are written as the keywords that
// translate to them, so that a written formula reads back to the same
// translated text. Longer codes come first.
struct OperatorWord {
  const char* code;
  const char* source;
};
const OperatorWord kOperatorWords[] = {
    {"<=", " LTEQ "}, {">=", " GTEQ "}, {"<>", " # "}, {"=>", " = GT "},
    {"<", " LT "},    {">", " GT "},    {"&", " AND "},
};

// Appends the source of the operator or character at `code`; answers how
// many bytes of the translated text it stood for.
size_t appendOperator(const char* code, std::string& text) {
  for (const OperatorWord& entry : kOperatorWords) {
    size_t n = strlen(entry.code);
    if (strncmp(code, entry.code, n) == 0) {
      text += entry.source;
      return n;
    }
  }
  text += *code;
  return 1;
}

// A name followed at once by a letter, digit or another reference would read
// back as one longer name; a blank keeps them apart.
void separateFromNext(char next, std::string& text) {
  if (next != 0 && !strchr("^+-*/=<>()&|!?", next)) text += ' ';
}

void trimBlanks(std::string& text) {
  size_t first = text.find_first_not_of(' ');
  size_t last = text.find_last_not_of(' ');
  text = first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

}  // namespace

R_Equation::R_Equation() : translator(nullptr), xml_statistics(nullptr), valid(false) {}

R_Equation::~R_Equation() {}

const R_String& R_Equation::getMethod(int index) const {
  assert(index >= 0 && index < getMethodCount());
  return methods[static_cast<size_t>(index)];
}

int R_Equation::getVariable(int index) const {
  assert(index >= 0 && index < getVarCount());
  return variables[static_cast<size_t>(index)].get();
}

const R_String& R_Equation::getDefinition(int index) const {
  assert(index >= 0 && index < getVarCount());
  return definitions[static_cast<size_t>(index)];
}

bool R_Equation::loadXML(const char* textXML, const R_FileStatistics& stats,
                         R_XMLErrorReporter* reporter) {
  assert(methods.empty());
  R_EquationTranslator pairs;
  translator = &pairs;
  xml_statistics = &stats;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  setTagCount(1);
  setTag(kComputeCode, "compute");
  bool parsed = textXML && parser.parseString(textXML, this);
  clearTags();
  if (parsed) takeOver(pairs, stats);
  translator = nullptr;
  xml_statistics = nullptr;
  if (getMethodCount() == 0) parser.report("No valid condition/method pairs found.");
  if (!valid) parser.report("Error while processing equation (wrong format or none defined).");
  return valid;
}

// Both texts of a pair are attempted; when both fail, the condition is the
// one named.
const char* R_Equation::receive(int code, const char* text, const R_XMLParameters& parameters) {
  if (code != kComputeCode || !translator || !text || !*text)
    return "unrecognized code in equation";
  const char* condition = parameters.getParameter("if");
  bool condition_ok = translator->translate(condition ? condition : "ALL", *xml_statistics);
  bool method_ok = translator->translate(text, *xml_statistics);
  if (!condition_ok) return "error in condition";
  if (!method_ok) return "error in method";
  return nullptr;
}

bool R_Equation::loadExpression(const char* text, const R_FileStatistics& stats) {
  assert(methods.empty());
  R_EquationTranslator single;
  if (single.translate(text, stats)) takeOver(single, stats);
  return valid;
}

// A slot whose name the statistics does not know spoils the equation; the
// translator only enters known names, so this guards a mismatched pair.
void R_Equation::takeOver(const R_EquationTranslator& from, const R_FileStatistics& stats) {
  var_count = from.getVariableCount();
  method_count = from.getEquationCount();
  bool known = true;
  for (int k = 0; k < from.getVariableCount(); ++k) {
    int index = stats.getVarIndex(from.getVariable(k));
    known = known && index >= 0;
    variables.push_back(R_Integer(index));
    definitions.push_back(R_String(from.getDefinition(k)));
  }
  for (int k = 0; k < from.getEquationCount(); ++k)
    methods.push_back(R_String(from.getEquation(k)));
  valid = known && getMethodCount() > 0;
}

bool R_Equation::getText(R_String& buffer, const R_FileStatistics& stats, int limit) const {
  if (getMethodCount() < 1) {
    buffer.clear();
    return false;
  }
  return getExpressionText(0, buffer, stats, limit);
}

bool R_Equation::getExpressionText(int index, R_String& buffer, const R_FileStatistics& stats,
                                   int limit) const {
  const char* code = getMethod(index).get();
  std::string text;
  bool sound = true;
  for (size_t i = 0; sound && code[i]; ++i) {
    if (code[i] == '@') {
      appendReference(code[++i], text, stats, &sound);
      separateFromNext(code[i] ? code[i + 1] : 0, text);
    } else if (code[i] == '$') {
      const char* word = sourceOfCode(code[++i]);
      if (word) text += word;
      sound = word != nullptr;
      separateFromNext(code[i] ? code[i + 1] : 0, text);
    } else {
      i += appendOperator(code + i, text) - 1;
    }
  }
  trimBlanks(text);
  sound = sound && !text.empty() && text.size() < static_cast<size_t>(limit);
  buffer.set(sound ? text.c_str() : nullptr);
  return sound;
}

// `letter` names the reference; a letter outside the table, or a variable
// index that the statistics does not hold, makes the text unsound.
void R_Equation::appendReference(char letter, std::string& text, const R_FileStatistics& stats,
                                 bool* sound) const {
  int k = (letter >= 'A' && letter <= 'Z') ? letter - 'A' : -1;
  int index = (k >= 0 && k < getVarCount()) ? getVariable(k) : -1;
  if (index < 0 || index >= stats.getVarCount()) {
    *sound = false;
    return;
  }
  text += stats.getVarName(index);
  text += ':';
  appendChain(getDefinition(k).get(), text);
}

void R_Equation::saveXML(R_XMLTextOutput& output, const R_FileStatistics& stats) const {
  R_String text;
  for (int k = 0; k + 1 < getMethodCount(); k += 2) {
    output.openTag("compute");
    if (getExpressionText(k, text, stats)) output.writeAttribute("if", text.get());
    output.endOpenTag();
    getExpressionText(k + 1, text, stats);
    output.writeText(text.get());
    output.closeTag("compute");
  }
}

void R_Equation::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  assert(methods.empty());
  if (!stream.checkType(R_TypeEquation)) {
    *ok = false;
    return;
  }
  int stored = stream.readByte();
  if (stored == 0) return;
  *ok = stored == 1 && loadSlots(stream, ok);
  valid = *ok;
  if (!valid) clear();
}

// Element by element, so that a damaged count costs no more than the bytes
// that are really there. No writer stores more references than there are
// letters, nor an equation without an expression.
bool R_Equation::loadSlots(R_InputStream& stream, bool* ok) {
  var_count.load(stream, ok);
  method_count.load(stream, ok);
  int vars = getVarCount();
  int count = getMethodCount();
  if (!*ok || vars < 0 || vars > R_varCount || count <= 0) return false;
  for (int k = 0; *ok && k < vars; ++k) variables.push_back(R_Integer(stream, ok));
  for (int k = 0; *ok && k < vars; ++k) definitions.push_back(R_String(stream, ok));
  for (int k = 0; *ok && k < count; ++k) methods.push_back(R_String(stream, ok));
  return *ok;
}

void R_Equation::save(R_OutputStream& stream) const {
  stream.put(R_TypeEquation);
  stream.put(valid ? 1 : 0);
  if (!valid) return;
  var_count.save(stream);
  method_count.save(stream);
  for (const R_Integer& index : variables) index.save(stream);
  for (const R_String& definition : definitions) definition.save(stream);
  for (const R_String& method : methods) method.save(stream);
}

void R_Equation::clear() {
  var_count = 0;
  method_count = 0;
  variables.clear();
  definitions.clear();
  methods.clear();
  valid = false;
}
