// One series of a graph block: an expression giving the proband's points
// (or a scalar), an optional expression giving the arrow targets, and how
// the points are shown. A plot without the primary flag is secondary: it is
// drawn beside the primary one and does not decide the axes. Loaded from the
// attributes of a `plot` element or from the binary form. Not copyable.
#ifndef GRAPH_R_GRAPHPLOT_H
#define GRAPH_R_GRAPHPLOT_H

#include "core/r_integer.h"
#include "formula/r_equation.h"

class R_FileStatistics;
class R_InputStream;
class R_OutputStream;
class R_XMLParameters;
class R_XMLTextOutput;

class R_GraphPlot {
 public:
  // The bits of the flags; 8 is not used.
  static const int flagConnected = 1;
  static const int flagPrimary = 2;
  static const int flagSmall = 4;
  static const int flagArrow = 16;
  static const int flagMarks = 32;

  R_GraphPlot() {}
  R_GraphPlot(const R_GraphPlot&) = delete;
  R_GraphPlot& operator=(const R_GraphPlot&) = delete;

  int getFlags() const { return flags.get(); }
  bool isConnected() const { return flags.hasBits(flagConnected); }
  bool isPrimary() const { return flags.hasBits(flagPrimary); }
  bool isSmall() const { return flags.hasBits(flagSmall); }
  bool hasArrow() const { return flags.hasBits(flagArrow); }
  bool hasMarks() const { return flags.hasBits(flagMarks); }
  const R_Equation& getMethod() const { return method; }
  // Empty without hasArrow().
  const R_Equation& getArrow() const { return arrow; }

  // Takes `method` (required), `arrow`, `connect` ("yes" joins), `size`
  // ("small"), `type` (only "secondary" makes a secondary plot) and `marks`
  // (only "no" hides them). False when the method is absent or either
  // expression does not load as exactly one expression.
  bool loadXML(const R_XMLParameters& attributes, const R_FileStatistics& statistics);
  // A whole `plot` empty-element tag with every attribute spelt out.
  void saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const;
  // Flags, method, and the arrow only with its flag. Clears `ok` when an
  // expression is not exactly one.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  R_Equation method;
  R_Equation arrow;
  R_Integer flags;
};

#endif
