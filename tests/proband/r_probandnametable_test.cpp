#include "proband/r_probandnametable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"
#include "core/r_integer.h"
#include "core/r_string.h"

namespace {

// The stored form of a name table: the count, then each name as a text.
std::vector<unsigned char> storedTable(int count, const std::vector<std::string>& names) {
  std::vector<unsigned char> bytes(1 << 16);
  R_BufferOutputStream out(bytes.data(), static_cast<int>(bytes.size()));
  R_Integer(count).save(out);
  for (const std::string& name : names) R_String(name.c_str()).save(out);
  bytes.resize(static_cast<size_t>(out.getCount()));
  return bytes;
}

std::vector<std::string> manyNames(int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) names.push_back("VARIABLE_WITH_A_LONG_NAME_" + std::to_string(i));
  return names;
}

}  // namespace

// Sixty names of about thirty bytes pass both what the table keeps inside
// itself and what it keeps on the heap.
TEST(ProbandNameTableTest, ReadsMoreNamesThanItHoldsInside) {
  std::vector<std::string> names = manyNames(60);
  std::vector<unsigned char> bytes = storedTable(60, names);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_ProbandNameTable table(stream, &ok);
  ASSERT_TRUE(ok);
  ASSERT_EQ(60, table.getCount());
  for (int i = 0; i < 60; ++i) EXPECT_EQ(names[static_cast<size_t>(i)], table.getName(i)) << i;
}

TEST(ProbandNameTableTest, EmptyNamesAndAStoredNulEndTheName) {
  std::vector<unsigned char> bytes = storedTable(3, {"", "A", "B"});
  // The third name becomes "B\0" by hand: its length word says 2.
  bytes[bytes.size() - 3] = 2;
  bytes.push_back(0);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_ProbandNameTable table(stream, &ok);
  ASSERT_TRUE(ok);
  ASSERT_EQ(3, table.getCount());
  EXPECT_STREQ("", table.getName(0));
  EXPECT_STREQ("A", table.getName(1));
  EXPECT_STREQ("B", table.getName(2));
}

TEST(ProbandNameTableTest, ACutStreamFailsKeepingTheWholeNamesBeforeIt) {
  std::vector<std::string> names = manyNames(50);
  std::vector<unsigned char> bytes = storedTable(50, names);
  for (size_t length = 0; length < bytes.size(); ++length) {
    R_BufferInputStream stream(bytes.data(), static_cast<int>(length));
    bool ok = true;
    R_ProbandNameTable table(stream, &ok);
    ASSERT_FALSE(ok) << length;
    ASSERT_LT(table.getCount(), 50) << length;
    for (int i = 0; i < table.getCount(); ++i) ASSERT_EQ(names[static_cast<size_t>(i)], table.getName(i));
  }
}

TEST(ProbandNameTableTest, ACountAboveTheNamesStoredFails) {
  std::vector<unsigned char> bytes = storedTable(2000000000, {"HEIGHT", "WEIGHT"});
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_ProbandNameTable table(stream, &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(2, table.getCount());
}
