#include "graph/r_auxogramdata.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <string>

#include "core/r_date.h"
#include "core/r_string.h"
#include "formula/r_calcequation.h"
#include "graph/r_auxogramline.h"
#include "knowledge/r_file.h"
#include "knowledge/r_probability.h"
#include "knowledge/r_variable.h"
#include "output/r_outputinterface.h"
#include "proband/r_proband.h"

namespace {

// A scalar within range, or a series with at least one valid point within
// range. Anything else is not worth a line.
bool hasScoreInRange(const R_CalcValue& value) {
  if (value.isScalar()) return R_Probability::isSDInRange(value.getScalar());
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& point = value.getPoint(i);
    if (point.isValid() && R_Probability::isSDInRange(point.getY())) return true;
  }
  return false;
}

}  // namespace

R_AuxogramData::R_AuxogramData(int maxlines_in) : has_columns(false), maxlines(maxlines_in) {
  assert(maxlines >= 0);
  values.reserve(static_cast<size_t>(maxlines));
  var_index.reserve(static_cast<size_t>(maxlines));
}

void R_AuxogramData::addLine(const R_AuxogramLine& line, const R_File& file, const R_Proband& proband,
                             const R_Number& age) {
  assert(getLineCount() < maxlines && line.ok());
  R_CalcEquation calculation(line.getEquation());
  if (!calculation.evaluate(file, &proband, age, -1, 0) || !hasScoreInRange(calculation.getResult())) return;
  values.push_back(calculation.getResult());
  var_index.push_back(line.getVariable());
}

const R_Number* R_AuxogramData::scoreAt(const R_CalcValue& value, int visit) {
  if (visit >= value.getN()) return nullptr;
  const R_CalcPoint& point = value.getPoint(visit);
  return point.isValid() ? &point.getY() : nullptr;
}

bool R_AuxogramData::prepare(const R_Proband& proband) {
  has_columns = false;
  column_visits.clear();
  if (values.empty() || proband.getVisitCount() == 0) return false;
  bool scalars_only = true;
  for (const R_CalcValue& value : values) scalars_only = scalars_only && value.isScalar();
  if (scalars_only) return true;
  has_columns = true;
  for (int visit = 0; visit < proband.getVisitCount(); ++visit) {
    for (const R_CalcValue& value : values) {
      if (!scoreAt(value, visit)) continue;
      column_visits.push_back(visit);
      break;
    }
  }
  return !column_visits.empty();
}

bool R_AuxogramData::isDefined(int line, int column) const {
  assert(line >= 0 && line < getLineCount() && column >= 0 && column < getColumnCount());
  const R_CalcValue& value = values[line];
  if (!has_columns) return value.isScalar() && value.getScalar().isDefined();
  const R_Number* score = scoreAt(value, column_visits[column]);
  return score && score->isDefined();
}

double R_AuxogramData::getValue(int line, int column) const {
  assert(isDefined(line, column));
  const R_CalcValue& value = values[line];
  if (!has_columns) return value.getScalar().getValue();
  return scoreAt(value, column_visits[column])->getValue();
}

void R_AuxogramData::getLineText(const R_File& file, int line, R_String& buffer) const {
  assert(line >= 0 && line < getLineCount());
  int var = var_index[line];
  // Only a damaged binary file names a variable that the file lacks.
  if (var < 0 || var >= file.getVarCount()) {
    buffer.clear();
    return;
  }
  const R_String& name = file.getVariable(var)->getName();
  if (name.getLength() < lineTextLimit) {
    buffer = name;
    return;
  }
  buffer = std::string(name.get(), lineTextLimit - 1).c_str();
}

void R_AuxogramData::getColumnText(const R_File& file, const R_Proband& proband, R_OutputInterface& output,
                                   int column, R_String& buffer) const {
  assert(column >= 0 && column < getColumnCount());
  buffer.clear();
  if (!has_columns) return;
  int visit = column_visits[column];
  const R_Date& date = proband.getVisitDate(visit);
  if (date.isDefined()) {
    const char* format = output.getDateFormat();
    if (!format) format = "";
    // Each conversion at most doubles its two bytes.
    std::string text(2 * strlen(format) + 8, '\0');
    date.format(&text[0], format);
    buffer = text.c_str();
  } else if (proband.getVisitAge(visit).isDefined() && file.getAgeIndex() >= 0) {
    file.getAgeVariable()->formatValue(proband.getVisitAge(visit), buffer, true);
  }
}

int R_AuxogramData::getSDLimit() const {
  bool any = false;
  double low = 0, high = 0;
  for (int line = 0; line < getLineCount(); ++line) {
    for (int column = 0; column < getColumnCount(); ++column) {
      if (!isDefined(line, column)) continue;
      double value = getValue(line, column);
      low = any ? std::min(low, value) : value;
      high = any ? std::max(high, value) : value;
      any = true;
    }
  }
  if (!any) return minSDLimit;
  double limit = std::ceil(std::max(high, -low));
  // Also catches a value that is not a number.
  if (!(limit >= minSDLimit)) return minSDLimit;
  return limit > maxSDLimit ? maxSDLimit : static_cast<int>(limit);
}
