// A plain signed 32-bit integer with the text and stream conventions of the
// other values; used for counts and small codes in the stored forms.
#ifndef CORE_R_INTEGER_H
#define CORE_R_INTEGER_H

class R_InputStream;
class R_OutputStream;

class R_Integer {
 public:
  R_Integer() : value(0) {}
  R_Integer(int x) : value(x) {}  // NOLINT: integers convert freely
  explicit R_Integer(const char* text) : value(0) { setFromText(text); }
  R_Integer(R_InputStream& stream, bool* ok) : value(0) { load(stream, ok); }

  int get() const { return value; }
  void set(int x) { value = x; }
  // atol of the text; always answers true.
  bool setFromText(const char* text);

  bool operator==(const R_Integer& other) const { return value == other.value; }
  bool operator<=(const R_Integer& other) const { return value <= other.value; }
  bool operator>(const R_Integer& other) const { return value > other.value; }
  R_Integer& operator+=(int x) {
    value += x;
    return *this;
  }
  R_Integer& operator|=(int mask) {
    value |= mask;
    return *this;
  }
  // True when any bit of `mask` is set.
  bool hasBits(int mask) const { return (value & mask) != 0; }

  // "%ld"; the buffer holds at least 64 bytes.
  void toText(char* buffer) const;

  // A wrong type byte or a failed stream sets *ok false and the value 0.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  int value;
};

#endif
