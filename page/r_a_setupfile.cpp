#include "page/r_a_setupfile.h"

#include <cassert>

#include "core/r_integer.h"
#include "page/r_a_setupreader.h"

R_A_SetupFile::R_A_SetupFile(const char* path) : ints(), intSet(), strSet() {
  R_A_SetupReader reader(path);
  while (reader.next()) set(reader.getName(), reader.getValue());
}

int R_A_SetupFile::getInt(int code, int defaultValue) const {
  return isIntSet(code) ? ints[code] : defaultValue;
}

const char* R_A_SetupFile::getStr(int code, const char* defaultText) const {
  return isStrSet(code) ? strs[code].get() : defaultText;
}

bool R_A_SetupFile::isIntSet(int code) const {
  assert(code >= 0 && code < _intCodeCount);
  return intSet[code];
}

bool R_A_SetupFile::isStrSet(int code) const {
  assert(code >= 0 && code < _strCodeCount);
  return strSet[code];
}

bool R_A_SetupFile::set(const char* name, const char* text) {
  if (name == nullptr) return false;
  int code = findStr(name);
  if (code >= 0) {
    setStr(code, text);
    return true;
  }
  code = findInt(name);
  if (code < 0) return false;
  setInt(code, R_Integer(text).get());
  return true;
}

void R_A_SetupFile::setInt(int code, int value) {
  assert(code >= 0 && code < _intCodeCount);
  ints[code] = value;
  intSet[code] = true;
}

void R_A_SetupFile::setStr(int code, const char* text) {
  assert(code >= 0 && code < _strCodeCount);
  strs[code] = text;
  strSet[code] = true;
}
