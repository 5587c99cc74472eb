// Today's date from the system clock, in local time: the one place where the
// tools read the clock, so that everything else can be given a date.
#ifndef TOOLS_AUXTOOL_SYSTEMCLOCK_H
#define TOOLS_AUXTOOL_SYSTEMCLOCK_H

#include "core/r_date.h"

R_Date systemToday();

#endif
