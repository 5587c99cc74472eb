// The one-pass reader against the general road (loadText, which never takes
// the plain road): the same records, saved to the same bytes in both forms,
// and the same reporter lines (without line numbers for multi-line texts).
#include "proband/r_a_simpledbplainreader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_a_simpledbrecord.h"
#include "tests/proband/proband_support.h"
#include "tests/support/resource_meter.h"
#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

std::string database(const std::string& body) { return "<p_database>" + body + "</p_database>"; }

// A record in the writer's layout on one line.
std::string record(const std::string& name, const std::string& proband) {
  return "<p_record><p_name>" + name + "</p_name><p_comment /><proband>" + proband + "</proband></p_record>";
}

const std::string kGood = record("Good", "<info id=\"7\" dob=\"5.3.2001\" sex=\"male\" /><data><val var=\"FATHER_HT\">"
                                         "180.5</val><record date=\"5.9.2011\" age=\"10.5\" comment=\"first visit\">"
                                         "<val var=\"HEIGHT\">143.2</val><val var=\"WEIGHT\">35.25</val></record>"
                                         "<record age=\"3.5\"><val var=\"HEIGHT\">100.04</val></record></data>");

// The knowledge files the texts are read with: the fixtures' own, one
// without followed variables, one with the variables in another order, the
// sample, and none at all.
std::vector<std::unique_ptr<R_File>>* knowledge = nullptr;

class PlainReaderTest : public ::testing::Test {
 protected:
  PlainReaderTest() : security(true) {}

  static void SetUpTestSuite() {
    knowledge = new std::vector<std::unique_ptr<R_File>>();
    for (const char* name : {"knowledge.xml", "knowledge_anamnestic_only.xml", "knowledge_other.xml"})
      knowledge->push_back(loadKnowledge(name));
    knowledge->emplace_back(new R_File());
    CollectingReporter reporter;
    EXPECT_TRUE(knowledge->back()->loadXML(AUX_SOURCE_DIR "/samples/knowledge.xml", &reporter));
    knowledge->emplace_back(nullptr);
  }
  static void TearDownTestSuite() {
    delete knowledge;
    knowledge = nullptr;
  }
  static const R_File* k(size_t index) { return (*knowledge)[index].get(); }

  // Names, comments, both saved forms and the reporter's lines.
  std::string outcomeOf(const R_A_SimpleDB& db, const CollectingReporter& reporter, bool numbered) {
    std::string outcome = std::to_string(db.getN()) + "\n";
    for (int i = 0; i < db.getN(); ++i) outcome += std::string(db.getText(i, 0).get()) + "/" + db.getText(i, 1).get() + "|";
    for (bool binary : {false, true})
      outcome += "\n" + hexOf(bytesSavedBy([&](R_OutputStream& s) { db.saveTo(s, binary); }));
    for (std::string line : reporter.lines()) {
      size_t close = line.find(") ");
      if (!numbered && line[0] == '(' && close != std::string::npos && line.find_first_not_of("0123456789", 1) == close)
        line.erase(0, close + 2);
      outcome += "\n" + line;
    }
    return outcome;
  }
  std::string byFile(const std::string& text, const R_File* file) {
    writeFile(dir.file("db.xml"), text);
    CollectingReporter reporter;
    R_A_SimpleDB db(&security, file, dir.file("db.xml").c_str(), false, &reporter);
    return outcomeOf(db, reporter, text.find('\n') == std::string::npos);
  }
  std::string byText(const std::string& text, const R_File* file) {
    CollectingReporter reporter;
    R_A_SimpleDB db(&security, file, dir.file("missing.xml").c_str(), false, &reporter);
    db.loadText(text.c_str());
    return outcomeOf(db, reporter, text.find('\n') == std::string::npos);
  }
  bool takesPlainRoad(const std::string& text, const R_File* file) {
    writeFile(dir.file("plain.xml"), text);
    std::vector<R_A_SimpleDBRecord*> records;
    bool taken = R_A_SimpleDBPlainReader(file).read(dir.file("plain.xml").c_str(), &records);
    for (R_A_SimpleDBRecord* item : records) delete item;
    return taken;
  }
  void expectSame(const std::string& text, const R_File* file) { EXPECT_EQ(byText(text, file), byFile(text, file)); }
  void expectEverywhere(const std::string& text, bool plain_road) {
    for (size_t i = 0; i < knowledge->size(); ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(plain_road, takesPlainRoad(text, k(i)));
      expectSame(text, k(i));
    }
  }

