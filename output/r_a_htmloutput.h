// The HTML form of the output interface. Every piece of page text comes from
// a template: the setup may give one under the piece's key, and otherwise the
// default written in this class is used, so an empty setup gives a plain but
// complete page. Arguments are put into a template at @1 and @2.
//
// All page bytes, from templates, arguments and plain text alike, pass one
// upper-index filter on their way to the sink: "cm^2" shows an upper 2 and
// "^^" a plain circumflex. Its pending `^` belongs to the process, not to one
// output: a `^` that ends a page is still pending when the next page (of any
// output) begins. The running graph number is process-wide as well.
//
// One output lives for one report text. It refers to the setup, the sink and
// the parameters without owning them; they must outlive it. Not copyable.
//
// Graphs: the text side (file names, placing a graph in the page, the sink's
// graphDone, the palette's names, the text measures) is here. Drawing is not
// wired yet: no canvas and no vector file is made, and the drawing operations
// have no effect.
#ifndef OUTPUT_R_A_HTMLOUTPUT_H
#define OUTPUT_R_A_HTMLOUTPUT_H

#include "core/r_string.h"
#include "output/r_outputinterface.h"

class R_A_PageSink;
class R_A_Parameters;
class R_A_Setup;

class R_A_HTMLOutput : public R_OutputInterface {
 public:
  // Reads `graph-extension` (default "bmp") once: only "bmp", "pcx" and "wmf",
  // compared exactly, lead to graph files.
  R_A_HTMLOutput(const R_A_Setup& setup, R_A_PageSink& sink, const R_A_Parameters& parameters);
  ~R_A_HTMLOutput() override;

  // Prefixes of graph file paths and of their URLs, and of image sources.
  // The texts are copied; null counts as empty.
  void setGraphDirs(const char* directory, const char* urlBase);
  void setImageBase(const char* base);

  // Writes the text setting `code` (or `defaultText` when the setup has none)
  // through the upper-index filter: "@1" and "@2" give `arg1` and `arg2`
  // (nothing when null), "@" and any other byte give that byte, so "@@" is
  // one "@", and an "@" as the last byte is dropped.
  // Requires: 0 <= code < R_A_Setup::_strCodeCount.
  void emit(int code, const char* defaultText, const char* arg1, const char* arg2);

  void beginDocument() override;
  void endDocument() override;
  void beginBlock(int kind) override;  // `kind` plays no part in HTML
  void endBlock() override;
  void beginParagraph() override;
  void endParagraph() override;
  // The byte goes through the upper-index filter; `fontState` plays no part.
  void writeChar(int fontState, char ch) override;
  // Changes outside 0 to 5 write nothing.
  void setFont(int change) override;
  // An internal target becomes a link that stays on this request, made by the
  // parameters; an external one goes into the template as it is.
  void writeAnchor(const char* target, bool internal) override;
  void writeResult(const char* text) override;
  // Level 0 is the main header; any other level a subheader.
  void writeHeader(int level, const char* text) override;
  void writeHRule() override;

  // An orientation other than 1 counts as inverted for the table itself and
  // for separators; the counts of beginTable play no part.
  void beginTable(int lines, int columns, int orientation) override;
  void endTable(int orientation) override;
  void beginRow(int row, int orientation) override;
  void endRow(int row, int orientation) override;
  void beginCell(int row, int column, int orientation) override;
  void endCell(int row, int column, int orientation) override;
  void writeSeparatorCell(int row, int column, int orientation) override;
  int getInvertedColumnCount() override;
  void writeInvertedBreak() override;
  // An empty or null text gives the empty-cell template, so the cell keeps
  // its frame.
  void writeCell(int row, int column, const char* text) override;
  // The source is placed between the image base and `image-extension`.
  void writeImage(const char* source) override;

  bool isGraphInSD() override;
  // The setup's metric, or 0 for an unknown `which`. The page parameter
  // `_graph_width`, when it reads as 200 to 1000, wins for the width 0.
  int getWidthMetric(int which) override;
  int getHeightMetric(int which) override;
  const char* getDateFormat() override;
  const char* getSDAppend(int kind) override;  // the same text for every kind

  // Sets the clip to the whole graph. A "wmf" graph takes its file name and
  // is placed in the page at once.
  void beginGraph(int kind, const char* title, int width, int height) override;
  // Takes a file name and tells the sink graphDone(path, url) for every
  // extension; for "wmf" that is a fresh name, not the one beginGraph placed. A bitmap graph would be saved and placed here; without a
  // canvas there is nothing to save and nothing is placed.
  void endGraph(int kind, const char* title) override;
  // Bitmap graphs ("bmp", "pcx"): the font is 10 pixels high, 18 when
  // `graph-bitmap-text-double` is not 0, and 8 pixels wide a byte either way.
  // Other extensions measure 0.
  int getFontHeight(int font) override;
  int getTextWidth(int font, const char* text) override;

  // Drawing has no effect until the canvas and the vector file are wired in.
  void drawText(int x, int y, int verticalAlign, int horizontalAlign, int font,
                const char* text) override;
  void fillArea(int x1, int y1, int x2, int y2, int area, int index) override;
  void frameArea(int x1, int y1, int x2, int y2, int area, int index) override;
  void drawRasterLine(int x1, int y1, int x2, int y2, int kind) override;
  void drawRefLine(int x1, int y1, int x2, int y2, int kind) override;
  void drawBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int kind) override;
  // Stores the bounds, smaller first; only bands will honour them.
  void setClip(int x1, int y1, int x2, int y2) override;
  void drawRangeBar(int x, int y1, int y2, int style) override;
  void drawDataLine(int x1, int y1, int x2, int y2, int series) override;
  void drawDataArrow(int x1, int y1, int x2, int y2, int series) override;
  void drawMark(int x, int y, int series, bool small) override;

  // The colours of a graph, row by row: a bitmap takes the colour named for
  // row r under getPaletteIndex(r) (index 6 is never set), a vector file
  // under r itself. Requires: 0 <= row < paletteRows.
  static const int paletteRows = 13;
  static int getPaletteIndex(int row);
  const char* getPaletteColorName(int row) const;

  // Where graph file names take their digits from: by default a generator
  // with the C library's portable rand() sequence (0 to 32767, seed 1) and
  // the system clock in seconds. Null restores the default.
  typedef int (*RandomSource)();
  typedef long long (*ClockSource)();
  static void setNameSources(RandomSource random, ClockSource clock);
  // Starts the process-wide state afresh: no pending `^`, graph number 1,
  // the default generator at its seed.
  static void resetProcessState();

 private:
  // What graph-extension makes of a graph.
  enum GraphFormat { formatNone, formatBMP, formatPCX, formatWMF };

  // `piece` is one of the page text pieces of the template table.
  void emitPiece(int piece, const char* arg1, const char* arg2);
  // Page bytes through the upper-index filter; a null text puts nothing.
  void put(char ch);
  void putText(const char* text);
  bool isBitmap() const { return format == formatBMP || format == formatPCX; }
  // Takes the next graph file name into graphPath and graphUrl.
  void makeGraphFileName();

  const R_A_Setup& setup;
  const R_A_Parameters& parameters;
  GraphFormat format;
  R_String extension;  // graph-extension as the constructor found it
  int clipXMin, clipXMax, clipYMin, clipYMax;
  R_A_PageSink& sink;
  R_String imageBase;
  R_String graphDirectory;
  R_String graphUrlBase;
  R_String graphPath;  // of the last file name taken
  R_String graphUrl;
};

#endif
