// One examined person: identifier, date of birth, sex, the anamnestic values
// (taken once) and the visits with their followed values (taken at each
// visit). The knowledge file decides which variables exist: the proband has
// one slot per variable of the file's anamnestic and followed subsets, in
// their order, and everything stored is matched to these slots by name, so
// that unknown names are dropped and new variables start undefined.
//
// A value is valid when it is a defined, finite number and the variable's
// interval, if defined, holds it; setting anything else leaves the slot
// undefined, without a message. Sex is stored as 1 male, 2 female, -1
// undefined, and answered as 0 male, 1 female, 2 undefined.
//
// Borrows the R_File, which must outlive the proband; owns its slots and
// visits. Built on a file that is not OK, it has no slots, sex 0, and can
// hold nothing. Not copyable; copyFrom copies between files.
#ifndef PROBAND_R_PROBAND_H
#define PROBAND_R_PROBAND_H

#include "core/r_date.h"
#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_smallarray.h"
#include "core/r_sortedfieldtemplate.h"
#include "core/r_string.h"
#include "proband/r_probandrecord.h"
#include "xml/r_xmlrecipient.h"

class R_File;
class R_InputStream;
class R_MeasuredVariables;
class R_OutputStream;
class R_ProbandNameTable;
class R_XMLTextOutput;

class R_Proband : public R_XMLRecipient {
 public:
  explicit R_Proband(const R_File* file);
  ~R_Proband() override;

  const R_File* getFile() const { return F; }

  // 0 male, 1 female, 2 undefined.
  int getSex() const;
  // Sex is male or female; such a proband counts as defined for all callers.
  bool isSexDefined() const;
  const R_String& getId() const { return id; }
  const R_Date& getDob() const { return dob; }

  // Slots per kind: the sizes of the file's subsets, 0 without slots.
  int getAnamnesticCount() const { return anamnestic_count; }
  int getFollowedCount() const { return followed_count; }

  // Position of a name (case ignored) among the anamnestic variables; -1 if
  // it is none of them.
  int getAnamnesticOrder(const char* name) const;
  bool isAnamnesticName(const char* name) const { return getAnamnesticOrder(name) >= 0; }
  // Requires: 0 <= index < getAnamnesticCount().
  const R_Number& getAnamnesticNumber(int index) const;
  // `result` becomes the value; undefined for an unknown name.
  void getAnamnesticValue(R_Number& result, const char* name) const;

  int getFollowedOrder(const char* name) const;
  bool isFollowedName(const char* name) const { return getFollowedOrder(name) >= 0; }
  // Require: rec_index in 0 to getVisitCount()-1, var_index in 0 to
  // getFollowedCount()-1.
  R_Number getFollowedNumber(int rec_index, int var_index) const;
  // Undefined for a name that is no followed variable. Requires: rec_index
  // in range.
  void getFollowedValue(int rec_index, const char* name, R_Number& result) const;

  // Visits in order: by age, else by date, the rest in order of arrival.
  int getVisitCount() const;
  // Require: 0 <= index < getVisitCount().
  const R_Number& getVisitAge(int index) const;
  const R_Date& getVisitDate(int index) const;
  const R_String& getVisitComment(int index) const;

  // No visits, all values undefined, sex -1, no date of birth, empty id.
  void clear();
  // 0 male, 1 female, anything else undefined.
  void setSex(int value);
  void setId(const char* text);
  // After the change every visit with a date gets its age anew from it;
  // visits keep their order.
  void setDob(const R_Date& date);
  void setDobText(const char* text);

  // Store a valid value, else make the slot undefined. Requires: index in
  // range.
  void setAnamnesticNumber(int index, const R_Number& value);
  // The same by name; an unknown name is ignored.
  void setAnamnesticValue(const char* name, const R_Number& value);
  // Require: rec_index and var_index in range.
  void setFollowedNumber(int rec_index, int var_index, const R_Number& value);
  // Requires: rec_index in range; an unknown name is ignored.
  void setFollowedValue(int rec_index, const char* name, const R_Number& value);
  // Ignored for an index outside the visits.
  void setVisitComment(int rec_index, const char* text);
  // The same with whitespace normalised.
  void setVisitCommentNormalized(int rec_index, const char* text);

  // The most visits a proband keeps: far more than a child's follow-up has,
  // and more than the XML form can carry, where a record's whole text must
  // fit the reader's capture. Every arriving visit is compared with those
  // already there, so the bound is what keeps reading a damaged or hostile
  // binary file linear in its size.
  static constexpr int maxVisits = 1024;

