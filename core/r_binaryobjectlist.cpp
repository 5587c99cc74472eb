#include "core/r_binaryobjectlist.h"

#include <cassert>

#include "core/r_fileinputstream.h"
#include "core/r_safefile.h"
#include "core/r_typecodes.h"

void R_BinaryObjectList::clear() {
  for (int i = 0; i < count.get(); ++i) delete objects.get(i);
  count.set(0);
}

bool R_BinaryObjectList::add(const char* path, const char* target_fname) {
  R_BinaryObject* object = new R_BinaryObject;
  if (!object->loadFile(path, target_fname) || !objects.put(count.get(), object)) {
    delete object;
    return false;
  }
  count += 1;
  return true;
}

const R_String& R_BinaryObjectList::getName(int i) const {
  assert(i >= 0 && i < count.get());
  return objects.get(i)->getTargetName();
}

bool R_BinaryObjectList::saveObject(int i, const char* path) const {
  assert(i >= 0 && i < count.get());
  return objects.get(i)->saveFile(path);
}

bool R_BinaryObjectList::loadFile(const char* path) {
  clear();
  R_FileInputStream stream(path);
  bool ok = stream.isOK() && stream.checkType(R_TypeBinaryObjectList);
  R_Integer magic;
  magic.load(stream, &ok);
  if (ok && magic.get() != kMagic) ok = false;
  R_Integer stored_count;
  stored_count.load(stream, &ok);
  description.load(stream, &ok);
  for (int i = 0; ok && i < stored_count.get(); ++i) {
    R_BinaryObject* object = new R_BinaryObject;
    object->load(stream, &ok);
    if (!objects.put(count.get(), object)) {
      delete object;
      ok = false;
      break;
    }
    count += 1;
  }
  magic.load(stream, &ok);
  return ok && magic.get() == kMagic;
}

bool R_BinaryObjectList::saveFile(const char* path) const {
  R_SafeFile stream(path ? path : "");
  if (!stream.isOK()) return false;
  stream.put(R_TypeBinaryObjectList);
  R_Integer(kMagic).save(stream);
  count.save(stream);
  description.save(stream);
  for (int i = 0; i < count.get(); ++i) objects.get(i)->save(stream);
  R_Integer(kMagic).save(stream);
  return stream.commit();
}
