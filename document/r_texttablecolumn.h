// One column of a report table: a visit's date, a computed value, the text
// of a list item, or a separator. The column's own equation (its `method`)
// is the one it inherits; the value and list columns compute it over the
// whole proband once per table and read the point of each visit.
//
// Kept on purpose: a list column looks up its text by the x of each point,
// not by the y, as the tables people already have show it.
#ifndef DOCUMENT_R_TEXTTABLECOLUMN_H
#define DOCUMENT_R_TEXTTABLECOLUMN_H

#include <string>

#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "formula/r_equation.h"

class R_CalcValue;
class R_File;
class R_Proband;

class R_TextTableColumn : public R_Equation {
 public:
  // The low four bits of the flags.
  enum ColumnType { typeDate = 1, typeSeparator = 2, typeValues = 3, typeList = 4 };
  // getKind(): what a column computes and shows.
  enum Kind { kindSeparator = 0, kindDate = 1, kindList = 2, kindValues = 3 };
  // The flags beside the type.
  static const int flagPercentiles = 16;
  static const int flagSD = 32;

  R_TextTableColumn() = default;

  int getKind() const;
  const R_String& getHeader() const { return header; }

  // Takes the attributes of a `column` element. False when they break the
  // rules of its type; the column then is not fit for output, but keeps
  // what it read.
  bool loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics& statistics);
  // Writes the whole `column` element.
  void saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const;

  // Type byte 64, the flags, then by kind: date: header, format; values:
  // header, method, precision; list: header, method, format; separator:
  // nothing, so its header is lost. A type outside 1 to 4 clears `ok`.
  void loadColumn(R_InputStream& stream, bool* ok);
  void saveColumn(R_OutputStream& stream) const;

  // The text of the cell of visit `visit`; `result` is this column's value
  // for the whole proband. Requires: a date, values or list column.
  std::string cellText(const R_File& file, const R_Proband& proband, const R_CalcValue& result,
                       int visit) const;

 private:
  bool hasMethod(const R_XMLParameters& attributes, const R_FileStatistics& statistics);
  bool hasPrecision(const R_XMLParameters& attributes);
  bool hasFormat(const R_XMLParameters& attributes);
  std::string valueText(const R_CalcValue& result, int visit) const;
  std::string listText(const R_File& file, const R_CalcValue& result, int visit) const;

  R_String header;
  R_String format;  // a date format, or the name of the variable whose list applies
  R_Number precision;
  R_Integer flags;
};

#endif
