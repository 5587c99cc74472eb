#include "knowledge/r_refdataline.h"

#include <cassert>
#include <cmath>
#include <cstring>
#include <string>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_string.h"
#include "core/r_typecodes.h"
#include "formula/r_linearregression.h"
#include "knowledge/r_knowledgexml.h"
#include "knowledge/r_probability.h"
#include "knowledge/r_refdatapercentiles.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"x", "sd", "perc"};
enum { codeX, codeSD, codePerc };

// The numbers of a stored line (or of the percentiles' SD table).
class StoredNumbers {
 public:
  explicit StoredNumbers(const R_Number* stored) : numbers(stored) {}
  // False for an undefined number, which is then not read.
  bool get(int index, double* x) const {
    if (!numbers[index].isDefined()) return false;
    *x = numbers[index].getValue();
    return true;
  }

 private:
  const R_Number* numbers;
};

// The numbers of the line between two stored lines, each computed where it
// is read, exactly as the interpolating constructor computes it.
class InterpolatedNumbers {
 public:
  InterpolatedNumbers(const R_Number* left_line, const R_Number* right_line,
                      const R_LinearRegression& position)
      : left(left_line), right(right_line), at(position) {}
  bool get(int index, double* x) const {
    if (!left[index].isDefined() || !right[index].isDefined()) return false;
    *x = at.get(left[index].getValue(), right[index].getValue());
    return true;
  }

 private:
  const R_Number* left;
  const R_Number* right;
  const R_LinearRegression& at;
};

// The bracket of v among the n numbers of `a`: `low` is the first index of
// the largest number not above v, `high` the first index of the smallest
// number not below v; the numbers need not be sorted. Beyond either end the
// two outermost distinct numbers are taken, so that the caller extrapolates.
// Undefined numbers are skipped in every walk, also in the second search
// beyond the ends: an SD table may hold undefined scores (for the
// percentiles 0 and 100), and these never count as a number. Answers false
// when no bracket exists: no defined number, or one distinct number that v
// does not equal.
template <class Numbers>
class Bracket {
 public:
  Bracket(const Numbers& numbers, int number_count)
      : a(numbers), n(number_count), low(-1), high(-1), low_x(0), high_x(0) {}

  bool find(double v) {
    walk(v);
    if (low >= 0 && high < 0) {
      high = low;
      high_x = low_x;
      findBelow(high_x);
    } else if (high >= 0 && low < 0) {
      low = high;
      low_x = high_x;
      findAbove(low_x);
    }
    return low >= 0 && high >= 0;
  }
  int getLow() const { return low; }
  int getHigh() const { return high; }
  double getLowX() const { return low_x; }
  double getHighX() const { return high_x; }

 private:
  void walk(double v) {
    double x;
    for (int i = 0; i < n; ++i) {
      if (!a.get(i, &x)) continue;
      if (x >= v && (high < 0 || high_x > x)) take(&high, &high_x, i, x);
      if (v >= x && (low < 0 || x > low_x)) take(&low, &low_x, i, x);
    }
  }
  // The first index of the largest number strictly below `limit`.
  void findBelow(double limit) {
    low = -1;
    double x;
    for (int i = 0; i < n; ++i) {
      if (a.get(i, &x) && x < limit && (low < 0 || x > low_x)) take(&low, &low_x, i, x);
    }
  }
  // The first index of the smallest number strictly above `limit`.
  void findAbove(double limit) {
    high = -1;
    double x;
    for (int i = 0; i < n; ++i) {
      if (a.get(i, &x) && x > limit && (high < 0 || high_x > x)) take(&high, &high_x, i, x);
    }
  }
  static void take(int* index, double* value, int i, double x) {
    *index = i;
    *value = x;
  }

  const Numbers& a;
  int n;
  int low, high;
  double low_x, high_x;  // the numbers at low and high, valid when those are set
};

// An SD score beyond the range has no value at all, not the limit's.
void keepInRange(R_Number& result) {
  if (result.isDefined() && !R_Probability::isSDInRange(result)) result.setUndefined();
}

template <class Numbers>
void sdFromMean(const Numbers& line, double value, R_Number& result) {
  double mean, sd;
  if (line.get(0, &mean) && line.get(1, &sd) && sd != 0) result.set((value - mean) / sd);
}

// The logarithm of a value of the other sign than the median has no value;
// its NaN fails the range test.
template <class Numbers>
void sdFromLogMean(const Numbers& line, double value, R_Number& result) {
  double median, sd;
  if (!line.get(0, &median) || !line.get(1, &sd)) return;
  if (sd != 0 && median != 0 && value != 0) result.set(log(value / median) / sd);
}

