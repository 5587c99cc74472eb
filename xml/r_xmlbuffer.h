// The capture buffer of the XML reader. While reading, every byte put is
// appended, tags included, so a captured element keeps its nested tags
// unchanged. Whatever does not fit, and any NUL byte, marks the capture as
// overflowed, and an overflowed capture ends as the empty text: the size is
// a hard limit, not a truncation. Owns its text; not copyable.
#ifndef XML_R_XMLBUFFER_H
#define XML_R_XMLBUFFER_H

class R_XMLBuffer {
 public:
  // Holds up to `size` bytes. Requires: size > 0.
  explicit R_XMLBuffer(int size);
  ~R_XMLBuffer();
  R_XMLBuffer(const R_XMLBuffer&) = delete;
  R_XMLBuffer& operator=(const R_XMLBuffer&) = delete;

  bool isReading() const { return reading; }
  // The captured text after stopReading(). Requires: !isReading().
  const char* getText() const;

  // Empties the text and stops reading; clears the overflow.
  void clear();
  // Starts a new capture from the empty text.
  void startReading();
  // Appends c while reading. A NUL byte or a byte beyond the size marks the
  // capture as overflowed, and nothing more is taken.
  void put(int c) {
    if (!reading || overflow) return;
    if (c != 0 && length < size) {
      text[length++] = static_cast<char>(c);
    } else {
      overflow = true;
    }
  }
  // put() for each of `count` bytes, none of them NUL.
  void putRun(const unsigned char* bytes, int count);
  // Ends the capture. The text is cut at its last '<', which drops the end
  // tag that arrived through put() before the reader knew it was the end;
  // an overflowed capture becomes the empty text.
  void stopReading();

  // Normalises the whitespace of the captured text in place.
  // Requires: !isReading().
  void normalize();
  // Normalises `text` in place: every run of bytes 1 to 32 becomes one blank,
  // the ends are trimmed; bytes of 128 and above are text. Answers the new
  // length. Requires: text != null.
  static int normalize(char* text);

 private:
  char* text;  // owned, size + 2 bytes
  int length;
  int size;
  bool reading;
  bool overflow;
};

#endif
