// The exporter's record policy: every client is admitted and no record
// identifiers are translated. The exporter calls none of these; the object
// exists because the database is built with one.
#ifndef EXPORTER_MYSECURITY_H
#define EXPORTER_MYSECURITY_H

#include "proband/r_a_security.h"

class MySecurity : public R_A_Security {
 public:
  bool isClientAllowed(int client) override;
  bool writeRecordId(int index, char* buffer) override;
  int findRecordIndex(const char* id) override;
};

#endif
