#include "output/r_a_bitmapdraw.h"

#include <climits>
#include <cmath>
#include <cstring>

#include "output/r_a_bitmapfont.h"
#include "core/r_safefile.h"
#include "output/r_a_bitmapsave.h"

namespace {

// The pixels a pen covers around a dot; a pen of width w takes the first
// 1, 4 or 9 of them.
struct PenOffset {
  int dx, dy;
};
const PenOffset kPen[] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {-1, 0}, {0, -1}, {-1, -1}, {-1, 1}, {1, -1}};
static_assert(sizeof kPen / sizeof kPen[0] == 9, "a pen covers at most 3 by 3 pixels");

const int kCircleSides = 16;
const double kPi = 3.14159265358979323846;

int penStretch(int pen) { return pen <= 1 ? 1 : pen == 2 ? 2 : 3; }
int penDots(int pen) { return pen <= 1 ? 1 : pen == 2 ? 4 : 9; }

int64_t absolute(int64_t v) { return v < 0 ? -v : v; }

}  // namespace

R_A_BitmapDraw::R_A_BitmapDraw(int w, int h) {
  if (w <= 0 || h <= 0 || w > _maxSide || h > _maxSide) return;
  const int bytes = ((w >> 5) + 1) * 16;
  if (static_cast<int64_t>(bytes) * h > _maxRasterBytes) return;
  width = w;
  rowBytes = bytes;
  height = h;
  pixels.assign(static_cast<size_t>(bytes) * h, 0);
}

int R_A_BitmapDraw::getPixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height) return -1;
  const unsigned char byte = pixels[static_cast<size_t>(y) * rowBytes + x / 2];
  return (x & 1) ? byte & 15 : byte >> 4;
}

void R_A_BitmapDraw::setPixel(int x, int y, int color) { plot(x, y, color); }

void R_A_BitmapDraw::plot(int64_t x, int64_t y, int color) {
  // One unsigned comparison per axis also catches the negative values.
  if (static_cast<uint64_t>(x) >= static_cast<uint64_t>(width) ||
      static_cast<uint64_t>(y) >= static_cast<uint64_t>(height))
    return;
  unsigned char& byte = pixels[static_cast<size_t>(y) * rowBytes + static_cast<size_t>(x >> 1)];
  if (x & 1)
    byte = static_cast<unsigned char>((byte & 0xF0) | (color & 15));
  else
    byte = static_cast<unsigned char>((byte & 0x0F) | ((color & 15) << 4));
}

void R_A_BitmapDraw::fillRect(int x0, int y0, int x1, int y1, int color) {
  const int left = x0 < x1 ? x0 : x1, right = x0 < x1 ? x1 : x0;
  const int top = y0 < y1 ? y0 : y1, bottom = y0 < y1 ? y1 : y0;
  if (right < 0 || left >= width || bottom < 0 || top >= height) return;
  const int from = left < 0 ? 0 : left, to = right >= width ? width - 1 : right;
  const int last = bottom >= height ? height - 1 : bottom;
  for (int y = top < 0 ? 0 : top; y <= last; ++y) fillSpan(from, to, y, color);
}

// Whole bytes of the span at once; an odd first or even last pixel shares
// its byte with a pixel outside the span.
void R_A_BitmapDraw::fillSpan(int left, int right, int y, int color) {
  if (left & 1) plot(left++, y, color);
  if (!(right & 1)) plot(right--, y, color);
  if (left > right) return;
  unsigned char* row = pixels.data() + static_cast<size_t>(y) * rowBytes;
  std::memset(row + left / 2, (color & 15) * 0x11, static_cast<size_t>((right - left + 1) / 2));
}

void R_A_BitmapDraw::drawLine(int x0, int y0, int x1, int y1, int color, int pattern, int pen) {
  drawLine64(x0, y0, x1, y1, color, pattern, pen);
}

