// The drawing surface of a graph kept as a metafile. It owns the
// R_A_WMFCreator of its file, which is complete when the surface is
// destroyed. Of all drawing it passes on only the text alignment, as one
// META_SETTEXTALIGN record per drawText: lines, rectangles, polygons,
// circles, colours, the clip and the text itself leave no trace, and the
// text measures are 0. So a metafile of this system holds its headers, the
// opening records and the alignment records, nothing else. Not copyable.
#ifndef OUTPUT_R_A_VECTORDRAW_H
#define OUTPUT_R_A_VECTORDRAW_H

#include "output/r_a_wmfcreator.h"

class R_A_VectorDraw {
 public:
  static const int _defaultBigFontHeight = 16;

  R_A_VectorDraw(const char* path, int width, int height) : wmf(path, width, height) {}

  // The alignment flags of a text: vertical 1 gives 8, 2 gives 24; horizontal
  // 1 adds 2, 2 adds 6; other values add nothing.
  static int getTextAlignFlags(int verticalAlign, int horizontalAlign);
  int getBigFontHeight() const { return bigFontHeight; }
  static int getFontHeight(bool /*doubled*/) { return 0; }
  static int getTextWidth(const char* /*text*/) { return 0; }
  const R_A_WMFCreator& getCreator() const { return wmf; }

  // Kept for the font a finished back end would make; no record is written.
  void setBigFontHeight(int height) { bigFontHeight = height; }
  // Palette entries are accepted and dropped: nothing is drawn in colour.
  // Answers whether the name resolves.
  bool setColorName(int index, const char* name);
  void setColor(int /*index*/, int /*r*/, int /*g*/, int /*b*/) {}
  void setClip(int /*x0*/, int /*y0*/, int /*x1*/, int /*y1*/) {}

  void drawLine(int /*x0*/, int /*y0*/, int /*x1*/, int /*y1*/, int /*color*/, int /*pattern*/,
                int /*pen*/) {}
  void drawRect(int /*x0*/, int /*y0*/, int /*x1*/, int /*y1*/, int /*color*/) {}
  void fillRect(int /*x0*/, int /*y0*/, int /*x1*/, int /*y1*/, int /*color*/) {}
  // `points` holds x, y pairs.
  void drawPolygon(const int* /*points*/, int /*count*/, int /*color*/) {}
  void drawCircle(int /*x*/, int /*y*/, int /*radius*/, int /*color*/) {}
  // Writes the alignment record; the text itself is not written.
  void drawText(int x, int y, int verticalAlign, int horizontalAlign, int color, const char* text);

 private:
  R_A_WMFCreator wmf;
  int bigFontHeight = _defaultBigFontHeight;
};

#endif