  FixedSecurity security;
  TempDir dir;
};

// Databases in the plain layout with texts, values and blanks drawn at
// random, among them the bytes that normalising, reading numbers and dates,
// and matching names give meaning to.
class RandomDatabase {
 public:
  // The pairs of plain_edits.txt, \xNN read as the byte NN.
  static std::vector<std::pair<std::string, std::string>> readEdits() {
    std::vector<std::pair<std::string, std::string>> edits;
    std::istringstream lines(readFile(testData("proband/plain_edits.txt")));
    for (std::string line, bytes; std::getline(lines, line); bytes.clear()) {
      if (line.empty() || line[0] == '#') continue;
      for (size_t i = 0; i < line.size(); ++i)
        bytes += line.compare(i, 2, "\\x") ? line[i] : char(std::stoi(line.substr((i += 3) - 1, 2), nullptr, 16));
      edits.emplace_back(bytes.substr(0, bytes.find('\t')), bytes.substr(bytes.find('\t') + 1));
    }
    return edits;
  }

  explicit RandomDatabase(unsigned seed) : random(seed) {}

  std::string make() {
    std::string text = pick({"", "<?xml version='1.0'?>", "<!DOCTYPE p_database>"}) + blanks() + "<p_database" + blanks() + ">";
    for (int i = below(4); i > 0; --i) text += blanks() + record();
    return text + blanks() + "</p_database>" + blanks();
  }
  // `text` with one edit that leaves the plain layout: one occurrence of a
  // piece replaced by another.
  std::string edit(const std::string& text) {
    static const std::vector<std::pair<std::string, std::string>> kEdits = readEdits();
    for (;;) {
      const auto& e = kEdits[size_t(below(int(kEdits.size())))];
      std::vector<size_t> at;
      for (size_t p = text.find(e.first); p != std::string::npos; p = text.find(e.first, p + 1)) at.push_back(p);
      if (!at.empty()) return std::string(text).replace(at[below(int(at.size()))], e.first.size(), e.second);
    }
  }

 private:
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  std::string pick(std::initializer_list<const char*> choices) { return *(choices.begin() + below(int(choices.size()))); }
  std::string blanks() {
    std::string run;
    for (int i = below(4); i > 0; --i) run += " \t\r\n"[below(4)];
    return run;
  }
  // Bytes of texts and values: anything but '<', '>', NUL and, in values, '"'.
  std::string text(bool value) {
    static const char kBytes[] = "aZ09 \t\r\n\x01\x1f&'/=?,.-_\xC8\xFF\"";
    std::string run;
    for (int i = below(10); i > 0; --i) run += kBytes[below(static_cast<int>(sizeof kBytes) - (value ? 2 : 1))];
    return run;
  }
  std::string attribute(const std::string& name, const std::string& value) { return " " + blanks() + name + "=\"" + value + "\""; }
  std::string element(const std::string& name, const std::string& content) {
    if (content.empty() && below(2)) return "<" + name + pick({"/>", " />"});
    return "<" + name + blanks() + ">" + content + "</" + name + ">";
  }
  std::string value() {
    return "<val var=\"" + pick({"HEIGHT", "WEIGHT", "FATHER_HT", "MOTHER_HT", "AGE", "height", "NOPE", "", "x.y"}) + "\"" +
           blanks() + ">" + blanks() + pick({"12.5", "1,5", "?", "-3", "abc", "", "1e999", "7 8", "0", "100", "180", "35"}) +
           blanks() + "</val>";
  }
  std::string visit() {
    std::string tag = "<record";
    if (below(4)) tag += attribute("age", pick({"5", "5.001", "5.002", "?", "x", "-1", "1e999", " 4", "10,5", "0"}));
    if (below(2)) tag += attribute("date", pick({"1.1.2005", "2.1.2005", "29.2.1900", "32.1.2000", " 5.6.10 ", ""}));
    if (below(2)) tag += attribute("comment", text(true));
    std::string content;
    for (int i = below(4); i > 0; --i) content += blanks() + value();
    return tag + blanks() + ">" + content + blanks() + "</record>";
  }
  std::string proband() {
    if (below(4) == 0) return pick({"<proband/>", "<proband />", "<proband></proband>", "<proband>\r\n</proband>"});
    std::vector<std::string> attributes = {attribute("sex", pick({"male", "female"}))};
    if (below(2)) attributes.push_back(attribute("id", text(true)));
    if (below(2)) attributes.push_back(attribute("dob", pick({"1.1.2000", "31.12.1999", " 2.2.2002", "x"})));
    std::string info = "<info";
    for (int i = static_cast<int>(attributes.size()); i > 0; --i) {
      int at = below(i);
      info += attributes[static_cast<size_t>(at)];
      attributes.erase(attributes.begin() + at);
    }
    std::string data;
    for (int i = below(6); i > 0; --i) data += blanks() + (below(2) ? value() : visit());
    return "<proband>" + blanks() + info + blanks() + "/>" + blanks() + "<data>" + data + blanks() + "</data>" + blanks() +
           "</proband>";
  }
  std::string record() {
    return "<p_record>" + blanks() + element("p_name", text(false)) + blanks() + element("p_comment", text(false)) +
           blanks() + proband() + blanks() + "</p_record>";
  }