// Bresenham along the longer axis (y when both are equal), err starting at
// 2*short - long. Only the stretch of the main axis whose dots can touch the
// raster is walked; the walk starts there with the short position and err
// that k steps from the start give, short = ceil((2*short*k - long) /
// (2*long)), so a line of any length costs at most the raster's size.
void R_A_BitmapDraw::drawLine64(int64_t x0, int64_t y0, int64_t x1, int64_t y1, int color,
                                int pattern, int pen) {
  if (isEmpty()) return;
  const int64_t dx = absolute(x1 - x0), dy = absolute(y1 - y0);
  const int sx = x1 >= x0 ? 1 : -1, sy = y1 >= y0 ? 1 : -1;
  const bool xMain = dx > dy;
  const int64_t lng = xMain ? dx : dy, sht = xMain ? dy : dx;
  const int64_t mainStart = xMain ? x0 : y0;
  const int mainStep = xMain ? sx : sy, shortStep = xMain ? sy : sx;
  const int64_t mainSize = xMain ? width : height;

  // Dots from -1 to mainSize on the main axis may reach the raster with a pen.
  int64_t kFirst, kEnd;
  if (mainStep > 0) {
    kFirst = -1 - mainStart;
    kEnd = mainSize - mainStart + 1;
  } else {
    kFirst = mainStart - mainSize;
    kEnd = mainStart + 2;
  }
  if (kFirst < 0) kFirst = 0;
  if (kEnd > lng) kEnd = lng;
  if (kFirst >= kEnd) return;

  const __int128 steps = (static_cast<__int128>(2 * sht) * kFirst + lng - 1) / (2 * lng);
  int64_t err = static_cast<int64_t>(2 * sht * static_cast<__int128>(kFirst + 1) - lng - 2 * lng * steps);
  // The walk moves (x, y) by the main step each dot and by the short step
  // when err says so.
  const int64_t mainX = xMain ? mainStep : 0, mainY = xMain ? 0 : mainStep;
  const int64_t shortX = xMain ? 0 : shortStep, shortY = xMain ? shortStep : 0;
  int64_t x = x0 + mainX * kFirst + shortX * static_cast<int64_t>(steps);
  int64_t y = y0 + mainY * kFirst + shortY * static_cast<int64_t>(steps);
  const int stretch = penStretch(pen), dots = penDots(pen);
  const unsigned dashes = static_cast<unsigned>(pattern) & 0xFFFF;
  // Dot n = k + 1 tests bit (n / stretch) & 15, kept as quotient and rest.
  int64_t quotient = (kFirst + 1) / stretch;
  int rest = static_cast<int>((kFirst + 1) % stretch);
  for (int64_t k = kFirst; k < kEnd; ++k) {
    if ((dashes >> (quotient & 15)) & 1) {
      if (dots == 1)
        plot(x, y, color);
      else
        for (int j = 0; j < dots; ++j) plot(x + kPen[j].dx, y + kPen[j].dy, color);
    }
    if (err > 0) {
      x += shortX;
      y += shortY;
      err -= 2 * lng;
    }
    x += mainX;
    y += mainY;
    err += 2 * sht;
    if (++rest == stretch) {
      rest = 0;
      ++quotient;
    }
  }
}

// 17 sides rather than 16: the rotated offsets drift, and the extra side
// closes whatever gap that leaves. Offsets are truncated towards 0, so the
// polygon is symmetric about its centre.
void R_A_BitmapDraw::drawCircle(int x, int y, int radius, int color) {
  const double s = std::sin(kPi / 8), c = std::cos(kPi / 8);
  double ox = radius, oy = 0;
  for (int side = 0; side <= kCircleSides; ++side) {
    const double nx = c * ox - s * oy, ny = s * ox + c * oy;
    drawLine64(x + static_cast<int64_t>(ox), y + static_cast<int64_t>(oy), x + static_cast<int64_t>(nx),
               y + static_cast<int64_t>(ny), color, _solid, 1);
    ox = nx;
    oy = ny;
  }
}

void R_A_BitmapDraw::drawGlyphRow(int64_t x, int64_t y, unsigned bits, int color, int background) {
  for (int bit = 0; bit < 8; ++bit) {
    if (bits & (0x80u >> bit))
      plot(x + bit, y, color);
    else if (background >= 0)
      plot(x + bit, y, background);
  }
}

void R_A_BitmapDraw::drawString(int x, int y, int color, bool doubled, int background, const char* text) {
  if (text == nullptr || isEmpty()) return;
  const int repeat = doubled ? 2 : 1;
  int64_t left = x;
  for (const char* p = text; *p != '\0' && left < width; ++p, left += 8) {
    if (left + 8 <= 0) continue;
    const unsigned char* glyph = R_A_BitmapFont::getGlyph(static_cast<unsigned char>(*p));
    int64_t row = y;
    drawGlyphRow(left, row++, 0, color, background);
    for (int r = 0; r < R_A_BitmapFont::_glyphSize; ++r)
      for (int t = 0; t < repeat; ++t) drawGlyphRow(left, row++, glyph[r], color, background);
    drawGlyphRow(left, row, 0, color, background);
  }
}

int R_A_BitmapDraw::getTextWidth(const char* text) {
  if (text == nullptr) return 0;
  const size_t length = std::strlen(text);
  return length > static_cast<size_t>(INT_MAX / 8) ? INT_MAX / 8 * 8 : static_cast<int>(length) * 8;
}

bool R_A_BitmapDraw::save(const char* path, R_A_BitmapSave& writer) const {
  if (isEmpty() || path == nullptr) return false;
  R_SafeFile file(path, R_SafeFile::unsyncedSteps());
  if (!file.isOK()) return false;  // spares the encoding
  if (!writer.write(file, width, height, rowBytes, pixels.data())) return false;
  return file.commit();
}
