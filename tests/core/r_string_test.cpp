// Texts: r_ascii.h, R_String, R_StringList, R_TextBuffer, and the checksum R_A_CRC16 over bytes.
#include "core/r_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/r_a_crc16.h"
#include "core/r_ascii.h"
#include "core/r_stringlist.h"
#include "core/r_textbuffer.h"
#include "tests/support/stored_bytes.h"

TEST(AsciiTest, StricmpFoldsAsciiLettersOnlyAndSortsHighBytesBehindThem) {
  const struct { const char* a; const char* b; int expected; } pairs[] = {
      {"abc", "ABC", 0}, {"a", "B", -1},       {"Zebra", "apple", 1},  {"", "a", -1},        {"ab", "a", 1},
      {"\xC8", "z", 1},  {"\xC8", "\xE8", -1}, {"\xC8" "a", "\xC8" "A", 0}, {"a\x80", "a\x7F", 1},
  };
  for (const auto& row : pairs) {
    int result = R_stricmp(row.a, row.b);
    EXPECT_EQ(row.expected, (result > 0) - (result < 0)) << row.a << " / " << row.b;
  }
}

TEST(StringTest, SetAndSetNormalizedTurnEmptyInputIntoTheNullFormWhichReadsAsAnEmptyText) {
  const struct { bool normalize; const char* source; bool result_if_empty, result; const char* text; } rows[] = {
      {false, "", false, false, ""},        {false, nullptr, true, true, ""},   {false, "a  b", false, true, "a  b"},
      {true, "  a   b \n", false, true, "a b"}, {true, " \n \t", true, true, ""}, {true, " \n \t", false, false, ""},
      {true, "\xC8 \r\n x\xA0", false, true, "\xC8 x\xA0"}, {true, "a\x01\x1F" "b\x20\x1F", false, true, "a b"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source ? row.source : "null");
    R_String s("old");
    EXPECT_EQ(row.result, row.normalize ? s.setNormalized(row.source, row.result_if_empty)
                                        : s.set(row.source, row.result_if_empty));
    EXPECT_STREQ(row.text, s.get());
    EXPECT_EQ(static_cast<int>(strlen(row.text)), s.getLength());
  }
  EXPECT_TRUE(R_String(static_cast<const char*>(nullptr)) == R_String(""));
  EXPECT_FALSE(R_String("ab") == R_String("abc") || R_String("ab") == R_String("AB"));
}

TEST(StringTest, CopiesOwnTheirBytesAndSetCharStaysInsideTheText) {
  R_String a("abc"), b(a), c;
  c = a;
  a.setChar(0, 'x');
  EXPECT_EQ("xbc abc abc", std::string(a.get()) + " " + b.get() + " " + c.get());
  c = c.get() + 1;  // from its own text
  EXPECT_STREQ("bc", c.get());
  R_String s("ab"), empty;
  EXPECT_TRUE(s.charAt(1) == 'b' && s.charAt(2) == 0 && s.charAt(1000) == 0);
  for (int i : {-1, 2, 1}) s.setChar(i, 'y');
  EXPECT_EQ(std::string("ay\0", 3), std::string(s.get(), 3));  // the length stays 2
  empty.setChar(0, 'x');
  EXPECT_TRUE(empty.isEmpty());
}

TEST(StringTest, ContainsMatchesInOneForwardPassIgnoringAsciiCaseAndCaseChangesTouchAsciiOnly) {
  const struct { const char* text; const char* pattern; bool found; } rows[] = {
      {"aab", "ab", false},   {"xab", "ab", true},  {"Zebra", "ZEB", true},   {"zebra", "zEb", true},
      {"abc", "", true},      {"abc", "abcd", false}, {"\xC8" "esko", "\xE8", false},
      {"\xC8" "esko", "\xC8" "ESK", true},          {"", "", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.found, R_String(row.text).contains(row.pattern)) << row.text << " / " << row.pattern;
  }
  R_String s("AbZ@[`{\xC8\xE8\x8A\x9Az");
  s.toLower();
  EXPECT_STREQ("abz@[`{\xC8\xE8\x8A\x9Az", s.get());
  s.toUpper();
  EXPECT_STREQ("ABZ@[`{\xC8\xE8\x8A\x9AZ", s.get());
}

