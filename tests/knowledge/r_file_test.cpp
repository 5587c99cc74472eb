#include "knowledge/r_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "knowledge/r_interval.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "knowledge/r_xyvar.h"
#include "tests/knowledge/case_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/resource_meter.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

// The lines of a small valid file up to its variables: line 1 opens
// `quorl`, line 2 is `info`, line 3 `graphlines`, line 4 the age variable.
const std::vector<std::string> kHead = {
    "<quorl>",
    "<info><filename>f.xml</filename><copyright>c</copyright></info>",
    "<graphlines><sdslines><list><item value=\"0\">M</item></list></sdslines>"
    "<percentilelines><list><item value=\"50\">P</item></list></percentilelines></graphlines>",
    "<var><id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\"/><name>Age</name></var>",
};

// Each line followed by a line feed.
std::string joinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

const int kTwoBillion = 2000000000;

// A distinct identifier of letters for every number: "AAAA", "AAAB", ...
std::string letterName(int number) {
  std::string name(4, 'A');
  for (int i = 3; i >= 0; --i, number /= 26) name[static_cast<size_t>(i)] = static_cast<char>('A' + number % 26);
  return name;
}

std::string repeated(const std::string& piece, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

class KnowledgeFileTest : public ::testing::Test {
 protected:
  std::string minimalPath() const { return testData("knowledge/minimal.xml"); }

  // Writes `text` as the file `name` in the temporary directory.
  std::string write(const std::string& name, const std::string& text) {
    std::string path = dir.file(name);
    writeFile(path, text);
    return path;
  }

  // Loads the XML file at `path` into `file`; answers the reported lines.
  std::vector<std::string> loadXML(R_File& file, const std::string& path) {
    CollectingReporter reporter;
    bool ok = file.loadXML(path.c_str(), &reporter);
    EXPECT_EQ(ok, file.isOK());
    return reporter.lines();
  }

  // The binary form of knowledge/tiny.xml: the age variable "AGE" named "A",
  // lines [0 "M"] and [50 "P"], the anamnestic "FA", and the reference "R"
  // of FA for boys.
  std::string tinyBytes() {
    R_File file;
    EXPECT_EQ(std::vector<std::string>(), loadXML(file, testData("knowledge/tiny.xml")));
    EXPECT_TRUE(file.isReadWhole() && file.saveBinary(dir.file("tiny.bin").c_str()));
    return readFile(dir.file("tiny.bin"));
  }

  TempDir dir;
};

}  // namespace

// Each fixture, saved in either form and read back, saves the same bytes
// again; the XML written from the binary copy is the original's.
TEST_F(KnowledgeFileTest, EitherStoredFormReadsBackToTheSameBytes) {
  for (const char* fixture : {"knowledge/minimal.xml", "knowledge/references.xml", "refdata/references.xml"}) {
    SCOPED_TRACE(fixture);
    R_File original, from_xml, from_binary;
    ASSERT_EQ(std::vector<std::string>(), loadXML(original, testData(fixture)));
    ASSERT_TRUE(original.saveXML(dir.file("first.xml").c_str()));
    ASSERT_TRUE(original.saveBinary(dir.file("first.bin").c_str()));
    ASSERT_EQ(std::vector<std::string>(), loadXML(from_xml, dir.file("first.xml")));
    ASSERT_TRUE(from_binary.loadBinary(dir.file("first.bin").c_str()));
    for (const R_File* copy : {&from_xml, &from_binary}) {
      ASSERT_TRUE(copy->saveXML(dir.file("second.xml").c_str()));
      ASSERT_TRUE(copy->saveBinary(dir.file("second.bin").c_str()));
      EXPECT_EQ(readFile(dir.file("first.xml")), readFile(dir.file("second.xml")));
      EXPECT_EQ(readFile(dir.file("first.bin")), readFile(dir.file("second.bin")));
    }
    EXPECT_EQ(original.getAgeIndex(), from_binary.getAgeIndex());
    EXPECT_EQ(original.getFollowedVars()->getCount(), from_binary.getFollowedVars()->getCount());
    EXPECT_EQ(original.getAnamnesticVars()->getCount(), from_binary.getAnamnesticVars()->getCount());
  }
  const std::string head =
      "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?>\n<!DOCTYPE quorl SYSTEM \"quorl.dtd\">\n"
      "<quorl>\n <info>\n  <filename>\n    references.xml\n  </filename>\n";
  EXPECT_EQ(head, readFile(dir.file("first.xml")).substr(0, head.size()));
}

