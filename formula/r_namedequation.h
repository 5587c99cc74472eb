// A single expression with a name, as a graph's target points are written:
// <targetpoint name="..." method="..."/>. Defined when the name is not empty
// and the expression loaded; an absent name is no fault of the expression,
// it only leaves the whole undefined. Owns its texts. Not copyable.
#ifndef FORMULA_R_NAMEDEQUATION_H
#define FORMULA_R_NAMEDEQUATION_H

#include "core/r_string.h"
#include "formula/r_equation.h"

class R_XMLParameters;

class R_NamedEquation : public R_Equation {
 public:
  // The longest source text, terminator included, written for the
  // expression.
  static const int textLimit = 8192;

  R_NamedEquation() {}

  const R_String& getName() const { return name; }
  bool isDefined() const { return !name.isEmpty() && isValid(); }

  // Takes the attributes `name` and `method` of the element being read; the
  // method is one expression in source form. Answers isDefined(): false
  // without a `method`, for one that does not translate, and for an empty
  // or absent name. Reports nothing.
  bool loadXML(const R_XMLParameters& parameters, const R_FileStatistics& statistics);
  // Writes the attributes `name` and `method` into the tag the caller has
  // opened; `method` is left out when its text is not sound.
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  // A byte 1, the name and the equation; a byte 0 alone when not defined.
  // The reader takes any byte other than 1 as an absent expression, leaving
  // `ok` as it was, and clears `ok` when the equation does not hold exactly
  // one expression.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  R_String name;
};

#endif
