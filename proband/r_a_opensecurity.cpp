#include "proband/r_a_opensecurity.h"

bool R_A_OpenSecurity::isClientAllowed(int) { return true; }

bool R_A_OpenSecurity::writeRecordId(int, char*) { return true; }

int R_A_OpenSecurity::findRecordIndex(const char*) { return 0; }
