#include "formula/r_equationtranslator.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"
#include "formula/r_calcvaluemethod.h"
#include "formula/r_formulavocabulary.h"
#include "knowledge/r_filestatistics.h"

namespace {

const char kOperators[] = "^+-*/=<>()&|!?@#";

bool isOperator(unsigned char c) { return c != 0 && strchr(kOperators, c) != nullptr; }

// '@' is another spelling of the logical AND and '#' of the inequality; the
// evaluator knows only '&' and '<>'.
void appendOperator(char c, std::string& out, long* balance) {
  if (c == '(') ++*balance;
  if (c == ')') --*balance;
  if (c == '@')
    out += '&';
  else if (c == '#')
    out += "<>";
  else
    out += c;
}

// Outside brackets a name runs over letters, '_', ':' and '['; inside them
// over digits and "-.eE]", so a method's number stays in the name while a
// digit behind a plain name starts a token of its own.
bool continuesName(unsigned char c, int depth) {
  if (depth == 0) return R_isLetter(c) || c == '_' || c == ':' || c == '[';
  return R_isDigit(c) || (c != 0 && strchr("-.eE]", c) != nullptr);
}

// Scans the name at `start`; answers false when a bracket is left open.
bool scanName(const std::string& text, size_t start, size_t* end) {
  int depth = 0;
  size_t i = start;
  for (; i < text.size() && continuesName(static_cast<unsigned char>(text[i]), depth); ++i) {
    if (text[i] == '[') ++depth;
    if (text[i] == ']') --depth;
  }
  *end = i;
  return depth == 0;
}

// Numbers carry no sign and may not start with '.'.
size_t scanNumber(const std::string& text, size_t start) {
  size_t i = start;
  while (i < text.size() && (R_isDigit(static_cast<unsigned char>(text[i])) || text[i] == '.' ||
                             text[i] == 'e' || text[i] == 'E'))
    ++i;
  return i;
}

std::string toUpper(const std::string& text) {
  std::string upper(text);
  for (char& c : upper) c = R_toUpper(c);
  return upper;
}

const char* findKeyword(const std::string& upper) {
  for (const R_FormulaKeyword& keyword : R_formulaKeywords) {
    if (upper == keyword.word) return keyword.code;
  }
  return nullptr;
}

bool isFunction(const std::string& upper) {
  if (upper == R_formulaConstantPI) return true;
  for (const R_FormulaFunction& function : R_formulaFunctions) {
    if (upper == function.name) return true;
  }
  return false;
}

// A known name fits the token when it is the whole token or the part before
// a ':' at its own length, case aside. So only the token and its parts
// before each ':' can fit, and each is looked up by name rather than
// compared with every variable: a file with many variables and long
// formulas would otherwise take time in the product of the two.
bool isKnownName(const std::string& upper, const R_FileStatistics& statistics) {
  for (size_t end = upper.find(':'); end != std::string::npos; end = upper.find(':', end + 1)) {
    if (statistics.getVarIndex(upper.substr(0, end).c_str()) >= 0) return true;
  }
  return statistics.getVarIndex(upper.c_str()) >= 0;
}

// Every word of the chain must start with a method keyword; the bracket
// text is read only when the method runs. Answers the first word that does
// not, or the empty text.
std::string unknownMethod(const std::string& chain) {
  size_t start = 0;
  while (start < chain.size()) {
    size_t end = chain.find(' ', start);
    if (end == std::string::npos) end = chain.size();
    std::string word = chain.substr(start, end - start);
    if (!word.empty() &&
        R_CalcValueMethod::parseMethod(word.c_str()) == R_CalcValueMethod::methodUnknown)
      return word;
    start = end + 1;
  }
  return std::string();
}

}  // namespace

R_EquationTranslator::R_EquationTranslator() : var_count(0), equations(16), eq_count(0) {}

R_EquationTranslator::~R_EquationTranslator() {
  for (int i = 0; i < eq_count; ++i) delete equations.get(i);
}

const char* R_EquationTranslator::getEquation(int index) const {
  assert(index >= 0 && index < eq_count);
  return equations.get(index)->get();
}