template <class Numbers>
void sdFromPercentiles(const Numbers& line, int count, const R_Number* sd_table, double value,
                       R_Number& result) {
  Bracket<Numbers> bracket(line, count);
  if (!bracket.find(value)) return;
  const R_Number& low_sd = sd_table[bracket.getLow()];
  const R_Number& high_sd = sd_table[bracket.getHigh()];
  if (bracket.getLow() == bracket.getHigh()) {
    result = low_sd;
  } else if (low_sd.isDefined() && high_sd.isDefined()) {
    R_LinearRegression at(bracket.getLowX(), bracket.getHighX(), value);
    result.set(at.get(low_sd.getValue(), high_sd.getValue()));
  }
}

template <class Numbers>
void valueFromMean(const Numbers& line, double sd_score, R_Number& result) {
  double mean, sd;
  if (line.get(0, &mean) && line.get(1, &sd)) result.set(mean + sd_score * sd);
}

template <class Numbers>
void valueFromLogMean(const Numbers& line, double sd_score, R_Number& result) {
  double median, sd;
  if (line.get(0, &median) && line.get(1, &sd)) result.set(exp(sd_score * sd) * median);
}

template <class Numbers>
void valueFromPercentiles(const Numbers& line, int count, const R_Number* sd_table, double sd_score,
                          R_Number& result) {
  StoredNumbers scores(sd_table);
  Bracket<StoredNumbers> bracket(scores, count);
  if (!bracket.find(sd_score)) return;
  double low_value, high_value;
  bool has_low = line.get(bracket.getLow(), &low_value);
  bool has_high = line.get(bracket.getHigh(), &high_value);
  if (bracket.getLow() == bracket.getHigh()) {
    if (has_low) result.set(low_value);
  } else if (has_low && has_high) {
    R_LinearRegression at(bracket.getLowX(), bracket.getHighX(), sd_score);
    result.set(at.get(low_value, high_value));
  }
}

// The percentile list's SD scores; null while there are none, and then a
// percentile line has no answers.
const R_Number* sdTableOf(const R_RefDataPercentiles* percentiles) {
  return percentiles ? percentiles->getSDTable() : nullptr;
}

template <class Numbers>
void sdOf(int type, const Numbers& line, int count, const R_RefDataPercentiles* percentiles,
          const R_Number& value, R_Number& result) {
  result.setUndefined();
  if (!value.isDefined()) return;
  double v = value.getValue();
  if (type == R_RefDataLine::typeSD) {
    sdFromMean(line, v, result);
  } else if (type == R_RefDataLine::typeLogSD) {
    sdFromLogMean(line, v, result);
  } else if (const R_Number* sd_table = sdTableOf(percentiles)) {
    sdFromPercentiles(line, count, sd_table, v, result);
  }
  keepInRange(result);
}

template <class Numbers>
void valueOf(int type, const Numbers& line, int count, const R_RefDataPercentiles* percentiles,
             const R_Number& sd, R_Number& result) {
  result.setUndefined();
  if (!sd.isDefined()) return;
  double s = sd.getValue();
  if (type == R_RefDataLine::typeSD) {
    valueFromMean(line, s, result);
  } else if (type == R_RefDataLine::typeLogSD) {
    valueFromLogMean(line, s, result);
  } else if (const R_Number* sd_table = sdTableOf(percentiles)) {
    valueFromPercentiles(line, count, sd_table, s, result);
  }
}

}  // namespace

R_RefDataLine::R_RefDataLine(int data_type, const R_RefDataPercentiles* PTABLE)
    : val(nullptr), count(data_type == typePercentiles ? PTABLE->getN() : 2), type(data_type),
      PERCENTILES(PTABLE) {
  assert(type >= typeSD && type <= typePercentiles);
  assert((type == typePercentiles) == (PTABLE != nullptr));
  val = new R_Number[count > 0 ? count : 1];
}

R_RefDataLine::R_RefDataLine(const R_RefDataLine& L, const R_Number& Lx, const R_RefDataLine& R,
                             const R_Number& Rx, const R_Number& x)
    : R_RefDataLine(L.type, L.PERCENTILES) {
  assert(L.type == R.type && L.count == R.count);
  if (!x.isDefined() || !Lx.isDefined() || !Rx.isDefined()) return;
  if (Lx.getValue() == Rx.getValue()) return;
  R_LinearRegression at(Lx.getValue(), Rx.getValue(), x.getValue());
  InterpolatedNumbers between(L.val, R.val, at);
  double number;
  for (int i = 0; i < count; ++i) {
    if (between.get(i, &number)) val[i].set(number);
  }
}

