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
// Graphs: "bmp" and "pcx" are drawn on a canvas of 16 colours that endGraph
// saves in that format and places in the page; "svg" is drawn the same way
// as SVG elements over the same pixels, saved and placed at endGraph too;
// "wmf" opens a metafile at
// beginGraph and places it at once. Any other graph-extension gives no file
// and no page text, and its drawing calls, like all drawing outside
// beginGraph and endGraph, have no effect. A graph file that cannot be
// written is missing, yet the page still gets its text.
#ifndef OUTPUT_R_A_HTMLOUTPUT_H
#define OUTPUT_R_A_HTMLOUTPUT_H

#include <memory>

#include "core/r_string.h"
#include "output/r_a_bitmapdraw.h"
#include "output/r_a_svgdraw.h"
#include "output/r_a_vectordraw.h"
#include "output/r_outputinterface.h"

class R_A_PageSink;
class R_A_Parameters;
class R_A_Setup;

class R_A_HTMLOutput : public R_OutputInterface {
 public:
  // Reads `graph-extension` (default "bmp") once: only "bmp", "pcx", "svg"
  // and "wmf", compared exactly, lead to graph files.
  R_A_HTMLOutput(const R_A_Setup& setup, R_A_PageSink& sink, const R_A_Parameters& parameters);
  // Destroys a graph still open: a canvas unsaved, a metafile completed.
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

  // Sets the clip to the whole graph and opens its surface: a canvas of
  // width x height for "bmp" and "pcx", an SVG surface given the palette for
  // "svg"; for "wmf" a metafile under a fresh
  // file name, given the palette and vector-big-font-height, and placed in the
  // page at once. Requires: no graph open (an open one would be dropped).
  void beginGraph(int kind, const char* title, int width, int height) override;
  // Takes a file name; a canvas is saved there with the palette, an SVG
  // surface as it is, and either is destroyed and placed in the page with
  // `title`; a metafile is completed. Then the
  // sink hears graphDone(path, url) for every extension; for "wmf" that is a
  // fresh name, not the one beginGraph placed.
  void endGraph(int kind, const char* title) override;
  // Bitmap and SVG graphs ("bmp", "pcx", "svg") measure in the canvas's font
  // cells, doubled when `graph-bitmap-text-double` is not 0; metafiles
  // measure 0, and so does any other extension.
  int getFontHeight(int font) override;
  int getTextWidth(int font, const char* text) override;

  // The drawing operations below draw on the open surface and do nothing
  // when there is none. Colours are the palette's indices.
  //
  // Alignment 1 puts the text's right (bottom) edge at x (y), 2 its middle,
  // anything else its left (top) edge; the colour comes from `font`.
  void drawText(int x, int y, int verticalAlign, int horizontalAlign, int font,
                const char* text) override;
  // Area 0 in the background colour, 1, 3, 4 in the data background, 2 in
  // the analysis background; other areas are not filled.
  void fillArea(int x1, int y1, int x2, int y2, int area, int index) override;
  // Every area but 0 gets a frame in the axis colour.
  void frameArea(int x1, int y1, int x2, int y2, int area, int index) override;
  // Kinds 0 and 1 solid in the axis colour, 2 dashed 0x7777 in the big
  // raster colour, 3 dashed 0xCCCC in the small one; others draw nothing.
  void drawRasterLine(int x1, int y1, int x2, int y2, int kind) override;
  void drawRefLine(int x1, int y1, int x2, int y2, int kind) override;
  // One vertical line a column from the left end up to, not including, the
  // right end, between the two lines rounded half up; limited to the clip.
  // `kind` plays no part.
  void drawBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int kind) override;
  // Stores the bounds, smaller first; only bands honour them.
  void setClip(int x1, int y1, int x2, int y2) override;
  // Rules from x - h to x + h at y1 and y2, h = 3/8 of graph-target-width,
  // and a vertical from y1 to y2. Style 1 (a single target, y1 = y2) runs the
  // vertical from y2 + h to y2 - h instead; for y1 != y2 it still takes the
  // end on y2's side h beyond y2, the other end at y1 (an oddity kept).
  void drawRangeBar(int x, int y1, int y2, int style) override;
  // A pen of 2 pixels; series 0 primary, any other secondary.
  void drawDataLine(int x1, int y1, int x2, int y2, int series) override;
  // Shaft and a head of graph-arrow-width at (x2, y2), 30 degrees each side.
  void drawDataArrow(int x1, int y1, int x2, int y2, int series) override;
  // A circle of half the mark width (graph-small-mark-width or
  // graph-mark-width) with a horizontal and a vertical stroke across it, its
  // inside cleared to the background first.
  void drawMark(int x, int y, int series, bool small) override;

  // The open canvas, SVG surface or metafile, or null; for looking at a
  // graph before endGraph takes it away.
  const R_A_BitmapDraw* getBitmapDraw() const { return BITMAPDRAW.get(); }
  const R_A_SVGDraw* getSVGDraw() const { return SVGDRAW.get(); }
  const R_A_VectorDraw* getVectorDraw() const { return VECTORDRAW.get(); }

  // The number of colours a graph's palette takes from the setup.
  static const int paletteRows = 13;

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
  enum GraphFormat { formatNone, formatBMP, formatPCX, formatSVG, formatWMF };

  // `piece` is one of the page text pieces of the template table.
  void emitPiece(int piece, const char* arg1, const char* arg2);
  // Page bytes through the upper-index filter; a null text puts nothing.
  void put(char ch);
  void putText(const char* text);
  bool isBitmap() const { return format == formatBMP || format == formatPCX; }
  // Text measured in the canvas font's cells.
  bool hasFontCells() const { return isBitmap() || format == formatSVG; }
  // The colours of a graph, row by row: a bitmap or an SVG surface takes
  // the colour named for row r under getPaletteIndex(r) (index 6 is never
  // set), a vector file under r itself. Requires: 0 <= row < paletteRows.
  static int getPaletteIndex(int row);
  const char* getPaletteColorName(int row) const;
  // Takes the next graph file name into graphPath and graphUrl.
  void makeGraphFileName();
  bool isDoubled() const;
  // Saves the canvas on graphPath in the graph's format with the palette.
  void saveBitmap();
  // Opens the SVG surface with the palette.
  void beginSVG(int width, int height);
  // One primitive on whichever surface is open.
  void line(int x1, int y1, int x2, int y2, int color, int pattern, int pen);
  void solidLine(int x1, int y1, int x2, int y2, int color);
  void circle(int x, int y, int radius, int color);

  const R_A_Setup& setup;
  const R_A_Parameters& parameters;
  // The surface of the open graph; at most one of them, and only between
  // beginGraph and endGraph.
  std::unique_ptr<R_A_BitmapDraw> BITMAPDRAW;
  std::unique_ptr<R_A_SVGDraw> SVGDRAW;
  std::unique_ptr<R_A_VectorDraw> VECTORDRAW;
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
