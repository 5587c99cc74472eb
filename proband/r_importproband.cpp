#include "proband/r_importproband.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "proband/r_proband.h"

R_ImportProband::R_ImportProband() : data(nullptr), bytes(0), selected(false) {
  for (R_String*& text : texts) text = new R_String();
}

R_ImportProband::~R_ImportProband() {
  for (R_String* text : texts) delete text;
  freeData();
}

const R_String& R_ImportProband::getText(int typ) const {
  assert(typ >= 0 && typ < _textCount);
  return *texts[typ];
}

void R_ImportProband::setText(int typ, const char* text) {
  assert(typ >= 0 && typ < _textCount);
  texts[typ]->set(text);
}

void R_ImportProband::freeData() {
  free(data);
  data = nullptr;
  bytes = 0;
}

bool R_ImportProband::pack(const R_Proband& proband) {
  freeData();
  if (!proband.isSexDefined()) return false;
  unsigned char* work = static_cast<unsigned char*>(malloc(maxPackedBytes));
  if (!work) return false;
  int length = 0;
  bool packed = proband.saveToBuffer(work, &length, maxPackedBytes) && length > 0;
  if (packed) {
    data = static_cast<unsigned char*>(malloc(static_cast<size_t>(length)));
    packed = data != nullptr;
    if (packed) {
      memcpy(data, work, static_cast<size_t>(length));
      bytes = length;
    }
  }
  free(work);
  return packed;
}

bool R_ImportProband::unpack(R_Proband& proband) const {
  if (!data) {
    proband.clear();
    return false;
  }
  return proband.loadFromBuffer(data, bytes);
}
