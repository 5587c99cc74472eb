// One line of a reference: the distribution of the measured value at one
// point (one x of followed data, or the single line of anamnestic data), in
// one of three forms:
// - typeSD: the mean (element `x`) and the SD (element `sd`);
// - typeLogSD: the median and the SD of the natural logarithm;
// - typePercentiles: the values at the percentiles of the reference's list,
//   one number per list item, in the list's order.
// A number may be undefined (a line between two lines where either is
// undefined, or a binary form that stores it so); every conversion then
// answers undefined rather than reading it. The line owns its numbers and
// borrows the percentile list, which must outlive it. Not copyable.
#ifndef KNOWLEDGE_R_REFDATALINE_H
#define KNOWLEDGE_R_REFDATALINE_H

#include "core/r_number.h"
#include "xml/r_xmlrecipient.h"

class R_InputStream;
class R_LinearRegression;
class R_OutputStream;
class R_RefDataPercentiles;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XMLTextOutput;

class R_RefDataLine : public R_XMLRecipient {
 public:
  // The data types, in the numbering of the stored properties' order.
  enum Type { typeSD = 0, typeLogSD = 1, typePercentiles = 2 };

  // A line of undefined numbers: 2 for typeSD and typeLogSD, one per item of
  // `PTABLE` for typePercentiles. Requires: type in 0 to 2; `PTABLE` non-null
  // exactly for typePercentiles.
  R_RefDataLine(int type, const R_RefDataPercentiles* PTABLE);
  // The line at `x` between line L (at Lx) and line R (at Rx), each number
  // interpolated on its own. A number is undefined unless x, Lx and Rx are
  // defined, Lx differs from Rx, and both lines hold that number. Extrapolates
  // for an x outside Lx to Rx. Requires: L and R of the same type and list.
  R_RefDataLine(const R_RefDataLine& L, const R_Number& Lx, const R_RefDataLine& R,
                const R_Number& Rx, const R_Number& x);
  ~R_RefDataLine() override;
  R_RefDataLine(const R_RefDataLine&) = delete;
  R_RefDataLine& operator=(const R_RefDataLine&) = delete;

  int getType() const { return type; }
  int getCount() const { return count; }
  // Number `index`: mean then SD, or the value at percentile `index`.
  // Requires: 0 <= index < getCount().
  const R_Number& getNumber(int index) const;
  // Requires: a percentile line, 0 <= index < getCount().
  const R_Number& getPercentileValue(int index) const;

  // The SD score of `value` on this line; undefined when there is none,
  // including every score beyond -6 to 6 (never clamped to the limit).
  // Percentile lines interpolate linearly between the two percentiles that
  // bracket the value, in SD scale, and extrapolate through the two outer
  // ones beyond the table.
  void getSD(const R_Number& value, R_Number& result) const;
  // The value at SD score `sd`, without a limit on the result.
  void getValue(const R_Number& sd, R_Number& result) const;
  // The same answers as getSD and getValue of the line that the
  // interpolating constructor builds between L and R at the point `at`
  // describes, computed without building it.
  static void getSDBetween(const R_RefDataLine& L, const R_RefDataLine& R,
                           const R_LinearRegression& at, const R_Number& value, R_Number& result);
  static void getValueBetween(const R_RefDataLine& L, const R_RefDataLine& R,
                              const R_LinearRegression& at, const R_Number& sd, R_Number& result);

  // Fills the numbers from the inner text of a line: `x` and `sd`, or `perc`
  // with one number per percentile separated by whitespace. False, with the
  // reasons reported, for the wrong elements for the type, a number missing
  // or undefined, or an SD of 0 (a negative SD is accepted).
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output) const;

  // Type byte 16 and getCount() numbers; the count is not stored, it follows
  // from the type and the percentile list. A stream that ends early clears
  // *ok.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  const char* receivePercentiles(const char* text);
  bool checkLoaded(R_XMLParser& parser) const;

  R_Number* val;  // owned, `count` numbers
  int count;
  int type;
  const R_RefDataPercentiles* PERCENTILES;  // borrowed; null unless typePercentiles
};

#endif
