// One visit of a proband: its date and the age at it, one value slot per
// followed variable of the knowledge file (in the order of
// getFollowedVars()), and a comment. An undefined date, age or value means
// "not recorded". The proband keeps the age in step with its date of birth;
// this class only stores.
//
// A database holds a million visits and keeps them all in memory, where
// first touching a page costs more than anything done with it, and a visit
// has a few of the file's followed variables measured. So a record is one
// heap block holding only its defined values: the record, then the slot
// indices of the defined values in ascending order, then their values. The
// block has room for a number of defined values chosen when it is made; a
// record that needs more moves its values to a second block of its own.
// The record itself never moves. Values are handed out as R_Number copies.
// Not copyable.
#ifndef PROBAND_R_PROBANDRECORD_H
#define PROBAND_R_PROBANDRECORD_H

#include <cstddef>

#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_string.h"

class R_ProbandRecord {
 public:
  // Room for this many defined values covers nine visits in ten.
  static constexpr int usualRoom = 6;

  // A new record with all slots undefined and room in its block for `room`
  // defined values (at most var_count), to be released with delete.
  // Requires: var_count > 0, room > 0.
  static R_ProbandRecord* create(int var_count, int room = usualRoom);
  static void operator delete(void* block);
  ~R_ProbandRecord();
  R_ProbandRecord(const R_ProbandRecord&) = delete;
  R_ProbandRecord& operator=(const R_ProbandRecord&) = delete;

  const R_Number& getAge() const { return age; }
  const R_Date& getDate() const { return date; }
  const R_String& getComment() const { return comment; }
  int getCount() const { return count; }
  // Requires: 0 <= index < getCount().
  R_Number getValue(int index) const;

  // Stores without any check of range: the proband decides what is valid.
  // An undefined value clears the slot. Requires: 0 <= index < getCount().
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
  R_ProbandRecord(int var_count, int room);
  // The record's block with room for `room` defined values behind it.
  static void* operator new(size_t size, int room);
  static void operator delete(void* block, int room);
  // Where `room` indices and values lie in a block of them: the indices
  // take an even number of ints, so the values stay aligned.
  static double* valuesIn(int* block, int room) { return reinterpret_cast<double*>(block + room + (room & 1)); }
  static const double* valuesIn(const int* block, int room) {
    return reinterpret_cast<const double*>(block + room + (room & 1));
  }
  static size_t bytesFor(int room) { return (sizeof(int) + sizeof(double)) * static_cast<size_t>(room + (room & 1)); }
  int* indices() { return spill ? spill : reinterpret_cast<int*>(this + 1); }
  const int* indices() const { return spill ? spill : reinterpret_cast<const int*>(this + 1); }
  double* values() { return valuesIn(indices(), room); }
  const double* values() const { return valuesIn(indices(), room); }
  // Where `index` stands among the defined values, or would be inserted.
  int positionOf(int index) const;
  // Moves the values to a block of their own with twice the room, at most
  // one per slot.
  void grow();

  R_Date date;
  int count;  // the slots, one per followed variable
  R_Number age;
  R_String comment;
  int used;    // the defined values
  int room;    // the defined values that fit where they are kept
  int* spill;  // owned; the values' own block once they outgrew the record's, else null
};

#endif
