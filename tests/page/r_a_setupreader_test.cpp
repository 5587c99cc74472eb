// The setup file format: whole files read into the list of their settings,
// and the settings they set, compared as the whole set of keys set.
#include "page/r_a_setupreader.h"
#include "page/r_a_setupfile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

namespace {

// Every setting of the file as "LINE name=[value]" lines.
std::string readAll(const std::string& path) {
  R_A_SetupReader reader(path.c_str());
  std::string settings;
  while (reader.next()) {
    settings += std::to_string(reader.getLineNumber()) + " " + reader.getName() + "=[" + reader.getValue() + "]\n";
  }
  EXPECT_FALSE(reader.next());
  EXPECT_STREQ("", reader.getName());
  return settings;
}

struct Row {
  std::string file;
  std::string settings;
};

void checkRows(const Row* rows, size_t count) {
  TempDir dir;
  for (size_t i = 0; i < count; i++) {
    SCOPED_TRACE(rows[i].file);
    writeFile(dir.file("setup.txt"), rows[i].file);
    EXPECT_EQ(rows[i].settings, readAll(dir.file("setup.txt")));
  }
}

}  // namespace

TEST(SetupReaderTest, ReadsNamesAndValuesOfEveryForm) {
  const Row rows[] = {
      {"html-hrule = <hr>\n", "1 html-hrule=[<hr>]\n"},
      {"HTML-HRULE = x", "1 HTML-HRULE=[x]\n"},
      {"{html-hrule} = x\n", "1 html-hrule=[x]\n"},
      {"{a=b c} = d\n", "1 a=b c=[d]\n"},
      {"{} = d\n", "1 =[d]\n"},
      {"=d\n", "1 =[d]\n"},
      {"  a.b_c-D9=  v  w \t\r\n", "1 a.b_c-D9=[v  w]\n"},
      {"name junk = v = w\n", "1 name=[v = w]\n"},
      {"a =\n", "1 a=[]\n"},
      {"x = a}b\n", "1 x=[a}b]\n"},
      {"html-hrule = a\\}b\n", "1 html-hrule=[a}b]\n"},
      {"x = \\ a\\ \n", "1 x=[ a ]\n"},
      {"x = a\\\\\n", "1 x=[a\\]\n"},
      {"x = a \\\n", "1 x=[a]\n"},
      {"x = {\n  <p>\n\n  b \\} \n}\nnext = 1\n", "1 x=[\n<p>\n\nb }\n]\n6 next=[1]\n"},
      {"x = {  a  } rest = 2\ny=3", "1 x=[a]\n2 y=[3]\n"},
      {"x = {a\\}b\n c}\n", "1 x=[a}b\nc]\n"},
      {std::string("a = b\0c = d\ne = f", 17), "1 a=[b]\n2 e=[f]\n"},
  };
  checkRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST(SetupReaderTest, PassesOverCommentsAndLinesThatHoldNoSetting) {
  const Row rows[] = {
      {"# html-hrule = x\n", ""},
      {"  ; a = b\n\n \t \n", ""},
      {"novalue\n", ""},
      {"{a = b\n", ""},
      {"a = 1\nx = {\nabc\n", "1 a=[1]\n"},
      {"x = {abc", ""},
      {"x = {\n}\n", "1 x=[\n]\n"},
      {"", ""},
  };
  checkRows(rows, sizeof(rows) / sizeof(rows[0]));
  EXPECT_EQ("", readAll("/nonexistent/setup.txt"));
  EXPECT_FALSE(R_A_SetupReader("").isOpen());
  EXPECT_FALSE(R_A_SetupReader(nullptr).next());
}

TEST(SetupReaderTest, HoldsItsLimitsOfNameLineAndValue) {
  std::string name65(65, 'n'), name66(66, 'n');
  std::string a(4000, 'a'), b(4000, 'b'), c(300, 'c');
  std::string full(R_A_SetupReader::maxLine - 4, 'v');
  const Row rows[] = {
      {name65 + " = 1\n", "1 " + name65 + "=[1]\n"},
      {"{" + name66 + "} = 1\nz = 2\n", "2 z=[2]\n"},
      {name66 + " = {\nq = 1\n}\nz = 2\n", "4 z=[2]\n"},
      {"v = {\n" + a + "\n" + b + "\n" + c + "}\nz = 2\n", "1 v=[\n" + a + "\n" + b + "\n" + c.substr(0, 189) + "]\n5 z=[2]\n"},
      {"x = " + full + "y = 2\nz = 3\n", "1 x=[" + full + "]\n1 y=[2]\n2 z=[3]\n"},
      {"x = {" + full.substr(1) + "\n}\nz = 3\n", "1 x=[" + full.substr(1) + "\n]\n3 z=[3]\n"},
  };
  checkRows(rows, sizeof(rows) / sizeof(rows[0]));
}

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
