#include "tests/support/recording_output.h"

#include <cstring>

namespace {

std::string n(int value) { return std::to_string(value); }
std::string q(const char* text) { return std::string("\"") + (text ? text : "(null)") + "\""; }
std::string b(bool value) { return value ? "true" : "false"; }

}  // namespace

std::string RecordingOutput::trace() const {
  std::string text;
  for (const std::string& call : calls_) text += call + "\n";
  return text;
}

void RecordingOutput::record(const char* name, std::initializer_list<std::string> args) {
  std::string line = name;
  for (const std::string& arg : args) line += " " + arg;
  calls_.push_back(line);
}

void RecordingOutput::beginDocument() { record("beginDocument"); }
void RecordingOutput::endDocument() { record("endDocument"); }
void RecordingOutput::beginBlock(int kind) { record("beginBlock", {n(kind)}); }
void RecordingOutput::endBlock() { record("endBlock"); }
void RecordingOutput::beginParagraph() { record("beginParagraph"); }
void RecordingOutput::endParagraph() { record("endParagraph"); }
void RecordingOutput::writeChar(int fontState, char ch) {
  record("writeChar", {n(fontState), std::string("'") + ch + "'"});
}
void RecordingOutput::setFont(int change) { record("setFont", {n(change)}); }
void RecordingOutput::writeAnchor(const char* target, bool internal) {
  record("writeAnchor", {q(target), b(internal)});
}
void RecordingOutput::writeResult(const char* text) { record("writeResult", {q(text)}); }
void RecordingOutput::writeHeader(int level, const char* text) { record("writeHeader", {n(level), q(text)}); }
void RecordingOutput::writeHRule() { record("writeHRule"); }
void RecordingOutput::beginTable(int lines, int columns, int orientation) {
  record("beginTable", {n(lines), n(columns), n(orientation)});
}
void RecordingOutput::endTable(int orientation) { record("endTable", {n(orientation)}); }
void RecordingOutput::beginRow(int row, int orientation) { record("beginRow", {n(row), n(orientation)}); }
void RecordingOutput::endRow(int row, int orientation) { record("endRow", {n(row), n(orientation)}); }
void RecordingOutput::beginCell(int row, int column, int orientation) {
  record("beginCell", {n(row), n(column), n(orientation)});
}
void RecordingOutput::endCell(int row, int column, int orientation) {
  record("endCell", {n(row), n(column), n(orientation)});
}
void RecordingOutput::writeSeparatorCell(int row, int column, int orientation) {
  record("writeSeparatorCell", {n(row), n(column), n(orientation)});
}
int RecordingOutput::getInvertedColumnCount() {
  record("getInvertedColumnCount");
  return inverted_columns_;
}
void RecordingOutput::writeInvertedBreak() { record("writeInvertedBreak"); }
void RecordingOutput::writeCell(int row, int column, const char* text) {
  record("writeCell", {n(row), n(column), q(text)});
}
void RecordingOutput::writeImage(const char* source) { record("writeImage", {q(source)}); }
bool RecordingOutput::isGraphInSD() {
  record("isGraphInSD");
  return graph_in_sd_;
}
int RecordingOutput::getWidthMetric(int which) {
  record("getWidthMetric", {n(which)});
  auto it = width_metrics_.find(which);
  return it == width_metrics_.end() ? metric_ : it->second;
}
int RecordingOutput::getHeightMetric(int which) {
  record("getHeightMetric", {n(which)});
  auto it = height_metrics_.find(which);
  return it == height_metrics_.end() ? metric_ : it->second;
}
void RecordingOutput::beginGraph(int kind, const char* title, int width, int height) {
  record("beginGraph", {n(kind), q(title), n(width), n(height)});
}
void RecordingOutput::endGraph(int kind, const char* title) { record("endGraph", {n(kind), q(title)}); }
const char* RecordingOutput::getDateFormat() {
  record("getDateFormat");
  return date_format_.c_str();
}
void RecordingOutput::drawText(int x, int y, int verticalAlign, int horizontalAlign, int font, const char* text) {
  record("drawText", {n(x), n(y), n(verticalAlign), n(horizontalAlign), n(font), q(text)});
}
const char* RecordingOutput::getSDAppend(int kind) {
  record("getSDAppend", {n(kind)});
  return sd_append_.c_str();
}
int RecordingOutput::getFontHeight(int font) {
  record("getFontHeight", {n(font)});
  return font_height_;
}
int RecordingOutput::getTextWidth(int font, const char* text) {
  record("getTextWidth", {n(font), q(text)});
  return char_width_ * static_cast<int>(text ? strlen(text) : 0);
}
void RecordingOutput::fillArea(int x1, int y1, int x2, int y2, int area, int index) {
  record("fillArea", {n(x1), n(y1), n(x2), n(y2), n(area), n(index)});
}
void RecordingOutput::frameArea(int x1, int y1, int x2, int y2, int area, int index) {
  record("frameArea", {n(x1), n(y1), n(x2), n(y2), n(area), n(index)});
}
void RecordingOutput::drawRasterLine(int x1, int y1, int x2, int y2, int kind) {
  record("drawRasterLine", {n(x1), n(y1), n(x2), n(y2), n(kind)});
}
void RecordingOutput::drawRefLine(int x1, int y1, int x2, int y2, int kind) {
  record("drawRefLine", {n(x1), n(y1), n(x2), n(y2), n(kind)});
}
void RecordingOutput::drawBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int kind) {
  record("drawBand", {n(x1), n(yA1), n(yB1), n(x2), n(yA2), n(yB2), n(kind)});
}
void RecordingOutput::setClip(int x1, int y1, int x2, int y2) { record("setClip", {n(x1), n(y1), n(x2), n(y2)}); }
void RecordingOutput::drawRangeBar(int x, int y1, int y2, int style) {
  record("drawRangeBar", {n(x), n(y1), n(y2), n(style)});
}
void RecordingOutput::drawDataLine(int x1, int y1, int x2, int y2, int series) {
  record("drawDataLine", {n(x1), n(y1), n(x2), n(y2), n(series)});
}
void RecordingOutput::drawDataArrow(int x1, int y1, int x2, int y2, int series) {
  record("drawDataArrow", {n(x1), n(y1), n(x2), n(y2), n(series)});
}
void RecordingOutput::drawMark(int x, int y, int series, bool small) {
  record("drawMark", {n(x), n(y), n(series), b(small)});
}
