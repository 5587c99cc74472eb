// Writes a PCX file, version 5, with one 4-bit plane: a 128-byte header
// holding the palette, then every row first to last with all its row bytes,
// run-length encoded. Runs of up to 63 equal bytes never cross a row end; a
// single byte below 192 stands for itself, anything else is written as the
// two bytes 192 + length, value.
#ifndef OUTPUT_R_A_BITMAPSAVEPCX_H
#define OUTPUT_R_A_BITMAPSAVEPCX_H


#include "output/r_a_bitmapsave.h"

class R_A_BitmapSavePCX : public R_A_BitmapSave {
 public:
  static const int _headerSize = 128;

  R_A_BitmapSavePCX();

  // The header takes width - 1 and height - 1 in 16 bits.
  // Requires, besides the base's: width, height, rowBytes at most 65535.
  bool write(R_OutputStream& out, int width, int height, int rowBytes,
             const unsigned char* pixels) override;
  void setColor(int index, int r, int g, int b) override;

  // Writes the encoded bytes of one row of `rowBytes` bytes to `out` and
  // answers their count, which is at most 2 * rowBytes.
  static int encodeRow(const unsigned char* row, int rowBytes, unsigned char* out);

 private:
  unsigned char header[_headerSize];  // the palette lives at offset 16
};

#endif
