// The bytes of a file, read through a block buffer of its own so that the
// per-byte path is a bounds check and a load. The end of the file shows only
// after one read past it, and that read yields the byte 255: callers see an
// empty file as the single byte 255, never as nothing. Lines start at 1 and
// count line feeds; past the largest int (a file of over 2 GB of line
// feeds) the count stays there. A path that is empty or does not open gives
// an input that cannot read at all.
#ifndef XML_R_XMLINPUTFILE_H
#define XML_R_XMLINPUTFILE_H

#include <climits>
#include <cstdio>

#include "xml/r_xmlinput.h"

class R_XMLInputFile final : public R_XMLInput {
 public:
  // Requires: path != null.
  explicit R_XMLInputFile(const char* path);
  ~R_XMLInputFile() override;

  // True while the file is open and no read has yet come back empty.
  bool canRead() override { return file != nullptr && !ended; }
  // Requires: canRead().
  int getChar() override {
    if (next == end && !refill()) {
      ended = true;
      return 255;  // what the end-of-file value reads as when taken as a byte
    }
    int c = *next++;
    if (c == '\n' && line < INT_MAX) ++line;
    return c;
  }
  int getLine() const override { return line; }

  // The bytes read ahead and not yet taken, [runBegin(), runEnd()), which a
  // reader may scan and take at once with takeRun instead of one getChar()
  // each; empty when the block is used up (getChar() then reads on).
  const unsigned char* runBegin() const { return next; }
  const unsigned char* runEnd() const { return end; }
  // Takes the bytes up to `to`, counting their line feeds.
  // Requires: runBegin() <= to <= runEnd().
  void takeRun(const unsigned char* to) {
    int feeds = 0;  // a local count, which the byte reads cannot alias
    for (const unsigned char* p = next; p < to; ++p) feeds += *p == '\n';
    line = feeds < INT_MAX - line ? line + feeds : INT_MAX;
    next = to;
  }

 private:
  bool refill();

  FILE* file;
  int line;
  bool ended;                   // a read came back empty: end of file or error
  unsigned char* block;         // owned, kBlockSize bytes
  const unsigned char* next;    // next unread byte in block
  const unsigned char* end;     // one past the last byte read into block
};

#endif
