#include "knowledge/r_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_interval.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "knowledge/r_xyvar.h"
#include "tests/knowledge/knowledge_file_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

const char* const kNames[] = {"AGE", "HEIGHT", "WEIGHT", "FATHER_HT", "MOTHER_HT", "TANNER_PH"};

// The lines of a file: the small head, then `body`, then the end of `quorl`.
std::string smallFile(const std::vector<std::string>& body) {
  std::vector<std::string> lines = smallFileHead();
  lines.insert(lines.end(), body.begin(), body.end());
  lines.push_back("</quorl>");
  return joinLines(lines);
}

const char* const kHeightVar =
    "<var><id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>H</name></var>";

}  // namespace

TEST_F(KnowledgeFileTest, MinimalFileLoadsWithItsVariablesInFileOrder) {
  R_File file;
  EXPECT_FALSE(file.isOK());
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, minimalPath()));
  ASSERT_EQ(6, file.getVarCount());
  for (int i = 0; i < 6; ++i) {
    EXPECT_STREQ(kNames[i], file.getStatistics().getVarName(i));
    EXPECT_EQ(i, file.getVariable(i)->getIndex());
  }
  EXPECT_EQ(0, file.getRefCount());
  EXPECT_EQ(0, file.getTextCount());
  EXPECT_EQ(0, file.getAgeIndex());
  EXPECT_EQ(file.getVariable(0), file.getAgeVariable());
  EXPECT_TRUE(file.getGraphRefLines().isComplete());
  EXPECT_EQ(3, file.getStatistics().getVarIndex("Father_HT"));
  EXPECT_STREQ("Height of the father", file.getVariable(3)->getName());
  EXPECT_TRUE(file.getVariable(1)->getXYVar() == R_XYVar(-1, 0, 1));
  EXPECT_TRUE(file.getVariable(3)->getXYVar() == R_XYVar(3, -1, -1));
  EXPECT_STREQ("PH4", file.getVariable(5)->getList().getText(4.0, false));
}

TEST_F(KnowledgeFileTest, FindTextIsExactAndSearchesFindNothingWithoutReferences) {
  R_File file;
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, minimalPath()));
  EXPECT_EQ(-1, file.findText("AGE"));
  EXPECT_EQ(-1, file.findText(""));
  EXPECT_EQ(-1, file.findText(nullptr));
  EXPECT_EQ(-1, file.findReference(0, R_Number(5), R_XYVar(-1, 0, 1)));
  EXPECT_EQ(-1, file.findReference(1, R_Interval(R_Number(2), R_Number(3)), R_XYVar(-1, 0, 1)));
}

TEST_F(KnowledgeFileTest, SaveXMLThenLoadXMLGivesTheSameFileAndTheSameBytes) {
  R_File original;
  ASSERT_EQ(std::vector<std::string>(), loadXML(original, minimalPath()));
  std::string first = dir.file("first.xml");
  ASSERT_TRUE(original.saveXML(first.c_str()));
  R_File reread;
  ASSERT_EQ(std::vector<std::string>(), loadXML(reread, first));
  ASSERT_EQ(original.getVarCount(), reread.getVarCount());
  for (int i = 0; i < original.getVarCount(); ++i)
    EXPECT_STREQ(original.getStatistics().getVarName(i), reread.getStatistics().getVarName(i));
  EXPECT_STREQ("minimal.xml", reread.getStatistics().getFilename());
  std::string second = dir.file("second.xml");
  ASSERT_TRUE(reread.saveXML(second.c_str()));
  EXPECT_EQ(readFile(first), readFile(second));
  ASSERT_TRUE(original.saveBinary(dir.file("original.bin").c_str()));
  ASSERT_TRUE(reread.saveBinary(dir.file("reread.bin").c_str()));
  EXPECT_EQ(readFile(dir.file("original.bin")), readFile(dir.file("reread.bin")));
}

TEST_F(KnowledgeFileTest, SaveXMLBeginsWithTheHeaderAndInfo) {
  R_File file;
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, minimalPath()));
  ASSERT_TRUE(file.saveXML(dir.file("out.xml").c_str()));
  std::string written = readFile(dir.file("out.xml"));
  const std::string head =
      "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?>\n"
      "<!DOCTYPE quorl SYSTEM \"quorl.dtd\">\n"
      "<quorl>\n"
      " <info>\n"
      "  <filename>\n"
      "    minimal.xml\n"
      "  </filename>\n";
  EXPECT_EQ(head, written.substr(0, head.size()));
}

