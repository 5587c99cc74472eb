// A calendar date without time, in the years 1900 to 2100, or undefined (all
// three fields -1; there is no separate flag). Ages are differences of day
// numbers in years of 365.25 days, to three decimals.
//
// February has 29 days in every fourth year, 1900 and 2100 included: stored
// dates depend on it. The day number follows the Gregorian calendar, so on
// those two dates the two rules part.
#ifndef CORE_R_DATE_H
#define CORE_R_DATE_H

class R_InputStream;
class R_OutputStream;
class R_Number;

class R_Date {
 public:
  R_Date() : day(-1), month(-1), year(-1) {}
  explicit R_Date(const char* text) : day(-1), month(-1), year(-1) { parse(text); }
  R_Date(R_InputStream& stream, bool* ok) : day(-1), month(-1), year(-1) { load(stream, ok); }
  R_Date(int d, int m, int y) : day(d), month(m), year(fixYear(y)) {}

  // Month 1..12, a day valid for it, year 1900..2100.
  bool isDefined() const;
  // Requires: isDefined().
  int getDay() const;
  int getMonth() const;
  int getYear() const;
  // The Julian day number (1 January 2000 is 2451545). Requires: isDefined().
  int getDayNumber() const;

  void setDay(int value);    // Requires: 1..31.
  void setMonth(int value);  // Requires: 1..12.
  void setYear(int value);   // Requires: 0..2100; two-digit years are fixed.
  void setUndefined() { day = month = year = -1; }

  // Day, month and year in this order, separated by any non-digits: day and
  // month of one or two digits, the year of exactly two or four. Whatever
  // follows the year is ignored. On failure the date is undefined.
  bool parse(const char* text);
  // As parse, after normalising whitespace on a copy. Null gives false.
  bool setFromText(const char* text);

  // Copies `format` with %D %M %Y (zero-padded day, month, year), %d %m (no
  // padding) and %y (two-digit year); '%' and another byte give that byte.
  // The undefined date gives the empty text. Requires: both non-null, and
  // `format` does not end in a lone '%'.
  void format(char* buffer, const char* format) const;

  // `result` becomes the age at this date of a person born on `from`, in
  // years to three decimals; undefined if either date is undefined or this
  // date lies before `from`.
  void getAgeFrom(R_Number& result, const R_Date& from) const;

  bool operator==(const R_Date& other) const {
    return day == other.day && month == other.month && year == other.year;
  }

  // Type byte 32, day byte, month byte, year word; undefined as 0, 0, 0.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

  // 0..69 give 2000..2069, 70..99 give 1970..1999, other values below 1900
  // give -1, the rest stay.
  static int fixYear(int value);

 private:
  int day;
  int month;
  int year;
};

#endif
