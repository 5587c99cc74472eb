#include "output/r_a_bitmapsavebmp.h"

#include <cassert>
#include <cstring>

namespace {

const int kMaxRun = 126;      // bytes in one run, 252 pixels
const int kMaxLiteral = 124;  // bytes in one literal stretch
const int kMaxSame = 10;      // equal bytes a literal stretch may swallow

void put16(unsigned char* p, unsigned v) {
  p[0] = static_cast<unsigned char>(v);
  p[1] = static_cast<unsigned char>(v >> 8);
}

void put32(unsigned char* p, unsigned v) {
  put16(p, v & 0xFFFF);
  put16(p + 2, v >> 16);
}

void putPair(std::vector<unsigned char>* out, int first, int second) {
  out->push_back(static_cast<unsigned char>(first));
  out->push_back(static_cast<unsigned char>(second));
}

// Bytes equal to row[i], counting row[i], while at least 4 pixels stay
// behind the run.
int runLength(const unsigned char* row, int i, int rem) {
  int n = 1;
  for (int t = 2; n < kMaxRun && t < rem - 3 && row[i + n] == row[i]; t += 2) ++n;
  return n;
}

// Bytes from row[i] up to the last change of value, where a change is
// followed by more than kMaxSame equal bytes or lies more than kMaxLiteral
// bytes on. 0 when every byte walked equals row[i].
int literalLength(const unsigned char* row, int i, int rem) {
  int last = i;
  int same = 1;
  for (int k = i + 1, t = 2; t < rem - 2; ++k, t += 2) {
    if (row[k] == row[last]) {
      if (same > kMaxSame) break;
      ++same;
    } else {
      last = k;
      same = 1;
      if (k - i > kMaxLiteral) break;
    }
  }
  return last - i < kMaxLiteral ? last - i : kMaxLiteral;
}

void putLiteral(const unsigned char* bytes, int d, std::vector<unsigned char>* out) {
  putPair(out, 0, 2 * d);
  out->insert(out->end(), bytes, bytes + d);
  if (d % 2 != 0) out->push_back(0);  // a literal keeps the codes word-aligned
}

}  // namespace

R_A_BitmapSaveBMP::R_A_BitmapSaveBMP() { std::memset(palette, 0, sizeof palette); }

void R_A_BitmapSaveBMP::setColor(int index, int r, int g, int b) {
  assert(index >= 0 && index < _paletteSize);
  unsigned char* entry = palette + 4 * index;
  entry[0] = static_cast<unsigned char>(b);
  entry[1] = static_cast<unsigned char>(g);
  entry[2] = static_cast<unsigned char>(r);
  entry[3] = 0;
}

void R_A_BitmapSaveBMP::encodeRow(const unsigned char* row, int width,
                                  std::vector<unsigned char>* out) {
  int i = 0;
  int rem = width;
  while (rem > 0) {
    const unsigned char b = row[i];
    if (rem <= 2) {
      putPair(out, rem, b);
      return;
    }
    int n = rem <= 4 ? 1 : runLength(row, i, rem);
    if (n < 3 && rem > 4) {
      n = literalLength(row, i, rem);
      if (n == 0) return;  // only equal pairs left: the row ends early
      if (n >= 2) {
        putLiteral(row + i, n, out);
        i += n;
        rem -= 2 * n;
        continue;
      }
    }
    putPair(out, 2 * n, b);
    i += n;
    rem -= 2 * n;
  }
}

bool R_A_BitmapSaveBMP::write(FILE* file, int width, int height, int rowBytes,
                              const unsigned char* pixels) {
  assert(width > 0 && height > 0 && rowBytes >= (width + 1) / 2);
  std::vector<unsigned char> out(_headSize, 0);
  out.reserve(_headSize + static_cast<size_t>(height) * (rowBytes + 8));
  for (int y = height - 1; y >= 0; --y) {
    encodeRow(pixels + static_cast<size_t>(y) * rowBytes, width, &out);
    putPair(&out, 0, y > 0 ? 0 : 1);  // end of line, end of bitmap after row 0
  }
  unsigned char* head = out.data();
  head[0] = 'B';
  head[1] = 'M';
  put32(head + 2, static_cast<unsigned>(out.size()));
  put32(head + 10, _headSize);
  put32(head + 14, 40);
  put32(head + 18, static_cast<unsigned>(width));
  put32(head + 22, static_cast<unsigned>(height));  // positive: bottom-up
  put16(head + 26, 1);
  put16(head + 28, 4);
  put32(head + 30, 2);  // BI_RLE4
  put32(head + 34, static_cast<unsigned>(out.size() - _headSize));
  put32(head + 38, 75);
  put32(head + 42, 75);
  std::memcpy(head + 54, palette, sizeof palette);
  return std::fwrite(out.data(), 1, out.size(), file) == out.size();
}
