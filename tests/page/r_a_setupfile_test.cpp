// Settings read from whole setup files, compared as the whole set of keys
// that came out set.
#include "page/r_a_setupfile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

namespace {

// Every key that is set, as "name=value" lines, integer keys first.
std::string setKeys(const R_A_SetupFile& setup) {
  std::string keys;
  for (int code = 0; code < R_A_Setup::_intCodeCount; code++) {
    if (setup.isIntSet(code)) keys += std::string(R_A_Setup::getIntName(code)) + "=" + std::to_string(setup.getInt(code, -99)) + "\n";
  }
  for (int code = 0; code < R_A_Setup::_strCodeCount; code++) {
    if (setup.isStrSet(code)) keys += std::string(R_A_Setup::getStrName(code)) + "=[" + setup.getStr(code, nullptr) + "]\n";
  }
  return keys;
}

}  // namespace

TEST(SetupFileTest, SetsTheKeysOfAFileAndPassesOverTheRest) {
  struct Row {
    std::string file;
    std::string keys;
  } rows[] = {
      {"HTML-HRULE = x\n", "html-hrule=[x]\n"},
      {"graph-optimal-width = abc\n", "graph-optimal-width=0\n"},
      {"port-number = 12x\nlog-level = -3\nversion = 2147483647\n", "port-number=12\nlog-level=-3\nversion=2147483647\n"},
      {"html-hrule = a\nhtml-hrule = b\nhtml-hrule =\n", "html-hrule=[]\n"},
      {"graph-in-sd = 0\nGraph-In-SD = 1\n", "graph-in-sd=1\n"},
      {"graph-color-unused... = red\ngraph-sd-append = \\ SD\n", "graph-color-unused...=[red]\ngraph-sd-append=[ SD]\n"},
      {"html-hrul = x\n{ html-hrule } = y\nhtml-hrule-x = z\n", ""},
      {"html-document-start = {\n  <html>\n  <body>\n}\n", "html-document-start=[\n<html>\n<body>\n]\n"},
  };
  TempDir dir;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.file);
    writeFile(dir.file("setup.txt"), row.file);
    EXPECT_EQ(row.keys, setKeys(R_A_SetupFile(dir.file("setup.txt").c_str())));
  }
}

TEST(SetupFileTest, AnUnsetKeyGivesTheDefaultOfThePlaceOfUse) {
  R_A_SetupFile missing("/nonexistent/setup.txt");
  EXPECT_EQ("", setKeys(missing));
  EXPECT_EQ(512, missing.getInt(R_A_Setup::intGraphOptimalWidth, 512));
  EXPECT_STREQ("<hr>", missing.getStr(R_A_Setup::strHtmlHrule, "<hr>"));
}

TEST(SetupFileTest, SetLooksAtTextKeysFirstAndReadsIntegersAsAtol) {
  R_A_SetupFile setup("");
  EXPECT_TRUE(setup.set("PORT-NUMBER", " 42abc"));
  EXPECT_TRUE(setup.set("temp-dir", "/tmp"));
  EXPECT_FALSE(setup.set("no-such-key", "1"));
  EXPECT_FALSE(setup.set(nullptr, "1"));
  setup.setInt(R_A_Setup::intVersion, 3);
  setup.setStr(R_A_Setup::strWindowTitle, nullptr);
  EXPECT_EQ("port-number=42\nversion=3\ntemp-dir=[/tmp]\nwindow-title=[]\n", setKeys(setup));
}
