// One panel of a graph: a variable of the proband shown along the graph's
// shared X axis, with its plots, an optional condition that decides whether
// the panel is shown, the growth reference behind it and up to three target
// values at its right edge (a target point and the two ends of a target
// range). Blocks with a greater priority are placed first. A block that
// shows SD scores (analysed "sd") needs no reference data.
//
// The variable, priority and analysed flag come from the `block` element's
// attributes, which the graph reads; the rest from the element's content or
// the binary form. Plots that failed their load stay in the block. Owns its
// plots and targets. Not copyable.
#ifndef GRAPH_R_GRAPHBLOCKDATA_H
#define GRAPH_R_GRAPHBLOCKDATA_H

#include <memory>
#include <vector>

#include "formula/r_equation.h"
#include "formula/r_namedequation.h"
#include "graph/r_graphrefdata.h"
#include "xml/r_xmlrecipient.h"

class R_FileStatistics;
class R_GraphPlot;
class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;

// Target 0 is the target point, 1 and 2 the ends of the target range.
const int R_graphBlockTargetCount = 3;

class R_GraphBlockData : public R_XMLRecipient {
 public:
  // Requires: analysed is 0 or 1, priority in 1 to 1000, var >= 0.
  R_GraphBlockData(int analysed, int priority, int var);
  ~R_GraphBlockData() override;

  int getPriority() const { return priority; }
  int getVariable() const { return var; }
  int getAnalysed() const { return analysed; }
  bool isAnalysedSD() const { return analysed == 1; }
  // Invalid when the block has none.
  const R_Equation& getCondition() const { return condition; }
  const R_GraphRefData& getRefData() const { return refdata; }
  // Requires: 0 <= index < R_graphBlockTargetCount.
  const R_NamedEquation& getTarget(int index) const;
  int getPlotCount() const { return static_cast<int>(plots.size()); }
  // Requires: 0 <= index < getPlotCount().
  const R_GraphPlot& getPlot(int index) const;

  // Fills the block from the `block` element's content. Reports each faulty
  // element, and a block that is not analysed "sd" without `refdata`, to
  // `reporter` (may be null). Requires: textXML != null, a fresh block.
  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  // For the parse of loadXML only.
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // The whole `block` element, its attributes named through `statistics`.
  void saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const;
  // Plot count, condition, reference data, the three targets, the plots;
  // the graph stores var, analysed and priority in front. Requires: a fresh
  // block.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  const char* receiveRefData(const R_XMLParameters& parameters);
  const char* receivePlot(const R_XMLParameters& parameters);
  const char* receiveTarget(int index, const R_XMLParameters& parameters, const char* fault);
  const char* receiveCondition(const R_XMLParameters& parameters);
  void saveTarget(R_XMLTextOutput& xml, int index, const R_FileStatistics& statistics) const;

  // Each target is its own object, so that a load that left a target half
  // filled can be replaced by a fresh one.
  std::unique_ptr<R_NamedEquation> targets[R_graphBlockTargetCount];
  R_GraphRefData refdata;
  std::vector<R_GraphPlot*> plots;        // owned
  const R_FileStatistics* statistics;     // during the XML load only
  R_Equation condition;
  const int priority;
  const int analysed;
  const int var;
};

#endif
