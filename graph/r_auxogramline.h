// One line (row) of an auxogram: an expression whose result is an SD score
// or a series of them, and the variable whose name labels the line. Loaded
// from the attributes of an `auxogramline` element or from the binary form;
// a line that failed its load stays with its auxogram and is not ok. Not
// copyable.
#ifndef GRAPH_R_AUXOGRAMLINE_H
#define GRAPH_R_AUXOGRAMLINE_H

#include "core/r_integer.h"
#include "formula/r_equation.h"

class R_FileStatistics;
class R_InputStream;
class R_OutputStream;
class R_XMLParameters;
class R_XMLTextOutput;

class R_AuxogramLine {
 public:
  R_AuxogramLine() : var(-1) {}
  R_AuxogramLine(const R_AuxogramLine&) = delete;
  R_AuxogramLine& operator=(const R_AuxogramLine&) = delete;

  // A labelling variable is set and the expression loaded.
  bool ok() const { return var.get() >= 0 && equation.isValid(); }
  // The index of the labelling variable; -1 when not set.
  int getVariable() const { return var.get(); }
  const R_Equation& getEquation() const { return equation; }

  // `var` names the labelling variable, `method` holds the expression; an
  // unknown name or an expression that does not translate leaves the line
  // not ok. Answers ok(). Requires: a fresh line.
  bool loadXML(const R_XMLParameters& attributes, const R_FileStatistics& statistics);
  // An empty-element tag with `var`, then `method`.
  void saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const;
  // Type byte 65, the variable (R_Integer), the equation. Another type byte
  // leaves the line empty and clears `ok`: what follows cannot be read.
  // Requires: a fresh line.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  R_Equation equation;
  R_Integer var;  // the labelling variable's index, -1 when not set
};

#endif
