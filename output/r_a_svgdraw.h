// The drawing surface of a graph kept as SVG. It takes the operations of
// the canvas (R_A_BitmapDraw) with the same arguments and writes each as
// one SVG element that covers the pixels the canvas would set: pixel (x, y)
// is the unit square from (x, y) to (x + 1, y + 1), so a browser showing the
// file at its own size puts every line, mark and area where the bitmap of
// the same graph has it, apart from anti-aliasing and the shapes of the
// letters. The picture is text built in memory and written whole by save().
//
// Colours are the 16 indices of a palette, black until set; an element
// takes the colour its index has when it is drawn, so the palette is set
// first. Like a new canvas the picture starts all colour 0, in the colour
// that index 0 has when the document is written.
//
// Text is in a monospace font stretched to the canvas font's cells, 8
// pixels a byte, so that getTextWidth and getFontHeight measure it exactly
// as they measure the canvas's text. Text bytes are Windows-1250, and the
// file says so.
//
// A surface of width or height 0 or below, or above _maxSide, is empty: it
// draws nothing and saves no file. Not copyable.
#ifndef OUTPUT_R_A_SVGDRAW_H
#define OUTPUT_R_A_SVGDRAW_H

#include <cstdint>
#include <cstring>

#include "core/r_textbuffer.h"

class R_A_SVGDraw {
 public:
  static const int _maxSide = 32767;  // as for the canvas
  static const int _solid = 0xFFFF;   // the dash pattern of a solid line
  static const int _colorCount = 16;

  R_A_SVGDraw(int width, int height);
  R_A_SVGDraw(const R_A_SVGDraw&) = delete;
  R_A_SVGDraw& operator=(const R_A_SVGDraw&) = delete;

  bool isEmpty() const { return height == 0; }
  // 0 for an empty surface.
  int getWidth() const { return width; }
  int getHeight() const { return height; }
  // The whole SVG document as save() would write it.
  void getDocument(R_TextBuffer& out) const;
  // False once the heap refused room for an element: the picture is then
  // incomplete, and save() writes nothing.
  bool isComplete() const { return complete; }

  // Palette entry `index` (0 to 15; others are ignored), each part 0 to 255.
  void setColor(int index, int r, int g, int b);
  // Sets the entry from a colour name; an unknown name or a null one leaves
  // it as it was and answers false.
  bool setColorName(int index, const char* name);
  // The rectangle, both corners included and in any order, to which bands
  // are cut. A new surface clips to the whole picture.
  void setClip(int x0, int y0, int x1, int y1);

  // The canvas's operations; see R_A_BitmapDraw for what each covers.
  void fillRect(int x0, int y0, int x1, int y1, int color);
  // The end point is left out, dot n (from 1) is drawn when bit
  // (n / stretch) & 15 of `pattern` is set, and a pen of 2 covers the dot
  // and the pixels right and below, one of 3 or more the 3 by 3 pixels
  // around it: the element is the canvas's run of dots as one stroke, with
  // the dashes as a dash array measured along the stroke.
  void drawLine(int x0, int y0, int x1, int y1, int color, int pattern, int pen);
  // The canvas's polygon of 16 sides (and the 17th that closes it), with
  // the same corners.
  void drawCircle(int x, int y, int radius, int color);
  // The same polygon filled, outline included.
  void fillCircle(int x, int y, int radius, int color);
  // The strip between line A, from (x1, yA1) to (x2, yA2), and line B,
  // from (x1, yB1) to (x2, yB2), over the columns from the left end up to,
  // not including, the right end, cut to the clip.
  void fillBand(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int color);
  // `text` (null draws nothing) in boxes of 8 by getFontHeight(doubled)
  // pixels from (x, y), the top left; the boxes are first filled with
  // `background` when that is 0 or more.
  void drawString(int x, int y, int color, bool doubled, int background, const char* text);

  static int getFontHeight(bool doubled) { return doubled ? 18 : 10; }
  static int getTextWidth(const char* text);

  // Writes the document to `path`; the file appears only when complete.
  // False, with no file written and an old one left alone, for an empty or
  // incomplete surface, a file that cannot be created, or a failed write.
  bool save(const char* path) const;

 private:
  // Appends to the body; marks the picture incomplete when the heap
  // refused room.
  // Inline, so that the length of a literal is known where it is written.
  void put(const char* text) { put(text, strlen(text)); }
  void put(const char* text, size_t length) {
    const size_t before = body.size();
    body.put(text, length);
    if (body.size() != before + length) complete = false;
  }
  void putNumber(double value);
  void putInt(int64_t value);
  void putColor(const char* attribute, int color);
  // ` x="..." y="..."`-style pair.
  void putPoint(double x, double y);
  // The corners of the canvas's circle, 18 points (the first again last).
  void putCirclePoints(int x, int y, int radius);
  // The clip as a clipPath element, once for each clip that cuts a band.
  void useClip();

  int width = 0;
  int height = 0;
  uint32_t palette[_colorCount] = {};  // 0xRRGGBB
  int clipLeft = 0, clipTop = 0, clipRight = 0, clipBottom = 0;
  int clipCount = 0;        // clipPath elements written so far
  bool clipWritten = false;  // the current clip has its clipPath
  bool complete = true;
  R_TextBuffer body;  // the elements inside the svg element
};

#endif
