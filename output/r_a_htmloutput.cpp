#include "output/r_a_htmloutput.h"

#include <math.h>
#include <string.h>
#include <time.h>

#include <climits>
#include <cstdint>
#include <initializer_list>

#include "core/r_ascii.h"
#include "core/r_numbertext.h"
#include "core/r_textbuffer.h"
#include "output/r_a_bandspan.h"
#include "output/r_a_bitmapsavebmp.h"
#include "output/r_a_bitmapsavepcx.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_parameters.h"
#include "page/r_a_setup.h"

namespace {

typedef R_A_Setup S;

// Process-wide: a page may end inside "^2", and the graph files of all
// outputs of one process must not share a name.
bool upperIndexPending = false;
int graphNumber = 1;

// The C library's portable rand(): the same sequence on every platform, so
// that graph names do not hang on the C library at hand.
uint32_t randomState = 1;
int portableRand() {
  randomState = randomState * 1103515245u + 12345u;
  return static_cast<int>((randomState / 65536u) % 32768u);
}
long long clockSeconds() { return static_cast<long long>(time(nullptr)); }

R_A_HTMLOutput::RandomSource randomSource = portableRand;
R_A_HTMLOutput::ClockSource clockSource = clockSeconds;

// A graph file is named by rand() % nameRandomModulus, the seconds of the
// clock % nameClockModulus and the running number, written one after the
// other: names of one process differ by the number, and those of processes
// that share a graph directory most likely by the rest.
const int nameRandomModulus = 31573;
const long long nameClockModulus = 12071;

// A link inside the knowledge file carries the whole request along.
const int anchorUrlSize = 16384;

// A `_graph_width` outside these bounds is passed over.
const int graphWidthMin = 200;
const int graphWidthMax = 1000;

// Colour indices of the graph palette below.
enum Color {
  colorBackground = 0, colorAxis = 1, colorRefMain = 2, colorRefOther = 3,
  colorRasterSmall = 4, colorRasterBig = 5, colorBand = 7, colorDataPrimary = 8,
  colorDataSecondary = 9, colorTarget = 10, colorDataBackground = 13,
  colorAnalysisBackground = 14, colorDataNames = 15,
};

const int solid = R_A_BitmapDraw::_solid;

// drawText's colour by font code; codes outside the table draw in the
// background colour.
const int textColors[] = {colorAxis,   colorAxis,     colorDataNames, colorDataNames, colorRefMain,
                          colorRefOther, colorRefMain, colorRefOther, colorTarget};
const int textColorCount = sizeof(textColors) / sizeof(textColors[0]);

// fillArea's colour by area code; codes outside the table fill nothing.
const int areaColors[] = {colorBackground, colorDataBackground, colorAnalysisBackground,
                          colorDataBackground, colorDataBackground};
const int areaColorCount = sizeof(areaColors) / sizeof(areaColors[0]);

// drawRasterLine by kind.
struct RasterStyle {
  int color;
  int pattern;
};
const RasterStyle rasterStyles[] = {
    {colorAxis, solid}, {colorAxis, solid}, {colorRasterBig, 0x7777}, {colorRasterSmall, 0xCCCC}};
const int rasterStyleCount = sizeof(rasterStyles) / sizeof(rasterStyles[0]);

const int dataLinePen = 2;
const double arrowHalfAngle = 3.14159265358979323846 / 6;

int dataColor(int series) { return series == 0 ? colorDataPrimary : colorDataSecondary; }

// A position worked out beyond the int range is held at its end; it lies
// off every canvas either way.
int toPixel(int64_t v) {
  return v < INT_MIN ? INT_MIN : v > INT_MAX ? INT_MAX : static_cast<int>(v);
}
// Truncated towards 0.
int toPixel(double v) {
  return v <= INT_MIN ? INT_MIN : v >= INT_MAX ? INT_MAX : static_cast<int>(v);
}

// How far an aligned text or its box is moved back: 1 by all of `size`, 2
// by half of it, anything else not at all.
int64_t alignShift(int align, int size) { return align == 1 ? size : align == 2 ? size / 2 : 0; }

// Distances along one axis from p to the nearest and the farthest pixel of
// 0 to size - 1.
double nearestOnAxis(double p, int size) { return p < 0 ? -p : p > size - 1 ? p - (size - 1) : 0; }
double farthestOnAxis(double p, int size) {
  return fabs(p) > fabs(size - 1 - p) ? fabs(p) : fabs(size - 1 - p);
}

// Narrows the radii from..to of circles around (x, y) to those that can
// touch a width x height canvas. A circle of radius n (a polygon of 16
// sides) keeps between 0.98 n - 3 and n + 1 pixels from its centre, so only
// radii from `near` - 1 to (`far` + 3) / 0.98 can; a margin is added to both.
void limitToCanvas(int x, int y, int width, int height, int64_t* from, int64_t* to) {
  const double nx = nearestOnAxis(x, width), ny = nearestOnAxis(y, height);
  const double fx = farthestOnAxis(x, width), fy = farthestOnAxis(y, height);
  const double nearest = sqrt(nx * nx + ny * ny) - 2, reach = (sqrt(fx * fx + fy * fy) + 4) / 0.98;
  if (nearest > *from) *from = static_cast<int64_t>(nearest);
  if (reach < *to) *to = static_cast<int64_t>(reach);
}

// The pieces of page text, one per template.
enum Piece {
  documentStart, documentEnd, blockBegin, blockEnd, paragraphBegin, paragraphEnd,
  boldOn, normalOn, italicsOn, boldOff, normalOff, italicsOff,
  anchorInternal, anchorExternal, numericResult, header, subheader, hrule,
  tableBegin, tableInvertedBegin, tableEnd, tableInvertedEnd,
  headRowBegin, rowBegin, headRowEnd, rowEnd,
  headCellBegin, invertedHeadCellBegin, cellBegin,
  headCellEnd, invertedHeadCellEnd, cellEnd,
  invertedSeparator, headSeparator, separator, invertedBreak,
  cellData, cellEmpty, image, graph,
  _pieceCount
};

// Each piece, the setup key that may give its text, and the text used when
// the setup has none.
struct Template {
  Piece piece;
  int code;
  const char* defaultText;
};

constexpr Template templates[] = {
    {documentStart, S::strHtmlDocumentStart, ""},
    {documentEnd, S::strHtmlDocumentEnd, ""},
    {blockBegin, S::strHtmlBlockBegin, ""},
    {blockEnd, S::strHtmlBlockEnd, ""},
    {paragraphBegin, S::strHtmlParagraphBegin, "<p>"},
    {paragraphEnd, S::strHtmlParagraphEnd, "</p>"},
    {boldOn, S::strHtmlFontBoldOn, "<b>"},
    {normalOn, S::strHtmlFontNormalOn, ""},
    {italicsOn, S::strHtmlFontItalicsOn, "<i>"},
    {boldOff, S::strHtmlFontBoldOff, "</b>"},
    {normalOff, S::strHtmlFontNormalOff, ""},
    {italicsOff, S::strHtmlFontItalicsOff, "</i>"},
    {anchorInternal, S::strHtmlAnchor, "<a href=\"@1\">(*)</a>"},
    {anchorExternal, S::strHtmlAnchorExternal, "<a href=\"@1\">[*]</a>"},
    {numericResult, S::strHtmlNumericResult, "<font color=red>@1</font>"},
    {header, S::strHtmlHeader, "<h1>@1</h1>"},
    {subheader, S::strHtmlSubheader, "<h2>@1</h2>"},
    {hrule, S::strHtmlHrule, "<hr />"},
    {tableBegin, S::strHtmlTableBegin, "<center><table border=\"1\">"},
    {tableInvertedBegin, S::strHtmlTableInvertedBegin, "<table border=\"1\">"},
    {tableEnd, S::strHtmlTableEnd, "</table></center>"},
    {tableInvertedEnd, S::strHtmlTableInvertedEnd, "</table>"},
    {headRowBegin, S::strHtmlTableHeaderRowBegin, "<tr>"},
    {rowBegin, S::strHtmlTableRowBegin, "<tr>"},
    {headRowEnd, S::strHtmlTableHeaderRowEnd, "</tr>"},
    {rowEnd, S::strHtmlTableRowEnd, "</tr>"},
    {headCellBegin, S::strHtmlTableHeaderCellBegin, "<th>"},
    {invertedHeadCellBegin, S::strHtmlTableInvertedHeadercolumnBegin, "<td bgcolor=gray>"},
    {cellBegin, S::strHtmlTableCellBegin, "<td>"},
    {headCellEnd, S::strHtmlTableHeaderCellEnd, "</th>"},
    {invertedHeadCellEnd, S::strHtmlTableInvertedHeadercolumnEnd, "</td>"},
    {cellEnd, S::strHtmlTableCellEnd, "</td>"},
    {invertedSeparator, S::strHtmlTableInvertedSeparator, "<td height=2></td>"},
    {headSeparator, S::strHtmlTableHeaderSeparator, "<th>&nbsp;</th>"},
    {separator, S::strHtmlTableSeparator, "<td>&nbsp;</td>"},
    {invertedBreak, S::strHtmlTableInvertedBetween, "<p>&nbsp;</p>"},
    {cellData, S::strHtmlTableData, "@1"},
    {cellEmpty, S::strHtmlTableDataEmpty, "&nbsp;"},
    {image, S::strHtmlImage, "<center><img src=\"@1\"></img></center>"},
    {graph, S::strHtmlGraph, "<center><p><i>@1</i><br><img src=\"@2\"></img></p></center>"},
};

constexpr bool templatesInPieceOrder() {
  for (int i = 0; i < _pieceCount; i++) {
    if (templates[i].piece != i) return false;
  }
  return true;
}
static_assert(sizeof(templates) / sizeof(templates[0]) == _pieceCount, "one template per piece");
static_assert(templatesInPieceOrder(), "templates in the order of their pieces");

// setFont's changes 0 to 5.
const Piece fontPieces[] = {boldOn, normalOn, italicsOn, boldOff, normalOff, italicsOff};
const int fontChangeCount = sizeof(fontPieces) / sizeof(fontPieces[0]);

// Row 0 of a normal table is its head row; column 0 of an inverted table
// holds the head of each line.
bool isHeadRow(int row, int orientation) { return row == 0 && orientation == 1; }
bool isInvertedHeadColumn(int column, int orientation) { return column == 0 && orientation == 0; }

struct Metric {
  int code;
  int defaultValue;
};

// getWidthMetric and getHeightMetric, by `which`.
const Metric widthMetrics[] = {
    {S::intGraphOptimalWidth, 512}, {S::intGraphXIndent, 10},   {S::intGraphAxisTick, 8},
    {S::intGraphTargetWidth, 16},   {S::intGraphCellWidth, 3},  {S::intAuxogramSpacerWidth, 6},
};
const Metric heightMetrics[] = {
    {S::intGraphAxisTick, 8}, {S::intGraphCellHeight, 2},
    {S::intGraphYIndent, 6},  {S::intAuxogramSpacerHeight, 3},
};

int readMetric(const R_A_Setup& setup, const Metric* metrics, int count, int which) {
  if (which < 0 || which >= count) return 0;
  return setup.getInt(metrics[which].code, metrics[which].defaultValue);
}

// The colours of a graph: the bitmap's colour index, the setup key that
// names its colour, and the colour when the setup names none. Index 6 is
// left alone, and graph-color-unused... is not read.
struct PaletteEntry {
  int index;
  int code;
  const char* defaultName;
};

const PaletteEntry palette[] = {
    {0, S::strGraphColorBackground, "white"},
    {1, S::strGraphColorAxis, "black"},
    {2, S::strGraphColorRefdataMain, "darkslateblue"},
    {3, S::strGraphColorRefdataOther, "lightslateblue"},
    {4, S::strGraphColorRasterSmall, "darkgreen"},
    {5, S::strGraphColorRasterBig, "red"},
    {7, S::strGraphColorRefdataBackground, "grey86"},
    {8, S::strGraphColorDataPrimary, "black"},
    {9, S::strGraphColorDataSecondary, "grey11"},
    {10, S::strGraphColorTarget, "blue"},
    {13, S::strGraphColorDataBackground, "white"},
    {14, S::strGraphColorAnalysisBackground, "grey96"},
    {15, S::strGraphColorDataNames, "black"},
};
static_assert(sizeof(palette) / sizeof(palette[0]) == R_A_HTMLOutput::paletteRows,
              "one palette entry per row");

// Joins `parts` (null counts as empty) into `buffer` and answers the text
// with its terminator; the empty text when the heap refused room for it.
const char* join(R_TextBuffer& buffer, std::initializer_list<const char*> parts) {
  size_t total = 0;
  for (const char* part : parts) {
    if (part == nullptr) continue;
    buffer.put(part);
    total += strlen(part);
  }
  buffer.put('\0');
  return buffer.size() == total + 1 ? buffer.data() : "";
}

}  // namespace

