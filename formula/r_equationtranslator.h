// Turns formulas from their source form, as authors write them in a
// knowledge file, into the translated form that the engine stores and
// evaluates. One translator serves one equation during its load: all the
// expressions that go through it (the conditions and methods of one
// equation) share one table of at most R_varCount variable references, and
// the translated texts are kept in the order of translation. Not copyable.
//
// In the translated form each reference is '@' and its slot letter ('A' is
// slot 0), the keywords have their short codes (MALE is $M, FEMALE $F,
// AGE_TODAY $A, IS_PROBAND $I, ALL and ALWAYS 1, AND &, OR |, NOT !, LT <,
// GT >, LTEQ <=, GTEQ >=), '@' of the source is written '&' and '#' is
// written '<>'; numbers and function names are upper-cased.
//
// A slot is a variable's name and its method chain, both upper case, the
// methods separated by blanks; NAME and NAME: are the same reference. A
// reference is entered when it is read, so a translation that fails later
// on, or because of an unknown method, leaves its slots taken: the whole
// equation is refused in that case anyway.
#ifndef FORMULA_R_EQUATIONTRANSLATOR_H
#define FORMULA_R_EQUATIONTRANSLATOR_H

#include <string>

#include "core/r_fieldtemplate.h"
#include "core/r_string.h"
#include "formula/r_formulaconstants.h"

class R_FileStatistics;

class R_EquationTranslator {
 public:
  R_EquationTranslator();
  ~R_EquationTranslator();
  R_EquationTranslator(const R_EquationTranslator&) = delete;
  R_EquationTranslator& operator=(const R_EquationTranslator&) = delete;

  // Translates `text`, resolving names through the variable names of
  // `statistics`. On success appends the translated text and answers true.
  // Answers false, appending nothing, for a null text, an unknown token or
  // name, an unknown method, a 27th distinct reference, an open bracket in a
  // name, parentheses that do not balance to 0, or an empty result. Reports
  // no message.
  bool translate(const char* text, const R_FileStatistics& statistics);

  // Why the last translate answered false, in one line for the author
  // ("HEIGHTX names no variable, keyword or function"); empty after success.
  const std::string& getFailure() const { return failure; }

  int getEquationCount() const { return eq_count; }
  // Requires: 0 <= index < getEquationCount().
  const char* getEquation(int index) const;

  int getVariableCount() const { return var_count; }
  // The upper-case name of the reference in slot `index`, and its chain (the
  // empty text when it has none). Require: 0 <= index < getVariableCount().
  const char* getVariable(int index) const;
  const char* getDefinition(int index) const;

 private:
  bool translateToken(const std::string& text, size_t* position, const R_FileStatistics& statistics,
                      std::string& out, long* balance);
  bool translateName(const std::string& upper, const R_FileStatistics& statistics,
                     std::string& out);
  bool translateReference(const std::string& upper, const R_FileStatistics& statistics,
                          std::string& out);
  int findSlot(const std::string& name, const std::string& chain) const;
  bool addSlot(const std::string& name, const std::string& chain);
  // Keeps the reason and answers false.
  bool fail(const std::string& reason);

  R_String var[R_varCount];         // upper-case names of the slots in use
  R_String definition[R_varCount];  // their chains, methods separated by blanks
  int var_count;
  R_FieldTemplate<R_String> equations;  // owned translated texts
  int eq_count;
  std::string failure;
};

#endif
