// One visit of a proband: its date and the age at it, one value slot per
// followed variable of the knowledge file (in the order of
// getFollowedVars()), and a comment. An undefined date, age or value means
// "not recorded". The proband keeps the age in step with its date of birth;
// this class only stores. Owns its slots; not copyable.
#ifndef PROBAND_R_PROBANDRECORD_H
#define PROBAND_R_PROBANDRECORD_H

#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_string.h"

class R_ProbandRecord {
 public:
  // All slots undefined. Requires: var_count > 0.
  explicit R_ProbandRecord(int var_count);
  ~R_ProbandRecord();
  R_ProbandRecord(const R_ProbandRecord&) = delete;
  R_ProbandRecord& operator=(const R_ProbandRecord&) = delete;

  const R_Number& getAge() const { return age; }
  const R_Date& getDate() const { return date; }
  const R_String& getComment() const { return comment; }
  int getCount() const { return count; }
  // Requires: 0 <= index < getCount().
  const R_Number& getValue(int index) const;

  // Stores without any check of range: the proband decides what is valid.
  // Requires: 0 <= index < getCount().
  void setValue(int index, const R_Number& value);
  void clearValue(int index);
  // The text as it is; null or empty clears the comment.
  void setComment(const char* text);
  // Stores both, then updateAge(dob).
  void setAgeDate(const R_Number& new_age, const R_Date& new_date, const R_Date& dob);
  // When `dob` and the visit's date are both defined, the age becomes the
  // age at the date: rounded to 3 decimals, undefined for a date before the
  // birth. Otherwise the age stays as it is.
  void updateAge(const R_Date& dob);

  // The order of visits: by age when both ages are defined, else by day
  // number when both dates are defined; otherwise neither precedes the
  // other, so a visit without a comparable key goes behind all others. Not a
  // strict weak order: insert with the container's linear add().
  bool operator<(const R_ProbandRecord& other) const;

 private:
  R_Date date;
  R_Number age;
  R_Number* values;  // owned, `count` long
  int count;
  R_String comment;
};

#endif
