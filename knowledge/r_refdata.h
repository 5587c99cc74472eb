// The numbers of one reference, and the two questions they answer: the SD
// score of a measured value, and the value at an SD score. The numbers are
// either one line (anamnestic data, independent of any x) or many lines,
// each at its own x (followed data, usually one line per age). Between two
// lines every number of the lines is interpolated linearly first, and the
// value is then converted on the interpolated line: interpolation acts on
// the parameters, never on two SD scores. There is no extrapolation over x.
//
// Data with a single line is neither anamnestic nor followed and answers
// nothing. Queries never fail: what has no answer gives an undefined
// result. Owns its percentile list and its lines; immutable after load; not
// copyable.
#ifndef KNOWLEDGE_R_REFDATA_H
#define KNOWLEDGE_R_REFDATA_H

#include <vector>

#include "core/r_fieldtemplate.h"
#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "knowledge/r_refdataline.h"
#include "xml/r_xmlrecipient.h"

class R_GraphRefLinesFormat;
class R_InputStream;
class R_OutputStream;
class R_RefDataPercentiles;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_RefData : public R_XMLRecipient {
 public:
  // Empty data of `type` (R_RefDataLine::Type); a percentile reference gets
  // an empty percentile list. Requires: type in 0 to 2.
  explicit R_RefData(int type);
  ~R_RefData() override;
  R_RefData(const R_RefData&) = delete;
  R_RefData& operator=(const R_RefData&) = delete;

  int getType() const { return type; }
  // The single line is present.
  bool isAnamnestic() const { return anamnestic != nullptr; }
  // At least two lines, each at its x.
  bool isFollowed() const { return data != nullptr && xval != nullptr && xcount.get() > 1; }
  // A percentile list with at least one item.
  bool hasPercentiles() const;
  // Null for the other types.
  const R_RefDataPercentiles* getPercentiles() const { return percentiles; }
  // Requires: isAnamnestic().
  const R_RefDataLine& getAnamnesticLine() const;

  // Require: isFollowed(), 0 <= index < getXCount().
  int getXCount() const { return xcount.get(); }
  const R_Number& getX(int index) const;
  const R_RefDataLine& getLine(int index) const;

  // Followed data. The SD score of `value` at `x`, or the value at SD score
  // `sd` at `x`: from the line at exactly x, else from the line interpolated
  // between the nearest lines below and above. Undefined for an undefined
  // argument, for an x outside the lines' range however near, and for an SD
  // score beyond -6 to 6. Requires: isFollowed().
  void getSD(R_Number& result, const R_Number& x, const R_Number& value) const;
  void getValue(R_Number& result, const R_Number& sd, const R_Number& x) const;
  // Anamnestic data: the same on the single line. Require: isAnamnestic().
  void getSD(R_Number& result, const R_Number& value) const;
  void getValue(R_Number& result, const R_Number& sd) const;

  // The lines that graphs draw: a percentile reference draws its own list
  // and ignores `OVERRIDE`; the others draw the lines of `OVERRIDE`, the
  // knowledge file's general list. Indices run over getLineCount().
  int getLineCount(const R_GraphRefLinesFormat& OVERRIDE) const;
  const R_String& getLineText(int index_line, const R_GraphRefLinesFormat& OVERRIDE) const;
  int getLineClass(int index_line, const R_GraphRefLinesFormat& OVERRIDE) const;
  // The line's value on the anamnestic line. Requires: isAnamnestic().
  void getLineValue(int index_line, const R_GraphRefLinesFormat& OVERRIDE, R_Number& result) const;
  // The line's value on line `index_x`. Requires: isFollowed(),
  // 0 <= index_x < getXCount().
  void getLineValue(int index_x, int index_line, const R_GraphRefLinesFormat& OVERRIDE,
                    R_Number& result) const;

  // Fills the data from the inner text of a `data` element: the percentile
  // list (`percentiles` holding `list`) first for a percentile reference,
  // then either one `anamnestic` line or `line` elements, each with its x in
  // the attributes. False, with the reasons reported innermost first, for
  // any fault. Requires: nothing loaded yet.
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output) const;

  // Type byte 17, the line count, the percentile list of a percentile
  // reference, then each x with its line, or the anamnestic line. A damaged
  // count costs no more memory than the bytes that back it.
  // Requires for load: nothing loaded yet.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  // One defined x in the side index of the lines, sorted by x, then by the
  // line's index, so that the first of equal x values comes first.
  struct XEntry {
    double x;
    int index;
  };

  const char* receivePercentiles(const char* text);
  const char* receiveAnamnestic(const char* text);
  const char* receiveLine(const char* text, const R_XMLParameters& parameters);
  R_Number readLineX(const R_XMLParameters& parameters) const;
  bool hasX(double x) const;
  R_RefDataLine* newLine() const;
  void createLines(int capacity);
  bool appendLine(const R_Number& x, R_RefDataLine* line);
  void loadPercentiles(R_InputStream& stream, bool* ok);
  void loadLine(R_InputStream& stream, bool* ok);
  void buildIndex();
  bool findLines(const R_Number& x, int* low, int* high) const;
  void lineValue(const R_RefDataLine& line, int index_line, const R_GraphRefLinesFormat& OVERRIDE,
                 R_Number& result) const;

  R_RefDataPercentiles* percentiles;  // owned; present for typePercentiles only
  R_RefDataLine* anamnestic;          // owned; null unless anamnestic
  R_Integer xcount;
  R_FieldTemplate<R_RefDataLine>* data;  // owned with its lines; null until a line is read
  R_FieldTemplate<R_Number>* xval;       // owned with its numbers; entry i is the x of line i
  int type;
  R_XMLErrorReporter* reporter;  // borrowed during loadXML only
  std::vector<XEntry> by_x;      // the defined x values in order, built after each load
};

#endif
