// The query text of a page link, written into a caller's buffer of fixed
// size: optionally a page and '?', then name=value pairs, each followed by
// '&'. Names are written as they are; in values a blank becomes '+', the
// safe bytes (ASCII letters, digits and any of _-.!@#$*()[]{};/,) stay, and
// any other byte becomes '%' and two upper-case hex digits. The buffer is
// borrowed and always terminated; what does not fit is cut silently, a
// value never in the middle of a '%' triple.
#ifndef PROBAND_R_A_QUERYTEXT_H
#define PROBAND_R_A_QUERYTEXT_H

class R_Date;
class R_Number;

class R_A_QueryText {
 public:
  // Leaves the buffer empty. Requires: buffer != null, size > 0.
  R_A_QueryText(char* buffer, int size);

  // The page path and '?'; call it first.
  void setPage(const char* page);
  // Requires: name != null; a null value writes as empty.
  void add(const char* name, const char* value);
  // The number's text form ("%g").
  void addNumber(const char* name, const R_Number& value);
  // The date as day.month.year without leading zeros.
  void addDate(const char* name, const R_Date& date);

  int getLength() const { return length; }
  static bool isSafe(unsigned char c);
  // The text of byte `c` in a query value, as above, into `out`; answers
  // its length, 1 or 3.
  static int encodeValueByte(unsigned char c, char out[3]);

 private:
  void put(char c);
  void putText(const char* text);
  void putValue(const char* value);

  char* buffer;  // borrowed
  int size;
  int length;
};

#endif
