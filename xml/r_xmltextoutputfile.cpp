#include "xml/r_xmltextoutputfile.h"

#include <cassert>

R_XMLTextOutputFile::R_XMLTextOutputFile(const char* name) : file(nullptr) {
  assert(name != nullptr);
  if (*name) file = fopen(name, "w");
}

R_XMLTextOutputFile::~R_XMLTextOutputFile() {
  if (file) fclose(file);
}

bool R_XMLTextOutputFile::isOK() const { return file != nullptr && !ferror(file); }

void R_XMLTextOutputFile::newLine() { putRaw('\n'); }

void R_XMLTextOutputFile::indent(int count) {
  for (int i = 0; i < count; ++i) putRaw(' ');
}

void R_XMLTextOutputFile::putRaw(char c) {
  if (file) putc(static_cast<unsigned char>(c), file);
}