TEST_F(KnowledgeFileTest, SaveBinaryThenLoadBinaryGivesTheSameObjects) {
  R_File original;
  ASSERT_EQ(std::vector<std::string>(), loadXML(original, minimalPath()));
  std::string first = dir.file("first.bin");
  ASSERT_TRUE(original.saveBinary(first.c_str()));
  R_File reread;
  ASSERT_TRUE(reread.loadBinary(first.c_str()));
  std::string second = dir.file("second.bin");
  ASSERT_TRUE(reread.saveBinary(second.c_str()));
  EXPECT_EQ(readFile(first), readFile(second));
  // The XML written from either is the same, so nothing was lost.
  ASSERT_TRUE(original.saveXML(dir.file("original.xml").c_str()));
  ASSERT_TRUE(reread.saveXML(dir.file("reread.xml").c_str()));
  EXPECT_EQ(readFile(dir.file("original.xml")), readFile(dir.file("reread.xml")));
  EXPECT_EQ(0, reread.getAgeIndex());
  EXPECT_EQ(3, reread.getFollowedVars()->getCount());
  EXPECT_EQ(2, reread.getAnamnesticVars()->getCount());
  EXPECT_TRUE(reread.getVariable(5)->getInterval().getMax().isEqual(5));
}

// The tiny file: one age variable "AGE" named "A", lines [0 "M"] and [50 "P"].
const char* const kTinyXML =
    "<quorl><info><filename>t</filename><copyright>c</copyright></info>"
    "<graphlines><sdslines><list><item value=\"0\">M</item></list></sdslines>"
    "<percentilelines><list><item value=\"50\">P</item></list></percentilelines></graphlines>"
    "<var><id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\"/><name>A</name></var></quorl>";
const char* const kTinyBinary =
    "09 "
    // statistics: one variable, no reference, no text, "t", "c", no date, "AGE"
    "05 02 01 00 00 00 02 00 00 00 00 02 00 00 00 00 01 01 00 74 01 01 00 63 20 00 00 00 00 01 03 00 41 47 45 "
    // lines: SD list, then percentile list
    "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 00 00 "
    "07 02 01 00 00 00 01 01 00 50 03 01 00 00 00 00 00 00 49 40 "
    // the variable: age 512 + followed 32 + real 64 + both sexes 24 = 632
    "08 02 78 02 00 00 01 01 00 41 01 00 00 01 00 00 03 00 04 03 00 03 00 02 00 00 00 00 "
    "12 02 FF FF FF FF 02 FF FF FF FF 02 FF FF FF FF";

TEST_F(KnowledgeFileTest, BinaryFormIsPinnedByItsBytes) {
  R_File file;
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, write("tiny.xml", kTinyXML)));
  ASSERT_TRUE(file.saveBinary(dir.file("tiny.bin").c_str()));
  std::string bytes = readFile(dir.file("tiny.bin"));
  EXPECT_EQ(kTinyBinary, hexOf(Bytes(bytes.begin(), bytes.end())));
}

TEST_F(KnowledgeFileTest, BinaryFileCutAtAnyLengthAnswersFalse) {
  R_File original;
  ASSERT_EQ(std::vector<std::string>(), loadXML(original, minimalPath()));
  ASSERT_TRUE(original.saveBinary(dir.file("whole.bin").c_str()));
  std::string whole = readFile(dir.file("whole.bin"));
  std::string path = dir.file("cut.bin");
  for (size_t cut = 0; cut < whole.size(); ++cut) {
    SCOPED_TRACE("cut after " + std::to_string(cut) + " bytes");
    writeFile(path, whole.substr(0, cut));
    R_File file;
    EXPECT_FALSE(file.loadBinary(path.c_str()));
    EXPECT_FALSE(file.isOK());
  }
}

