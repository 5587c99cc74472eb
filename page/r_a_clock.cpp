#include "page/r_a_clock.h"

#include <ctime>

namespace {
R_Date fixedToday;
R_A_LocalTime fixedNow;
bool nowIsFixed = false;
}  // namespace

R_Date R_A_today() {
  if (fixedToday.isDefined()) return fixedToday;
  time_t now = time(nullptr);
  struct tm local;
  if (!localtime_r(&now, &local)) return R_Date();
  return R_Date(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
}

void R_A_fixToday(const R_Date& date) { fixedToday = date; }

bool R_A_now(R_A_LocalTime& result) {
  if (nowIsFixed) {
    result = fixedNow;
    return true;
  }
  result = R_A_LocalTime{0, 0, 0, 0, 0, 0};
  time_t now = time(nullptr);
  struct tm local;
  if (!localtime_r(&now, &local)) return false;
  result = R_A_LocalTime{local.tm_year, local.tm_mon, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
  return true;
}

void R_A_fixNow(const R_A_LocalTime* time) {
  nowIsFixed = time != nullptr;
  if (time) fixedNow = *time;
}
