// An insert of another text of the same knowledge file: `<insert ref="id"
// />`. R_SuperText follows inserts itself, so this element writes nothing.
#ifndef DOCUMENT_R_TEXTINSERT_H
#define DOCUMENT_R_TEXTINSERT_H

#include "document/r_textnamed.h"

class R_TextInsert : public R_TextNamed {
 public:
  R_TextInsert() : R_TextNamed(typeInsert, "ref") {}

  // The id of the inserted text.
  const R_String& getRef() const { return getName(); }

  // Never asked: no block is opened for an insert.
  int getOutputKind() const override { return 7; }
  int getBinaryCode() const override { return '7'; }
  const char* getTag() const override { return "insert"; }
  // Writes nothing and answers false.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;
};

#endif
