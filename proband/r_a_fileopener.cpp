#include "proband/r_a_fileopener.h"

#include <cassert>
#include <cstdio>

#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"

signed char R_A_FileOpener::firstByte(const char* path) {
  FILE* file = path ? fopen(path, "rb") : nullptr;
  if (!file) return 0;
  int c = fgetc(file);
  fclose(file);
  return static_cast<signed char>(c);
}

R_A_FileOpener::Form R_A_FileOpener::formOf(const char* path) {
  signed char first = firstByte(path);
  if (first == 0) return formMissing;
  return first == '<' ? formXML : formBinary;
}

bool R_A_FileOpener::loadKnowledge(R_File& file, const char* path, Form form, R_XMLErrorReporter* reporter) {
  assert(form != formMissing);
  return form == formXML ? file.loadXML(path, reporter) : file.loadBinary(path);
}

R_A_SimpleDB* R_A_FileOpener::openDatabase(R_A_Security& security, const R_File& file, const char* path, Form form,
                                           R_XMLErrorReporter* reporter) {
  assert(form != formMissing);
  return new R_A_SimpleDB(&security, &file, path, form == formBinary, reporter);
}
