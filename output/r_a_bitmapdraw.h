// A raster of 4-bit colour indices for one picture, with the few operations
// a graph needs: pixels, filled rectangles, dashed lines with a pen width,
// 16-sided circles and text in the canvas's own 8-by-8 font. A new canvas is
// all colour index 0.
//
// Each row holds ((width >> 5) + 1) * 16 bytes, two pixels a byte, the even x
// in the high half; so a row of 31 pixels has 16 bytes and one of 32 has 32.
// A pixel outside the raster is dropped, and that is the only clipping there
// is: every operation may be given any coordinates.
//
// A canvas wider or higher than _maxSide, or of more than _maxRasterBytes,
// and one of width or height 0 or below, is empty: it has no pixels, draws
// nothing, and saves no file. Not copyable.
#ifndef OUTPUT_R_A_BITMAPDRAW_H
#define OUTPUT_R_A_BITMAPDRAW_H

#include <cstdint>
#include <vector>

class R_A_BitmapSave;

class R_A_BitmapDraw {
 public:
  static const int _maxSide = 32767;                 // what every image header can hold
  static const int _maxRasterBytes = 64 * 1024 * 1024;
  static const int _solid = 0xFFFF;                  // the dash pattern of a solid line

  R_A_BitmapDraw(int width, int height);
  R_A_BitmapDraw(const R_A_BitmapDraw&) = delete;
  R_A_BitmapDraw& operator=(const R_A_BitmapDraw&) = delete;

  bool isEmpty() const { return height == 0; }
  // 0 for an empty canvas.
  int getWidth() const { return width; }
  int getHeight() const { return height; }
  int getRowBytes() const { return rowBytes; }
  // Row y starts at getPixels() + y * getRowBytes(); null when empty.
  const unsigned char* getPixels() const { return pixels.empty() ? nullptr : pixels.data(); }
  // The colour index at (x, y), or -1 outside the raster.
  int getPixel(int x, int y) const;

  // Stores the low 4 bits of `color` at (x, y).
  void setPixel(int x, int y, int color);
  // Every pixel of the rectangle, both corners included, in any order.
  void fillRect(int x0, int y0, int x1, int y1, int color);
  // Bresenham's line from (x0, y0) towards (x1, y1); the end point itself is
  // not drawn, so a line from a point to itself draws nothing. Dot n (from
  // 1) is drawn when bit (n / stretch) & 15 of `pattern` is set, with stretch
  // 1, 2, 3 and a square of 1, 4 or 9 pixels for a pen of 1 (or less), 2, and
  // 3 or more: a wider pen stretches the dashes.
  void drawLine(int x0, int y0, int x1, int y1, int color, int pattern, int pen);
  // A polygon of 16 sides around (x, y), solid, pen 1: its corners are the
  // offset (radius, 0) turned by pi/8 again and again, each truncated
  // towards 0 and added to the centre.
  void drawCircle(int x, int y, int radius, int color);
  // Draws every byte of `text` (null draws nothing) 8 pixels apart, (x, y)
  // the top left of the first character box. A box is a blank row, the 8
  // glyph rows (each twice when `doubled`) and a blank row. Set bits take
  // `color`; clear ones take `background` when it is 0 or more and are left
  // alone otherwise.
  void drawString(int x, int y, int color, bool doubled, int background, const char* text);

  // Character box sizes: 18 or 10 rows high, 8 pixels a byte wide.
  static int getFontHeight(bool doubled) { return doubled ? 18 : 10; }
  static int getTextWidth(const char* text);

  // Writes the canvas to `path` through `writer`. The file appears only when
  // complete: false, with no file written and an old one left alone, for an
  // empty canvas, a file that cannot be created, or a failed write.
  bool save(const char* path, R_A_BitmapSave& writer) const;

 private:
  // Coordinates in 64 bits, so that pen offsets and circle points of any
  // int coordinate stay exact.
  void plot(int64_t x, int64_t y, int color);
  void drawLine64(int64_t x0, int64_t y0, int64_t x1, int64_t y1, int color, int pattern, int pen);
  // Requires: 0 <= left <= right < width, 0 <= y < height.
  void fillSpan(int left, int right, int y, int color);
  void drawGlyphRow(int64_t x, int64_t y, unsigned bits, int color, int background);

  int width = 0;
  int rowBytes = 0;
  int height = 0;
  std::vector<unsigned char> pixels;  // height rows of rowBytes bytes
};

#endif
