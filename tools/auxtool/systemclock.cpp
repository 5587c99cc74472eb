#include "tools/auxtool/systemclock.h"

#include <ctime>

R_Date systemToday() {
  time_t now = time(nullptr);
  struct tm local;
  if (!localtime_r(&now, &local)) return R_Date();
  return R_Date(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
}
