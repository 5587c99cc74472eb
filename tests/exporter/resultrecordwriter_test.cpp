#include "exporter/resultrecordwriter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "core/r_date.h"
#include "core/r_number.h"

namespace {

// Runs `write` against a temporary stream and answers what it wrote.
template <class Write>
std::string captured(Write write) {
  FILE* file = tmpfile();
  write(file);
  std::string bytes;
  long size = ftell(file);
  rewind(file);
  bytes.resize(static_cast<size_t>(size));
  if (size > 0 && fread(&bytes[0], 1, bytes.size(), file) != bytes.size()) bytes.clear();
  fclose(file);
  return bytes;
}

std::string stringField(const char* text, bool* written = nullptr) {
  return captured([&](FILE* f) {
    bool w = writeStringField(f, "k", text);
    if (written) *written = w;
  });
}

}  // namespace

TEST(ResultRecordWriterTest, FoldCharacterMapsCzechLettersAndDashesTheRest) {
  struct Row {
    unsigned char byte;
    char folded;
  } rows[] = {
      {0xE1, 'a'}, {0xC4, 'A'}, {0xE8, 'c'}, {0xC8, 'C'}, {0xEF, 'd'}, {0xCF, 'D'}, {0xEC, 'e'}, {0xCB, 'E'},
      {0xED, 'i'}, {0xCD, 'I'}, {0xE5, 'l'}, {0xC5, 'L'}, {0xF2, 'n'}, {0xD2, 'N'}, {0xF6, 'o'}, {0xD4, 'O'},
      {0xE0, 'r'}, {0xD8, 'R'}, {0x9A, 's'}, {0x8A, 'S'}, {0x9D, 't'}, {0x8D, 'T'}, {0xF9, 'u'}, {0xDC, 'U'},
      {0xFD, 'y'}, {0xDD, 'Y'}, {0x9E, 'z'}, {0x8E, 'Z'}, {0x80, '-'}, {0xFF, '-'}, {0xA0, '-'}, {0xB9, '-'},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.byte));
    EXPECT_EQ(row.folded, foldCharacter(row.byte));
  }
}

TEST(ResultRecordWriterTest, StringFieldFoldsKeepsPunctuationAndDropsTheRest) {
  struct Row {
    const char* text;
    const char* written;
  } rows[] = {
      {"\x8E\xE1" "ba", "\"k\":\"Zaba\""},
      {"a b!@#$%^&*()=-/+.,?;", "\"k\":\"a b!@#$%^&*()=-/+.,?;\""},
      {"x\"':<>\\[]{}_|~y", "\"k\":\"xy\""},
      {"line\nbreak\ttab\r", "\"k\":\"linebreaktab\""},
      {"\x80", "\"k\":\"-\""},
      {"\"", "\"k\":\"\""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    bool written = false;
    EXPECT_EQ(row.written, stringField(row.text, &written));
    EXPECT_TRUE(written);
  }
}

TEST(ResultRecordWriterTest, StringFieldWritesNothingForAnEmptyText) {
  bool written = true;
  EXPECT_EQ("", stringField("", &written));
  EXPECT_FALSE(written);
  EXPECT_EQ("", stringField(nullptr, &written));
  EXPECT_FALSE(written);
}

TEST(ResultRecordWriterTest, DateFieldIsYearMonthDay) {
  EXPECT_EQ("\"d\":\"20010305\"", captured([](FILE* f) { writeDateField(f, "d", R_Date(5, 3, 2001)); }));
  bool written = true;
  EXPECT_EQ("", captured([&](FILE* f) { written = writeDateField(f, "d", R_Date()); }));
  EXPECT_FALSE(written);
}

TEST(ResultRecordWriterTest, NumberFieldsPrintWithSixSignificantDigits) {
  struct Row {
    double value;
    const char* written;
  } rows[] = {
      {123.4567, "\"n\":123.457"}, {1000000, "\"n\":1e+06"}, {143.2, "\"n\":143.2"}, {-0.5, "\"n\":-0.5"}, {0, "\"n\":0"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(row.written, captured([&](FILE* f) { writeNumberField(f, "n", R_Number(row.value)); }));
  }
  EXPECT_EQ("\"i\":-3", captured([](FILE* f) { writeIntegerField(f, "i", -3); }));
}
