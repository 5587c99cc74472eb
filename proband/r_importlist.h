// The export list of the predecessor product, read for a user to pick
// probands from before they are taken into the database. Each entry keeps
// its name, address, comment and diagnosis and the proband packed in binary
// form; entries whose proband did not load or pack are dropped while
// reading, so getCount() tells how many survived. Borrows the R_File passed
// to its operations; owns its entries. Not copyable.
#ifndef PROBAND_R_IMPORTLIST_H
#define PROBAND_R_IMPORTLIST_H

#include "core/r_fieldtemplate.h"
#include "core/r_string.h"
#include "proband/r_importproband.h"

class R_Date;
class R_File;
class R_Proband;
class R_XMLErrorReporter;

class R_ImportList {
 public:
  R_ImportList();
  ~R_ImportList();
  R_ImportList(const R_ImportList&) = delete;
  R_ImportList& operator=(const R_ImportList&) = delete;

  // Deletes every entry and empties the info.
  void clear();
  // Reads the XML list at `filename` (root `import_list`) after clear();
  // its probands are read against `F`. The only form known is mode 0: any
  // other answers false and leaves the list as it was. Answers whether the
  // parse had no fault; entries read before a fault stay. `reporter` may be
  // null.
  bool load(const R_File* F, const char* filename, R_XMLErrorReporter* reporter, int mode);
  // Packs the proband into a new entry with the texts (null is empty).
  // False, adding nothing, when the proband cannot be packed.
  bool add(const R_Proband& proband, const char* name, const char* diagnosis, const char* address,
           const char* comment);

  int getCount() const { return count; }
  const char* getInfo() const { return info.get(); }
  void setInfo(const char* text) { info.set(text); }
  // Require: 0 <= index < getCount(), 0 <= typ < R_ImportProband::_textCount.
  const char* getText(int index, int typ) const;
  // Unpacks entry `index` into `proband`. Requires: index in range.
  bool getProband(R_Proband& proband, int index) const;
  // Either pointer may be null. `sex` gets the entry's sex (2 when it does
  // not unpack); `dob` its date of birth, read only together with the sex,
  // so that asked alone it comes out undefined. Requires: index in range.
  void getSummary(const R_File* F, int index, int* sex, R_Date* dob) const;

  // Require: index in range.
  bool isSelected(int index) const;
  void setSelected(int index, bool value);

 private:
  R_ImportProband* entry(int index) const;

  R_FieldTemplate<R_ImportProband>* entries;  // owned with its entries; made at the first add
  int count;
  R_String info;
};

#endif