// The stored form of the tiny file; its leading bytes (the kind 09, two
// variables, one reference) and the bytes of the reference's 175 and 7 are
// pinned, the rest by the searches of the damage tests below and by the
// round trips above. Bytes after the last text load, but the file was not
// read whole.
TEST_F(KnowledgeFileTest, BinaryFormIsPinnedByItsBytesAndReadWholeTellsOfBytesBehind) {
  R_File whole, longer;
  const std::string tiny = tinyBytes();
  EXPECT_EQ(hexOf(bytesOf("09 05 02 02 00 00 00 02 01 00 00 00")), hexOf(Bytes(tiny.begin(), tiny.begin() + 12)));
  Bytes line = bytesOf("10 03 01 00 00 00 00 00 E0 65 40 03 01 00 00 00 00 00 00 1C 40");
  EXPECT_NE(std::string::npos, tiny.find(std::string(line.begin(), line.end())));
  EXPECT_FALSE(whole.isReadWhole());
  ASSERT_TRUE(whole.loadBinary(write("tiny.bin", tiny).c_str()));
  EXPECT_TRUE(whole.isReadWhole());
  ASSERT_TRUE(longer.loadBinary(write("longer.bin", tiny + "\x09").c_str()));
  EXPECT_FALSE(longer.isReadWhole());
}

// Damaged files must fail cleanly, whatever the damage: the loads run under
// the sanitizers in the test builds. A changed byte may still load.
TEST_F(KnowledgeFileTest, BinaryFileCutAnywhereFailsAndWithAnyByteChangedLoadsOrFailsCleanly) {
  const std::string whole = tinyBytes();
  for (size_t at = 0; at < whole.size(); ++at) {
    SCOPED_TRACE("at byte " + std::to_string(at));
    std::string changed = whole;
    changed[at] = static_cast<char>(~changed[at]);
    R_File cut, damaged;
    EXPECT_FALSE(cut.loadBinary(write("cut.bin", whole.substr(0, at)).c_str()));
    EXPECT_FALSE(cut.isOK());
    damaged.loadBinary(write("changed.bin", changed).c_str());
  }
}

// Counts that claim two billion objects fail fast, by the bytes there are:
// under the sanitizers an allocation for them would itself abort the run
// (make test-asan caps one allocation at 1 GB).
TEST_F(KnowledgeFileTest, BinaryLoadRefusesWhatIsNotAWholeConsistentFile) {
  const std::string tiny = tinyBytes();
  auto patched = [&](size_t at, int value) {
    std::string bytes = tiny;
    for (size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>((static_cast<unsigned>(value) >> (8 * i)) & 0xFF);
    return bytes;
  };
  auto at = [&](const char* hex) {
    Bytes pattern = bytesOf(hex);
    size_t found = tiny.rfind(std::string(pattern.begin(), pattern.end()));
    EXPECT_NE(std::string::npos, found) << hex;
    return found + 2;
  };
  const size_t fa_xyref = at("12 02 FF FF FF FF 02 FF FF FF FF 02 FF FF FF FF 15"), r_xyref = at("12 02 01 00 00 00");
  const size_t variants = at("02 01 00 00 00 02 01 00 00 00 14") - 1;
  const struct { const char* what; std::string bytes; } rows[] = {
      {"an XML file", "<quorl></quorl>"},
      {"first byte 8", "\x08" + tiny.substr(1)},
      {"an empty file", ""},
      {"an xyref naming variable 99", patched(fa_xyref, 99)},
      {"a reference naming variable 99", patched(r_xyref, 99)},
      {"a huge reference count", patched(8, kTwoBillion)},
      {"a negative reference count", patched(8, -1)},
      {"a huge variant count", patched(variants, kTwoBillion)},
      {"one variant more than stored", patched(variants, 2)},
  };
  ResourceMeter meter;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    R_File file;
    EXPECT_FALSE(file.loadBinary(write("damaged.bin", row.bytes).c_str()));
  }
  EXPECT_LT(meter.seconds(), 10.0);
  R_File missing;
  EXPECT_FALSE(missing.loadBinary(dir.file("none.bin").c_str()));
}

// Hostile XML: an element nested a million deep, or fifty thousand
// variables, loads in time and memory bounded by the bytes of the file.
TEST_F(KnowledgeFileTest, DeepNestingAndManyVariablesLoadInBoundedTimeAndMemory) {
  std::string variables;
  for (int i = 0; i < 50000; ++i)
    variables += "<var><id>" + letterName(i) +
                 "</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>n</name></var>\n";
  const struct {
    std::string body;
    int variables;
  } rows[] = {{repeated("<note>", 1000000) + repeated("</note>", 1000000), 1}, {variables, 50001}};
  for (const auto& row : rows) {
    std::string path = write("hostile.xml", joinLines(kHead) + row.body + "\n</quorl>\n");
    ResourceMeter meter;
    R_File file;
    EXPECT_EQ(std::vector<std::string>{}, loadXML(file, path));
    EXPECT_LT(meter.seconds(), 30.0);
    EXPECT_LT(meter.peakGrowthMB(), 512);
    EXPECT_EQ(row.variables, file.getVarCount());
  }
}

