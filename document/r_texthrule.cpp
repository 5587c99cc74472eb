#include "document/r_texthrule.h"

#include "output/r_outputinterface.h"

bool R_TextHRule::write(const R_File&, const R_Proband&, const R_Number&, R_OutputInterface& output) const {
  output.writeHRule();
  return true;
}
