#include "core/r_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/stored_bytes.h"

TEST(StringTest, TheNullFormReadsAsAnEmptyText) {
  R_String s;
  ASSERT_NE(nullptr, s.get());
  EXPECT_STREQ("", s.get());
  EXPECT_EQ(0, s.getLength());
  EXPECT_TRUE(s.isEmpty());
  EXPECT_STREQ("", static_cast<const char*>(R_String(static_cast<const char*>(nullptr))));
}

TEST(StringTest, SetTurnsEmptyInputIntoTheNullFormAndAnswersResultIfEmpty) {
  R_String s("old");
  EXPECT_FALSE(s.set("", false));
  EXPECT_TRUE(s.isEmpty());
  s = "old";
  EXPECT_TRUE(s.set(nullptr, true));
  EXPECT_TRUE(s.isEmpty());
  EXPECT_TRUE(s.set("abc", false));
  EXPECT_STREQ("abc", s.get());
  EXPECT_EQ(3, s.getLength());
}

TEST(StringTest, SetNormalizedSqueezesWhitespaceAndTreatsBlankInputAsEmpty) {
  const struct {
    const char* source;
    bool result_if_empty;
    bool result;
    const char* text;
  } rows[] = {
      {"  a   b \n", false, true, "a b"},      {" \n \t", true, true, ""},
      {" \n \t", false, false, ""},            {"", false, false, ""},
      {"\xC8 \r\n x\xA0", false, true, "\xC8 x\xA0"}, {"a\x01\x1F" "b", false, true, "a b"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source);
    R_String s("old");
    EXPECT_EQ(row.result, s.setNormalized(row.source, row.result_if_empty));
    EXPECT_STREQ(row.text, s.get());
    EXPECT_EQ(static_cast<int>(strlen(row.text)), s.getLength());
  }
  R_String s("old");
  EXPECT_TRUE(s.setNormalized(nullptr, true));
  EXPECT_TRUE(s.isEmpty());
}

TEST(StringTest, EqualityTreatsAllEmptyStringsAsOne) {
  EXPECT_TRUE(R_String() == R_String(""));
  EXPECT_TRUE(R_String(static_cast<const char*>(nullptr)) == R_String());
  EXPECT_FALSE(R_String() == R_String("a"));
  EXPECT_FALSE(R_String("a") == R_String());
  EXPECT_TRUE(R_String("ab") == R_String("ab"));
  EXPECT_FALSE(R_String("ab") == R_String("abc"));
  EXPECT_FALSE(R_String("ab") == R_String("AB"));
  EXPECT_TRUE(R_String("ab") != R_String("ax"));
}

TEST(StringTest, CopiesDoNotShareTheirBytes) {
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
  const struct {
    const char* text;
    const char* pattern;
    bool found;
  } rows[] = {
      {"aab", "ab", false},  {"xab", "ab", true},        {"Zebra", "ZEB", true},
      {"zebra", "zEb", true}, {"abc", "", true},          {"abc", "abcd", false},
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
  R_String s("ab");
  EXPECT_EQ('a', s.charAt(0));
  EXPECT_EQ('b', s.charAt(1));
  EXPECT_EQ(0, s.charAt(2));
  EXPECT_EQ(0, s.charAt(1000));
  s.setChar(-1, 'x');
  s.setChar(2, 'x');
  s.setChar(1, 'y');
  EXPECT_STREQ("ay", s.get());
  EXPECT_EQ(2, s.getLength());
  R_String empty;
  empty.setChar(0, 'x');
  EXPECT_EQ(0, empty.charAt(0));
  EXPECT_TRUE(empty.isEmpty());
}

TEST(StringTest, StoredFormIsTypeByteLengthWordAndBytes) {
  EXPECT_EQ("01 02 00 61 62", hexOf(savedBytes(R_String("ab"))));
  EXPECT_EQ("01 00 00", hexOf(savedBytes(R_String())));
  EXPECT_EQ("01 01 00 C8", hexOf(savedBytes(R_String("\xC8"))));
  for (const char* hex : {"01 02 00 61 62", "01 00 00", "01 01 00 9A"}) {
    SCOPED_TRACE(hex);
    EXPECT_EQ(hex, hexOf(reloadAndSave<R_String>(bytesOf(hex))));
  }
  R_String long_text(std::string(300, 'q').c_str());
  Bytes bytes = savedBytes(long_text);
  ASSERT_EQ(303u, bytes.size());
  EXPECT_EQ("01 2C 01", hexOf(Bytes(bytes.begin(), bytes.begin() + 3)));
  EXPECT_EQ(bytes, reloadAndSave<R_String>(bytes));
}

TEST(StringTest, SaveCutsATextBeyondTheLongestStoredLength) {
  Bytes bytes = savedBytes(R_String(std::string(70000, 'q').c_str()));
  ASSERT_EQ(3u + 65535u, bytes.size());
  EXPECT_EQ("01 FF FF", hexOf(Bytes(bytes.begin(), bytes.begin() + 3)));
}

TEST(StringTest, AStoredZeroByteEndsTheText) {
  Bytes bytes = bytesOf("01 03 00 61 00 62");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_String s(in, &ok);
  EXPECT_TRUE(ok);
  EXPECT_STREQ("a", s.get());
  EXPECT_EQ(1, s.getLength());
}

TEST(StringTest, ACutMistypedOrSkippedLoadLeavesTheNullForm) {
  forEachTruncation<R_String>(savedBytes(R_String("abc")), [](const R_String& s, bool ok, R_InputStream&) {
    EXPECT_FALSE(ok);
    EXPECT_TRUE(s.isEmpty());
  });
  Bytes bytes = bytesOf("02 01 00 61");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_String s("old");
  s.load(in, &ok);
  EXPECT_FALSE(ok);
  EXPECT_TRUE(s.isEmpty());
  s = "old";
  s.load(in, &ok);
  EXPECT_TRUE(s.isEmpty());
  EXPECT_EQ(0x01, in.readByte()) << "a load after a failure must not read";
}