R_A_HTMLOutput::R_A_HTMLOutput(const R_A_Setup& setup_, R_A_PageSink& sink_,
                               const R_A_Parameters& parameters_)
    : setup(setup_),
      parameters(parameters_),
      format(formatNone),
      extension(setup_.getStr(S::strGraphExtension, "bmp")),
      clipXMin(0),
      clipXMax(0),
      clipYMin(0),
      clipYMax(0),
      sink(sink_) {
  // Exact: a setup that says "BMP" gets no graph files.
  const char* text = extension.get();
  if (strcmp(text, "bmp") == 0) format = formatBMP;
  if (strcmp(text, "pcx") == 0) format = formatPCX;
  if (strcmp(text, "svg") == 0) format = formatSVG;
  if (strcmp(text, "wmf") == 0) format = formatWMF;
}

R_A_HTMLOutput::~R_A_HTMLOutput() {}

void R_A_HTMLOutput::setGraphDirs(const char* directory, const char* urlBase) {
  graphDirectory.set(directory);
  graphUrlBase.set(urlBase);
}

void R_A_HTMLOutput::setImageBase(const char* base) { imageBase.set(base); }

void R_A_HTMLOutput::setNameSources(RandomSource random, ClockSource clock) {
  randomSource = random != nullptr ? random : portableRand;
  clockSource = clock != nullptr ? clock : clockSeconds;
}

