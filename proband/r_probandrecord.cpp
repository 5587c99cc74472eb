#include "proband/r_probandrecord.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <new>

// The indices start right at the end of the record, which keeps the
// alignment they and the values need.
static_assert(sizeof(R_ProbandRecord) % alignof(double) == 0, "the indices follow the record aligned");

R_ProbandRecord* R_ProbandRecord::create(int var_count, int room) {
  assert(var_count > 0 && room > 0);
  int kept = std::min(room, var_count);
  return new (kept) R_ProbandRecord(var_count, kept);
}

void* R_ProbandRecord::operator new(size_t size, int room) { return ::operator new(size + bytesFor(room)); }

void R_ProbandRecord::operator delete(void* block) { ::operator delete(block); }

void R_ProbandRecord::operator delete(void* block, int) { ::operator delete(block); }

R_ProbandRecord::R_ProbandRecord(int var_count, int value_room)
    : count(var_count), used(0), room(value_room), spill(nullptr) {}

R_ProbandRecord::~R_ProbandRecord() { ::operator delete(spill); }

void R_ProbandRecord::grow() {
  int larger = room > count / 2 ? count : 2 * room;
  int* block = static_cast<int*>(::operator new(bytesFor(larger)));
  memcpy(block, indices(), sizeof(int) * static_cast<size_t>(used));
  memcpy(valuesIn(block, larger), values(), sizeof(double) * static_cast<size_t>(used));
  ::operator delete(spill);
  spill = block;
  room = larger;
}

// A visit holds a handful of values, for which a plain walk is the fastest
// search.
int R_ProbandRecord::positionOf(int index) const {
  const int* at = indices();
  const int* end = at + used;
  while (at < end && *at < index) ++at;
  return static_cast<int>(at - indices());
}

R_Number R_ProbandRecord::getValue(int index) const {
  assert(index >= 0 && index < count);
  int at = positionOf(index);
  return at < used && indices()[at] == index ? R_Number(values()[at]) : R_Number();
}

void R_ProbandRecord::setValue(int index, const R_Number& value) {
  assert(index >= 0 && index < count);
  if (!value.isDefined()) {
    clearValue(index);
    return;
  }
  // Values mostly arrive in the order of their slots.
  int at = used > 0 && indices()[used - 1] < index ? used : positionOf(index);
  if (at == used || indices()[at] != index) {
    if (used == room) grow();
    for (int i = used; i > at; --i) {
      indices()[i] = indices()[i - 1];
      values()[i] = values()[i - 1];
    }
    indices()[at] = index;
    ++used;
  }
  values()[at] = value.getValue();
}

void R_ProbandRecord::clearValue(int index) {
  assert(index >= 0 && index < count);
  int at = positionOf(index);
  if (at == used || indices()[at] != index) return;
  for (int i = at; i + 1 < used; ++i) {
    indices()[i] = indices()[i + 1];
    values()[i] = values()[i + 1];
  }
  --used;
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
