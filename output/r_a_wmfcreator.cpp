#include "output/r_a_wmfcreator.h"

#include <algorithm>
#include <cassert>

namespace {

const uint32_t kPlaceableKey = 0x9AC6CDD7u;
const int kUnitsPerInch = 300;
const int kRecordHead = 3;  // words of size and function

// Little-endian bytes of a header or record, in a fixed buffer.
class Bytes {
 public:
  void word(unsigned v) {
    buffer[length++] = static_cast<unsigned char>(v);
    buffer[length++] = static_cast<unsigned char>(v >> 8);
  }
  void dword(uint32_t v) {
    word(v & 0xFFFF);
    word(v >> 16);
  }
  uint16_t wordAt(int offset) const {
    return static_cast<uint16_t>(buffer[offset] | (buffer[offset + 1] << 8));
  }
  const unsigned char* begin() const { return buffer; }
  const unsigned char* end() const { return buffer + length; }

 private:
  unsigned char buffer[2 * (R_A_WMFCreator::_maxParameters + kRecordHead)];
  int length = 0;
};

}  // namespace

R_A_WMFCreator::R_A_WMFCreator(const char* path, int w, int h) : width(w), height(h) {
  if (path != nullptr && *path != '\0') file.reset(new R_SafeFile(path, R_SafeFile::unsyncedSteps()));
  if (file && !file->isOK()) file.reset();
  writeHeaders();
  writeRecord(_setMapMode, 1);
  writeRecord(_setWindowOrg, 0, 0);
  writeRecord(_setWindowExt, height, width);
}

R_A_WMFCreator::~R_A_WMFCreator() {
  if (!file) return;
  writeHeaders();
  for (unsigned char byte : bytes) file->put(byte);
  file->commit();
}

void R_A_WMFCreator::writeHeaders() {
  Bytes head;
  head.dword(kPlaceableKey);
  head.word(0);  // handle
  head.word(0);  // left
  head.word(0);  // top
  head.word(static_cast<unsigned>(width) & 0xFFFF);
  head.word(static_cast<unsigned>(height) & 0xFFFF);
  head.word(kUnitsPerInch);
  head.dword(0);  // reserved
  unsigned checksum = 0;
  for (int offset = 0; offset < 20; offset += 2) checksum ^= head.wordAt(offset);
  head.word(checksum);
  head.word(1);  // mtType: on disk
  head.word(_headerWords);
  head.word(0x0300);  // mtVersion
  head.dword(size);
  head.word(static_cast<unsigned>(objectCount));
  head.dword(maxRecord);
  head.word(0);  // mtNoParameters
  if (!file) return;
  // The first call makes the file's start; the closing one puts the final
  // values over it.
  if (bytes.empty()) bytes.resize(head.end() - head.begin());
  std::copy(head.begin(), head.end(), bytes.begin());
}

void R_A_WMFCreator::writeRecord(int function, int parameter) {
  const uint16_t words[1] = {static_cast<uint16_t>(parameter)};
  writeRecord(function, words, 1);
}

void R_A_WMFCreator::writeRecord(int function, int parameter1, int parameter2) {
  const uint16_t words[2] = {static_cast<uint16_t>(parameter1), static_cast<uint16_t>(parameter2)};
  writeRecord(function, words, 2);
}

void R_A_WMFCreator::writeRecord(int function, const uint16_t* words, int count) {
  if (count < 0) count = 0;
  if (count > _maxParameters) count = _maxParameters;
  const uint32_t length = static_cast<uint32_t>(count + kRecordHead);
  Bytes record;
  record.dword(length);
  record.word(static_cast<unsigned>(function) & 0xFFFF);
  for (int i = 0; i < count; ++i) record.word(words[i]);
  if (file) bytes.insert(bytes.end(), record.begin(), record.end());
  size += length;
  if (length > maxRecord) maxRecord = length;
}

int R_A_WMFCreator::allocObject() {
  for (int slot = 0; slot < _objectSlots; ++slot) {
    if (isObject[slot]) continue;
    isObject[slot] = true;
    if (objectCount < slot + 1) objectCount = slot + 1;
    return slot;
  }
  return -1;
}

void R_A_WMFCreator::selectObject(int object) {
  assert(object >= 0 && object < objectCount && isObject[object]);
  writeRecord(_selectObject, object);
}

void R_A_WMFCreator::selectStockObject(int object) { writeRecord(_selectObject, object); }

void R_A_WMFCreator::deleteObject(int object) {
  assert(object >= 0 && object < objectCount && isObject[object]);
  writeRecord(_deleteObject, object);
  isObject[object] = false;
}
