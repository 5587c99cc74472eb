// Reads an import list file into an R_ImportList, for one load. An entry
// (`import_proband`) is made when its `proband` element arrives, from the
// texts read so far in that entry, so `proband` must come last; each entry
// starts with empty texts. A proband that does not load, or has no sex, is
// skipped without a message. Borrows the list and the R_File; owns its one
// working proband.
#ifndef PROBAND_R_IMPORTFROMTARN2_H
#define PROBAND_R_IMPORTFROMTARN2_H

#include "core/r_string.h"
#include "xml/r_xmlrecipient.h"

class R_File;
class R_ImportList;
class R_Proband;
class R_XMLErrorReporter;

class R_ImportFromTarn2 : public R_XMLRecipient {
 public:
  R_ImportFromTarn2(const R_File* F, R_ImportList* list);
  ~R_ImportFromTarn2() override;

  // Parses the file into the list (which the caller has cleared). Answers
  // whether the parse had no fault. `reporter` may be null.
  bool load(const char* filename, R_XMLErrorReporter* reporter);

  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;

 private:
  const char* receiveInfo(const char* text);
  const char* receiveEntryStart(const char* text);
  const char* receiveName(const char* text);
  const char* receiveDiagnosis(const char* text);
  const char* receiveAddress(const char* text);
  const char* receiveComment(const char* text);
  const char* receiveProband(const char* text);

  R_Proband* proband;    // owned working copy
  R_ImportList* target;  // borrowed
  R_String name;
  R_String address;
  R_String diagnosis;
  R_String comment;
};

#endif
