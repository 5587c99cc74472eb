// The image of a file, kept with the name under which it is to be written
// out again. The stored form carries a checksum over the bytes.
#ifndef CORE_R_BINARYOBJECT_H
#define CORE_R_BINARYOBJECT_H

#include "core/r_integer.h"
#include "core/r_string.h"

class R_BinaryObject {
 public:
  R_BinaryObject() : data(nullptr) {}
  ~R_BinaryObject() { clear(); }
  R_BinaryObject(const R_BinaryObject&) = delete;
  R_BinaryObject& operator=(const R_BinaryObject&) = delete;

  bool isEmpty() const { return data == nullptr; }
  int getLength() const { return length.get(); }
  const unsigned char* getData() const { return data; }
  int getChecksum() const { return checksum.get(); }
  const R_String& getTargetName() const { return target_name; }

  // Reads the whole file. A missing or empty file answers false and leaves the
  // object empty. Requires: the object is empty, `target_fname` not empty.
  bool loadFile(const char* path, const char* target_fname);
  // Writes the bytes to `path` through R_SafeFile; true when all of them
  // were written and put in place, false with the old file left as it was.
  bool saveFile(const char* path) const;

  // Type byte 153, target name, length, checksum, then the bytes. A checksum
  // that does not match the bytes read sets *ok false. Requires: empty.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  void clear();
  static int checksumOf(const unsigned char* bytes, int count);

  unsigned char* data;  // owned, null when empty
  R_Integer length;
  R_Integer checksum;
  R_String target_name;
};

#endif