  std::mt19937 random;
};

}  // namespace

// The oddities of the plain layout that random files rarely hold, in
// plain_layouts.txt between lines "----"; then hundreds of unknown names
// that fill the table of names.
TEST_F(PlainReaderTest, TakesThePlainLayoutAndBuildsWhatTheGeneralRoadBuilds) {
  std::string unknown, rows = readFile(testData("proband/plain_layouts.txt"));
  for (int i = 0; i < 300; ++i) unknown += "<val var=\"" + ("U" + std::to_string(1000 + i)).append(size_t(i % 9), 'Z') + "\">1</val>";
  rows += "----\n" + database(record("a", "<info sex=\"female\"/><data>" + unknown + "<record age=\"3\">" +
                                      "<val var=\"HEIGHT\">100</val></record></data>")) + "\n";
  for (size_t at = 0, next; at < rows.size(); at = next + 6) {
    next = std::min(rows.find("\n----\n", at), rows.size() - 1);
    SCOPED_TRACE(rows.substr(at, next - at));
    expectEverywhere(rows.substr(at, next - at), true);
  }
}

// Random files in the plain layout: nearly all take the plain road (the rest
// have a visit without age and date). Each is also edited twice out of the
// layout, and every one gives what the general road gives.
TEST_F(PlainReaderTest, RandomFilesAndEditsOfThemBuildWhatTheGeneralRoadBuilds) {
  RandomDatabase maker(20251123);
  int plain = 0;
  const int count = 300;
  for (int i = 0; i < count; ++i) {
    SCOPED_TRACE(i);
    const std::string text = maker.make();
    for (size_t at : {size_t(0), size_t(3), size_t(4)}) {
      plain += takesPlainRoad(text, k(at)) ? 1 : 0;
      expectSame(text, k(at));
    }
    for (int edits = 0; edits < 2; ++edits) {
      const std::string edited = maker.edit(text);
      SCOPED_TRACE(edited);
      EXPECT_FALSE(takesPlainRoad(edited, k(0)));
      expectSame(edited, k(0));
    }
  }
  EXPECT_GT(plain, 3 * count / 2);
}

// A record must fit the general road's capture (16394 bytes), and a tag its
// tag buffer; the plain road leaves those near the limits to the general
// road, which keeps, empties or refuses them.
TEST_F(PlainReaderTest, LeavesLongRecordsAndLongTagsToTheGeneralRoad) {
  const size_t frame = 10 + 8 + 9 + 13 + 11 + 11;  // <p_record><p_name></p_name><p_comment /><proband /></p_record>
  for (size_t span : {R_A_SimpleDBPlainReader::longestRecord, R_A_SimpleDBPlainReader::longestRecord + 1, size_t(16394),
                      size_t(16395)}) {
    SCOPED_TRACE(span);
    const std::string text =
        database(kGood + "<p_record><p_name>" + std::string(span - frame, 'n') + "</p_name><p_comment /><proband /></p_record>");
    EXPECT_EQ(span == R_A_SimpleDBPlainReader::longestRecord, takesPlainRoad(text, k(0)));
    expectSame(text, k(0));
  }
  for (size_t length : {size_t(4000), size_t(5000), size_t(8200)}) {
    SCOPED_TRACE(length);
    const std::string text = database(record("a", "<info sex=\"male\"/><data><record age=\"5\" comment=\"" +
                                                      std::string(length, 'c') + "\"></record></data>"));
    EXPECT_EQ(length == 4000, takesPlainRoad(text, k(0)));
    expectSame(text, k(0));
  }
}