void R_A_HTMLOutput::resetProcessState() {
  upperIndexPending = false;
  graphNumber = 1;
  randomState = 1;
}

// ---- Page text

// The upper-index filter: "^" and a digit become that digit raised, "^^" one
// "^"; a "^" before any other byte stays as it was.
void R_A_HTMLOutput::put(char ch) {
  if (!upperIndexPending) {
    if (ch == '^') {
      upperIndexPending = true;
    } else {
      sink.putChar(ch);
    }
    return;
  }
  upperIndexPending = false;
  if (R_isDigit(ch)) {
    for (const char* p = "<sup>"; *p != '\0'; p++) sink.putChar(*p);
    sink.putChar(ch);
    for (const char* p = "</sup>"; *p != '\0'; p++) sink.putChar(*p);
    return;
  }
  sink.putChar('^');
  if (ch != '^') sink.putChar(ch);
}

void R_A_HTMLOutput::emit(int code, const char* defaultText, const char* arg1,
                          const char* arg2) {
  const char* text = setup.getStr(code, defaultText);
  if (text == nullptr) return;
  for (const char* p = text; *p != '\0'; p++) {
    if (*p != '@') {
      put(*p);
      continue;
    }
    p++;
    if (*p == '\0') return;
    if (*p == '1') {
      putText(arg1);
    } else if (*p == '2') {
      putText(arg2);
    } else {
      put(*p);
    }
  }
}

