// The writer of one image file from a canvas of 4-bit colour indices. A
// writer holds the 16-entry palette of its format, black on a new writer, and
// turns rows into its file format. R_A_BitmapDraw::save hands it the stream
// of the file being written; the writer never opens, closes or names files
// itself, and whether the bytes arrived is the stream's to tell.
#ifndef OUTPUT_R_A_BITMAPSAVE_H
#define OUTPUT_R_A_BITMAPSAVE_H

#include "core/r_outputstream.h"

class R_A_BitmapSave {
 public:
  static const int _paletteSize = 16;

  R_A_BitmapSave() = default;
  virtual ~R_A_BitmapSave();
  R_A_BitmapSave(const R_A_BitmapSave&) = delete;
  R_A_BitmapSave& operator=(const R_A_BitmapSave&) = delete;

  // Writes the whole image to `out`. Row y of the canvas is the `rowBytes`
  // bytes at pixels + y * rowBytes, two pixels a byte, the even x in the
  // high half. Answers false, having written nothing, when the format
  // cannot hold the image.
  // Requires: width and height above 0, rowBytes at least (width + 1) / 2.
  virtual bool write(R_OutputStream& out, int width, int height, int rowBytes,
                     const unsigned char* pixels) = 0;
  // Sets palette entry `index` (0 to 15) to the low 8 bits of r, g, b.
  virtual void setColor(int index, int r, int g, int b) = 0;

  // Sets palette entry `index` from a colour name (R_A_ColorName). An
  // unknown name leaves the entry as it was and answers false.
  // Requires: `name` non-null, index 0 to 15.
  bool setColorName(int index, const char* name);
};

#endif
