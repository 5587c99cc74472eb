// The text value of the system: an owned byte string in Windows-1250 that
// knows its length. The empty string is the null form (no allocation); every
// setter turns an empty input into it, and get() answers "" for it, so a
// caller never sees a null pointer. Copying allocates; there is no sharing.
#ifndef CORE_R_STRING_H
#define CORE_R_STRING_H

class R_InputStream;
class R_OutputStream;

class R_String {
 public:
  R_String() : text(nullptr), length(0) {}
  R_String(const R_String& other);
  R_String(const char* source);  // NOLINT: a null source gives the empty string
  R_String(R_InputStream& stream, bool* ok);
  ~R_String() { clear(); }

  R_String& operator=(const R_String& other);
  R_String& operator=(const char* source);
  // Both empty: equal. One empty: different. Else the bytes decide.
  bool operator==(const R_String& other) const;
  bool operator!=(const R_String& other) const { return !(*this == other); }

  const char* get() const { return text ? text : ""; }
  operator const char*() const { return get(); }  // NOLINT
  int getLength() const { return length; }
  bool isEmpty() const { return length == 0; }
  // The byte at i, 0 at or past the end. Requires: i >= 0.
  char charAt(int i) const;
  // Ignored outside 0 to length-1.
  void setChar(int i, char c);

  void clear();
  // Copies `source`; a null or empty one leaves the null form and answers
  // `result_if_empty`.
  bool set(const char* source, bool result_if_empty = true);
  // As set, with whitespace normalised: runs of bytes 1..32 become one blank,
  // both ends are trimmed. How element text enters the system.
  bool setNormalized(const char* source, bool result_if_empty = true);

  // Forward search with ASCII letters compared as upper case. On a mismatch
  // the pattern restarts and the text moves on without a second look at that
  // byte, so "ab" is not found in "aab". An empty pattern is always found; the
  // empty string contains nothing.
  bool contains(const char* pattern) const;
  void toLower();  // ASCII letters only
  void toUpper();  // ASCII letters only

  // Type byte 1, length as a 16-bit word, the bytes without terminator.
  void load(R_InputStream& stream, bool* ok);
  // Texts over 65535 bytes, which nothing in the system produces, are stored
  // cut to 65535 bytes.
  void save(R_OutputStream& stream) const;

 private:
  void adopt(char* owned, int owned_length);

  char* text;
  int length;
};

#endif
