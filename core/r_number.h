// A measured or calculated value that may be undefined. Undefined means "no
// value", not failure: it passes through arithmetic and formatting, and every
// layer above keeps it apart from 0. The flag alone says it; there is no
// sentinel and no NaN convention. Plain value, copyable.
#ifndef CORE_R_NUMBER_H
#define CORE_R_NUMBER_H

#include <cassert>

class R_InputStream;
class R_OutputStream;

class R_Number {
 public:
  R_Number() : value(0.0), defined(false) {}
  R_Number(double x) : value(x), defined(true) {}  // NOLINT: numbers convert freely
  explicit R_Number(const char* text) : value(0.0), defined(false) { parse(text); }
  R_Number(R_InputStream& stream, bool* ok) : value(0.0), defined(false) { load(stream, ok); }

  bool isDefined() const { return defined; }
  // Requires: isDefined().
  double getValue() const {
    assert(defined);
    return value;
  }
  // Truncated towards zero; values beyond the int range give INT_MIN or
  // INT_MAX, NaN gives 0. Requires: isDefined().
  int getInt() const;
  // True unless the value equals 0.0. Requires: isDefined().
  bool getBool() const;
  bool getBoolOrFalse() const { return defined && value != 0.0; }
  // True only for a defined number equal to `x`.
  bool isEqual(double x) const { return defined && value == x; }

  void set(double x) {
    value = x;
    defined = true;
  }
  void setBool(bool b) { set(b ? 1.0 : 0.0); }
  // Clears the flag; the old value stays in memory but must not be read.
  void setUndefined() { defined = false; }

  // Reads the number at the start of `text`: a leading digit, '-', '.' or ','
  // reads by atof of the first 64 bytes (',' counting as '.'), so "12abc" is
  // 12 and "-" is 0. "?" leaves the number undefined and answers true; any
  // other text leaves it undefined and answers false. Requires: text != null.
  bool parse(const char* text);
  // As parse, after normalising whitespace and turning ',' into '.' on a
  // copy: the entry for element text. A null text gives false.
  bool setFromText(const char* text);

  // floor(value / precision + 0.5) * precision: halves round upwards, also
  // below zero. Requires: isDefined(), precision > 0.
  void round(double precision);

  // The texts need buffers of at least 64 bytes.
  // "%g", or "?" for the undefined number.
  void toText(char* buffer) const;
  // "%.*f" with decimals clamped to 0..4; the empty text if undefined.
  void format(int decimals, char* buffer) const;
  // Rounds this number to `precision` and prints it with as many decimals as
  // the precision needs (ceil(-log10(precision)), at least 0).
  void formatToPrecision(double precision, char* buffer);

  // Type byte 3, a flag byte, and for a defined number the double. A wrong
  // type byte sets *ok false. A stream that ends inside the value leaves *ok
  // alone (the next block will fail) and the number undefined.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  double value;
  bool defined;
};

#endif
