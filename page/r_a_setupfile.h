// The settings of the page application as read from a setup file (see
// R_A_SetupReader for its format). Every key starts unset; a setting whose
// name is a key, without regard to ASCII case, sets it, and a key set twice
// keeps the last value. Names that are no key are passed over, and a file
// that does not open leaves every key unset: a setup never fails. A text set
// to the empty value counts as set. Not copyable.
#ifndef PAGE_R_A_SETUPFILE_H
#define PAGE_R_A_SETUPFILE_H

#include "core/r_string.h"
#include "page/r_a_setup.h"

class R_A_SetupFile : public R_A_Setup {
 public:
  // Reads all settings of the file at `path`; null or empty reads none.
  explicit R_A_SetupFile(const char* path);

  int getInt(int code, int defaultValue) const override;
  const char* getStr(int code, const char* defaultText) const override;
  // Whether the key was set. Requires: code in range.
  bool isIntSet(int code) const;
  bool isStrSet(int code) const;

  // Sets the key `name` as a setting of the file would: a text key takes
  // `text` as it is, an integer key its integer reading (atol). Text keys are
  // looked at first. False, changing nothing, when `name` is no key.
  bool set(const char* name, const char* text);
  // Requires: code in range. A null text sets the empty text.
  void setInt(int code, int value);
  void setStr(int code, const char* text);

 private:
  int ints[_intCodeCount];
  bool intSet[_intCodeCount];
  R_String strs[_strCodeCount];  // "" both when unset and when set empty
  bool strSet[_strCodeCount];
};

#endif