void R_A_HTMLOutput::putText(const char* text) {
  if (text == nullptr) return;
  for (; *text != '\0'; text++) put(*text);
}

void R_A_HTMLOutput::emitPiece(int piece, const char* arg1, const char* arg2) {
  emit(templates[piece].code, templates[piece].defaultText, arg1, arg2);
}

void R_A_HTMLOutput::beginDocument() { emitPiece(documentStart, nullptr, nullptr); }
void R_A_HTMLOutput::endDocument() { emitPiece(documentEnd, nullptr, nullptr); }
void R_A_HTMLOutput::beginBlock(int) { emitPiece(blockBegin, nullptr, nullptr); }
void R_A_HTMLOutput::endBlock() { emitPiece(blockEnd, nullptr, nullptr); }
void R_A_HTMLOutput::beginParagraph() { emitPiece(paragraphBegin, nullptr, nullptr); }
void R_A_HTMLOutput::endParagraph() { emitPiece(paragraphEnd, nullptr, nullptr); }
void R_A_HTMLOutput::writeChar(int, char ch) { put(ch); }

void R_A_HTMLOutput::setFont(int change) {
  if (change >= 0 && change < fontChangeCount) emitPiece(fontPieces[change], nullptr, nullptr);
}

void R_A_HTMLOutput::writeAnchor(const char* target, bool internal) {
  if (!internal) {
    emitPiece(anchorExternal, target, nullptr);
    return;
  }
  char url[anchorUrlSize];
  url[0] = '\0';
  parameters.encodeURL(target, url, anchorUrlSize);
  url[anchorUrlSize - 1] = '\0';
  emitPiece(anchorInternal, url, nullptr);
}

