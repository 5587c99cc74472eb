#include "document/r_texttable.h"

#include <algorithm>
#include <memory>
#include <string>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "document/r_texttablecolumn.h"
#include "formula/r_calcequation.h"
#include "knowledge/r_file.h"
#include "knowledge/r_knowledgexml.h"
#include "output/r_outputinterface.h"
#include "proband/r_proband.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

enum Code { codeColumn, codeSelect };
const char* const kTags[] = {"column", "select"};

enum Orientation { inverted = 0, normal = 1 };

// Group size of an inverted table when the output offers none that works.
const int kDefaultGroup = 6;

// Columns are created as they are read, so a damaged count costs nothing.
const int kMaxPrealloc = 64;

// The y of point `visit` is defined (and, for a selector, not 0).
bool marks(const R_CalcValue& value, int visit, bool nonzero) {
  if (!value.isXY() || visit >= value.getN()) return false;
  const R_Number& y = value.getPoint(visit).getY();
  return y.isDefined() && !(nonzero && y.getValue() == 0);
}

}  // namespace

struct R_TextTable::Layout {
  std::vector<std::unique_ptr<R_CalcEquation>> results;  // null for date and separator columns
  std::vector<bool> chosen;                              // one flag per visit
  int chosen_count = 0;
  R_CalcValue none;                                      // stands in for a column without result

  const R_CalcValue& resultOf(int column) const {
    return results[column] ? results[column]->getResult() : none;
  }
};

R_TextTable::~R_TextTable() {
  for (R_TextTableColumn* column : columns) delete column;
}

void R_TextTable::loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics&) {
  if (attributes.isParameterValue("mode", "inverted")) flags |= flagInverted;
}

void R_TextTable::writeAttributes(R_XMLTextOutput& xml, const R_FileStatistics&) const {
  xml.writeAttribute("mode", isInverted() ? "inverted" : "normal");
}

void R_TextTable::loadText(const char* text, const R_FileStatistics& statistics_in, R_XMLErrorReporter* reporter) {
  statistics = &statistics_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool parsed = R_parseTagged(parser, *this, kTags, text);
  if (columns.empty()) parser.report("no table columns defined");
  setOK(parsed && !columns.empty());
  statistics = nullptr;
}

const char* R_TextTable::receive(int code, const char*, const R_XMLParameters& parameters) {
  switch (code) {
    case codeColumn: return receiveColumn(parameters);
    case codeSelect: return receiveSelect(parameters);
  }
  return "unexpected code in table data";
}

// A column that breaks the rules stays in the table; the load fails.
const char* R_TextTable::receiveColumn(const R_XMLParameters& parameters) {
  R_TextTableColumn* column = new R_TextTableColumn();
  columns.push_back(column);
  return column->loadAttributes(parameters, *statistics) ? nullptr : "wrong table column definition";
}

const char* R_TextTable::receiveSelect(const R_XMLParameters& parameters) {
  const char* method = parameters.getParameter("method");
  if (selector.getMethodCount() > 0 || !method || !selector.loadExpression(method, *statistics))
    return "wrong table row selector";
  return nullptr;
}

void R_TextTable::writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics_in) const {
  R_String method;
  if (selector.isValid() && selector.getText(method, statistics_in)) {
    xml.openTag("select");
    xml.writeAttribute("method", method.get());
    xml.endEmptyTag();
  }
  for (const R_TextTableColumn* column : columns) column->saveXML(xml, statistics_in);
}

void R_TextTable::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  flags.load(stream, ok);
  R_Integer count;
  count.load(stream, ok);
  if (count.get() <= 0) *ok = false;
  selector.load(stream, ok);
  columns.reserve(static_cast<size_t>(std::min(std::max(count.get(), 0), kMaxPrealloc)));
  while (*ok && getColumnCount() < count.get()) {
    columns.push_back(new R_TextTableColumn());
    columns.back()->loadColumn(stream, ok);
  }
  setOK(*ok && getColumnCount() == count.get());
}

void R_TextTable::save(R_OutputStream& stream) const {
  flags.save(stream);
  R_Integer(getColumnCount()).save(stream);
  if (getColumnCount() > 0) selector.save(stream);
  for (const R_TextTableColumn* column : columns) column->saveColumn(stream);
}

