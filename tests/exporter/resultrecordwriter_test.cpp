#include "exporter/resultrecordwriter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>

#include "core/r_date.h"
#include "core/r_number.h"

TEST(ResultRecordWriterTest, FoldCharacterMapsCzechLettersAndDashesTheRest) {
  const std::string bytes = "\xE1\xC4\xE8\xC8\xEF\xCF\xEC\xCB\xED\xCD\xE5\xC5\xF2\xD2\xF6\xD4"
                            "\xE0\xD8\x9A\x8A\x9D\x8D\xF9\xDC\xFD\xDD\x9E\x8E\x80\xFF\xA0\xB9";
  const std::string folded = "aAcCdDeEiIlLnNoOrRsStTuUyYzZ----";
  for (size_t i = 0; i < bytes.size(); ++i) {
    EXPECT_EQ(folded[i], foldCharacter(static_cast<unsigned char>(bytes[i]))) << static_cast<int>(bytes[i] & 0xFF);
  }
}

// Each field as written to a stream, and whether the writer said it wrote one.
TEST(ResultRecordWriterTest, FieldsFoldTextsKeepPunctuationAndWriteNothingWhenEmpty) {
  typedef std::function<bool(FILE*)> Write;
  auto text = [](const char* value) { return [=](FILE* f) { return writeStringField(f, "k", value); }; };
  auto number = [](double value) { return [=](FILE* f) { return writeNumberField(f, "n", R_Number(value)), true; }; };
  const struct { Write write; std::string written; bool wrote; } rows[] = {
      {text("\x8E\xE1" "ba"), "\"k\":\"Zaba\"", true},
      {text("a b!@#$%^&*()=-/+.,?;"), "\"k\":\"a b!@#$%^&*()=-/+.,?;\"", true},
      {text("x\"':<>\\[]{}_|~y"), "\"k\":\"xy\"", true}, {text("line\nbreak\ttab\r"), "\"k\":\"linebreaktab\"", true},
      {text("\x80"), "\"k\":\"-\"", true}, {text("\""), "\"k\":\"\"", true}, {text(""), "", false},
      {text(nullptr), "", false},
      {[](FILE* f) { return writeDateField(f, "d", R_Date(5, 3, 2001)); }, "\"d\":\"20010305\"", true},
      {[](FILE* f) { return writeDateField(f, "d", R_Date()); }, "", false},
      {number(123.4567), "\"n\":123.457", true},  // six significant digits
      {number(1000000), "\"n\":1e+06", true}, {number(-0.5), "\"n\":-0.5", true},
      {[](FILE* f) { return writeIntegerField(f, "i", -3), true; }, "\"i\":-3", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.written);
    FILE* file = tmpfile();
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(row.wrote, row.write(file));
    std::string bytes(static_cast<size_t>(ftell(file)), '\0');
    rewind(file);
    EXPECT_EQ(bytes.size(), fread(&bytes[0], 1, bytes.size(), file));
    fclose(file);
    EXPECT_EQ(row.written, bytes);
  }
}
