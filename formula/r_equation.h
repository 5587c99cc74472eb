// The stored, checked form of a computation: an ordered list of expressions
// in translated form over one table of variable references. An equation of
// pairs (a calculated variable's `method`) holds condition 0, method 0,
// condition 1, method 1, and so on; a single expression (a condition, a plot,
// a column) holds one. Reference k is the letter k of the translated texts
// ('A' is 0): a variable index and a method chain, the methods separated by
// blanks.
//
// An equation is invalid until a load stored at least one expression; it is
// immutable after that, and a second load into the same object is not
// allowed. Owns its texts. Not copyable.
#ifndef FORMULA_R_EQUATION_H
#define FORMULA_R_EQUATION_H

#include <string>
#include <vector>

#include "core/r_integer.h"
#include "core/r_string.h"
#include "xml/r_xmlrecipient.h"

class R_EquationTranslator;
class R_FileStatistics;
class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_Equation : public R_XMLRecipient {
 public:
  // The longest source text, terminator included, that the XML writer of
  // pairs produces for one expression.
  static const int textLimit = 16384;

  R_Equation();
  ~R_Equation() override;

  bool isValid() const { return valid; }
  int getVarCount() const { return var_count.get(); }
  int getMethodCount() const { return method_count.get(); }
  // The translated text of expression `index`.
  // Requires: 0 <= index < getMethodCount().
  const R_String& getMethod(int index) const;
  // The variable index and the method chain (empty without one) of
  // reference `index`. Require: 0 <= index < getVarCount().
  int getVariable(int index) const;
  const R_String& getDefinition(int index) const;

  // Fills an equation of pairs from the content of a `method` element: a
  // sequence of `compute` elements, each with the method as its text and an
  // optional condition in the attribute `if` (ALL when absent). Reports each
  // faulty `compute` and a closing line to `reporter` (may be null). Names
  // are resolved through `statistics`. Answers isValid().
  bool loadXML(const char* textXML, const R_FileStatistics& statistics,
               R_XMLErrorReporter* reporter);
  // Fills a single expression from its source text. Reports nothing.
  // Answers isValid().
  bool loadExpression(const char* text, const R_FileStatistics& statistics);
  // For the parse of loadXML only.
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;

  // The source text of expression 0; empty, answering false, when the
  // equation holds none or the text is not sound (see getExpressionText).
  bool getText(R_String& buffer, const R_FileStatistics& statistics, int limit = textLimit) const;
  // The source text of expression `index`: each reference as its variable's
  // name, ':' and its chain with ':' between the methods (a reference
  // without a chain reads NAME:, which loads back as the same reference);
  // $M, $F, $A, $I as MALE, FEMALE, AGE_TODAY, IS_PROBAND; everything else,
  // other keywords' codes included, as stored. Answers whether the text is
  // sound: not empty, no reference letter outside the table, no unknown
  // code behind '$', and shorter than `limit`. An unsound text leaves
  // `buffer` empty. Requires: 0 <= index < getMethodCount().
  bool getExpressionText(int index, R_String& buffer, const R_FileStatistics& statistics,
                         int limit = textLimit) const;

  // The content of a `method` element: per pair a `compute` with the
  // condition as attribute `if` (left out when it is not sound) and the
  // method as text. A lone condition at the end, which only a damaged binary
  // file can hold, is not written. The caller writes the `method` element.
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  // Type byte 6, a byte 1 when valid (else 0 and nothing more), var_count,
  // method_count, the variable indices, the chains, the translated texts.
  // A stored 0 leaves the equation invalid and `ok` as it was. Any other
  // fault, a method_count of 0 or below included, clears `ok`; the equation
  // is then left empty. Valid afterwards exactly when `ok` holds.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  bool loadSlots(R_InputStream& stream, bool* ok);
  void takeOver(const R_EquationTranslator& from, const R_FileStatistics& statistics);
  void appendReference(char letter, std::string& text, const R_FileStatistics& statistics,
                       bool* sound) const;
  void clear();

  R_Integer var_count;
  R_Integer method_count;
  std::vector<R_String> definitions;       // var_count chains
  std::vector<R_String> methods;           // method_count translated texts
  std::vector<R_Integer> variables;        // var_count variable indices
  R_EquationTranslator* translator;        // during loadXML only
  const R_FileStatistics* xml_statistics;  // during loadXML only
  bool valid;
};

#endif
