// Conversions of whole Czech and Slovak texts, whose expected forms were
// made by an independent encoder, and the fit score on hand-counted texts.
#include "page/r_a_czconvert.h"

#include <gtest/gtest.h>

#include <string>

#include "core/r_string.h"
#include "tests/support/test_files.h"

TEST(CZConvertTest, WholeTextsConvertBetweenWindowsIsoAndDos) {
  const struct {
    const char* name;
    const char* file;
  } kPages[] = {{"cp1250", "page/czech_cp1250.txt"}, {"ISO-8859-2", "page/czech_iso.txt"},
                {"dos", "page/czech_cp852.txt"}};
  for (const auto& source : kPages) {
    for (const auto& target : kPages) {
      SCOPED_TRACE(std::string(source.name) + " to " + target.name);
      R_String text(readFile(testData(source.file)).c_str());
      R_A_CZConvert(source.name, target.name).convert(text);
      EXPECT_EQ(readFile(testData(target.file)), text.get());
    }
  }
}

TEST(CZConvertTest, KamenickyByNameAsciiUntouchedAndUnknownNamesMeanWindows) {
  char text[] = "K\xF9\xF2 \xE8\x8A!";  // Kůň čŠ! in cp1250
  R_A_CZConvert("win", "KAMENICKY").convert(text);
  EXPECT_STREQ("K\x96\xA4 \x87\x9B!", text);
  EXPECT_EQ(3, R_A_CZConvert::findEncoding("KAMENICKY"));
  EXPECT_EQ(0, R_A_CZConvert::findEncoding("utf-8"));
  R_A_CZConvert to_dos("cp1250", "cp852");
  EXPECT_EQ(0x9F, to_dos.convert(0xE8));
  // The letter table gives e with diaeresis the same byte in every page,
  // though code page 852 has it elsewhere: converted texts depend on it.
  EXPECT_EQ(0xEB, to_dos.convert(0xEB));
  EXPECT_EQ(0xCB, to_dos.convert(0xCB));
  R_A_CZConvert unknown("utf-8", nullptr);
  for (int byte = 0; byte < 256; byte++) EXPECT_EQ(byte, unknown.convert(static_cast<unsigned char>(byte)));
  R_A_CZConvert iso(1, 0);
  for (int byte = 0; byte < 128; byte++) EXPECT_EQ(byte, iso.convert(static_cast<unsigned char>(byte)));
}

TEST(CZConvertTest, ScoreCountsSourceLettersAgainstFourTimesForeignOnes) {
  R_A_CZConvert convert("cp1250", "iso");
  EXPECT_EQ(-1.0, convert.getScore());
  convert.analyse("", true);
  EXPECT_EQ(-1.0, convert.getScore());
  convert.analyse("plain ascii", true);
  EXPECT_EQ(0.0, convert.getScore());
  convert.analyse("K\xF9\xF2", true);  // two letters of cp1250 in three bytes
  EXPECT_DOUBLE_EQ(2.0 / 3.0, convert.getScore());
  convert.analyse("a\xA9", false);  // A9 is a letter of ISO only
  EXPECT_DOUBLE_EQ((2.0 - 4.0) / 5.0, convert.getScore());
  R_A_CZConvert same("cp1250", "1250");
  same.analyse("K\xF9\xF2", true);
  EXPECT_EQ(0.0, same.getScore());
}
