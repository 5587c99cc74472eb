// The exporter's record policy: every client is admitted and no record
// identifiers are translated (the policy the tools share). The exporter
// calls none of these; the object exists because the database is built
// with one.
#ifndef EXPORTER_MYSECURITY_H
#define EXPORTER_MYSECURITY_H

#include "proband/r_a_opensecurity.h"

class MySecurity : public R_A_OpenSecurity {};

#endif
