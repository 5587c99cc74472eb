#include "output/r_a_svgdraw.h"

#include <climits>
#include <cmath>
#include <cstring>

#include "core/r_safefile.h"
#include "output/r_a_bandspan.h"
#include "output/r_a_colorname.h"

namespace {

const double kPi = 3.14159265358979323846;
const int kCircleSides = 16;

// Numbers are written with at most 3 decimals; positions beyond this lie
// far off every picture and are held there, so that no text gets absurd.
const double kFarthest = 1e12;

// More than the bytes of the document around the elements.
const size_t kFrameBytes = 512;

// A pen covers 1, 2 or 3 pixels across and stretches the dashes as much;
// the dot at (x, y) covers the square from (x, y) less `penBack` to that
// plus the pen's width.
int penWidth(int pen) { return pen <= 1 ? 1 : pen == 2 ? 2 : 3; }
int penBack(int pen) { return pen <= 2 ? 0 : 1; }

int64_t absolute(int64_t v) { return v < 0 ? -v : v; }

// Bytes that XML or the code page cannot carry as text are shown as '?':
// the control bytes and the five bytes that Windows-1250 leaves undefined.
bool isTextByte(unsigned char c) {
  return c >= 0x20 && c != 0x7F && c != 0x81 && c != 0x83 && c != 0x88 && c != 0x90 && c != 0x98;
}

// The shortest period of a 16-bit dash pattern, in bits: 1, 2, 4, 8 or 16.
int patternPeriod(unsigned pattern) {
  for (int period = 1; period < 16; period *= 2) {
    const unsigned rotated = ((pattern >> period) | (pattern << (16 - period))) & 0xFFFF;
    if (rotated == pattern) return period;
  }
  return 16;
}

// The dash array of a line: one period of `pattern` over the dots from
// dot index `first` (dot n = k + 1), as lengths of drawn and left-out runs,
// starting with the first drawn run that follows a gap. A pen `w` pixels
// long stretches the pattern w times and lets a drawn run reach w - 1
// further, into the following gap, which is at least w dots long. `*phase`
// is where in the array the line starts. Requires: pattern neither 0 nor
// solid. Answers the count.
int dashRuns(unsigned pattern, int w, int64_t first, int runs[], int* phase) {
  const int stretch = w;
  const int period = patternPeriod(pattern) * stretch;
  bool drawn[48];
  for (int i = 0; i < period; ++i) {
    drawn[i] = ((pattern >> (((first + i + 1) / stretch) & 15)) & 1) != 0;
  }
  int start = 0;
  while (!drawn[start] || drawn[(start + period - 1) % period]) ++start;
  int count = 0;
  for (int i = 0; i < period; ++i) {
    const int at = (start + i) % period;
    if (i == 0 || drawn[at] != drawn[(at + period - 1) % period]) runs[count++] = 0;
    runs[count - 1]++;
  }
  for (int i = 0; i < count; ++i) runs[i] += i % 2 == 0 ? w - 1 : 1 - w;
  *phase = (period - start) % period;
  return count;
}

}  // namespace

R_A_SVGDraw::R_A_SVGDraw(int w, int h) {
  if (w <= 0 || h <= 0 || w > _maxSide || h > _maxSide) return;
  width = w;
  height = h;
  clipRight = w - 1;
  clipBottom = h - 1;
}

