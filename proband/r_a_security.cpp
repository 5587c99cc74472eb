#include "proband/r_a_security.h"

R_A_Security::~R_A_Security() {}
