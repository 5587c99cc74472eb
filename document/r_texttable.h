// A table of a proband's visits in a report text. Normal: a head row, then
// one row per chosen visit, numbered by the visit's index plus 1. Inverted:
// one output row per column, every visit a column, in groups of the
// output's getInvertedColumnCount() visits. The visits of a normal table
// are those that the row selector (`select method`) marks with a defined
// value other than 0, or without one those where any values or list column
// has a defined value; an inverted table shows every visit.
//
// Loaded from the `table` element: attribute `mode` ("inverted", anything
// else normal), content of `select` and `column` elements. Not copyable.
#ifndef DOCUMENT_R_TEXTTABLE_H
#define DOCUMENT_R_TEXTTABLE_H

#include <vector>

#include "core/r_integer.h"
#include "document/r_text.h"
#include "formula/r_equation.h"
#include "xml/r_xmlrecipient.h"

class R_CalcEquation;
class R_TextTableColumn;

class R_TextTable : public R_Text, public R_XMLRecipient {
 public:
  static const int flagInverted = 1;

  R_TextTable() : R_Text(typeTable), statistics(nullptr) {}
  ~R_TextTable() override;

  int getColumnCount() const { return static_cast<int>(columns.size()); }
  bool isInverted() const { return flags.hasBits(flagInverted); }

  // Ok when the content parses without a fault and holds a column.
  void loadText(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) override;
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics& statistics) override;
  // Flags, column count, the selector (only after a count above 0), the
  // columns. A count of 0 or below fails.
  void load(R_InputStream& stream, bool* ok) override;
  void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  void save(R_OutputStream& stream) const override;
  void writeAttributes(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;

  int getOutputKind() const override { return 5; }
  int getBinaryCode() const override { return '5'; }
  const char* getTag() const override { return "table"; }
  bool isEmptyTag() const override { return false; }
  // Computes each column once for the proband, then writes the layout. A
  // computation that fails leaves its cells empty. Answers false.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;

 private:
  // What one write computes: each column's value and the visits to show.
  struct Layout;

  const char* receiveColumn(const R_XMLParameters& parameters);
  const char* receiveSelect(const R_XMLParameters& parameters);
  void chooseVisits(const R_File& file, const R_Proband& proband, const R_Number& age, Layout& layout) const;
  void writeNormal(const R_File& file, const R_Proband& proband, const Layout& layout,
                   R_OutputInterface& output) const;
  void writeInverted(const R_File& file, const R_Proband& proband, const Layout& layout,
                     R_OutputInterface& output) const;
  void writeHeadCell(const R_TextTableColumn& column, const char* text, int row, int cell, int orientation,
                     R_OutputInterface& output) const;
  void writeDataCell(const R_File& file, const R_Proband& proband, const Layout& layout, int column, int visit,
                     int row, int cell, int orientation, R_OutputInterface& output) const;

  std::vector<R_TextTableColumn*> columns;  // owned
  const R_FileStatistics* statistics;       // during the XML load only
  R_Equation selector;                      // invalid without a `select`
  R_Integer flags;
};

#endif
