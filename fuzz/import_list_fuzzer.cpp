// Import lists of the predecessor product: any bytes read as a list on the
// sample knowledge file. The read must be repeatable, every surviving entry
// must unpack into a proband of defined sex whose summary agrees with it,
// packing that proband again must give the same proband, and a mode other
// than 0 must leave the list alone.
#include <cstdint>
#include <cstring>
#include <string>

#include "core/r_date.h"
#include "fuzz/fuzz_support.h"
#include "proband/r_importlist.h"
#include "proband/r_proband.h"

namespace {

// The proband's XML text, "" when it cannot be written.
std::string textOf(const R_Proband& proband) {
  static char buffer[1 << 20];
  int bytes = 0;
  return proband.saveToText(buffer, &bytes, sizeof(buffer)) ? std::string(buffer, bytes) : std::string();
}

void checkEntry(const R_File& file, const R_ImportList& list, int index) {
  R_Proband proband(&file);
  FUZZ_CHECK(list.getProband(proband, index));
  FUZZ_CHECK(proband.isSexDefined());
  int sex = -1;
  R_Date dob;
  list.getSummary(&file, index, &sex, &dob);
  FUZZ_CHECK(sex == proband.getSex());
  FUZZ_CHECK(dob == proband.getDob());
  for (int typ = 0; typ < R_ImportProband::_textCount; typ++) FUZZ_CHECK(list.getText(index, typ) != nullptr);

  R_ImportList again;
  FUZZ_CHECK(again.add(proband, list.getText(index, 0), "", "", ""));
  R_Proband copy(&file);
  FUZZ_CHECK(again.getProband(copy, 0));
  FUZZ_CHECK(textOf(copy) == textOf(proband));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const R_File& file = sampleKnowledge();
  const char* path = writeScratchFile("import.xml", data, size);
  CheckingReporter reporter;
  R_ImportList list;
  bool loaded = list.load(&file, path, &reporter, 0);
  FUZZ_CHECK(loaded || reporter.getCount() > 0);
  for (int i = 0; i < list.getCount(); i++) checkEntry(file, list, i);

  std::string info = list.getInfo();
  int count = list.getCount();
  FUZZ_CHECK(!list.load(&file, path, nullptr, 1));
  FUZZ_CHECK(list.getCount() == count && info == list.getInfo());
  R_ImportList second;
  FUZZ_CHECK(second.load(&file, path, nullptr, 0) == loaded);
  FUZZ_CHECK(second.getCount() == count && info == second.getInfo());
  return 0;
}
