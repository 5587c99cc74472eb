// An image of a report text: `<img src="..." />`, written as it stands.
#ifndef DOCUMENT_R_TEXTIMAGE_H
#define DOCUMENT_R_TEXTIMAGE_H

#include "document/r_textnamed.h"

class R_TextImage : public R_TextNamed {
 public:
  R_TextImage() : R_TextNamed(typeImage, "src") {}

  const R_String& getSource() const { return getName(); }

  int getOutputKind() const override { return 6; }
  int getBinaryCode() const override { return '3'; }
  const char* getTag() const override { return "img"; }
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;
};

#endif
