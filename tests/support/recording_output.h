// An R_OutputInterface that records each call as one line of text: the
// operation's name and its arguments separated by blanks, texts in double
// quotes (so an empty text shows as ""), a byte of writeChar in single
// quotes, bools as true or false. Questions are recorded too and answer
// what the test set (see the setters). For the suites of everything that
// writes documents: texts, tables, graphs and auxograms.
#ifndef TESTS_SUPPORT_RECORDING_OUTPUT_H
#define TESTS_SUPPORT_RECORDING_OUTPUT_H

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "output/r_outputinterface.h"

class RecordingOutput : public R_OutputInterface {
 public:
  // One line per call, in order.
  const std::vector<std::string>& calls() const { return calls_; }
  // The lines joined, each ended by a line feed.
  std::string trace() const;
  void clear() { calls_.clear(); }

  // Answers of the questions; the defaults stand in brackets.
  void setInvertedColumnCount(int count) { inverted_columns_ = count; }  // 6
  void setGraphInSD(bool in_sd) { graph_in_sd_ = in_sd; }                // true
  void setMetric(int metric) { metric_ = metric; }  // width and height metrics: 100
  // One metric apart from the others.
  void setWidthMetric(int which, int value) { width_metrics_[which] = value; }
  void setHeightMetric(int which, int value) { height_metrics_[which] = value; }
  void setFontHeight(int height) { font_height_ = height; }              // 10
  void setCharWidth(int width) { char_width_ = width; }  // getTextWidth: 6 per byte
  void setDateFormat(const std::string& format) { date_format_ = format; }  // "%d.%m.%Y"
  void setSDAppend(const std::string& append) { sd_append_ = append; }      // ""

  void beginDocument() override;
  void endDocument() override;
  void beginBlock(int kind) override;
  void endBlock() override;
  void beginParagraph() override;
  void endParagraph() override;
  void writeChar(int fontState, char ch) override;
  void setFont(int change) override;
  void writeAnchor(const char* target, bool internal) override;
  void writeResult(const char* text) override;
  void writeHeader(int level, const char* text) override;
  void writeHRule() override;
  void beginTable(int lines, int columns, int orientation) override;
  void endTable(int orientation) override;
  void beginRow(int row, int orientation) override;
  void endRow(int row, int orientation) override;
  void beginCell(int row, int column, int orientation) override;
  void endCell(int row, int column, int orientation) override;
  void writeSeparatorCell(int row, int column, int orientation) override;
  int getInvertedColumnCount() override;
  void writeInvertedBreak() override;
  void writeCell(int row, int column, const char* text) override;
  void writeImage(const char* source) override;
  bool isGraphInSD() override;
  int getWidthMetric(int which) override;
  int getHeightMetric(int which) override;
  void beginGraph(int kind, const char* title, int width, int height) override;
  void endGraph(int kind, const char* title) override;
  const char* getDateFormat() override;
  void drawText(int x, int y, int verticalAlign, int horizontalAlign, int font, const char* text) override;
  const char* getSDAppend(int kind) override;
  int getFontHeight(int font) override;
  int getTextWidth(int font, const char* text) override;
  void fillArea(int x1, int y1, int x2, int y2, int area, int index) override;
  void frameArea(int x1, int y1, int x2, int y2, int area, int index) override;
  void drawRasterLine(int x1, int y1, int x2, int y2, int kind) override;
  void drawRefLine(int x1, int y1, int x2, int y2, int kind) override;
  void drawBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int kind) override;
  void setClip(int x1, int y1, int x2, int y2) override;
  void drawRangeBar(int x, int y1, int y2, int style) override;
  void drawDataLine(int x1, int y1, int x2, int y2, int series) override;
  void drawDataArrow(int x1, int y1, int x2, int y2, int series) override;
  void drawMark(int x, int y, int series, bool small) override;

 private:
  // Records `name` followed by each of `args` after a blank.
  void record(const char* name, std::initializer_list<std::string> args = {});

  std::vector<std::string> calls_;
  int inverted_columns_ = 6;
  bool graph_in_sd_ = true;
  int metric_ = 100;
  std::map<int, int> width_metrics_;
  std::map<int, int> height_metrics_;
  int font_height_ = 10;
  int char_width_ = 6;
  std::string date_format_ = "%d.%m.%Y";
  std::string sd_append_;
};

#endif