void R_A_HTMLOutput::writeResult(const char* text) { emitPiece(numericResult, text, nullptr); }

void R_A_HTMLOutput::writeHeader(int level, const char* text) {
  emitPiece(level == 0 ? header : subheader, text, nullptr);
}

void R_A_HTMLOutput::writeHRule() { emitPiece(hrule, nullptr, nullptr); }

// ---- Tables

void R_A_HTMLOutput::beginTable(int, int, int orientation) {
  emitPiece(orientation == 1 ? tableBegin : tableInvertedBegin, nullptr, nullptr);
}

void R_A_HTMLOutput::endTable(int orientation) {
  emitPiece(orientation == 1 ? tableEnd : tableInvertedEnd, nullptr, nullptr);
}

void R_A_HTMLOutput::beginRow(int row, int orientation) {
  emitPiece(isHeadRow(row, orientation) ? headRowBegin : rowBegin, nullptr, nullptr);
}

void R_A_HTMLOutput::endRow(int row, int orientation) {
  emitPiece(isHeadRow(row, orientation) ? headRowEnd : rowEnd, nullptr, nullptr);
}

void R_A_HTMLOutput::beginCell(int row, int column, int orientation) {
  Piece piece = isHeadRow(row, orientation)                 ? headCellBegin
                : isInvertedHeadColumn(column, orientation) ? invertedHeadCellBegin
                                                            : cellBegin;
  emitPiece(piece, nullptr, nullptr);
}

void R_A_HTMLOutput::endCell(int row, int column, int orientation) {
  Piece piece = isHeadRow(row, orientation)                 ? headCellEnd
                : isInvertedHeadColumn(column, orientation) ? invertedHeadCellEnd
                                                            : cellEnd;
  emitPiece(piece, nullptr, nullptr);
}

void R_A_HTMLOutput::writeSeparatorCell(int row, int, int orientation) {
  Piece piece = orientation == 0              ? invertedSeparator
                : isHeadRow(row, orientation) ? headSeparator
                                              : separator;
  emitPiece(piece, nullptr, nullptr);
}

int R_A_HTMLOutput::getInvertedColumnCount() {
  return setup.getInt(S::intTableInvertedColumnCount, 6);
}

void R_A_HTMLOutput::writeInvertedBreak() { emitPiece(invertedBreak, nullptr, nullptr); }

void R_A_HTMLOutput::writeCell(int, int, const char* text) {
  if (text == nullptr || text[0] == '\0') {
    emitPiece(cellEmpty, nullptr, nullptr);
  } else {
    emitPiece(cellData, text, nullptr);
  }
}

void R_A_HTMLOutput::writeImage(const char* source) {
  R_TextBuffer buffer;
  const char* url = join(buffer, {imageBase.get(), source, setup.getStr(S::strImageExtension, "")});
  emitPiece(image, url, nullptr);
}

// ---- Graph settings and metrics

bool R_A_HTMLOutput::isGraphInSD() { return setup.getInt(S::intGraphInSd, 1) == 1; }

int R_A_HTMLOutput::getWidthMetric(int which) {
  const int wished = R_A_Parameters::parGraphWidth;
  if (which == 0 && parameters.isInt(wished)) {
    int width = parameters.getInt(wished);
    if (width >= graphWidthMin && width <= graphWidthMax) return width;
  }
  return readMetric(setup, widthMetrics, sizeof(widthMetrics) / sizeof(widthMetrics[0]), which);
}

int R_A_HTMLOutput::getHeightMetric(int which) {
  return readMetric(setup, heightMetrics, sizeof(heightMetrics) / sizeof(heightMetrics[0]), which);
}

const char* R_A_HTMLOutput::getDateFormat() { return setup.getStr(S::strDateFormat, "%d.%m.%Y"); }

