// Writes a Windows metafile with a placeable header, record by record. The
// constructor creates the file's temporary and puts both headers and the
// three opening records (map mode 1, window origin 0,0, window extent
// height,width); the destructor puts the headers again with the final size,
// object count and longest record, and only then does the file appear under
// its name. The file is small, so its bytes gather in memory and reach the
// disk whole when it closes. No closing record is written: a new file holds
// 9 + 4 + 5 + 5 words.
//
// A record is its size in 16-bit words (parameters + 3) as 32 bits, a
// 16-bit function and its 16-bit parameters.
// When the file cannot be created every operation still works on the counts
// and nothing is written anywhere. Not copyable.
#ifndef OUTPUT_R_A_WMFCREATOR_H
#define OUTPUT_R_A_WMFCREATOR_H

#include <cstdint>
#include <memory>
#include <vector>

#include "core/r_safefile.h"

class R_A_WMFCreator {
 public:
  static const int _objectSlots = 64;
  static const int _maxParameters = 200;
  static const int _placeableSize = 22;  // bytes
  static const int _headerWords = 9;

  // Record functions this system writes.
  static const int _setMapMode = 0x0103;
  static const int _setWindowOrg = 0x020B;
  static const int _setWindowExt = 0x020C;
  static const int _selectObject = 0x012D;
  static const int _setTextAlign = 0x012E;
  static const int _deleteObject = 0x01F0;

  // `width` and `height` enter the 16-bit fields as their low 16 bits.
  R_A_WMFCreator(const char* path, int width, int height);
  ~R_A_WMFCreator();
  R_A_WMFCreator(const R_A_WMFCreator&) = delete;
  R_A_WMFCreator& operator=(const R_A_WMFCreator&) = delete;

  bool isOpen() const { return file != nullptr; }
  // In words: the headers' 9 plus every record so far.
  uint32_t getSize() const { return size; }
  // The highest object slot used plus 1.
  int getObjectCount() const { return objectCount; }
  // In words; never below 8.
  uint32_t getMaxRecord() const { return maxRecord; }

  // One record; each parameter is taken as its low 16 bits.
  void writeRecord(int function, int parameter);
  void writeRecord(int function, int parameter1, int parameter2);
  // One record of `count` parameters, limited to 0 to _maxParameters.
  // Requires: `words` holds that many.
  void writeRecord(int function, const uint16_t* words, int count);

  // Marks the first free object slot and answers it; -1, changing nothing,
  // when all 64 are taken.
  int allocObject();
  // Requires: `object` is a slot taken by allocObject.
  void selectObject(int object);
  // Selects a stock object; `object` is not checked.
  void selectStockObject(int object);
  // Requires: `object` is a slot taken by allocObject. Frees it.
  void deleteObject(int object);

 private:
  void writeHeaders();

  std::unique_ptr<R_SafeFile> file;  // null when it cannot be created
  std::vector<unsigned char> bytes;  // the whole file so far
  int width, height;
  uint32_t size = _headerWords;
  int objectCount = 0;
  uint32_t maxRecord = 8;
  bool isObject[_objectSlots] = {};
};

#endif
