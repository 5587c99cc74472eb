// The object list file (first byte 154): R_BinaryObjectList::loadFile over
// the input as a file. A list that loads writes a file that loads again to
// the same objects and writes the same bytes once more.
#include <cstdint>

#include "core/r_binaryobjectlist.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* path = writeScratchFile("input.bin", data, size);
  R_BinaryObjectList list;
  if (!list.loadFile(path)) return 0;
  for (int i = 0; i < list.getCount(); ++i) list.getName(i);
  const char* first = scratchPath("list-1.bin");
  FUZZ_CHECK(list.saveFile(first));
  R_BinaryObjectList again;
  FUZZ_CHECK(again.loadFile(first));
  FUZZ_CHECK(again.getCount() == list.getCount());
  const char* second = scratchPath("list-2.bin");
  FUZZ_CHECK(again.saveFile(second));
  FUZZ_CHECK(readWholeFile(first) == readWholeFile(second));
  return 0;
}
