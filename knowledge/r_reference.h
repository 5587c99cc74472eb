// One growth reference: a standard for one sex, one age range and one pair
// of variables (or one anamnestic variable), for instance height by age for
// girls from 2 to 18. It holds its numbers in an R_RefData of one of three
// types, and the grid variants (R_Granularity) that graphs may draw it on.
//
// An undefined age interval means any age, also an undefined one. A
// reference with no sex never fits, and none fits a proband of unknown sex.
// R_File owns the references in file order and takes the first that fits;
// there is no ranking. Owns its data and variants; immutable after load; not
// copyable.
#ifndef KNOWLEDGE_R_REFERENCE_H
#define KNOWLEDGE_R_REFERENCE_H

#include "core/r_fieldtemplate.h"
#include "core/r_integer.h"
#include "core/r_string.h"
#include "knowledge/r_granularity.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_refdata.h"
#include "knowledge/r_xyvar.h"
#include "xml/r_xmlrecipient.h"

class R_FileStatistics;
class R_InputStream;
class R_Number;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XMLTextOutput;

class R_Reference : public R_XMLRecipient {
 public:
  // Bits of the properties, as stored in the binary form.
  enum {
    propMale = 1,
    propFemale = 2,
    propPercentiles = 4,
    propSD = 8,
    propLogSD = 16,
  };

  // An empty reference: no name, no data, any age, no variables.
  R_Reference();
  ~R_Reference() override;
  R_Reference(const R_Reference&) = delete;
  R_Reference& operator=(const R_Reference&) = delete;

  const R_String& getName() const { return name; }
  int getProperties() const { return properties.get(); }
  // Null until a load made it; present after a successful load.
  const R_RefData* getData() const { return data; }
  const R_Interval& getAge() const { return age; }
  const R_XYVar& getXYVar() const { return xyref; }
  // Sex 0 is male, 1 female; any other sex is for no reference.
  bool isForSex(int sex) const {
    return (sex == 0 && properties.hasBits(propMale)) || (sex == 1 && properties.hasBits(propFemale));
  }
  // Same variables, an age inside the interval (any age when the interval
  // is undefined, an undefined age only then), and the sex.
  bool fits(int sex, const R_Number& age, const R_XYVar& xyref) const;
  // Same variables, both ends of `interval` inside the age interval (an
  // undefined end is not), and the sex.
  bool fits(int sex, const R_Interval& interval, const R_XYVar& xyref) const;

  int getGranularityCount() const { return gran_count.get(); }
  // Requires: 0 <= index < getGranularityCount().
  const R_Granularity& getGranularity(int index) const;
  // The first variant whose X range holds `from` to `to`; -1 if none.
  int findGranularityX(double from, double to) const;
  int findGranularityY(double from, double to) const;
  // The first variant flagged as default; failing that 0 when there is any
  // variant, else -1.
  int getDefaultGranularity() const;

  // Fills the reference from the inner text of a `ref` element; variable
  // names are looked up in `statistics`. False, with the reasons reported
  // innermost first, for any fault; a reference with no data or no name is
  // refused. Requires: nothing loaded yet.
  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Writes the inner text of a `ref` element. Requires: getData() != null.
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  // Type byte 21, name, properties, data (its type chosen by the
  // properties), age, xyref, the number of variants and each variant with
  // its default flag. Requires for load: nothing loaded yet. save requires
  // getData() != null.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  const char* receiveName(const char* text);
  const char* receiveSex(const R_XMLParameters& parameters);
  const char* receiveData(const char* text, const R_XMLParameters& parameters);
  const char* receiveVariant(const char* text, const R_XMLParameters& parameters);
  bool checkLoaded(R_XMLParser& parser) const;
  bool appendVariant(R_Granularity* variant);
  void saveSex(R_XMLTextOutput& output) const;
  void saveXYVar(R_XMLTextOutput& output, const R_FileStatistics& names) const;
  void saveAge(R_XMLTextOutput& output) const;
  void saveGranularity(R_XMLTextOutput& output) const;
  void loadVariants(R_InputStream& stream, bool* ok);

  R_String name;
  R_Integer properties;
  R_RefData* data;  // owned; null until a load makes it
  R_Interval age;
  R_XYVar xyref;
  R_FieldTemplate<R_Granularity>* granularity;  // owned with its variants; null while none
  R_Integer gran_count;
  const R_FileStatistics* statistics;  // borrowed during loadXML only
  R_XMLErrorReporter* reporter;        // borrowed during loadXML only
};

#endif
