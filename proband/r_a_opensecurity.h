// The record policy of a program that hands out no record identifiers:
// every client is admitted, no identifier is written, and every identifier
// means record 0. What the exporter and the tools build a database with.
#ifndef PROBAND_R_A_OPENSECURITY_H
#define PROBAND_R_A_OPENSECURITY_H

#include "proband/r_a_security.h"

class R_A_OpenSecurity : public R_A_Security {
 public:
  bool isClientAllowed(int client) override;
  bool writeRecordId(int index, char* buffer) override;
  int findRecordIndex(const char* id) override;
};

#endif
