// A source of bytes for the XML reader. The reader asks canRead() before
// every byte and getLine() before it reads the byte, so that a message names
// the line on which the byte in hand began. Not copyable.
#ifndef XML_R_XMLINPUT_H
#define XML_R_XMLINPUT_H

class R_XMLInput {
 public:
  R_XMLInput() = default;
  virtual ~R_XMLInput();
  R_XMLInput(const R_XMLInput&) = delete;
  R_XMLInput& operator=(const R_XMLInput&) = delete;

  // Whether another getChar() is allowed.
  virtual bool canRead() = 0;
  // The next byte as 0 to 255.
  virtual int getChar() = 0;
  // The line of the next byte; 0 for inputs that do not count lines.
  virtual int getLine() const = 0;
};

#endif
