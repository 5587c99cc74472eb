// A file of file images: a description and a list of R_BinaryObject, framed
// by a magic number at both ends. Owns its objects.
#ifndef CORE_R_BINARYOBJECTLIST_H
#define CORE_R_BINARYOBJECTLIST_H

#include "core/r_binaryobject.h"
#include "core/r_fieldtemplate.h"
#include "core/r_integer.h"
#include "core/r_string.h"

class R_BinaryObjectList {
 public:
  R_BinaryObjectList() : objects(64) {}
  ~R_BinaryObjectList() { clear(); }
  R_BinaryObjectList(const R_BinaryObjectList&) = delete;
  R_BinaryObjectList& operator=(const R_BinaryObjectList&) = delete;

  // Reads the file at `path` into a new object; appends it on success.
  bool add(const char* path, const char* target_fname);
  int getCount() const { return count.get(); }
  // Requires: 0 <= i < getCount().
  const R_String& getName(int i) const;
  bool saveObject(int i, const char* path) const;
  void setDescription(const char* text) { description.set(text); }
  const R_String& getDescription() const { return description; }

  // The list's own file: type byte 154, magic, count, description, the
  // objects, magic again. loadFile answers true only if all of it is right;
  // saveFile writes through R_SafeFile, leaving the old file on a failure.
  bool loadFile(const char* path);
  bool saveFile(const char* path) const;

  static const int kMagic = 0x10203040;

 private:
  void clear();

  R_Integer count;
  R_String description;
  R_FieldTemplate<R_BinaryObject> objects;
};

#endif