bool R_TextTable::write(const R_File& file, const R_Proband& proband, const R_Number& age,
                        R_OutputInterface& output) const {
  if (columns.empty()) return false;
  Layout layout;
  for (const R_TextTableColumn* column : columns) {
    int kind = column->getKind();
    layout.results.emplace_back();
    if (kind != R_TextTableColumn::kindValues && kind != R_TextTableColumn::kindList) continue;
    layout.results.back().reset(new R_CalcEquation(*column));
    layout.results.back()->evaluate(file, &proband, age, -1, 0);
  }
  chooseVisits(file, proband, age, layout);
  if (isInverted()) {
    writeInverted(file, proband, layout, output);
  } else {
    writeNormal(file, proband, layout, output);
  }
  return false;
}

void R_TextTable::chooseVisits(const R_File& file, const R_Proband& proband, const R_Number& age,
                               Layout& layout) const {
  int visits = proband.getVisitCount();
  layout.chosen.assign(static_cast<size_t>(visits), false);
  std::unique_ptr<R_CalcEquation> rows;
  if (selector.isValid()) {
    rows.reset(new R_CalcEquation(selector));
    if (!rows->evaluate(file, &proband, age, -1, 0)) return;
  }
  for (int i = 0; i < visits; ++i) {
    bool chosen = false;
    if (rows) {
      chosen = marks(rows->getResult(), i, true);
    } else {
      for (size_t c = 0; c < columns.size() && !chosen; ++c) chosen = marks(layout.resultOf(c), i, false);
    }
    layout.chosen[i] = chosen;
    if (chosen) ++layout.chosen_count;
  }
}

void R_TextTable::writeNormal(const R_File& file, const R_Proband& proband, const Layout& layout,
                              R_OutputInterface& output) const {
  int count = getColumnCount();
  output.beginTable(std::max(layout.chosen_count, 1), count, normal);
  output.beginRow(0, normal);
  for (int c = 0; c < count; ++c) writeHeadCell(*columns[c], columns[c]->getHeader(), 0, c, normal, output);
  output.endRow(0, normal);
  if (layout.chosen_count == 0) {
    output.beginRow(1, normal);
    for (int c = 0; c < count; ++c) writeHeadCell(*columns[c], "", 1, c, normal, output);
    output.endRow(1, normal);
  }
  for (int i = 0; i < static_cast<int>(layout.chosen.size()); ++i) {
    if (!layout.chosen[i]) continue;
    output.beginRow(i + 1, normal);
    for (int c = 0; c < count; ++c) writeDataCell(file, proband, layout, c, i, i + 1, c, normal, output);
    output.endRow(i + 1, normal);
  }
  output.endTable(normal);
}

void R_TextTable::writeInverted(const R_File& file, const R_Proband& proband, const Layout& layout,
                                R_OutputInterface& output) const {
  int group = output.getInvertedColumnCount();
  if (group < 1) group = kDefaultGroup;
  int visits = proband.getVisitCount();
  for (int g = 0; g < visits; g += std::min(group, visits - g)) {
    if (g > 0) output.writeInvertedBreak();
    int k = std::min(group, visits - g);
    output.beginTable(k + 1, getColumnCount(), inverted);
    for (int c = 0; c < getColumnCount(); ++c) {
      output.beginRow(c, inverted);
      writeHeadCell(*columns[c], columns[c]->getHeader(), c, 0, inverted, output);
      for (int j = 0; j < k; ++j) writeDataCell(file, proband, layout, c, g + j, c, j + 1, inverted, output);
      output.endRow(c, inverted);
    }
    output.endTable(inverted);
  }
}

// A head cell, or an empty one with the empty text; a separator column has
// a separator cell in either case.
void R_TextTable::writeHeadCell(const R_TextTableColumn& column, const char* text, int row, int cell,
                                int orientation, R_OutputInterface& output) const {
  if (column.getKind() == R_TextTableColumn::kindSeparator) {
    output.writeSeparatorCell(row, cell, orientation);
    return;
  }
  output.beginCell(row, cell, orientation);
  output.writeCell(row, cell, text);
  output.endCell(row, cell, orientation);
}

void R_TextTable::writeDataCell(const R_File& file, const R_Proband& proband, const Layout& layout, int column,
                                int visit, int row, int cell, int orientation, R_OutputInterface& output) const {
  const R_TextTableColumn& definition = *columns[column];
  if (definition.getKind() == R_TextTableColumn::kindSeparator) {
    output.writeSeparatorCell(row, cell, orientation);
    return;
  }
  std::string text = definition.cellText(file, proband, layout.resultOf(column), visit);
  output.beginCell(row, cell, orientation);
  output.writeCell(row, cell, text.c_str());
  output.endCell(row, cell, orientation);
}
