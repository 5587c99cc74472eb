#include "proband/r_probandrecord.h"

#include <cassert>
#include <new>
#include <type_traits>

// The values start right at the end of the record, which keeps the
// alignment a double needs.
static_assert(sizeof(R_ProbandRecord) % alignof(double) == 0, "slots follow the record aligned");

R_ProbandRecord* R_ProbandRecord::create(int var_count) {
  assert(var_count > 0);
  return new (var_count) R_ProbandRecord(var_count);
}

void* R_ProbandRecord::operator new(size_t size, int var_count) {
  return ::operator new(size + (sizeof(double) + sizeof(bool)) * static_cast<size_t>(var_count));
}

void R_ProbandRecord::operator delete(void* block) { ::operator delete(block); }

void R_ProbandRecord::operator delete(void* block, int) { ::operator delete(block); }

R_ProbandRecord::R_ProbandRecord(int var_count) : count(var_count) {
  for (int i = 0; i < count; ++i) flags()[i] = false;
}

R_Number R_ProbandRecord::getValue(int index) const {
  assert(index >= 0 && index < count);
  return flags()[index] ? R_Number(slots()[index]) : R_Number();
}

void R_ProbandRecord::setValue(int index, const R_Number& value) {
  assert(index >= 0 && index < count);
  flags()[index] = value.isDefined();
  if (value.isDefined()) slots()[index] = value.getValue();
}

void R_ProbandRecord::clearValue(int index) {
  assert(index >= 0 && index < count);
  flags()[index] = false;
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