TEST(StringTest, StoredFormIsTypeByteLengthWordAndBytesAndAZeroByteEndsIt) {
  expectStoredForm(R_String("ab"), "01 02 00 61 62");
  expectStoredForm(R_String(), "01 00 00");
  expectEveryCutFails<R_String>("01 03 00 61 62 63", [](const R_String& s) { return s.isEmpty(); });
  Bytes bytes = savedBytes(R_String(std::string(70000, 'q').c_str()));
  ASSERT_EQ(3u + 65535u, bytes.size()) << "save cuts a text beyond the longest stored length";
  EXPECT_EQ("01 FF FF", hexOf(Bytes(bytes.begin(), bytes.begin() + 3)));
  R_String s("old");
  EXPECT_TRUE(loadFrom(bytesOf("01 03 00 61 00 62"), &s));
  EXPECT_EQ("a", std::string(s.get(), static_cast<size_t>(s.getLength())));
  EXPECT_FALSE(loadFrom(bytesOf("02 01 00 61"), &s));
  EXPECT_TRUE(s.isEmpty()) << "a wrong type byte";
  s = "old";
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf("01 01 00 61"), &s, &next, false));
  EXPECT_TRUE(s.isEmpty() && next == 0x01) << "a load after a failure must not read";
}

TEST(StringListTest, SplitsAtControlBytesAndBlanksWithoutEmptyWords) {
  const struct { const char* text; std::vector<std::string> words; } rows[] = {
      {"  alpha\tbeta  ", {"alpha", "beta"}}, {"   \t\n", {}}, {"a\x01" "b\x1F" "c d", {"a", "b", "c", "d"}},
      {"\xC8" "esk\xE1 \xA0rep\x7F", {"\xC8" "esk\xE1", "\xA0rep\x7F"}},
  };
  for (const auto& row : rows) {
    R_StringList list(row.text);
    std::vector<std::string> words;
    for (int i = 0; i < list.getCount(); ++i) words.push_back(list[i]);
    EXPECT_EQ(row.words, words) << row.text;
  }
}

// Bytes put one by one and in runs of every length, across many growths, come out in order, NUL and bytes above 127
// too; clear keeps the room.
TEST(TextBufferTest, KeepsEveryByteInOrderAcrossGrowthAndClearKeepsTheRoom) {
  R_TextBuffer buffer;
  std::string expected;
  for (int length = 0; length < 700; ++length) {
    std::string run(static_cast<size_t>(length), static_cast<char>('a' + length % 26));
    buffer.put(run.data(), run.size());
    buffer.put(static_cast<char>(length % 256));
    expected += run + static_cast<char>(length % 256);
  }
  EXPECT_EQ(expected, std::string(buffer.data(), buffer.size()));
  ASSERT_TRUE(buffer.reserve(1 << 20));
  const char* room = buffer.data();
  buffer.clear();
  buffer.put("second");
  EXPECT_EQ("second", std::string(buffer.data(), buffer.size()));
  EXPECT_EQ(room, buffer.data());
}

// The checksum shifts in each byte and tests bit 10 without a mask, so the two lowest bits of a byte never count:
// "`ab" sums as "abc".
TEST(CRC16Test, ChecksumsOfKnownBytes) {
  const struct { std::string bytes; int expected; } rows[] = {
      {"", 0},         {"abc", 0x1B7EEE}, {"abcde", 0x70EF2307}, {"\xFF\xFF", 0x3F3F},
      {std::string("\x00\x00\x00\x00\x00\x80", 6), 0x20}, {"\x10", 4}, {"\x01\x02\x03", 0}, {"`ab", 0x1B7EEE},
  };
  for (const auto& row : rows) {
    R_A_CRC16 crc;
    crc.update(reinterpret_cast<const unsigned char*>(row.bytes.data()), static_cast<int>(row.bytes.size()));
    EXPECT_EQ(row.expected, crc.get()) << row.bytes;
  }
}