TEST_F(KnowledgeFileTest, LoadXMLReportsEachFaultInnermostFirstWithItsLine) {
  std::vector<TextCase> rows = readCases("knowledge/file_messages.txt");
  rows.push_back(TextCase{"a missing file", "", {"no input data", "No file information defined",
                                                  "Error while making file statistics", "Statistics not loaded",
                                                  "Error while processing file."}});
  for (const TextCase& row : rows) {
    SCOPED_TRACE(row.label);
    R_File file;
    std::vector<std::string> messages =
        loadXML(file, row.input.empty() ? dir.file("none.xml") : write("file.xml", row.input));
    EXPECT_EQ(row.out.empty(), file.isOK());
    bool tail = !row.out.empty() && row.out[0] == "...";
    if (tail && messages.size() >= row.out.size())
      messages.erase(messages.begin(), messages.end() - static_cast<long>(row.out.size() - 1));
    EXPECT_EQ(std::vector<std::string>(row.out.begin() + tail, row.out.end()), messages);
  }
}

// knowledge/references.xml: HEIGHT by AGE for boys 0 to 2, boys from 2 to
// below 5, boys of any age, girls 0 to 2. refdata/references.xml: HEIGHT by
// AGE for girls 2 to 10, girls of any age, boys; FATHER_HT (variable 2) for
// no sex, then for boys.
TEST_F(KnowledgeFileTest, ReferenceSearchesTakeTheFirstFittingReferenceInFileOrder) {
  R_File knowledge, refdata;
  ASSERT_EQ(std::vector<std::string>(), loadXML(knowledge, testData("knowledge/references.xml")));
  ASSERT_EQ(std::vector<std::string>(), loadXML(refdata, testData("refdata/references.xml")));
  const R_XYVar height(-1, 0, 1), weight(-1, 0, 2), father(2, -1, -1);
  const double U = NAN;  // an undefined age
  const struct {
    const R_File& file;
    int sex;
    double from, to;  // an age when `to` is NaN
    const R_XYVar& xyref;
    int found;
  } rows[] = {
      {knowledge, 0, 2, U, height, 0},   {knowledge, 0, 3, U, height, 1},   {knowledge, 0, 1, 3, height, 2},
      {knowledge, 0, 5, U, height, 2},   {knowledge, 0, U, U, height, 2},   {knowledge, 1, 1, U, height, 3},
      {knowledge, 1, 3, U, height, -1},  {knowledge, 2, 1, U, height, -1},  {knowledge, 0, 1, U, weight, -1},
      {knowledge, 0, 2.5, 4, height, 1}, {knowledge, 1, 1, 3, height, -1},  {refdata, 1, 5, U, height, 0},
      {refdata, 1, 12, U, height, 1},    {refdata, 1, U, U, height, 1},     {refdata, 0, 5, U, height, 2},
      {refdata, 2, 5, U, height, -1},    {refdata, 0, U, U, father, 4},     {refdata, 1, U, U, father, -1},
      {refdata, 1, 3, 9, height, 0},     {refdata, 1, 3, 11, height, 1},    {knowledge, 0, U, 5, height, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.file.getStatistics().getCopyright()) + " sex " + std::to_string(row.sex) + " from " +
                 std::to_string(row.from) + " to " + std::to_string(row.to));
    R_Number from = std::isnan(row.from) ? R_Number() : R_Number(row.from);
    if (std::isnan(row.to))
      EXPECT_EQ(row.found, row.file.findReference(row.sex, from, row.xyref));
    else
      EXPECT_EQ(row.found, row.file.findReference(row.sex, R_Interval(from, R_Number(row.to)), row.xyref));
  }
}

// minimal.xml: AGE 0, HEIGHT 1, WEIGHT 2, FATHER_HT 3, MOTHER_HT 4,
// TANNER_PH 5; HEIGHT, WEIGHT and TANNER_PH are followed, the fathers' and
// mothers' heights anamnestic, and the age variable in neither subset.
TEST_F(KnowledgeFileTest, MinimalFileHoldsItsVariablesInFileOrderAndMeasuredSubsetsFindThemByName) {
  R_File file;
  EXPECT_FALSE(file.isOK());
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, minimalPath()));
  std::string names;
  for (int i = 0; i < file.getVarCount(); ++i)
    names += file.getStatistics().getVarName(i) + std::string(file.getVariable(i)->getIndex() == i ? " " : "? ");
  EXPECT_EQ("AGE HEIGHT WEIGHT FATHER_HT MOTHER_HT TANNER_PH ", names);
  EXPECT_EQ(file.getVariable(0), file.getAgeVariable());
  const R_MeasuredVariables& followed = *file.getFollowedVars();
  const R_MeasuredVariables& anamnestic = *file.getAnamnesticVars();
  ASSERT_EQ(3, followed.getCount());
  ASSERT_EQ(2, anamnestic.getCount());
  EXPECT_EQ(5, followed.getIndexOf("tanner_ph"));
  EXPECT_EQ(2, followed.getOrderOfIndex(5));
  EXPECT_EQ(1, anamnestic.getOrder("Mother_HT"));
  EXPECT_EQ(4, anamnestic.getIndex(1));
  EXPECT_STREQ("FATHER_HT", anamnestic.getName(0));
  EXPECT_EQ(-1, followed.getOrder("AGE"));
  EXPECT_FALSE(anamnestic.contains("HEIGHT") || followed.contains(nullptr));
}
