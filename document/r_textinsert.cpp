#include "document/r_textinsert.h"

bool R_TextInsert::write(const R_File&, const R_Proband&, const R_Number&, R_OutputInterface&) const {
  return false;
}