const char* R_A_HTMLOutput::getSDAppend(int) { return setup.getStr(S::strGraphSdAppend, ""); }

int R_A_HTMLOutput::getPaletteIndex(int row) { return palette[row].index; }

const char* R_A_HTMLOutput::getPaletteColorName(int row) const {
  return setup.getStr(palette[row].code, palette[row].defaultName);
}

// ---- Graphs

void R_A_HTMLOutput::makeGraphFileName() {
  char digits[3 * R_numberTextSize];
  int length = R_formatInt(randomSource() % nameRandomModulus, digits);
  length += R_formatInt(static_cast<int>(clockSource() % nameClockModulus), digits + length);
  R_formatInt(graphNumber, digits + length);
  graphNumber++;
  R_TextBuffer path;
  graphPath.set(join(path, {graphDirectory.get(), digits, ".", extension.get()}));
  R_TextBuffer url;
  graphUrl.set(join(url, {graphUrlBase.get(), digits, ".", extension.get()}));
}

void R_A_HTMLOutput::beginGraph(int, const char* title, int width, int height) {
  setClip(0, 0, toPixel(static_cast<int64_t>(width) - 1),
          toPixel(static_cast<int64_t>(height) - 1));
  if (isBitmap()) {
    VECTORDRAW.reset();
    SVGDRAW.reset();
    BITMAPDRAW.reset(new R_A_BitmapDraw(width, height));
    return;
  }
  if (format == formatSVG) {
    beginSVG(width, height);
    return;
  }
  if (format != formatWMF) return;
  BITMAPDRAW.reset();
  SVGDRAW.reset();
  makeGraphFileName();
  VECTORDRAW.reset(new R_A_VectorDraw(graphPath.get(), width, height));
  // The metafile counts its colours from 0 rather than by palette index.
  for (int row = 0; row < paletteRows; row++) {
    const char* name = getPaletteColorName(row);
    if (name != nullptr) VECTORDRAW->setColorName(row, name);
  }
  VECTORDRAW->setBigFontHeight(setup.getInt(S::intVectorBigFontHeight,
                                            R_A_VectorDraw::_defaultBigFontHeight));
  emitPiece(graph, title, graphUrl.get());
}

void R_A_HTMLOutput::beginSVG(int width, int height) {
  BITMAPDRAW.reset();
  VECTORDRAW.reset();
  SVGDRAW.reset(new R_A_SVGDraw(width, height));
  for (int row = 0; row < paletteRows; row++) {
    SVGDRAW->setColorName(getPaletteIndex(row), getPaletteColorName(row));
  }
}

void R_A_HTMLOutput::endGraph(int, const char* title) {
  makeGraphFileName();
  // A canvas or SVG surface that cannot be saved leaves no file; the page
  // still shows where the graph belongs.
  if (BITMAPDRAW != nullptr) {
    saveBitmap();
    BITMAPDRAW.reset();
    emitPiece(graph, title, graphUrl.get());
  }
  if (SVGDRAW != nullptr) {
    SVGDRAW->save(graphPath.get());
    SVGDRAW.reset();
    emitPiece(graph, title, graphUrl.get());
  }
  VECTORDRAW.reset();  // completes the metafile
  sink.graphDone(graphPath.get(), graphUrl.get());
}

void R_A_HTMLOutput::saveBitmap() {
  R_A_BitmapSaveBMP bmp;
  R_A_BitmapSavePCX pcx;
  R_A_BitmapSave& writer = format == formatPCX ? static_cast<R_A_BitmapSave&>(pcx) : bmp;
  for (int row = 0; row < paletteRows; row++) {
    const char* name = getPaletteColorName(row);
    if (name != nullptr) writer.setColorName(getPaletteIndex(row), name);
  }
  BITMAPDRAW->save(graphPath.get(), writer);
}

bool R_A_HTMLOutput::isDoubled() const { return setup.getInt(S::intGraphBitmapTextDouble, 0) != 0; }

int R_A_HTMLOutput::getFontHeight(int) {
  if (hasFontCells()) return R_A_BitmapDraw::getFontHeight(isDoubled());
  return format == formatWMF ? R_A_VectorDraw::getFontHeight(isDoubled()) : 0;
}

