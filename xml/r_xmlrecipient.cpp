#include "xml/r_xmlrecipient.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

R_XMLRecipient::~R_XMLRecipient() {
  if (data) clearTags();
}

void R_XMLRecipient::setTagCount(int count) {
  assert(count > 0 && !data);
  data = static_cast<char**>(calloc(static_cast<size_t>(count), sizeof(char*)));
  data_count = data ? count : 0;
}

void R_XMLRecipient::setTag(int index, const char* text) {
  assert(index >= 0 && index < data_count && !data[index] && text);
  size_t length = strlen(text);
  data[index] = static_cast<char*>(malloc(length + 1));
  if (data[index]) memcpy(data[index], text, length + 1);
}

const char* R_XMLRecipient::getTag(int index) const {
  assert(index >= 0 && index < data_count);
  return data[index];
}

int R_XMLRecipient::findTag(const char* tag) const {
  for (int i = 0; i < data_count; ++i) {
    if (data[i] && strcmp(data[i], tag) == 0) return i;
  }
  return -1;
}

void R_XMLRecipient::clearTags() {
  assert(data);
  for (int i = 0; i < data_count; ++i) free(data[i]);
  free(data);
  data = nullptr;
  data_count = 0;
}
