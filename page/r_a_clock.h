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

#endif
