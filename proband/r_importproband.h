// One entry of an import list: four texts and a proband packed in its
// binary form, so that a long list keeps no live probands. An entry without
// packed data holds nothing to take over. Owns its texts and bytes; not
// copyable.
#ifndef PROBAND_R_IMPORTPROBAND_H
#define PROBAND_R_IMPORTPROBAND_H

#include "core/r_string.h"

class R_Proband;

class R_ImportProband {
 public:
  enum TextType { textName, textAddress, textComment, textDiagnosis, _textCount };
  // The most bytes of a packed proband; a larger one is not taken.
  static const int maxPackedBytes = 16384;

  R_ImportProband();
  ~R_ImportProband();
  R_ImportProband(const R_ImportProband&) = delete;
  R_ImportProband& operator=(const R_ImportProband&) = delete;

  // Require: 0 <= typ < _textCount.
  const R_String& getText(int typ) const;
  void setText(int typ, const char* text);

  // Replaces the packed data by the proband's binary form. False, with no
  // data left, for a proband of undefined sex or one whose form exceeds
  // maxPackedBytes.
  bool pack(const R_Proband& proband);
  // Fills `proband` from the packed data; without data, or when the data
  // do not load, the proband is cleared and the answer is false.
  bool unpack(R_Proband& proband) const;
  int getBytes() const { return bytes; }

  bool isSelected() const { return selected; }
  void setSelected(bool value) { selected = value; }

 private:
  void freeData();

  R_String* texts[_textCount];  // owned
  unsigned char* data;          // owned, null when empty
  int bytes;
  bool selected;
};

#endif
