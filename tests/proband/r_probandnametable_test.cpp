#include "proband/r_probandnametable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"
#include "core/r_integer.h"
#include "core/r_string.h"

// Sixty names of about thirty bytes pass both what the table keeps inside
// itself and what it keeps on the heap; the first is empty and the last
// holds a stored NUL, which ends it. Each cut of the stream, and a count
// above the names stored, fails keeping the whole names before the fault.
TEST(ProbandNameTableTest, ReadsTheNamesStoredAndOnlyThose) {
  std::vector<std::string> names = {""};
  for (int i = 1; i < 60; ++i) names.push_back("VARIABLE_WITH_A_LONG_NAME_" + std::to_string(i));
  for (int count : {60, 2000000000}) {
    std::vector<unsigned char> bytes(1 << 16);
    R_BufferOutputStream out(bytes.data(), static_cast<int>(bytes.size()));
    R_Integer(count).save(out);
    for (const std::string& name : names) R_String(name.c_str()).save(out);
    bytes.resize(static_cast<size_t>(out.getCount()));
    bytes[bytes.size() - 30] = 29;  // the last name's length word: one byte more, a NUL
    bytes.push_back(0);
    for (size_t length = bytes.size(); length + 1 > 0; --length) {
      SCOPED_TRACE(std::to_string(count) + " " + std::to_string(length));
      R_BufferInputStream stream(bytes.data(), static_cast<int>(length));
      bool ok = true;
      R_ProbandNameTable table(stream, &ok);
      ASSERT_EQ(count == 60 && length == bytes.size(), ok);
      ASSERT_EQ(length == bytes.size(), table.getCount() == 60);
      for (int i = 0; i < table.getCount(); ++i) ASSERT_EQ(names[static_cast<size_t>(i)], table.getName(i)) << i;
    }
  }
}
