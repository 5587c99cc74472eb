// Abstract sink of bytes for the binary forms. The writers do not report:
// each kind tells by its own isOK() whether everything arrived.
#ifndef CORE_R_OUTPUTSTREAM_H
#define CORE_R_OUTPUTSTREAM_H

class R_OutputStream {
 public:
  R_OutputStream() {}
  virtual ~R_OutputStream() {}
  R_OutputStream(const R_OutputStream&) = delete;
  R_OutputStream& operator=(const R_OutputStream&) = delete;

  virtual void put(int byte) = 0;

  // Byte by byte through put(); a stream with a buffer of its own may take
  // the whole block at once.
  virtual void writeBytes(const unsigned char* buffer, int count);
  void writeDouble(double x);  // 8 bytes, little-endian
  void writeInt32(int x);      // 4 bytes, little-endian
  void writeWord(int x);       // low byte, then high byte; upper bits are lost
};

#endif
