#include "proband/r_importlist.h"

#include <cassert>

#include "core/r_date.h"
#include "proband/r_importfromtarn2.h"
#include "proband/r_proband.h"

namespace {
const int kEntriesBaseSize = 64;
}

R_ImportList::R_ImportList() : entries(nullptr), count(0) {}

R_ImportList::~R_ImportList() { clear(); }

void R_ImportList::clear() {
  for (int i = 0; i < count; i++) delete entries->get(i);
  delete entries;
  entries = nullptr;
  count = 0;
  info.clear();
}

bool R_ImportList::load(const R_File* F, const char* filename, R_XMLErrorReporter* reporter, int mode) {
  if (mode != 0) return false;
  clear();
  R_ImportFromTarn2 reader(F, this);
  return reader.load(filename, reporter);
}

bool R_ImportList::add(const R_Proband& proband, const char* name, const char* diagnosis, const char* address,
                       const char* comment) {
  if (!entries) entries = new R_FieldTemplate<R_ImportProband>(kEntriesBaseSize);
  R_ImportProband* item = new R_ImportProband();
  item->setText(R_ImportProband::textName, name);
  item->setText(R_ImportProband::textDiagnosis, diagnosis);
  item->setText(R_ImportProband::textAddress, address);
  item->setText(R_ImportProband::textComment, comment);
  if (!item->pack(proband) || !entries->put(count, item)) {
    delete item;
    return false;
  }
  count++;
  return true;
}

R_ImportProband* R_ImportList::entry(int index) const {
  assert(index >= 0 && index < count);
  return entries->get(index);
}

const char* R_ImportList::getText(int index, int typ) const { return entry(index)->getText(typ).get(); }

bool R_ImportList::getProband(R_Proband& proband, int index) const { return entry(index)->unpack(proband); }

void R_ImportList::getSummary(const R_File* F, int index, int* sex, R_Date* dob) const {
  R_Proband proband(F);
  if (sex) *sex = entry(index)->unpack(proband) ? proband.getSex() : 2;
  if (dob) *dob = proband.getDob();
}

bool R_ImportList::isSelected(int index) const { return entry(index)->isSelected(); }

void R_ImportList::setSelected(int index, bool value) { entry(index)->setSelected(value); }
