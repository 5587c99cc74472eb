// A horizontal rule: `<hr />`. It has no fields and is ok from the start.
#ifndef DOCUMENT_R_TEXTHRULE_H
#define DOCUMENT_R_TEXTHRULE_H

#include "document/r_text.h"

class R_TextHRule : public R_Text {
 public:
  R_TextHRule() : R_Text(typeHRule) { setOK(true); }

  int getOutputKind() const override { return 3; }
  int getBinaryCode() const override { return '4'; }
  const char* getTag() const override { return "hr"; }
  bool isEmptyTag() const override { return true; }
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;
};

#endif
