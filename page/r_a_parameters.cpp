#include "page/r_a_parameters.h"

#include <string.h>

#include "core/r_ascii.h"
#include "core/r_number.h"

R_A_Parameters::~R_A_Parameters() {}

void R_A_Parameters::encodeURL(const char* target, char* buffer, int size) const {
  if (size <= 0) return;
  int n = 0;
  if (target != nullptr) {
    while (n < size - 1 && target[n] != '\0') {
      buffer[n] = target[n];
      n++;
    }
  }
  buffer[n] = '\0';
}

int R_A_Parameters::getInt(int index) const {
  R_Number number(get(index));
  return number.isDefined() ? number.getInt() : -1;
}

bool R_A_Parameters::isInt(int index) const {
  return isDefined(index) && R_Number(get(index)).isDefined();
}

bool R_A_Parameters::isPage(const char* text) const {
  const char* page = getPage();
  return page != nullptr && R_stricmp(page, text) == 0;
}

bool R_A_Parameters::isCommand(const char* text) const {
  return isDefined(parCommand) && R_stricmp(get(parCommand), text) == 0;
}