void R_A_SVGDraw::putInt(int64_t value) {
  char digits[24];
  int at = sizeof digits;
  digits[--at] = '\0';
  const bool negative = value < 0;
  uint64_t rest = negative ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  do {
    digits[--at] = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (negative) digits[--at] = '-';
  put(digits + at, sizeof digits - 1 - at);
}

// Thousandths, rounded half away from 0, without trailing zeros.
void R_A_SVGDraw::putNumber(double value) {
  if (!(value > -kFarthest)) value = -kFarthest;  // NaN too
  if (value > kFarthest) value = kFarthest;
  const int64_t thousandths = std::llround(value * 1000);
  if (thousandths < 0 && thousandths > -1000) put("-");
  putInt(thousandths / 1000);
  int rest = static_cast<int>(absolute(thousandths) % 1000);
  if (rest == 0) return;
  char fraction[5] = {'.', static_cast<char>('0' + rest / 100), static_cast<char>('0' + rest / 10 % 10),
                      static_cast<char>('0' + rest % 10), '\0'};
  for (int last = 3; fraction[last] == '0'; --last) fraction[last] = '\0';
  put(fraction);
}

void R_A_SVGDraw::putColor(const char* attribute, int color) {
  static const char hex[] = "0123456789abcdef";
  const uint32_t rgb = palette[color & 15];
  char text[8] = {'#'};
  for (int i = 0; i < 6; ++i) text[1 + i] = hex[(rgb >> (20 - 4 * i)) & 15];
  put(attribute);
  put("=\"");
  put(text);
  put("\"");
}

void R_A_SVGDraw::putPoint(double x, double y) {
  putNumber(x);
  put(",");
  putNumber(y);
}

void R_A_SVGDraw::setColor(int index, int r, int g, int b) {
  if (index < 0 || index >= _colorCount) return;
  const auto part = [](int v) { return static_cast<uint32_t>(v < 0 ? 0 : v > 255 ? 255 : v); };
  palette[index] = part(r) << 16 | part(g) << 8 | part(b);
}

bool R_A_SVGDraw::setColorName(int index, const char* name) {
  int r = 0, g = 0, b = 0;
  if (name == nullptr || !resolveColorName(name, &r, &g, &b)) return false;
  setColor(index, r, g, b);
  return true;
}

void R_A_SVGDraw::setClip(int x0, int y0, int x1, int y1) {
  clipLeft = x0 < x1 ? x0 : x1;
  clipRight = x0 < x1 ? x1 : x0;
  clipTop = y0 < y1 ? y0 : y1;
  clipBottom = y0 < y1 ? y1 : y0;
  clipWritten = false;
}

// Only the part on the picture is written, as the canvas sets only that.
void R_A_SVGDraw::fillRect(int x0, int y0, int x1, int y1, int color) {
  int64_t left = x0 < x1 ? x0 : x1, right = x0 < x1 ? x1 : x0;
  int64_t top = y0 < y1 ? y0 : y1, bottom = y0 < y1 ? y1 : y0;
  if (left < 0) left = 0;
  if (top < 0) top = 0;
  if (right > width - 1) right = width - 1;
  if (bottom > height - 1) bottom = height - 1;
  if (left > right || top > bottom) return;
  put("<rect x=\"");
  putInt(left);
  put("\" y=\"");
  putInt(top);
  put("\" width=\"");
  putInt(right - left + 1);
  put("\" height=\"");
  putInt(bottom - top + 1);
  put("\" ");
  putColor("fill", color);
  put("/>\n");
}

// Dot k (from 0) lies at the start plus k steps along the main axis, one
// pixel each, and its pen square reaches from half the pen's width before
// its centre to half after. The stroke runs from the first square's back
// edge to the last square's front edge, so the end point, dot `long`, is
// left out as on the canvas. Only the dots from 1 before the picture's edge
// to 1 beyond it are written, with the dash phase they have there.
void R_A_SVGDraw::drawLine(int x0, int y0, int x1, int y1, int color, int pattern, int pen) {
  const unsigned dashes = static_cast<unsigned>(pattern) & 0xFFFF;
  if (isEmpty() || dashes == 0) return;
  const int64_t dx = static_cast<int64_t>(x1) - x0, dy = static_cast<int64_t>(y1) - y0;
  const int64_t lng = absolute(dx) > absolute(dy) ? absolute(dx) : absolute(dy);
  if (lng == 0) return;
  const bool xMain = absolute(dx) > absolute(dy);
  const int64_t mainStart = xMain ? x0 : y0, mainStep = (xMain ? dx : dy) < 0 ? -1 : 1;
  const int64_t mainSize = xMain ? width : height;
  int64_t first = mainStep > 0 ? -1 - mainStart : mainStart - mainSize;
  int64_t end = mainStep > 0 ? mainSize - mainStart + 1 : mainStart + 2;
  if (first < 0) first = 0;
  if (end > lng) end = lng;
  if (first >= end) return;

  const double stepX = static_cast<double>(dx) / lng, stepY = static_cast<double>(dy) / lng;
  const int w = penWidth(pen);
  const double centre = 0.5 * w - penBack(pen);  // from the dot's pixel corner
  const double from = first - 0.5 * w, to = end - 1 + 0.5 * w;
  put("<line x1=\"");
  putNumber(x0 + centre + from * stepX);
  put("\" y1=\"");
  putNumber(y0 + centre + from * stepY);
  put("\" x2=\"");
  putNumber(x0 + centre + to * stepX);
  put("\" y2=\"");
  putNumber(y0 + centre + to * stepY);
  put("\" ");
  putColor("stroke", color);
  if (w != 1) {
    put(" stroke-width=\"");
    putInt(w);
    put("\"");
  }
  if (dashes != _solid) {
    // The array counts in steps of the main axis; the stroke is longer.
    const double unit = std::sqrt(stepX * stepX + stepY * stepY);
    int runs[48];
    int phase = 0;
    const int count = dashRuns(dashes, w, first, runs, &phase);
    put(" stroke-dasharray=\"");
    for (int i = 0; i < count; ++i) {
      if (i > 0) put(" ");
      putNumber(runs[i] * unit);
    }
    put("\"");
    if (phase != 0) {
      put(" stroke-dashoffset=\"");
      putNumber(phase * unit);
      put("\"");
    }
  }
  put("/>\n");
}

// The canvas's corners: the offset (radius, 0) turned by pi/8 again and
// again, each truncated towards 0, through pixel centres.
void R_A_SVGDraw::putCirclePoints(int x, int y, int radius) {
  const double s = std::sin(kPi / 8), c = std::cos(kPi / 8);
  double ox = radius, oy = 0;
  for (int corner = 0; corner <= kCircleSides + 1; ++corner) {
    if (corner > 0) put(" ");
    putPoint(x + static_cast<double>(static_cast<int64_t>(ox)) + 0.5,
             y + static_cast<double>(static_cast<int64_t>(oy)) + 0.5);
    const double nx = c * ox - s * oy, ny = s * ox + c * oy;
    ox = nx;
    oy = ny;
  }
}

void R_A_SVGDraw::drawCircle(int x, int y, int radius, int color) {
  if (isEmpty()) return;
  put("<polyline points=\"");
  putCirclePoints(x, y, radius);
  put("\" fill=\"none\" ");
  putColor("stroke", color);
  put("/>\n");
}

void R_A_SVGDraw::fillCircle(int x, int y, int radius, int color) {
  if (isEmpty()) return;
  put("<polygon points=\"");
  putCirclePoints(x, y, radius);
  put("\" ");
  putColor("fill", color);
  put(" ");
  putColor("stroke", color);
  put("/>\n");
}

void R_A_SVGDraw::useClip() {
  if (clipWritten) return;
  clipWritten = true;
  clipCount++;
  put("<clipPath id=\"c");
  putInt(clipCount);
  put("\"><rect x=\"");
  putInt(clipLeft);
  put("\" y=\"");
  putInt(clipTop);
  put("\" width=\"");
  putInt(static_cast<int64_t>(clipRight) - clipLeft + 1);
  put("\" height=\"");
  putInt(static_cast<int64_t>(clipBottom) - clipTop + 1);
  put("\"/></clipPath>\n");
}

// Column x of the canvas is the unit from x to x + 1 and takes its ends
// from the lines at x, so the edges pass through (x + 0.5, y(x)). A column
// whose line A lies below line B covers from B's row, left out, down to
// A's row, included: one row lower than the other way round. Only the
// columns on the picture and in the clip are written.
void R_A_SVGDraw::fillBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int color) {
  if (isEmpty()) return;
  const R_A_BandSpan band(x1, yA1, yB1, x2, yA2, yB2, clipLeft, clipRight, width);
  if (band.isEmpty()) return;
  const int64_t first = band.first, last = band.last;
  const double xs[2] = {first - 0.5, last + 0.5};
  double a[2], b[2];
  for (int end = 0; end < 2; ++end) {
    a[end] = band.yA(xs[end]);
    b[end] = band.yB(xs[end]);
    if (a[end] > b[end]) {
      a[end] += 1;
      b[end] += 1;
    }
  }
  useClip();
  put("<polygon points=\"");
  putPoint(static_cast<double>(first), a[0]);
  put(" ");
  putPoint(static_cast<double>(last + 1), a[1]);
  put(" ");
  putPoint(static_cast<double>(last + 1), b[1]);
  put(" ");
  putPoint(static_cast<double>(first), b[0]);
  put("\" ");
  putColor("fill", color);
  put(" clip-path=\"url(#c");
  putInt(clipCount);
  put(")\"/>\n");
}

