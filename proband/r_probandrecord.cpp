#include "proband/r_probandrecord.h"

#include <cassert>

R_ProbandRecord::R_ProbandRecord(int var_count) : values(new R_Number[var_count]), count(var_count) {
  assert(var_count > 0);
}

R_ProbandRecord::~R_ProbandRecord() { delete[] values; }

const R_Number& R_ProbandRecord::getValue(int index) const {
  assert(index >= 0 && index < count);
  return values[index];
}

void R_ProbandRecord::setValue(int index, const R_Number& value) {
  assert(index >= 0 && index < count);
  values[index] = value;
}

void R_ProbandRecord::clearValue(int index) {
  assert(index >= 0 && index < count);
  values[index].setUndefined();
}

void R_ProbandRecord::setComment(const char* text) { comment.set(text); }

void R_ProbandRecord::setAgeDate(const R_Number& new_age, const R_Date& new_date, const R_Date& dob) {
  age = new_age;
  date = new_date;
  updateAge(dob);
}

void R_ProbandRecord::updateAge(const R_Date& dob) {
  if (dob.isDefined() && date.isDefined()) date.getAgeFrom(age, dob);
}

bool R_ProbandRecord::operator<(const R_ProbandRecord& other) const {
  if (age.isDefined() && other.age.isDefined()) return age.getValue() < other.age.getValue();
  if (date.isDefined() && other.date.isDefined()) return date.getDayNumber() < other.date.getDayNumber();
  return false;
}
