// XML text written into a byte stream, with the line feeds and indentation
// of the file kind: what a file writer puts through R_SafeFile. Borrows the
// stream, which tells by its own means whether the bytes arrived.
#ifndef XML_R_XMLTEXTOUTPUTSTREAM_H
#define XML_R_XMLTEXTOUTPUTSTREAM_H

#include "xml/r_xmltextoutput.h"

class R_OutputStream;

class R_XMLTextOutputStream : public R_XMLTextOutput {
 public:
  explicit R_XMLTextOutputStream(R_OutputStream& target) : stream(target) {}

 protected:
  void newLine() override;
  void indent(int count) override;
  void putRaw(char c) override;

 private:
  R_OutputStream& stream;  // borrowed
};

#endif
