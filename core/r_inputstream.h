// Abstract source of bytes for the binary forms. Once a read runs past the
// end the stream has failed for good: every later read answers -1 or 0, and
// the failure shows in isOK() and in the `ok` flags of the loaders above.
#ifndef CORE_R_INPUTSTREAM_H
#define CORE_R_INPUTSTREAM_H

class R_InputStream {
 public:
  R_InputStream() : failed(false), next(nullptr), end(nullptr) {}
  virtual ~R_InputStream() {}
  R_InputStream(const R_InputStream&) = delete;
  R_InputStream& operator=(const R_InputStream&) = delete;

  bool isOK() const { return !failed; }
  void setFailed() { failed = true; }

  // False on a failed stream, reading nothing. Otherwise reads one byte and
  // answers whether it equals `type`; a mismatch does not fail the stream.
  bool checkType(int type);
  // The next byte as 0 to 255, or -1 on a failed stream or at the end.
  int readByte() {
    if (failed) return -1;
    return next < end ? *next++ : read();
  }
  // Reads `count` bytes; after the end the rest of `buffer` is zeroed.
  void readBytes(unsigned char* buffer, int count);
  // Little-endian values; 0 if the stream failed on the way.
  double readDouble();
  int readInt32();
  // Low byte, then high byte. Sets the failure and answers 0 at the end.
  int readWord();

 protected:
  // Next byte as 0 to 255; at the end sets `failed` and answers -1. Called
  // only when the window below is empty.
  virtual int read() = 0;
  bool failed;
  // A window of bytes that a kind of stream has ready in memory: readByte
  // takes them from here without a call of read(). Empty (both null) for a
  // kind that offers none.
  const unsigned char* next;
  const unsigned char* end;
};

#endif