R_RefDataLine::~R_RefDataLine() { delete[] val; }

const R_Number& R_RefDataLine::getNumber(int index) const {
  assert(index >= 0 && index < count);
  return val[index];
}

const R_Number& R_RefDataLine::getPercentileValue(int index) const {
  assert(type == typePercentiles);
  return getNumber(index);
}

void R_RefDataLine::getSD(const R_Number& value, R_Number& result) const {
  sdOf(type, StoredNumbers(val), count, PERCENTILES, value, result);
}

void R_RefDataLine::getValue(const R_Number& sd, R_Number& result) const {
  valueOf(type, StoredNumbers(val), count, PERCENTILES, sd, result);
}

void R_RefDataLine::getSDBetween(const R_RefDataLine& L, const R_RefDataLine& R,
                                 const R_LinearRegression& at, const R_Number& value,
                                 R_Number& result) {
  assert(L.type == R.type && L.count == R.count);
  sdOf(L.type, InterpolatedNumbers(L.val, R.val, at), L.count, L.PERCENTILES, value, result);
}

void R_RefDataLine::getValueBetween(const R_RefDataLine& L, const R_RefDataLine& R,
                                    const R_LinearRegression& at, const R_Number& sd,
                                    R_Number& result) {
  assert(L.type == R.type && L.count == R.count);
  valueOf(L.type, InterpolatedNumbers(L.val, R.val, at), L.count, L.PERCENTILES, sd, result);
}

bool R_RefDataLine::loadXML(const char* textXML, R_XMLErrorReporter* reporter) {
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  ok = checkLoaded(parser) && ok;
  if (!ok) parser.report("Error while processing reference data item.");
  return ok;
}

const char* R_RefDataLine::receive(int code, const char* text, const R_XMLParameters&) {
  if (code == codePerc) return receivePercentiles(text);
  if (code != codeX && code != codeSD) return "unexpected code in data";
  if (type == typePercentiles) return "data should be in percentiles";
  if (!val[code].setFromText(text)) return code == codeX ? "x value error" : "sd value error";
  return nullptr;
}

// One number per percentile, separated by whitespace; a word that is no
// number leaves its place undefined, which the checks after the parse
// refuse.
const char* R_RefDataLine::receivePercentiles(const char* text) {
  R_String normalized;
  normalized.setNormalized(text);
  std::string words(normalized.get());
  int word_count = words.empty() ? 0 : 1;
  for (char& c : words) {
    if (c != ' ') continue;
    c = 0;
    ++word_count;
  }
  if (type != typePercentiles || word_count != count) return "percentile values error";
  const char* word = words.c_str();
  for (int i = 0; i < count; ++i, word += strlen(word) + 1) val[i].parse(word);
  return nullptr;
}

// Runs after every parse, also a failed one, so that an undefined number is
// named even when an element before it was refused.
bool R_RefDataLine::checkLoaded(R_XMLParser& parser) const {
  for (int i = 0; i < count; ++i) {
    if (val[i].isDefined()) continue;
    parser.report("Undefined numeric value in line.");
    return false;
  }
  if (type != typePercentiles && val[1].getValue() == 0) {
    parser.report("Wrong SD value.");
    return false;
  }
  return true;
}

void R_RefDataLine::saveXML(R_XMLTextOutput& output) const {
  if (type != typePercentiles) {
    R_writeNumberElement(output, kTags[codeX], val[0]);
    R_writeNumberElement(output, kTags[codeSD], val[1]);
    return;
  }
  R_openElement(output, kTags[codePerc]);
  for (int i = 0; i < count; ++i) {
    output.writeText(" ");
    output.writeNumber(val[i]);
    output.writeText(" ");
  }
  output.closeTag(kTags[codePerc]);
}

void R_RefDataLine::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeRefDataLine)) {
    *ok = false;
    return;
  }
  for (int i = 0; i < count; ++i) val[i].load(stream, ok);
  // The last number may end inside its value without clearing *ok.
  if (!stream.isOK()) *ok = false;
}

void R_RefDataLine::save(R_OutputStream& stream) const {
  stream.put(R_TypeRefDataLine);
  for (int i = 0; i < count; ++i) val[i].save(stream);
}
