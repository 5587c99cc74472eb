#include "page/r_a_clock.h"

#include <ctime>

namespace {
R_Date fixedToday;
}  // namespace

R_Date R_A_today() {
  if (fixedToday.isDefined()) return fixedToday;
  time_t now = time(nullptr);
  struct tm local;
  if (!localtime_r(&now, &local)) return R_Date();
  return R_Date(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
}

void R_A_fixToday(const R_Date& date) { fixedToday = date; }
