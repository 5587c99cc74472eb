#include "output/r_a_bitmapsavepcx.h"

#include <cassert>
#include <cstring>
#include <vector>

namespace {

const int kMaxRun = 63;
const int kRunMark = 192;  // bytes from here on are run counts
const int kPaletteOffset = 16;
const size_t kChunkBytes = 64 * 1024;

void put16(unsigned char* p, int v) {
  p[0] = static_cast<unsigned char>(v);
  p[1] = static_cast<unsigned char>(v >> 8);
}

}  // namespace

R_A_BitmapSavePCX::R_A_BitmapSavePCX() { std::memset(header, 0, sizeof header); }

void R_A_BitmapSavePCX::setColor(int index, int r, int g, int b) {
  assert(index >= 0 && index < _paletteSize);
  unsigned char* entry = header + kPaletteOffset + 3 * index;
  entry[0] = static_cast<unsigned char>(r);
  entry[1] = static_cast<unsigned char>(g);
  entry[2] = static_cast<unsigned char>(b);
}

int R_A_BitmapSavePCX::encodeRow(const unsigned char* row, int rowBytes, unsigned char* out) {
  unsigned char* const start = out;
  int i = 0;
  while (i < rowBytes) {
    const unsigned char b = row[i];
    int n = 1;
    while (n < kMaxRun && i + n < rowBytes && row[i + n] == b) ++n;
    if (n > 1 || b >= kRunMark) *out++ = static_cast<unsigned char>(kRunMark + n);
    *out++ = b;
    i += n;
  }
  return static_cast<int>(out - start);
}

bool R_A_BitmapSavePCX::write(R_OutputStream& out, int width, int height, int rowBytes,
                              const unsigned char* pixels) {
  assert(width > 0 && height > 0 && width <= 65535 && height <= 65535 && rowBytes <= 65535);
  header[0] = 10;  // maker
  header[1] = 5;   // version
  header[2] = 1;   // run-length encoded
  header[3] = 4;   // bits per pixel
  put16(header + 4, 0);
  put16(header + 6, 0);
  put16(header + 8, width - 1);
  put16(header + 10, height - 1);
  put16(header + 12, 75);
  put16(header + 14, 75);
  header[64] = 0;
  header[65] = 1;  // one plane
  put16(header + 66, rowBytes);
  put16(header + 68, 1);  // colour palette
  out.writeBytes(header, _headerSize);
  // Rows gather in a chunk with room for one more row at its worst, every
  // byte with a count of its own.
  std::vector<unsigned char> chunk(kChunkBytes + 2 * static_cast<size_t>(rowBytes));
  size_t length = 0;
  for (int y = 0; y < height; ++y) {
    length += encodeRow(pixels + static_cast<size_t>(y) * rowBytes, rowBytes, chunk.data() + length);
    if (length >= kChunkBytes || y == height - 1) {
      out.writeBytes(chunk.data(), static_cast<int>(length));
      length = 0;
    }
  }
  return true;
}
