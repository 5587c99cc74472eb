#include "document/r_textimage.h"

#include "output/r_outputinterface.h"

bool R_TextImage::write(const R_File&, const R_Proband&, const R_Number&, R_OutputInterface& output) const {
  output.writeImage(getSource().get());
  return true;
}