// The letters stand on row 8 of the box (15 doubled), where the canvas
// font's capitals and digits end, in a size that gives them about its 7
// (14) rows; textLength makes every byte 8 pixels wide.
void R_A_SVGDraw::drawString(int x, int y, int color, bool doubled, int background,
                             const char* text) {
  if (text == nullptr || text[0] == '\0' || isEmpty()) return;
  const int64_t length = static_cast<int64_t>(strlen(text)) * 8;
  if (background >= 0) {
    put("<rect x=\"");
    putInt(x);
    put("\" y=\"");
    putInt(y);
    put("\" width=\"");
    putInt(length);
    put("\" height=\"");
    putInt(getFontHeight(doubled));
    put("\" ");
    putColor("fill", background);
    put("/>\n");
  }
  put("<text x=\"");
  putInt(x);
  put("\" y=\"");
  putInt(static_cast<int64_t>(y) + (doubled ? 15 : 8));
  put("\" font-size=\"");
  put(doubled ? "19" : "10");
  put("\" textLength=\"");
  putInt(length);
  put("\" lengthAdjust=\"spacingAndGlyphs\" ");
  putColor("fill", color);
  put(">");
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p != '\0'; ++p) {
    const char one[2] = {static_cast<char>(isTextByte(*p) ? *p : '?'), '\0'};
    put(*p == '&' ? "&amp;" : *p == '<' ? "&lt;" : *p == '>' ? "&gt;" : one);
  }
  put("</text>\n");
}

