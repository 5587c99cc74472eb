#include "formula/r_calcvalue.h"

#include <cassert>

R_CalcValue::R_CalcValue() : count(0), data(nullptr), type(typeUndefined) {}

R_CalcValue::R_CalcValue(const R_CalcValue& other) : R_CalcValue() { *this = other; }

R_CalcValue::~R_CalcValue() { release(); }

R_CalcValue& R_CalcValue::operator=(const R_CalcValue& other) {
  if (this == &other) return *this;
  if (other.isXY())
    copyPoints(other);
  else if (other.isScalar())
    set(other.scalar);
  else
    setUndefined();
  return *this;
}

void R_CalcValue::copyPoints(const R_CalcValue& other) {
  if (count != other.count) setN(other.count);
  for (int i = 0; i < count; ++i) data[i] = other.data[i];
  type = typeSeries;
}

R_CalcPoint& R_CalcValue::getPoint(int index) {
  assert(isXY() && index >= 0 && index < count);
  return data[index];
}

const R_CalcPoint& R_CalcValue::getPoint(int index) const {
  assert(isXY() && index >= 0 && index < count);
  return data[index];
}

int R_CalcValue::getPointIndex() const {
  if (!isXY()) return -1;
  int found = -1;
  for (int i = 0; i < count; ++i) {
    if (!data[i].isValid()) continue;
    if (found >= 0) return -1;
    found = i;
  }
  return found;
}

const R_Number& R_CalcValue::getScalar() const {
  assert(isScalar());
  return scalar;
}

bool R_CalcValue::isTrue() const {
  if (isScalar()) return scalar.getBoolOrFalse();
  int index = getPointIndex();
  return index >= 0 && data[index].getY().getBoolOrFalse();
}

void R_CalcValue::setUndefined() {
  type = typeUndefined;
  scalar.setUndefined();
  for (int i = 0; i < count; ++i) data[i].clear();
}

void R_CalcValue::set(const R_Number& number) {
  if (!number.isDefined()) {
    setUndefined();
    return;
  }
  scalar = number;
  type = typeScalar;
}

void R_CalcValue::set(double number) { set(R_Number(number)); }

void R_CalcValue::set(int number) { set(R_Number(static_cast<double>(number))); }

void R_CalcValue::setText(const char* text) {
  R_Number number;
  if (text) number.parse(text);
  set(number);
}

void R_CalcValue::setN(int n) {
  assert(n >= 0);
  if (n != count) {
    release();
    if (n > 0) data = new R_CalcPoint[n];
    count = n > 0 ? n : 0;
  }
  setUndefined();
  if (count > 0) type = typeSeries;
}

void R_CalcValue::keepPoint(int index) {
  if (!isXY()) {
    setUndefined();
    return;
  }
  for (int i = 0; i < count; ++i) {
    if (i != index) data[i].clear();
  }
}

void R_CalcValue::normalise() {
  if (isScalar() && scalar.isDefined()) return;
  if (!isXY()) {
    setUndefined();
    return;
  }
  bool anyValid = false;
  for (int i = 0; i < count; ++i) {
    if (data[i].isValid())
      anyValid = true;
    else
      data[i].clear();
  }
  if (!anyValid) setUndefined();
}

void R_CalcValue::release() {
  delete[] data;
  data = nullptr;
  count = 0;
}
