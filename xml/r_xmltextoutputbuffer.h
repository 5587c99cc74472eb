// XML text written into a caller's buffer, all on one line: no line breaks
// and no indentation. The buffer holds at most maxsize-1 bytes and stays
// terminated; what does not fit is dropped and marks the output as
// overflowed, keeping the text stored so far. Borrows the buffer.
#ifndef XML_R_XMLTEXTOUTPUTBUFFER_H
#define XML_R_XMLTEXTOUTPUTBUFFER_H

#include "xml/r_xmltextoutput.h"

class R_XMLTextOutputBuffer : public R_XMLTextOutput {
 public:
  // Leaves `buf` as the empty text. Requires: buf != null, maxsize > 0, and
  // buf holds maxsize bytes.
  R_XMLTextOutputBuffer(char* buf, int maxsize);

  // Bytes stored, without the terminator.
  int getCount() const { return count; }
  // Nothing was dropped.
  bool isOK() const { return !overflow; }

 protected:
  void putRaw(char c) override;

 private:
  char* buf;  // borrowed
  int maxsize;
  int count;
  bool overflow;
};

#endif
