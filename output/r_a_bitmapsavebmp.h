// Writes a Windows bitmap with 4-bit run-length compression (BI_RLE4):
// a 118-byte head (file header, 40-byte info header with 75 in both
// resolution fields, the 16-entry palette), then the rows bottom-up.
//
// The row encoder works on whole bytes, that is on pairs of pixels, and
// keeps two oddities that images already made have. A run always leaves the
// last pixels of a row (at least 2) to codes of their own. And when 5 to 7
// pixels are left, the encoder looks at all but the last of their bytes; if
// those are equal the row simply ends there, so a reader shows the rest in
// colour index 0 ("ff ff f0" at the end of a row is lost, and so is a whole
// uniform row of 5 to 7 pixels).
#ifndef OUTPUT_R_A_BITMAPSAVEBMP_H
#define OUTPUT_R_A_BITMAPSAVEBMP_H

#include <cstdint>

#include "output/r_a_bitmapsave.h"

class R_A_BitmapSaveBMP : public R_A_BitmapSave {
 public:
  static const int _headSize = 118;  // offset of the pixel data

  R_A_BitmapSaveBMP();

  bool write(R_OutputStream& out, int width, int height, int rowBytes,
             const unsigned char* pixels) override;
  void setColor(int index, int r, int g, int b) override;

  // Writes the codes of one row of `width` pixels, without its end code, to
  // `out` and answers their count, which is at most width + 1.
  static int encodeRow(const unsigned char* row, int width, unsigned char* out);

 private:
  void fillHead(unsigned char* head, int width, int height, uint32_t dataSize) const;

  unsigned char palette[_paletteSize * 4];  // blue, green, red, 0 per entry
};

#endif