// No cut is plain; the empty file is read without a fault, unlike the
// empty text.
TEST_F(PlainReaderTest, GivesUpOnEveryTruncation) {
  const std::string whole = "<?xml version='1.0'?>" + database(kGood + record("b", "<info sex=\"female\"/><data></data>"));
  EXPECT_TRUE(takesPlainRoad(whole, k(0)));
  EXPECT_FALSE(takesPlainRoad("", k(0)));
  EXPECT_EQ(byText(database(""), k(0)), byFile("", k(0)));
  for (size_t length = 1; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    EXPECT_FALSE(takesPlainRoad(whole.substr(0, length), k(0)));
    expectSame(whole.substr(0, length), k(0));
  }
}

// A NUL byte is beyond what loadText can carry; the general road over the
// file ignores it outside records and empties the record holding it.
TEST_F(PlainReaderTest, GivesUpOnNulBytes) {
  const std::string between = database(kGood + std::string(1, '\0'));
  const std::string inside = database(record(std::string("a\0b", 3), "") + kGood);
  EXPECT_FALSE(takesPlainRoad(between, k(0)) || takesPlainRoad(inside, k(0)));
  EXPECT_EQ(byText(database(kGood), k(0)), byFile(between, k(0)));
  EXPECT_EQ("1\nGood/|", byFile(inside, k(0)).substr(0, 8));
}

// Databases as they are written: the fixtures and the sample. All but the
// fixture with a bad record take the plain road.
TEST_F(PlainReaderTest, ReadsWrittenDatabasesAsTheGeneralRoadDoes) {
  const std::pair<std::string, bool> files[] = {
      {testData("proband/two_records_expected.xml"), true}, {testData("proband/one_bad_record.xml"), false},
      {testData("exporter/database.xml"), true},            {AUX_SOURCE_DIR "/samples/probands.xml", true}};
  for (const auto& entry : files) {
    SCOPED_TRACE(entry.first);
    expectEverywhere(readFile(entry.first), entry.second);
  }
}

// Many records, with blank runs of every length between them and one of 24
// MB, so that records straddle the ends of blocks. Blanks are read a block
// at a time: the peak memory grows by about a block, not by the file.
TEST_F(PlainReaderTest, ReadsAcrossBlocksKeepingOneBlockInMemory) {
  std::string text = "<p_database>";
  for (int i = 0; i < 6000; ++i) {
    text += record("r" + std::to_string(i), "<info sex=\"male\"/><data><record age=\"" + std::to_string(i % 17) +
                                                "\"><val var=\"HEIGHT\">" + std::to_string(50 + i % 150) +
                                                "</val></record></data>") + std::string(static_cast<size_t>(i % 53), ' ');
    if (i == 3000) text += std::string(24 << 20, '\n');
  }
  text += "</p_database>";
  writeFile(dir.file("large.xml"), text);
  std::vector<R_A_SimpleDBRecord*> records;
  ResourceMeter meter;
  EXPECT_TRUE(R_A_SimpleDBPlainReader(k(0)).read(dir.file("large.xml").c_str(), &records));
  EXPECT_LT(meter.peakGrowthMB(), 16);
  EXPECT_EQ(6000u, records.size());
  for (R_A_SimpleDBRecord* item : records) delete item;
  expectSame(text, k(0));
}

// Records are added behind those there; a failure takes back its own only.
TEST_F(PlainReaderTest, AddsBehindTheRecordsGivenAndTakesBackOnlyItsOwn) {
  R_A_SimpleDBRecord kept(k(0));
  std::vector<R_A_SimpleDBRecord*> records = {&kept};
  R_A_SimpleDBPlainReader reader(k(0));
  writeFile(dir.file("bad.xml"), database(kGood + kGood + "x"));
  EXPECT_FALSE(reader.read(dir.file("bad.xml").c_str(), &records));
  EXPECT_FALSE(reader.read(dir.file("missing.xml").c_str(), &records));
  EXPECT_EQ(std::vector<R_A_SimpleDBRecord*>({&kept}), records);
  writeFile(dir.file("good.xml"), database(kGood + record("Second", "")));
  ASSERT_TRUE(reader.read(dir.file("good.xml").c_str(), &records));
  ASSERT_EQ(3u, records.size());
  EXPECT_EQ(&kept, records[0]);
  EXPECT_EQ("Good Second", std::string(records[1]->getText(0).get()) + " " + records[2]->getText(0).get());
  delete records[1];
  delete records[2];
}