int R_A_SVGDraw::getTextWidth(const char* text) {
  if (text == nullptr) return 0;
  const size_t length = strlen(text);
  return length > static_cast<size_t>(INT_MAX / 8) ? INT_MAX / 8 * 8 : static_cast<int>(length) * 8;
}

// A new surface is all colour 0, as a new canvas is: the first element
// covers the picture in it.
void R_A_SVGDraw::getDocument(R_TextBuffer& out) const {
  char number[16];
  const auto writeInt = [&](int value) {
    int at = sizeof number - 1;
    number[at] = '\0';
    do {
      number[--at] = static_cast<char>('0' + value % 10);
      value /= 10;
    } while (value != 0);
    out.put(number + at);
  };
  const auto putSize = [&]() {
    out.put(" width=\"");
    writeInt(width);
    out.put("\" height=\"");
    writeInt(height);
    out.put("\"");
  };
  out.put("<?xml version=\"1.0\" encoding=\"windows-1250\"?>\n"
          "<svg xmlns=\"http://www.w3.org/2000/svg\"");
  putSize();
  out.put(" viewBox=\"0 0 ");
  writeInt(width);
  out.put(" ");
  writeInt(height);
  out.put("\" font-family=\"monospace\" xml:space=\"preserve\">\n<rect");
  putSize();
  static const char hex[] = "0123456789abcdef";
  char fill[] = " fill=\"#000000\"/>\n";
  for (int i = 0; i < 6; ++i) fill[8 + i] = hex[(palette[0] >> (20 - 4 * i)) & 15];
  out.put(fill);
  if (body.size() > 0) out.put(body.data(), body.size());
  out.put("</svg>\n");
}

bool R_A_SVGDraw::save(const char* path) const {
  if (isEmpty() || !complete || path == nullptr) return false;
  // The head and the end take less than kFrameBytes; with the room there
  // from the start, no byte of the document can be dropped.
  R_TextBuffer document;
  if (!document.reserve(body.size() + kFrameBytes)) return false;
  getDocument(document);
  R_SafeFile file(path, R_SafeFile::unsyncedSteps());
  if (!file.isOK()) return false;
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(document.data());
  for (size_t done = 0; done < document.size();) {
    const size_t chunk = document.size() - done < (1u << 20) ? document.size() - done : (1u << 20);
    file.writeBytes(bytes + done, static_cast<int>(chunk));
    done += chunk;
  }
  return file.commit();
}
