// The values of an auxogram for one proband: per line the SD scores its
// expression gave (a scalar or a series over the visits) and the labelling
// variable, and the columns, which are the visits at which any line has a
// point. When every line is a scalar there is no column table and one
// column without a heading.
//
// Lines whose expression fails, or gives nothing within -6 to 6 SD, are not
// added, so later lines move up. Values beyond 6 SD in a series that has a
// point within range stay as they are. Lives for one drawing. Not copyable.
#ifndef GRAPH_R_AUXOGRAMDATA_H
#define GRAPH_R_AUXOGRAMDATA_H

#include <vector>

#include "formula/r_calcvalue.h"

class R_AuxogramLine;
class R_File;
class R_Number;
class R_OutputInterface;
class R_Proband;
class R_String;

class R_AuxogramData {
 public:
  // The limits of the SD scale that getSDLimit answers.
  static const int minSDLimit = 1;
  static const int maxSDLimit = 5;
  // The longest line label, terminator included.
  static const int lineTextLimit = 2048;

  // Room for `maxlines` lines. Requires: maxlines >= 0.
  explicit R_AuxogramData(int maxlines);
  R_AuxogramData(const R_AuxogramData&) = delete;
  R_AuxogramData& operator=(const R_AuxogramData&) = delete;

  // Evaluates the line's expression for the proband and keeps the result
  // when it has anything within -6 to 6 SD; otherwise nothing changes.
  // Requires: getLineCount() < maxlines, line.ok().
  void addLine(const R_AuxogramLine& line, const R_File& file, const R_Proband& proband, const R_Number& age);
  // Works out the columns. False when there is nothing to draw: no line, no
  // visit, or no visit with a point. A scalar line among series has no
  // point at any visit, so it shows no wedge: an anamnestic score belongs to
  // no visit.
  bool prepare(const R_Proband& proband);

  int getLineCount() const { return static_cast<int>(values.size()); }
  // The columns of the table; 1 without one.
  int getColumnCount() const { return has_columns ? static_cast<int>(column_visits.size()) : 1; }
  // Whether the line has a score in the column. Requires: 0 <= line <
  // getLineCount(); 0 <= column < getColumnCount() after prepare().
  bool isDefined(int line, int column) const;
  // Requires: isDefined(line, column).
  double getValue(int line, int column) const;
  // `buffer` becomes the display name of the line's variable, cut to
  // lineTextLimit - 1 bytes; empty for a variable the file lacks.
  void getLineText(const R_File& file, int line, R_String& buffer) const;
  // `buffer` becomes the column's heading: empty without a column table,
  // else the visit's date in the output's date format, or, for a visit
  // without date, its age with unit. Requires: as isDefined, after prepare().
  void getColumnText(const R_File& file, const R_Proband& proband, R_OutputInterface& output, int column,
                     R_String& buffer) const;
  // The whole SD units that the scale shows on each side: the largest
  // distance of a defined value from 0, rounded up, limited to minSDLimit
  // to maxSDLimit; minSDLimit without any value.
  int getSDLimit() const;

 private:
  // The score of `value` at `visit`, or null when it has none there.
  static const R_Number* scoreAt(const R_CalcValue& value, int visit);

  std::vector<R_CalcValue> values;  // one per added line
  std::vector<int> var_index;       // the labelling variable of each added line
  std::vector<int> column_visits;   // the visit of each column
  bool has_columns;                 // false: scalars only, one column
  int maxlines;
};

#endif