TEST_F(KnowledgeFileTest, BinaryLoadRefusesWhatIsNotAWholeConsistentFile) {
  Bytes tiny = bytesOf(kTinyBinary);
  auto patched = [&](size_t at, std::initializer_list<unsigned char> bytes) {
    std::string text(tiny.begin(), tiny.end());
    for (unsigned char b : bytes) text[at++] = static_cast<char>(b);
    return text;
  };
  const size_t xyref_avar = tiny.size() - 14;  // the value of avar in the last xyref
  const struct {
    const char* what;
    std::string bytes;
  } rows[] = {
      {"an XML file", "<quorl></quorl>"},
      {"first byte 8", patched(0, {8})},
      {"an empty file", ""},
      {"an xyref naming variable 99", patched(xyref_avar, {99, 0, 0, 0})},
      {"a huge reference count", patched(8, {0xFF, 0xFF, 0xFF, 0x7F})},
      {"a huge text count", patched(13, {0xFF, 0xFF, 0xFF, 0x7F})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::string path = write("damaged.bin", row.bytes);
    R_File file;
    EXPECT_FALSE(file.loadBinary(path.c_str()));
  }
  R_File missing;
  EXPECT_FALSE(missing.loadBinary(dir.file("none.bin").c_str()));
  R_File whole;
  EXPECT_TRUE(whole.loadBinary(write("tiny.bin", std::string(tiny.begin(), tiny.end())).c_str()));
}

TEST_F(KnowledgeFileTest, LoadXMLReportsEachFaultInnermostFirstWithItsLine) {
  const char* const kClosing = "Error while processing file.";
  const struct {
    const char* what;
    std::string text;
    std::vector<std::string> messages;
  } rows[] = {
      {"a valid file", smallFile({kHeightVar}), {}},
      {"unknown elements", smallFile({"<note><entry>x</entry></note>", kHeightVar}), {}},
      {"a bad variable",
       smallFile({kHeightVar,
                  "<var><id>WEIGHT</id><properties type=\"weird\" scope=\"followed\" data=\"real\"/><name>W</name>"
                  "</var>"}),
       {"data error processing standalone tag <properties../>: wrong variable type",
        "Error while processing variable.", "(6) data error closing block </var>: error loading variable",
        "(8) Data not loaded", "(8) Error while processing file."}},
      {"a fault deep inside a variable",
       smallFile({"<var><id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/>",
                  "<name>H</name><values><interval><min>5</min><max>5</max></interval></values>", "</var>"}),
       {"Invalid interval definition (min > max).", "Error while processing interval.",
        "data error closing block </interval>: variable values load error", "Error while processing variable.",
        "(7) data error closing block </var>: error loading variable", "(9) Data not loaded", "(9) " + std::string(kClosing)}},
      {"two variables of one id",
       smallFile({kHeightVar, kHeightVar}),
       {"(6) data error closing block </id>: variable code is wrong", "(8) Error while making file statistics",
        "Statistics not loaded", kClosing}},
      {"ids that clash without regard to case",
       smallFile({kHeightVar, "<var><id>height</id></var>"}),
       {"(6) data error closing block </id>: variable code is wrong", "(8) Error while making file statistics",
        "Statistics not loaded", kClosing}},
      {"an id with a digit",
       smallFile({"<var><id>HEIGHT2</id></var>"}),
       {"(5) data error closing block </id>: variable code is wrong", "(7) Error while making file statistics",
        "Statistics not loaded", kClosing}},
      {"an id of one letter",
       smallFile({"<var><id>H</id></var>"}),
       {"(5) data error closing block </id>: variable code is wrong", "(7) Error while making file statistics",
        "Statistics not loaded", kClosing}},
      {"no info",
       joinLines({"<quorl>", smallFileHead()[2], smallFileHead()[3], "</quorl>"}),
       {"(5) No file information defined", "(5) Error while making file statistics", "Statistics not loaded",
        kClosing}},
      {"an empty copyright",
       joinLines({"<quorl>", "<info><filename>f</filename><copyright> </copyright></info>", smallFileHead()[3],
                  "</quorl>"}),
       {"(2) data error closing block </copyright>: copyright load error", "(5) No file information defined",
        "(5) Error while making file statistics", "Statistics not loaded", kClosing}},
      {"a variable without id",
       smallFile({"<var><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>H</name></var>"}),
       {"(5) data error closing block </var>: too much variables", "(7) Data not loaded", "(7) " + std::string(kClosing)}},
      {"a reference without name",
       smallFile({"<ref><sex sex=\"male\"/></ref>"}),
       {"(5) data error closing block </ref>: too much references", "(7) Data not loaded",
        "(7) " + std::string(kClosing)}},
      {"a second graphlines",
       smallFile({smallFileHead()[2]}),
       {"(5) data error closing block </graphlines>: duplicate line definition", "(7) Data not loaded",
        "(7) " + std::string(kClosing)}},
      {"bad line definitions",
       joinLines({"<quorl>", smallFileHead()[1],
                  "<graphlines><sdslines><list><item value=\"9\">M</item></list></sdslines></graphlines>",
                  smallFileHead()[3], "</quorl>"}),
       {"Wrong data in percentile definitions.", "Wrong data in SD line definitions.",
        "Error while processing percentile/SDS line definitions.",
        "(3) data error closing block </graphlines>: can not load line definitions", "(6) Data not loaded",
        "(6) " + std::string(kClosing)}},
      {"no age variable",
       joinLines({"<quorl>", smallFileHead()[1], smallFileHead()[2], kHeightVar, "</quorl>"}),
       {"(6) No age-coding variable defined.", "(6) " + std::string(kClosing)}},
      {"two age variables",
       smallFile({"<var><id>AGE_TOO</id><properties type=\"age\" scope=\"followed\" data=\"real\"/><name>A</name>"
                  "</var>"}),
       {"(7) No age-coding variable defined.", "(7) " + std::string(kClosing)}},
      {"a broken structure",
       smallFile({"<var><id>HEIGHT</id></vat>"}),
       {"(5) wrong structure: vat", "(5) Error while making file statistics", "Statistics not loaded", kClosing}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    R_File file;
    EXPECT_EQ(row.messages, loadXML(file, write("file.xml", row.text)));
    EXPECT_EQ(row.messages.empty(), file.isOK());
  }
}

// The lines before these come from the reference's or text's own load.
TEST_F(KnowledgeFileTest, LoadXMLClosesARefusedReferenceOrTextWithItsOwnLines) {
  const char* const kClosing = "Error while processing file.";
  const struct {
    const char* what;
    std::string text;
    std::vector<std::string> messages;
  } rows[] = {
      {"a reference without data",
       smallFile({"<ref><name>R</name></ref>"}),
       {"(5) data error closing block </ref>: error loading reference", "(7) Data not loaded",
        "(7) " + std::string(kClosing)}},
      {"a text without content",
       smallFile({"<text><id>T</id></text>"}),
       {"(5) data error closing block </text>: error loading text", "(7) Data not loaded",
        "(7) " + std::string(kClosing)}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    R_File file;
    std::vector<std::string> messages = loadXML(file, write("file.xml", row.text));
    ASSERT_LE(row.messages.size(), messages.size());
    messages.erase(messages.begin(), messages.end() - static_cast<long>(row.messages.size()));
    EXPECT_EQ(row.messages, messages);
  }
}

TEST_F(KnowledgeFileTest, AMissingFileFailsInThePrescan) {
  R_File file;
  EXPECT_EQ(std::vector<std::string>({"no input data", "No file information defined",
                                      "Error while making file statistics", "Statistics not loaded",
                                      "Error while processing file."}),
            loadXML(file, dir.file("none.xml")));
}

// Damaged files must fail cleanly, whatever the damage: the loads run under
// the sanitizers in the test builds.
TEST_F(KnowledgeFileTest, BinaryFileWithAnyByteChangedLoadsOrFailsCleanly) {
  R_File original;
  ASSERT_EQ(std::vector<std::string>(), loadXML(original, minimalPath()));
  ASSERT_TRUE(original.saveBinary(dir.file("whole.bin").c_str()));
  const std::string whole = readFile(dir.file("whole.bin"));
  std::string path = dir.file("changed.bin");
  for (size_t at = 0; at < whole.size(); ++at) {
    std::string changed = whole;
    changed[at] = static_cast<char>(~changed[at]);
    writeFile(path, changed);
    R_File file;
    file.loadBinary(path.c_str());
  }
}

TEST_F(KnowledgeFileTest, XMLFileCutAtAnyLengthFailsCleanly) {
  const std::string whole = readFile(minimalPath());
  std::string path = dir.file("cut.xml");
  for (size_t cut = 0; cut + 1 < whole.size(); cut += 3) {  // the last byte is a line feed
    SCOPED_TRACE("cut after " + std::to_string(cut) + " bytes");
    writeFile(path, whole.substr(0, cut));
    R_File file;
    EXPECT_FALSE(file.loadXML(path.c_str(), nullptr));
  }
}

// references.xml: four references of HEIGHT by AGE: boys 0 to 2, boys from 2
// to below 5, boys of any age, girls 0 to 2.
TEST_F(KnowledgeFileTest, ReferenceSearchesTakeTheFirstFittingReferenceInFileOrder) {
  R_File file;
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, testData("knowledge/references.xml")));
  ASSERT_EQ(4, file.getRefCount());
  const R_XYVar height(-1, 0, 1);
  const struct {
    int sex;
    R_Number age;
    int found;
  } by_age[] = {{0, R_Number(1.0), 0}, {0, R_Number(2.0), 0}, {0, R_Number(3.0), 1}, {0, R_Number(5.0), 2},
                {0, R_Number(), 2},    {1, R_Number(1.0), 3}, {1, R_Number(3.0), -1}, {2, R_Number(1.0), -1}};
  for (const auto& row : by_age) {
    SCOPED_TRACE("sex " + std::to_string(row.sex) + " age " + (row.age.isDefined() ? std::to_string(row.age.getValue()) : "?"));
    EXPECT_EQ(row.found, file.findReference(row.sex, row.age, height));
  }
  EXPECT_EQ(-1, file.findReference(0, R_Number(1.0), R_XYVar(-1, 0, 2)));
  const struct {
    int sex;
    double from, to;
    int found;
  } by_interval[] = {{0, 0.5, 1.5, 0}, {0, 1, 3, 2}, {0, 2.5, 4, 1}, {1, 0, 2, 3}, {1, 1, 3, -1}};
  for (const auto& row : by_interval) {
    SCOPED_TRACE("sex " + std::to_string(row.sex) + " from " + std::to_string(row.from));
    EXPECT_EQ(row.found, file.findReference(row.sex, R_Interval(R_Number(row.from), R_Number(row.to)), height));
  }
}

TEST_F(KnowledgeFileTest, AFileWithReferencesWritesTheSameBytesAfterEitherRoundTrip) {
  R_File original;
  ASSERT_EQ(std::vector<std::string>(), loadXML(original, testData("knowledge/references.xml")));
  ASSERT_TRUE(original.saveXML(dir.file("first.xml").c_str()));
  ASSERT_TRUE(original.saveBinary(dir.file("first.bin").c_str()));
  R_File from_xml;
  ASSERT_EQ(std::vector<std::string>(), loadXML(from_xml, dir.file("first.xml")));
  R_File from_binary;
  ASSERT_TRUE(from_binary.loadBinary(dir.file("first.bin").c_str()));
  ASSERT_TRUE(from_xml.saveXML(dir.file("second.xml").c_str()));
  ASSERT_TRUE(from_binary.saveBinary(dir.file("second.bin").c_str()));
  EXPECT_EQ(readFile(dir.file("first.xml")), readFile(dir.file("second.xml")));
  EXPECT_EQ(readFile(dir.file("first.bin")), readFile(dir.file("second.bin")));
  EXPECT_EQ(2, from_binary.findReference(0, R_Number(), R_XYVar(-1, 0, 1)));
}

TEST_F(KnowledgeFileTest, BinaryLoadRefusesAReferenceNamingNoVariable) {
  R_File original;
  ASSERT_EQ(std::vector<std::string>(), loadXML(original, testData("knowledge/references.xml")));
  ASSERT_TRUE(original.saveBinary(dir.file("whole.bin").c_str()));
  std::string bytes = readFile(dir.file("whole.bin"));
  // The xyref (-1, 0, 1) stored last is the last reference's.
  Bytes pattern = bytesOf("12 02 FF FF FF FF 02 00 00 00 00 02 01 00 00 00");
  size_t at = bytes.rfind(std::string(pattern.begin(), pattern.end()));
  ASSERT_NE(std::string::npos, at);
  bytes[at + 2] = 99;  // avar
  bytes[at + 3] = bytes[at + 4] = bytes[at + 5] = 0;
  R_File damaged;
  EXPECT_FALSE(damaged.loadBinary(write("damaged.bin", bytes).c_str()));
}
