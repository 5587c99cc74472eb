#include "core/r_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/stored_bytes.h"

TEST(StringTest, SetAndSetNormalizedTurnEmptyInputIntoTheNullFormWhichReadsAsAnEmptyText) {
  const struct { bool normalize; const char* source; bool result_if_empty, result; const char* text; } rows[] = {
      {false, "", false, false, ""},                    {false, nullptr, true, true, ""},
      {false, "a  b", false, true, "a  b"},             {true, "  a   b \n", false, true, "a b"},
      {true, " \n \t", true, true, ""},                 {true, " \n \t", false, false, ""},
      {true, "", false, false, ""},                     {true, "\xC8 \r\n x\xA0", false, true, "\xC8 x\xA0"},
      {true, "a\x01\x1F" "b", false, true, "a b"},      {true, nullptr, true, true, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source ? row.source : "null");
    R_String s("old");
    EXPECT_EQ(row.result, row.normalize ? s.setNormalized(row.source, row.result_if_empty)
                                        : s.set(row.source, row.result_if_empty));
    EXPECT_STREQ(row.text, s.get());
    EXPECT_EQ(static_cast<int>(strlen(row.text)), s.getLength());
  }
}

TEST(StringTest, EqualityTreatsAllEmptyStringsAsOne) {
  EXPECT_TRUE(R_String(static_cast<const char*>(nullptr)) == R_String(""));
  EXPECT_FALSE(R_String() == R_String("a"));
  EXPECT_FALSE(R_String("a") == R_String());
  EXPECT_FALSE(R_String("ab") == R_String("abc"));
  EXPECT_FALSE(R_String("ab") == R_String("AB"));
  EXPECT_TRUE(R_String("ab") != R_String("ax"));
}

TEST(StringTest, CopiesDoNotShareTheirBytesAndMayComeFromTheirOwnText) {
  R_String a("abc");
  R_String b(a);
  R_String c;
  c = a;
  a.setChar(0, 'x');
  EXPECT_STREQ("abc", b.get());
  EXPECT_STREQ("abc", c.get());
  const R_String& same = c;
  c = same;
  c = c.get();
  EXPECT_STREQ("abc", c.get());
  c = c.get() + 1;
  EXPECT_STREQ("bc", c.get());
}

TEST(StringTest, ContainsMatchesInOneForwardPassIgnoringAsciiCase) {
  const struct { const char* text; const char* pattern; bool found; } rows[] = {
      {"aab", "ab", false},   {"xab", "ab", true},            {"Zebra", "ZEB", true},
      {"zebra", "zEb", true}, {"abc", "", true},              {"abc", "abcd", false},
      {"abc", "c", true},     {"\xC8" "esko", "\xE8", false}, {"\xC8" "esko", "\xC8" "ESK", true},
      {"", "", false},        {"", "a", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.text) + " / " + row.pattern);
    EXPECT_EQ(row.found, R_String(row.text).contains(row.pattern));
  }
}

TEST(StringTest, CaseChangesTouchAsciiLettersOnly) {
  R_String s("AbZ@[`{\xC8\xE8\x8A\x9Az");
  s.toLower();
  EXPECT_STREQ("abz@[`{\xC8\xE8\x8A\x9Az", s.get());
  s.toUpper();
  EXPECT_STREQ("ABZ@[`{\xC8\xE8\x8A\x9AZ", s.get());
}

TEST(StringTest, CharAtAndSetCharStayInsideTheText) {
  R_String s("ab"), empty;
  EXPECT_TRUE(s.charAt(1) == 'b' && s.charAt(2) == 0 && s.charAt(1000) == 0);
  for (int i : {-1, 2, 1}) s.setChar(i, 'y');
  EXPECT_STREQ("ay", s.get());
  EXPECT_EQ(2, s.getLength());
  empty.setChar(0, 'x');
  EXPECT_TRUE(empty.isEmpty());
}

TEST(StringTest, StoredFormIsTypeByteLengthWordAndBytes) {
  expectStoredForm(R_String("ab"), "01 02 00 61 62");
  expectStoredForm(R_String(), "01 00 00");
  expectStoredForm(R_String("\xC8"), "01 01 00 C8");
  expectEveryCutFails<R_String>("01 03 00 61 62 63", [](const R_String& s) { return s.isEmpty(); });
  Bytes bytes = savedBytes(R_String(std::string(300, 'q').c_str()));
  ASSERT_EQ(303u, bytes.size());
  EXPECT_EQ("01 2C 01", hexOf(Bytes(bytes.begin(), bytes.begin() + 3)));
  EXPECT_EQ(bytes, reloadAndSave<R_String>(bytes));
  bytes = savedBytes(R_String(std::string(70000, 'q').c_str()));
  ASSERT_EQ(3u + 65535u, bytes.size()) << "save cuts a text beyond the longest stored length";
  EXPECT_EQ("01 FF FF", hexOf(Bytes(bytes.begin(), bytes.begin() + 3)));
}

TEST(StringTest, AStoredZeroByteEndsTheTextAndAMistypedOrSkippedLoadLeavesTheNullForm) {
  R_String s("old");
  EXPECT_TRUE(loadFrom(bytesOf("01 03 00 61 00 62"), &s));
  EXPECT_STREQ("a", s.get());
  EXPECT_EQ(1, s.getLength());
  EXPECT_FALSE(loadFrom(bytesOf("02 01 00 61"), &s));
  EXPECT_TRUE(s.isEmpty());
  s = "old";
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf("01 01 00 61"), &s, &next, false));
  EXPECT_TRUE(s.isEmpty());
  EXPECT_EQ(0x01, next) << "a load after a failure must not read";
}
