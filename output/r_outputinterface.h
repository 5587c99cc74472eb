// The one sink of the document model: report texts, tables, graphs and
// auxograms only ever talk to it. It answers layout metrics and takes text,
// table structure and drawing commands. Coordinates are pixels, y downward,
// origin at the top left of the graph. `orientation` is 1 for a normal
// table and 0 for an inverted one.
#ifndef OUTPUT_R_OUTPUTINTERFACE_H
#define OUTPUT_R_OUTPUTINTERFACE_H

class R_OutputInterface {
 public:
  R_OutputInterface() = default;
  virtual ~R_OutputInterface();
  R_OutputInterface(const R_OutputInterface&) = delete;
  R_OutputInterface& operator=(const R_OutputInterface&) = delete;

  // Document structure.
  virtual void beginDocument() = 0;
  virtual void endDocument() = 0;
  virtual void beginBlock(int kind) = 0;  // `kind`: the element's output kind
  virtual void endBlock() = 0;
  virtual void beginParagraph() = 0;
  virtual void endParagraph() = 0;
  // One byte of text; `fontState` 0 plain, 1 bold, 2 italics.
  virtual void writeChar(int fontState, char ch) = 0;
  // 0 bold on, 1 plain on, 2 italics on, 3 bold off, 4 plain off, 5 italics off.
  virtual void setFont(int change) = 0;
  // `internal`: a text block of this knowledge file; otherwise an outside link.
  virtual void writeAnchor(const char* target, bool internal) = 0;
  virtual void writeResult(const char* text) = 0;  // a computed value
  virtual void writeHeader(int level, const char* text) = 0;  // 0 main, 1 sub
  virtual void writeHRule() = 0;

  // Tables; the counts of beginTable are a hint. Row 0 of a normal table is
  // its head row.
  virtual void beginTable(int lines, int columns, int orientation) = 0;
  virtual void endTable(int orientation) = 0;
  virtual void beginRow(int row, int orientation) = 0;
  virtual void endRow(int row, int orientation) = 0;
  virtual void beginCell(int row, int column, int orientation) = 0;
  virtual void endCell(int row, int column, int orientation) = 0;
  virtual void writeSeparatorCell(int row, int column, int orientation) = 0;
  // Records per group of an inverted table.
  virtual int getInvertedColumnCount() = 0;
  virtual void writeInvertedBreak() = 0;
  virtual void writeCell(int row, int column, const char* text) = 0;  // may be empty
  virtual void writeImage(const char* source) = 0;

  // Graph metrics and settings.
  virtual bool isGraphInSD() = 0;
  virtual int getWidthMetric(int which) = 0;
  virtual int getHeightMetric(int which) = 0;
  // `kind` 0 graph, 1 auxogram. Opens a drawing surface; endGraph closes it
  // and places it in the document.
  virtual void beginGraph(int kind, const char* title, int width, int height) = 0;
  virtual void endGraph(int kind, const char* title) = 0;
  virtual const char* getDateFormat() = 0;
  // Alignments: 1 moves by the whole size, 2 by half of it, others not.
  virtual void drawText(int x, int y, int verticalAlign, int horizontalAlign, int font,
                        const char* text) = 0;
  virtual const char* getSDAppend(int kind) = 0;
  virtual int getFontHeight(int font) = 0;
  virtual int getTextWidth(int font, const char* text) = 0;

  // Drawing. `area`: 0 graph background; 1, 3, 4 data background; 2 analysis
  // background; other codes are not filled.
  virtual void fillArea(int x1, int y1, int x2, int y2, int area, int index) = 0;
  virtual void frameArea(int x1, int y1, int x2, int y2, int area, int index) = 0;
  virtual void drawRasterLine(int x1, int y1, int x2, int y2, int kind) = 0;
  virtual void drawRefLine(int x1, int y1, int x2, int y2, int kind) = 0;  // 0 main
  virtual void drawBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int kind) = 0;
  virtual void setClip(int x1, int y1, int x2, int y2) = 0;
  virtual void drawRangeBar(int x, int y1, int y2, int style) = 0;
  // `series` 0 primary, 1 secondary.
  virtual void drawDataLine(int x1, int y1, int x2, int y2, int series) = 0;
  virtual void drawDataArrow(int x1, int y1, int x2, int y2, int series) = 0;
  virtual void drawMark(int x, int y, int series, bool small) = 0;
};

#endif
