// Today's date for the page application: the local date of the system
// clock, unless a fixed date was set, so that everything that depends on
// the day can be run again with the same result.
#ifndef PAGE_R_A_CLOCK_H
#define PAGE_R_A_CLOCK_H

#include "core/r_date.h"

// The fixed date if one is set, otherwise the local date of the system
// clock (undefined when the clock cannot be read).
R_Date R_A_today();
// Makes R_A_today answer `date` from now on; an undefined date returns to
// the system clock.
void R_A_fixToday(const R_Date& date);

// The local time of day as the C library's broken-down time gives it
// (month from 0, year minus 1900).
struct R_A_LocalTime {
  int year;    // years since 1900
  int month;   // 0 to 11
  int day;     // 1 to 31
  int hour;
  int minute;
  int second;
};

// The fixed time if one is set, otherwise the local time of the system
// clock; false, with `result` all zero, when the clock cannot be read.
bool R_A_now(R_A_LocalTime& result);
// Makes R_A_now answer `time` from now on; null returns to the system clock.
void R_A_fixNow(const R_A_LocalTime* time);

#endif
