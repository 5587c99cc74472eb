#include "core/r_binaryobject.h"

#include <cassert>
#include <cstdio>
#include <cstdlib>

#include "core/r_a_crc16.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_safefile.h"
#include "core/r_typecodes.h"

void R_BinaryObject::clear() {
  free(data);
  data = nullptr;
  length.set(0);
  checksum.set(0);
}

int R_BinaryObject::checksumOf(const unsigned char* bytes, int count) {
  R_A_CRC16 crc;
  crc.update(bytes, count);
  return crc.get();
}

bool R_BinaryObject::loadFile(const char* path, const char* target_fname) {
  assert(isEmpty() && target_fname && *target_fname);
  FILE* file = fopen(path, "rb");
  if (!file) return false;
  target_name.set(target_fname);
  unsigned char* bytes = nullptr;
  size_t used = 0, capacity = 0;
  for (;;) {
    if (used == capacity) {
      capacity = capacity ? capacity * 2 : 65536;
      if (capacity > 0x7FFFFFFF) break;
      unsigned char* grown = static_cast<unsigned char*>(realloc(bytes, capacity));
      if (!grown) break;
      bytes = grown;
    }
    size_t got = fread(bytes + used, 1, capacity - used, file);
    if (got == 0) break;
    used += got;
  }
  bool complete = feof(file) && !ferror(file);
  fclose(file);
  if (!complete || used == 0) {
    free(bytes);
    return false;
  }
  data = bytes;
  length.set(static_cast<int>(used));
  checksum.set(checksumOf(data, length.get()));
  return true;
}

bool R_BinaryObject::saveFile(const char* path) const {
  R_SafeFile file(path ? path : "");
  if (!file.isOK()) return false;
  if (length.get() > 0) file.writeBytes(data, length.get());
  return file.commit();
}

void R_BinaryObject::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  assert(isEmpty());
  if (!stream.checkType(R_TypeBinaryObject)) {
    *ok = false;
    return;
  }
  target_name.load(stream, ok);
  length.load(stream, ok);
  checksum.load(stream, ok);
  if (!*ok || length.get() <= 0) return;
  // Read in growing blocks so that a damaged length cannot ask for memory
  // the stream does not back with bytes.
  int wanted = length.get();
  unsigned char* bytes = nullptr;
  int have = 0;
  while (have < wanted && stream.isOK()) {
    int block = wanted - have < 1 << 20 ? wanted - have : 1 << 20;
    unsigned char* grown = static_cast<unsigned char*>(realloc(bytes, static_cast<size_t>(have + block)));
    if (!grown) break;
    bytes = grown;
    stream.readBytes(bytes + have, block);
    have += block;
  }
  if (have < wanted || !stream.isOK()) {
    free(bytes);
    length.set(0);
    *ok = false;
    return;
  }
  data = bytes;
  if (checksumOf(data, wanted) != checksum.get()) *ok = false;
}

void R_BinaryObject::save(R_OutputStream& stream) const {
  stream.put(R_TypeBinaryObject);
  target_name.save(stream);
  length.save(stream);
  checksum.save(stream);
  if (data) stream.writeBytes(data, length.get());
}
