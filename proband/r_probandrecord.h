// One visit of a proband: its date and the age at it, one value slot per
// followed variable of the knowledge file (in the order of
// getFollowedVars()), and a comment. An undefined date, age or value means
// "not recorded". The proband keeps the age in step with its date of birth;
// this class only stores.
//
// A database holds a million visits and keeps them all in memory, where
// first touching a page costs more than anything done with it. So a record
// is one heap block: the record, then each slot's value as a plain double,
// then a byte per slot telling whether it is defined; values are handed out
// as R_Number copies. Not copyable.
#ifndef PROBAND_R_PROBANDRECORD_H
#define PROBAND_R_PROBANDRECORD_H

#include <cstddef>

#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_string.h"

class R_ProbandRecord {
 public:
  // A new record with all slots undefined, to be released with delete.
  // Requires: var_count > 0.
  static R_ProbandRecord* create(int var_count);
  static void operator delete(void* block);
  ~R_ProbandRecord() = default;
  R_ProbandRecord(const R_ProbandRecord&) = delete;
  R_ProbandRecord& operator=(const R_ProbandRecord&) = delete;

  const R_Number& getAge() const { return age; }
  const R_Date& getDate() const { return date; }
  const R_String& getComment() const { return comment; }
  int getCount() const { return count; }
  // Requires: 0 <= index < getCount().
  R_Number getValue(int index) const;

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
  explicit R_ProbandRecord(int var_count);
  // The record's block with room for `var_count` slots behind it.
  static void* operator new(size_t size, int var_count);
  static void operator delete(void* block, int var_count);
  double* slots() { return reinterpret_cast<double*>(this + 1); }
  const double* slots() const { return reinterpret_cast<const double*>(this + 1); }
  bool* flags() { return reinterpret_cast<bool*>(slots() + count); }
  const bool* flags() const { return reinterpret_cast<const bool*>(slots() + count); }

  R_Date date;
  R_Number age;
  int count;
  R_String comment;
};

#endif