int R_A_HTMLOutput::getTextWidth(int, const char* text) {
  if (hasFontCells()) return R_A_BitmapDraw::getTextWidth(text);
  return format == formatWMF ? R_A_VectorDraw::getTextWidth(text) : 0;
}

void R_A_HTMLOutput::setClip(int x1, int y1, int x2, int y2) {
  clipXMin = x1 < x2 ? x1 : x2;
  clipXMax = x1 < x2 ? x2 : x1;
  clipYMin = y1 < y2 ? y1 : y2;
  clipYMax = y1 < y2 ? y2 : y1;
  if (VECTORDRAW != nullptr) VECTORDRAW->setClip(clipXMin, clipYMin, clipXMax, clipYMax);
  if (SVGDRAW != nullptr) SVGDRAW->setClip(clipXMin, clipYMin, clipXMax, clipYMax);
}

// ---- Drawing

void R_A_HTMLOutput::line(int x1, int y1, int x2, int y2, int color, int pattern, int pen) {
  if (BITMAPDRAW != nullptr) BITMAPDRAW->drawLine(x1, y1, x2, y2, color, pattern, pen);
  if (VECTORDRAW != nullptr) VECTORDRAW->drawLine(x1, y1, x2, y2, color, pattern, pen);
  if (SVGDRAW != nullptr) SVGDRAW->drawLine(x1, y1, x2, y2, color, pattern, pen);
}

void R_A_HTMLOutput::solidLine(int x1, int y1, int x2, int y2, int color) {
  line(x1, y1, x2, y2, color, solid, 1);
}

void R_A_HTMLOutput::circle(int x, int y, int radius, int color) {
  if (BITMAPDRAW != nullptr) BITMAPDRAW->drawCircle(x, y, radius, color);
  if (VECTORDRAW != nullptr) VECTORDRAW->drawCircle(x, y, radius, color);
  if (SVGDRAW != nullptr) SVGDRAW->drawCircle(x, y, radius, color);
}

void R_A_HTMLOutput::drawText(int x, int y, int verticalAlign, int horizontalAlign, int font,
                              const char* text) {
  const int color = font >= 0 && font < textColorCount ? textColors[font] : colorBackground;
  if (VECTORDRAW != nullptr) {
    // The metafile aligns the text itself.
    VECTORDRAW->drawText(x, y, verticalAlign, horizontalAlign, color, text);
    return;
  }
  if (BITMAPDRAW == nullptr && SVGDRAW == nullptr) return;
  const int left = toPixel(x - alignShift(horizontalAlign, getTextWidth(font, text)));
  const int top = toPixel(y - alignShift(verticalAlign, getFontHeight(font)));
  if (BITMAPDRAW != nullptr) {
    BITMAPDRAW->drawString(left, top, color, isDoubled(), colorBackground, text);
  }
  if (SVGDRAW != nullptr) SVGDRAW->drawString(left, top, color, isDoubled(), colorBackground, text);
}

void R_A_HTMLOutput::fillArea(int x1, int y1, int x2, int y2, int area, int) {
  if (area < 0 || area >= areaColorCount) return;
  if (BITMAPDRAW != nullptr) BITMAPDRAW->fillRect(x1, y1, x2, y2, areaColors[area]);
  if (VECTORDRAW != nullptr) VECTORDRAW->fillRect(x1, y1, x2, y2, areaColors[area]);
  if (SVGDRAW != nullptr) SVGDRAW->fillRect(x1, y1, x2, y2, areaColors[area]);
}

void R_A_HTMLOutput::frameArea(int x1, int y1, int x2, int y2, int area, int) {
  if (area == 0) return;
  // Each line leaves out its end point, which the next one begins with.
  solidLine(x1, y1, x2, y1, colorAxis);
  solidLine(x2, y1, x2, y2, colorAxis);
  solidLine(x2, y2, x1, y2, colorAxis);
  solidLine(x1, y2, x1, y1, colorAxis);
}

void R_A_HTMLOutput::drawRasterLine(int x1, int y1, int x2, int y2, int kind) {
  if (kind < 0 || kind >= rasterStyleCount) return;
  line(x1, y1, x2, y2, rasterStyles[kind].color, rasterStyles[kind].pattern, 1);
}

