#include "proband/r_a_database.h"

R_A_Database::~R_A_Database() {}