const char* R_EquationTranslator::getVariable(int index) const {
  assert(index >= 0 && index < var_count);
  return var[index].get();
}

const char* R_EquationTranslator::getDefinition(int index) const {
  assert(index >= 0 && index < var_count);
  return definition[index].get();
}

bool R_EquationTranslator::fail(const std::string& reason) {
  failure = reason;
  return false;
}

bool R_EquationTranslator::translate(const char* text, const R_FileStatistics& statistics) {
  failure.clear();
  if (!text) return fail("there is no formula");
  std::string source(text);
  source.resize(static_cast<size_t>(R_normalizeWhitespace(&source[0])));
  std::string out;
  long balance = 0;
  for (size_t position = 0; position < source.size();) {
    if (!translateToken(source, &position, statistics, out, &balance)) return false;
  }
  if (balance != 0) return fail("the parentheses do not pair up");
  if (out.empty()) return fail("the formula is empty");
  R_String* stored = new R_String(out.c_str());
  if (!equations.put(eq_count, stored)) {
    delete stored;
    return false;
  }
  ++eq_count;
  return true;
}

bool R_EquationTranslator::translateToken(const std::string& text, size_t* position,
                                          const R_FileStatistics& statistics, std::string& out,
                                          long* balance) {
  size_t start = *position;
  unsigned char c = static_cast<unsigned char>(text[start]);
  if (R_isBlank(c)) {
    *position = start + 1;
    return true;
  }
  if (isOperator(c)) {
    appendOperator(text[start], out, balance);
    *position = start + 1;
    return true;
  }
  if (R_isDigit(c)) {
    *position = scanNumber(text, start);
    out += toUpper(text.substr(start, *position - start));
    return true;
  }
  if (!R_isLetter(c)) return fail(std::string("the character '") + text[start] + "' has no meaning here");
  if (!scanName(text, start, position)) return fail("a bracket in " + text.substr(start) + " is not closed");
  return translateName(toUpper(text.substr(start, *position - start)), statistics, out);
}

// Keywords and functions hide variables of the same name.
bool R_EquationTranslator::translateName(const std::string& upper,
                                         const R_FileStatistics& statistics, std::string& out) {
  if (const char* code = findKeyword(upper)) {
    out += code;
    return true;
  }
  if (isFunction(upper)) {
    out += upper;
    return true;
  }
  return translateReference(upper, statistics, out);
}

bool R_EquationTranslator::translateReference(const std::string& upper,
                                              const R_FileStatistics& statistics,
                                              std::string& out) {
  size_t colon = upper.find(':');
  if (!isKnownName(upper, statistics))
    return fail(upper.substr(0, colon) + " names no variable, keyword or function");
  std::string name = upper.substr(0, colon);
  std::string chain = colon == std::string::npos ? std::string() : upper.substr(colon + 1);
  for (char& c : chain) {
    if (c == ':') c = ' ';
  }
  int slot = findSlot(name, chain);
  if (slot < 0) {
    if (!addSlot(name, chain)) return false;
    slot = var_count - 1;
  }
  out += '@';
  out += static_cast<char>('A' + slot);
  return true;
}

int R_EquationTranslator::findSlot(const std::string& name, const std::string& chain) const {
  for (int i = 0; i < var_count; ++i) {
    if (name == var[i].get() && chain == definition[i].get()) return i;
  }
  return -1;
}

// The slot is taken before its methods are checked and stays taken when one
// of them is unknown.
bool R_EquationTranslator::addSlot(const std::string& name, const std::string& chain) {
  if (var_count >= R_varCount)
    return fail("a formula holds at most " + std::to_string(R_varCount) + " different variable references");
  var[var_count].set(name.c_str());
  definition[var_count].set(chain.c_str());
  ++var_count;
  std::string unknown = unknownMethod(chain);
  if (unknown.empty()) return true;
  std::string reference = name + ":" + chain;
  for (char& c : reference) {
    if (c == ' ') c = ':';
  }
  return fail(unknown + " is no method (in " + reference + ")");
}