  // Adds a visit and answers its index, or -1 when the file has no followed
  // variables, the proband has maxVisits visits already, or the insertion
  // failed. With a date of birth and a date, the age is computed from them
  // (undefined before the birth). A visit whose age lies less than 0.0027
  // years (just under a day) from an existing visit's age is that visit: its
  // index comes back, also at maxVisits, and values set through it merge
  // into it.
  int addVisit(const R_Number& age, const R_Date& date);
  // The same, for a reader that knows how many values it will set on the
  // new visit: its storage is made for that many at once. Any count is
  // correct; a right one saves memory and time.
  int addVisit(const R_Number& age, const R_Date& date, int expected_values);
  // Takes the visit out, gives it the age and date as addVisit would
  // (without merging) and puts it back in order. Answers its new index, -1
  // if it could not be put back (it is then gone). Requires: index in range.
  int setVisitAgeDate(int rec_index, const R_Number& age, const R_Date& date);
  // Requires: index in range.
  void removeVisit(int index);

  // Clears, then copies sex, id, date of birth, every value whose variable
  // name exists here, and the visits with their comments through addVisit.
  // Works across knowledge files. Answers isSexDefined().
  bool copyFrom(const R_Proband& other);

  // The identifier and date of birth from the attributes of an `info`
  // element of the XML form, each null when absent: the identifier is
  // normalised, the date of birth taken as text (visits already there keep
  // their ages).
  void setInfoTexts(const char* id_text, const char* dob_text);
  // A visit from the attributes of a `record` element of the XML form, each
  // null when absent: the age read as a number, the date as a date text.
  // False, adding nothing, when neither is defined; otherwise adds the visit
  // as addVisit(age, date, expected_values) does, gives it the normalised
  // comment, and puts addVisit's answer into *index.
  bool addVisitFromTexts(const char* age_text, const char* date_text, const char* comment, int expected_values,
                         int* index);

  // Fills the proband from the content of a `proband` element (with or
  // without that element around it). False, with the proband cleared, for a
  // null or empty text, a broken text, or one without a sex; a failing
  // proband tells nothing else, its parser has no reporter.
  bool loadXML(const char* text);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Writes `info`, then `data` with the anamnestic values and the visits, as
  // content of whatever element the caller opened.
  void saveXML(R_XMLTextOutput& output) const;

  // The binary form, type byte 33. load clears first and keeps what it read
  // up to a failure; an undefined stored sex is accepted.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

  // The binary form into `begin`, at most `maxsize` bytes; `*bytes` gets the
  // length. Refused (false, `*bytes` 0) for an undefined sex or missing
  // slots; false with `*bytes` 0 also when the form does not fit.
  bool saveToBuffer(unsigned char* begin, int* bytes, int maxsize) const;
  // The XML form, wrapped in a `proband` element, into `begin` as a
  // terminated text of at most `maxsize` bytes with the terminator; `*bytes`
  // gets the length. Refused as saveToBuffer, with `begin` left empty; false
  // also when the text was cut. Requires: maxsize > 0.
  bool saveToText(char* begin, int* bytes, int maxsize) const;
  // load over the bytes; on failure the proband is cleared. Answers success.
  bool loadFromBuffer(const unsigned char* begin, int size);

 private:
  bool canSave() const;
  const R_MeasuredVariables* anamnesticVars() const;
  const R_MeasuredVariables* followedVars() const;
  static int orderOf(const R_MeasuredVariables* vars, const char* name, const R_File* file);
  bool isValid(const R_MeasuredVariables* vars, int order, const R_Number& value) const;
  R_ProbandRecord* visit(int index) const;
  int findNearVisit(const R_Number& age) const;
  void updateAges();
  void copyAnamnestic(const R_Proband& other);
  void copyVisits(const R_Proband& other);

  const char* receiveInfo(const char* text, const R_XMLParameters& parameters);
  const char* receiveValue(const char* text, const R_XMLParameters& parameters);
  const char* receiveRecordBegin(const char* text, const R_XMLParameters& parameters);
  const char* receiveRecordEnd(const char* text, const R_XMLParameters& parameters);
  const char* receiveRecordValue(const char* text, const R_XMLParameters& parameters);
  static const char* readValue(const char* text, const R_XMLParameters& parameters, const char* element,
                               R_Number* value, R_String* spill);

  void saveXMLInfo(R_XMLTextOutput& output) const;
  void saveXMLVisit(R_XMLTextOutput& output, const R_ProbandRecord& record) const;
  typedef R_SmallArray<int, 48> SlotOrders;
  void loadAnamnestic(R_InputStream& stream, bool* ok);
  void loadVisits(R_InputStream& stream, bool* ok);
  typedef R_SmallArray<R_Number, 48> StoredValues;
  void loadVisit(R_InputStream& stream, bool* ok, const SlotOrders& orders, StoredValues& read);
  void resolveNames(const R_ProbandNameTable& names, const R_MeasuredVariables* vars, SlotOrders& orders) const;
  static void saveNames(R_OutputStream& stream, const R_MeasuredVariables* vars, int count);

  const R_File* F;  // borrowed
  R_String id;
  R_Date dob;
  R_Integer sex;  // 1, 2 or -1 as stored
  R_Number* values;  // owned, anamnestic_count long; null without anamnestic variables
  R_SortedFieldTemplate<R_ProbandRecord>* followed;  // owned; null without followed variables
  int anamnestic_count;
  int followed_count;
  int open_record;  // the visit being read from XML, -1 otherwise
};

#endif
