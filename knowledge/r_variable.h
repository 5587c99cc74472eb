// One variable of the knowledge file: where its value comes from (measured,
// calculated, index, age), when it is taken (anamnestic or followed), what
// kind of value it is (real or list), how it is shown, which values are
// valid, and which pair of variables forms its series. A variable is known by
// its index, its position in the file; -1 until the load identifies it.
// Owned by R_File, immutable after load, not copyable.
#ifndef KNOWLEDGE_R_VARIABLE_H
#define KNOWLEDGE_R_VARIABLE_H

#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "formula/r_equation.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_list.h"
#include "knowledge/r_xyvar.h"
#include "xml/r_xmlrecipient.h"

class R_FileStatistics;
class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XMLTextOutput;

class R_Variable : public R_XMLRecipient {
 public:
  // Bit values of the properties, as they stand in the binary file.
  enum {
    bitAnamnestic = 1,
    bitList = 2,
    bitCalculated = 4,
    bitFemale = 8,
    bitMale = 16,
    bitFollowed = 32,
    bitReal = 64,
    bitMeasured = 128,
    bitIndex = 256,
    bitAge = 512
  };

  R_Variable();
  ~R_Variable() override;
  R_Variable(const R_Variable&) = delete;
  R_Variable& operator=(const R_Variable&) = delete;

  int getIndex() const { return var_index; }
  int getProperties() const { return properties.get(); }
  const R_String& getName() const { return name; }
  const R_String& getUnit() const { return unit; }
  // The step to which values are rounded when shown; undefined: no rounding.
  const R_Number& getPrecision() const { return precision; }
  // The valid range; for a list variable, from its smallest to its largest item.
  const R_Interval& getInterval() const { return interval; }
  const R_List& getList() const { return items; }
  const R_Equation& getEquation() const { return equation; }
  const R_XYVar& getXYVar() const { return xyref; }
  const R_String& getHelpId() const { return helpid; }

  bool isAnamnestic() const { return properties.hasBits(bitAnamnestic); }
  bool isList() const { return properties.hasBits(bitList); }
  bool isCalculated() const { return properties.hasBits(bitCalculated); }
  bool isFemale() const { return properties.hasBits(bitFemale); }
  bool isMale() const { return properties.hasBits(bitMale); }
  bool isFollowed() const { return properties.hasBits(bitFollowed); }
  bool isReal() const { return properties.hasBits(bitReal); }
  bool isMeasured() const { return properties.hasBits(bitMeasured); }
  bool isIndex() const { return properties.hasBits(bitIndex); }
  bool isAge() const { return properties.hasBits(bitAge); }
  // Sex 0 asks isMale, sex 1 isFemale; any other sex is true.
  bool isForSex(int sex) const;
  // A followed variable that is its own X (or Y) in its xyref.
  bool isOwnX() const;
  bool isOwnY() const;

  // `buffer` becomes the text of `value`: the item's text for a list
  // variable (no unit), else the number rounded to the precision (or "%g"
  // without one), with a blank and the unit when `with_unit` and the unit is
  // not empty. Empty for an undefined value, a value outside the interval,
  // or a list value that no item equals. A precision that is not above 0
  // counts as none. Answers whether the text is not empty.
  bool formatValue(const R_Number& value, R_String& buffer, bool with_unit) const;

  // Fills the variable from the inner text of a `var` element; names are
  // resolved through `statistics`, which must outlive the call. False, with
  // the reasons reported, innermost first. Requires: a fresh variable.
  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  // `var_index` is the variable's position in the file, taken as given.
  // Requires: a fresh variable.
  void load(int var_index, R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  const char* receiveProperties(const R_XMLParameters& parameters);
  // Loads the element of `code` into its member; answers success.
  bool loadMember(int code, const char* text);
  bool loadId(const char* text);
  // The tests after a successful parse; reports each failure.
  bool checkLoaded(R_XMLParser& parser) const;
  void savePropertiesXML(R_XMLTextOutput& output) const;
  void saveValuesXML(R_XMLTextOutput& output) const;
  bool hasRealValues() const { return isReal() && !isIndex(); }

  R_Integer properties;
  R_String name;
  R_List items;
  R_Equation equation;
  R_Interval interval;
  R_String unit;
  R_Number precision;
  R_XYVar xyref;
  R_String helpid;
  int var_index;
  const R_FileStatistics* statistics;  // borrowed during loadXML only
  R_XMLErrorReporter* reporter;        // borrowed during loadXML only
  int seen;                            // element codes met during loadXML, one bit each
};

#endif
