#include "output/r_a_bitmapsavebmp.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

const int kMaxRun = 126;      // bytes in one run, 252 pixels
const int kMaxLiteral = 124;  // bytes in one literal stretch
const int kMaxSame = 10;      // equal bytes a literal stretch may swallow
const size_t kChunkBytes = 64 * 1024;  // first room for the rows; most bytes handed on at once

void put16(unsigned char* p, uint32_t v) {
  p[0] = static_cast<unsigned char>(v);
  p[1] = static_cast<unsigned char>(v >> 8);
}

void put32(unsigned char* p, uint32_t v) {
  put16(p, v & 0xFFFF);
  put16(p + 2, v >> 16);
}

void putPair(unsigned char*& out, int first, int second) {
  *out++ = static_cast<unsigned char>(first);
  *out++ = static_cast<unsigned char>(second);
}

// Bytes equal to row[i], counting row[i], as long as at least 2 pixels
// stay behind the run.
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

void putLiteral(const unsigned char* bytes, int d, unsigned char*& out) {
  putPair(out, 0, 2 * d);
  std::memcpy(out, bytes, static_cast<size_t>(d));
  out += d;
  if (d % 2 != 0) *out++ = 0;  // a literal keeps the codes word-aligned
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

int R_A_BitmapSaveBMP::encodeRow(const unsigned char* row, int width, unsigned char* out) {
  unsigned char* const start = out;
  int i = 0;
  int rem = width;
  while (rem > 0) {
    const unsigned char b = row[i];
    if (rem <= 2) {
      putPair(out, rem, b);
      break;
    }
    int n = rem <= 4 ? 1 : runLength(row, i, rem);
    if (n < 3 && rem > 4) {
      n = literalLength(row, i, rem);
      if (n == 0) break;  // only equal pairs seen: the row ends early
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
  return static_cast<int>(out - start);
}

// The head holds the size of the rows, so they are encoded first, into
// memory, and go to the stream behind the head.
bool R_A_BitmapSaveBMP::write(R_OutputStream& out, int width, int height, int rowBytes,
                              const unsigned char* pixels) {
  assert(width > 0 && height > 0 && rowBytes >= (width + 1) / 2);
  // Room for one more row at its worst, every byte a pair, and its end code.
  const size_t worstRow = static_cast<size_t>(width) + 3;
  std::vector<unsigned char> data(kChunkBytes + worstRow);
  size_t length = 0;
  for (int y = height - 1; y >= 0; --y) {
    if (data.size() - length < worstRow) data.resize(2 * data.size());
    unsigned char* end = data.data() + length;
    end += encodeRow(pixels + static_cast<size_t>(y) * rowBytes, width, end);
    putPair(end, 0, y > 0 ? 0 : 1);  // end of line, end of bitmap after row 0
    length = static_cast<size_t>(end - data.data());
  }
  if (length > UINT32_MAX - _headSize) return false;  // the head's sizes are 32 bits
  unsigned char head[_headSize];
  fillHead(head, width, height, static_cast<uint32_t>(length));
  out.writeBytes(head, _headSize);
  for (size_t done = 0; done < length; done += kChunkBytes)
    out.writeBytes(data.data() + done, static_cast<int>(std::min(kChunkBytes, length - done)));
  return true;
}

void R_A_BitmapSaveBMP::fillHead(unsigned char* head, int width, int height, uint32_t dataSize) const {
  head[0] = 'B';
  head[1] = 'M';
  put32(head + 2, _headSize + dataSize);
  put32(head + 6, 0);
  put32(head + 10, _headSize);
  put32(head + 14, 40);
  put32(head + 18, static_cast<uint32_t>(width));
  put32(head + 22, static_cast<uint32_t>(height));  // positive: bottom-up
  put16(head + 26, 1);
  put16(head + 28, 4);
  put32(head + 30, 2);  // BI_RLE4
  put32(head + 34, dataSize);
  put32(head + 38, 75);  // the resolution fields count per metre, yet hold 75
  put32(head + 42, 75);
  put32(head + 46, 0);
  put32(head + 50, 0);
  std::memcpy(head + 54, palette, sizeof palette);
}