void R_A_HTMLOutput::drawRefLine(int x1, int y1, int x2, int y2, int kind) {
  solidLine(x1, y1, x2, y2, kind == 0 ? colorRefMain : colorRefOther);
}

// Only the columns inside both the clip and the canvas are worked out, so a
// band of any length costs at most the canvas's width. A metafile draws no
// lines, so it gets none; an SVG surface takes the band as one shape.
void R_A_HTMLOutput::drawBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int) {
  if (SVGDRAW != nullptr) SVGDRAW->fillBand(x1, yA1, yB1, x2, yA2, yB2, colorBand);
  if (BITMAPDRAW == nullptr) return;
  const R_A_BandSpan band(x1, yA1, yB1, x2, yA2, yB2, clipXMin, clipXMax, BITMAPDRAW->getWidth());
  const auto rowOf = [&](double y) {
    y = floor(y + 0.5);
    return static_cast<int>(y < clipYMin ? clipYMin : y > clipYMax ? clipYMax : y);
  };
  for (int64_t x = band.first; x <= band.last; x++) {
    const double at = static_cast<double>(x);
    line(static_cast<int>(x), rowOf(band.yA(at)), static_cast<int>(x), rowOf(band.yB(at)), colorBand, solid, 1);
  }
}

// Style 1: the end of the vertical below y2 (larger y) is y1 only when y1
// lies below y2, else y2 + h; the end above is y1 only when y1 lies above,
// else y2 - h.
void R_A_HTMLOutput::drawRangeBar(int x, int y1, int y2, int style) {
  const int64_t h = static_cast<int64_t>(getWidthMetric(3)) * 3 / 8;
  const int left = toPixel(x - h), right = toPixel(x + h);
  solidLine(left, y1, right, y1, colorTarget);
  solidLine(left, y2, right, y2, colorTarget);
  if (style != 1) {
    solidLine(x, y1, x, y2, colorTarget);
    return;
  }
  const int yLow = y1 < y2 ? y1 : toPixel(y2 - h);
  const int yHigh = y1 > y2 ? y1 : toPixel(y2 + h);
  solidLine(x, yHigh, x, yLow, colorTarget);
}

void R_A_HTMLOutput::drawDataLine(int x1, int y1, int x2, int y2, int series) {
  line(x1, y1, x2, y2, dataColor(series), solid, dataLinePen);
}

// The head strokes start at the tip, so the tip is drawn although the
// shaft leaves out its end point.
void R_A_HTMLOutput::drawDataArrow(int x1, int y1, int x2, int y2, int series) {
  const double length = setup.getInt(S::intGraphArrowWidth, 10);
  const double angle = atan2(static_cast<double>(y1) - y2, static_cast<double>(x1) - x2);
  const int color = dataColor(series);
  solidLine(x1, y1, x2, y2, color);
  for (double side : {arrowHalfAngle, -arrowHalfAngle}) {
    solidLine(x2, y2, toPixel(x2 + length * cos(angle + side)),
              toPixel(y2 + length * sin(angle + side)), color);
  }
}

void R_A_HTMLOutput::drawMark(int x, int y, int series, bool small) {
  const int size = small ? setup.getInt(S::intGraphSmallMarkWidth, 5)
                         : setup.getInt(S::intGraphMarkWidth, 8);
  const int r = size / 2;
  const int color = dataColor(series);
  if (BITMAPDRAW != nullptr && !BITMAPDRAW->isEmpty()) {
    // Only the clearing circles that can reach the canvas are drawn.
    int64_t from = 2, to = static_cast<int64_t>(r) - 2;
    limitToCanvas(x, y, BITMAPDRAW->getWidth(), BITMAPDRAW->getHeight(), &from, &to);
    for (int64_t radius = from; radius <= to; radius++) {
      circle(x, y, static_cast<int>(radius), colorBackground);
    }
  }
  // The rings of radius 2 to r - 2 together clear a disc.
  if (SVGDRAW != nullptr && r - 2 >= 2) SVGDRAW->fillCircle(x, y, r - 2, colorBackground);
  const int64_t x64 = x, y64 = y;
  solidLine(toPixel(x64 - r), y, toPixel(x64 + r), y, color);
  solidLine(x, toPixel(y64 - r), x, toPixel(y64 + r), color);
  circle(x, y, r, color);
}
