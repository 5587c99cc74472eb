// The one-pass reader of database files against the general road. The
// general road is the oracle: the same text loaded through loadText, which
// never takes the plain road, must give the same records, saved to the same
// bytes in both forms, and the same reporter lines. A text without line
// breaks gives lines without line numbers on both roads, so the rows of the
// tables are single lines and their lines compare exactly.
#include "proband/r_a_simpledbplainreader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_a_simpledbrecord.h"
#include "tests/proband/proband_support.h"
#include "tests/support/resource_meter.h"
#include "tests/support/test_files.h"

namespace {

// What a database holds once loaded, as comparable text.
struct Outcome {
  int count = 0;
  std::string names;  // "name/comment|" per record
  std::string xml;
  std::string binary;
  std::vector<std::string> lines;
};

// The knowledge files the rows are read with: the fixtures' own, one
// without followed variables, one with the variables in another order, the
// sample, and none at all.
struct Knowledge {
  const char* label;
  std::unique_ptr<R_File> file;
};

std::vector<Knowledge>* knowledge = nullptr;

// Line numbers appear only on the file road; a multi-line text is compared
// without them.
std::vector<std::string> withoutLineNumbers(std::vector<std::string> lines) {
  for (std::string& line : lines) {
    size_t close = line.find(") ");
    if (line[0] == '(' && close != std::string::npos && line.find_first_not_of("0123456789", 1) == close)
      line.erase(0, close + 2);
  }
  return lines;
}

std::string database(const std::string& body) { return "<p_database>" + body + "</p_database>"; }

// A record in the writer's layout on one line; `proband` is the content of
// its `proband` element.
std::string record(const std::string& name, const std::string& proband) {
  return "<p_record><p_name>" + name + "</p_name><p_comment /><proband>" + proband + "</proband></p_record>";
}

const std::string kProband =
    "<info id=\"7\" dob=\"5.3.2001\" sex=\"male\" /><data><val var=\"FATHER_HT\">180.5</val>"
    "<record date=\"5.9.2011\" age=\"10.5\" comment=\"first visit\"><val var=\"HEIGHT\">143.2</val>"
    "<val var=\"WEIGHT\">35.25</val></record><record age=\"3.5\"><val var=\"HEIGHT\">100.04</val></record></data>";
const std::string kGood = record("Good", kProband);

class PlainReaderTest : public ::testing::Test {
 protected:
  PlainReaderTest() : security(true) {}

  static void SetUpTestSuite() {
    knowledge = new std::vector<Knowledge>();
    for (const char* name : {"knowledge.xml", "knowledge_anamnestic_only.xml", "knowledge_other.xml"})
      knowledge->push_back({name, loadKnowledge(name)});
    std::unique_ptr<R_File> sample(new R_File());
    CollectingReporter reporter;
    EXPECT_TRUE(sample->loadXML(AUX_SOURCE_DIR "/samples/knowledge.xml", &reporter));
    knowledge->push_back({"sample", std::move(sample)});
    knowledge->push_back({"none", nullptr});
  }
  static void TearDownTestSuite() {
    delete knowledge;
    knowledge = nullptr;
  }

  Outcome outcomeOf(const R_A_SimpleDB& db, const CollectingReporter& reporter) {
    Outcome outcome;
    outcome.count = db.getN();
    for (int i = 0; i < db.getN(); ++i)
      outcome.names += std::string(db.getText(i, 0).get()) + "/" + db.getText(i, 1).get() + "|";
    EXPECT_TRUE(db.saveAs(dir.file("out.xml").c_str(), false));
    EXPECT_TRUE(db.saveAs(dir.file("out.bin").c_str(), true));
    outcome.xml = readFile(dir.file("out.xml"));
    outcome.binary = readFile(dir.file("out.bin"));
    outcome.lines = reporter.lines();
    return outcome;
  }
  // The database file holding `text`, as the program opens it.
  Outcome byFile(const std::string& text, const R_File* file) {
    writeFile(dir.file("db.xml"), text);
    CollectingReporter reporter;
    R_A_SimpleDB db(&security, file, dir.file("db.xml").c_str(), false, &reporter);
    return outcomeOf(db, reporter);
  }
  // The general road over the same text.
  Outcome byText(const std::string& text, const R_File* file) {
    CollectingReporter reporter;
    R_A_SimpleDB db(&security, file, dir.file("missing.xml").c_str(), false, &reporter);
    db.loadText(text.c_str());
    return outcomeOf(db, reporter);
  }
  bool takesPlainRoad(const std::string& text, const R_File* file) {
    writeFile(dir.file("plain.xml"), text);
    std::vector<R_A_SimpleDBRecord*> records;
    R_A_SimpleDBPlainReader reader(file);
    bool taken = reader.read(dir.file("plain.xml").c_str(), &records);
    for (R_A_SimpleDBRecord* item : records) delete item;
    return taken;
  }
  // Both roads over `text`; lines compared exactly for a single line.
  void expectSameAsGeneralRoad(const std::string& text, const R_File* file) {
    Outcome plain = byFile(text, file);
    Outcome general = byText(text, file);
    EXPECT_EQ(general.count, plain.count);
    EXPECT_EQ(general.names, plain.names);
    EXPECT_EQ(general.xml, plain.xml);
    EXPECT_EQ(general.binary, plain.binary);
    if (text.find('\n') == std::string::npos)
      EXPECT_EQ(general.lines, plain.lines);
    else
      EXPECT_EQ(withoutLineNumbers(general.lines), withoutLineNumbers(plain.lines));
  }
  void expectEverywhere(const std::string& text, bool plain_road) {
    for (const Knowledge& k : *knowledge) {
      SCOPED_TRACE(k.label);
      EXPECT_EQ(plain_road, takesPlainRoad(text, k.file.get()));
      expectSameAsGeneralRoad(text, k.file.get());
    }
  }

  FixedSecurity security;
  TempDir dir;
};

struct Row {
  const char* label;
  std::string text;
};

// Databases in the plain layout with texts, values and blanks drawn at
// random, among them the bytes that normalising, reading numbers and dates,
// and matching names give meaning to.
class RandomDatabase {
 public:
  explicit RandomDatabase(unsigned seed) : random(seed) {}

  std::string make() {
    std::string text = pick({"", "<?xml version='1.0'?>", "<!DOCTYPE p_database>"}) + blanks() + "<p_database" +
                       blanks() + ">";
    for (int i = below(4); i > 0; --i) text += blanks() + record();
    return text + blanks() + "</p_database>" + blanks();
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
  std::string attribute(const std::string& name, const std::string& value) {
    return " " + blanks() + name + "=\"" + value + "\"";
  }
  std::string element(const std::string& name, const std::string& content) {
    if (content.empty() && below(2)) return "<" + name + pick({"/>", " />"});
    return "<" + name + blanks() + ">" + content + "</" + name + ">";
  }
  std::string number() {
    return blanks() + pick({"12.5", "1,5", "?", "-3", "abc", "", "1e999", "7 8", "0", "100", "180", "35"}) + blanks();
  }
  std::string value() {
    return "<val var=\"" + pick({"HEIGHT", "WEIGHT", "FATHER_HT", "MOTHER_HT", "AGE", "height", "NOPE", "", "x.y"}) +
           "\"" + blanks() + ">" + number() + "</val>";
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
    return "<proband>" + blanks() + info + blanks() + "/>" + blanks() + "<data>" + data + blanks() + "</data>" +
           blanks() + "</proband>";
  }
  std::string record() {
    return "<p_record>" + blanks() + element("p_name", text(false)) + blanks() + element("p_comment", text(false)) +
           blanks() + proband() + blanks() + "</p_record>";
  }

  std::mt19937 random;
};

}  // namespace

// Every way of writing the plain layout that the reader takes, each with
// the values and oddities the general road gives meaning to.
TEST_F(PlainReaderTest, TakesThePlainLayoutAndBuildsWhatTheGeneralRoadBuilds) {
  const std::string info = "<info sex=\"female\"/>";
  const std::vector<Row> rows = {
      {"no records, no prologue", "<p_database></p_database>"},
      {"prologue", "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?>\r\n<!-- made by hand -->\t"
                   "<!DOCTYPE p_database SYSTEM \"proband.dtd\">\n" + database(kGood)},
      {"blanks of every kind", " \r\n\t<p_database>\r\n\t" + kGood + " \r\n\t" + kGood + "\n</p_database>\n \t\r\n"},
      {"blanks inside tags", "<p_database ><p_record\n><p_name\t>a</p_name><p_comment\r\n/><proband >"
                             "<info\nsex=\"male\"\r\n/><data\t><record\nage=\"5\"\ncomment=\"c\"\n><val\nvar=\"HEIGHT\"\t>90</val>"
                             "</record></data></proband>"
                             "</p_record></p_database>"},
      {"texts in every form", database("<p_record><p_name/><p_comment>  a \t b\r\nc  </p_comment><proband/></p_record>"
                                       "<p_record><p_name></p_name><p_comment></p_comment><proband/></p_record>"
                                       "<p_record><p_name>\xC8""ech &amp; syn</p_name><p_comment/><proband/></p_record>")},
      {"empty probands", database("<p_record><p_name>a</p_name><p_comment /><proband></proband></p_record>"
                                  "<p_record><p_name>b</p_name><p_comment /><proband>\r\n</proband></p_record>"
                                  "<p_record><p_name>c</p_name><p_comment /><proband> </proband></p_record>")},
      {"info in any order", database(record("a", "<info sex=\"male\" id=\"  x \t y \" dob=\"1.2.2003\"/><data></data>") +
                                     record("b", "<info dob=\"31.2.2003\" sex=\"female\"/><data></data>") +
                                     record("c", "<info id=\"\" dob=\"\" sex=\"male\"/><data></data>"))},
      {"visits by age, date or both", database(record("a", "<info dob=\"1.1.2000\" sex=\"male\"/><data>"
                                                           "<record date=\"1.1.2005\"></record>"
                                                           "<record age=\"2\" date=\"1.1.2010\"></record>"
                                                           "<record age=\"?\" date=\"1.7.2001\"></record>"
                                                           "<record age=\"x\" date=\"1.7.2002\"></record>"
                                                           "<record age=\"1e999\" date=\"1.7.2003\"></record>"
                                                           "<record age=\"1,25\"></record>"
                                                           "<record age=\"-3\" date=\"1.1.1990\"></record>"
                                                           "</data>"))},
      {"visits that merge", database(record("a", info + "<data><record age=\"5\" comment=\"one\">"
                                                        "<val var=\"HEIGHT\">110</val></record>"
                                                        "<record age=\"5.002\"><val var=\"WEIGHT\">20</val></record>"
                                                        "<record age=\"4.9985\" comment=\" two  words \"></record>"
                                                        "<record age=\"7\" comment=\"seven\"></record>"
                                                        "<record age=\"7.001\"></record></data>"))},
      {"comments with line breaks", database(record("a", info + "<data><record age=\"5\" comment=\"a\n      b\">"
                                                                "</record><record age=\"6\" comment=\"\"></record>"
                                                                "</data>"))},
      {"value texts", database(record("a", info + "<data><val var=\"FATHER_HT\">  \n 181.5 \r\n</val>"
                                                  "<val var=\"MOTHER_HT\">160,5</val><val var=\"MOTHER_HT\"></val>"
                                                  "<record age=\"5\"><val var=\"HEIGHT\">100</val>"
                                                  "<val var=\"HEIGHT\"> \t </val><val var=\"WEIGHT\">1e999</val>"
                                                  "<val var=\"AGE\">abc</val></record>"
                                                  "<record age=\"6\"><val var=\"HEIGHT\">10</val>"
                                                  "<val var=\"WEIGHT\">20 kg</val><val var=\"AGE\">6</val>"
                                                  "<val var=\"WEIGHT\"></val></record></data>"))},
      {"names of every kind", database(record("a", info + "<data><val var=\"father_ht\">170</val>"
                                                          "<val var=\"NOPE\">1</val><val var=\"\">2</val>"
                                                          "<val var=\"HEIGHT\">100</val>"
                                                          "<record age=\"5\"><val var=\"FATHER_HT\">150</val>"
                                                          "<val var=\"height\">101</val><val var=\"NOPE\">3</val>"
                                                          "</record><val var=\"MOTHER_HT\">165</val>"
                                                          "<val var=\"FATHER_HT\">175</val></data>"))},
      {"more names than the first table holds", [&] {
         std::string values;
         for (int i = 0; i < 70; ++i) values += "<val var=\"N" + std::to_string(i) + "\">" + std::to_string(i) + "</val>";
         return database(record("a", info + "<data>" + values + "<val var=\"FATHER_HT\">170</val>"
                                         "<record age=\"1\"><val var=\"WEIGHT\">9</val>" + values + "</record></data>"));
       }()},
      {"names sort without case", database(record("beta", info + "<data></data>") + record("Alpha", info + "<data></data>") +
                                           record("alpha", info + "<data></data>") + record("ALPHA", info + "<data></data>"))},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    expectEverywhere(row.text, true);
  }
}

// Random files in the plain layout: nearly all take the plain road (the rest
// have a visit without age and date), and all give what the general road
// gives.
TEST_F(PlainReaderTest, BuildsWhatTheGeneralRoadBuildsForRandomPlainFiles) {
  RandomDatabase maker(20251123);
  int plain = 0;
  const int count = 300;
  for (int i = 0; i < count; ++i) {
    SCOPED_TRACE(i);
    const std::string text = maker.make();
    for (size_t k : {size_t(0), size_t(3), size_t(4)}) {
      const R_File* file = (*knowledge)[k].file.get();
      plain += takesPlainRoad(text, file) ? 1 : 0;
      expectSameAsGeneralRoad(text, file);
    }
  }
  EXPECT_GT(plain, 3 * count / 2);
}

// Hundreds of unknown names of the lengths the known ones have fill the
// table of names; then each variable of the sample gets a valid value,
// which must land in its own slot.
TEST_F(PlainReaderTest, FindsEachVariableAmongManyNames) {
  const R_File* file = (*knowledge)[3].file.get();
  std::string values;
  for (int i = 0; i < 300; ++i) {
    std::string name = "U" + std::to_string(1000 + i);
    name.resize(static_cast<size_t>(4 + i % 9), 'Z');
    values += "<val var=\"" + name + "\">1</val>";
  }
  auto valid = [&](const R_MeasuredVariables* vars) {
    std::string known;
    for (int order = 0; order < vars->getCount(); ++order) {
      const R_Interval& interval = file->getVariable(vars->getIndex(order))->getInterval();
      double low = interval.getMin().isDefined() ? interval.getMin().getValue() : 0;
      double high = interval.getMax().isDefined() ? interval.getMax().getValue() : low + 2;
      known += "<val var=\"" + std::string(vars->getName(order)) + "\">" + std::to_string((low + high) / 2) + "</val>";
    }
    return known;
  };
  const std::string text = database(record("a", "<info sex=\"female\"/><data>" + values + valid(file->getAnamnesticVars()) +
                                                     "<record age=\"3\">" + valid(file->getFollowedVars()) +
                                                     "</record></data>"));
  EXPECT_TRUE(takesPlainRoad(text, file));
  expectSameAsGeneralRoad(text, file);
}

// Each row leaves the plain layout somewhere, mostly after a good record
// that the plain road had built already; the general road then reads the
// file from its start and gives its own records and messages.
TEST_F(PlainReaderTest, GivesUpOutsideThePlainLayoutAndTheGeneralRoadDecides) {
  auto after = [](const std::string& body) { return database(kGood + body); };
  auto with = [&](const std::string& proband) { return after(record("Bad", proband)); };
  const std::string info = "<info sex=\"male\"/>";
  const std::string sex = "<info sex=\"male\"/><data></data>";
  const std::vector<Row> rows = {
      {"blanks only", " \t"},
      {"prologue only", "<?xml version='1.0'?>"},
      {"byte order mark", "\xEF\xBB\xBF" + database(kGood)},
      {"prologue tag holding a tag", "<!DOCTYPE p_database [<!ELEMENT x ANY>]>" + database(kGood)},
      {"prologue tag without its end", "<?xml version='1.0'" + database(kGood)},
      {"text before the root", "x" + database(kGood)},
      {"another root", "<p_base>" + kGood + "</p_base>"},
      {"root standing alone", "<p_database/>"},
      {"root with an attribute", "<p_database version=\"1\">" + kGood + "</p_database>"},
      {"comment inside the root", after("<!-- a comment -->")},
      {"instruction inside the root", after("<?pi x?>")},
      {"text between records", after("x")},
      {"vertical tab between records", after("\x0b")},
      {"byte 1 between records", after("\x01")},
      {"unknown element between records", after("<p_note/>")},
      {"comment after the root", database(kGood) + "<!-- end -->"},
      {"text after the root", database(kGood) + "x"},
      {"a second root", database(kGood) + database(record("Second", sex))},
      {"record standing alone", after("<p_record/>")},
      {"record with an attribute", after("<p_record id=\"1\"><p_name>a</p_name><p_comment/><proband/></p_record>")},
      {"record inside a record", after("<p_record><p_name>a</p_name><p_comment/><proband/>" + kGood + "</p_record>")},
      {"missing comment", after("<p_record><p_name>a</p_name><proband/></p_record>")},
      {"missing name", after("<p_record><p_comment/><proband/></p_record>")},
      {"missing proband", after("<p_record><p_name>a</p_name><p_comment/></p_record>")},
      {"comment before name", after("<p_record><p_comment/><p_name>a</p_name><proband/></p_record>")},
      {"name twice", after("<p_record><p_name>a</p_name><p_name>b</p_name><p_comment/><proband/></p_record>")},
      {"proband twice", after("<p_record><p_name>a</p_name><p_comment/><proband/><proband/></p_record>")},
      {"element after the proband", after("<p_record><p_name>a</p_name><p_comment/><proband/><p_x/></p_record>")},
      {"name with an attribute", after("<p_record><p_name lang=\"cz\">a</p_name><p_comment/><proband/></p_record>")},
      {"proband with an attribute", after("<p_record><p_name>a</p_name><p_comment/><proband v=\"1\"/></p_record>")},
      {"tag inside a name", after("<p_record><p_name>a<b>c</b></p_name><p_comment/><proband/></p_record>")},
      {"closing bracket in a name", after("<p_record><p_name>a>b</p_name><p_comment/><proband/></p_record>")},
      {"blank after the opening bracket", after("<p_record>< p_name>a</p_name><p_comment/><proband/></p_record>")},
      {"blank after the end tag's slash", after("<p_record><p_name>a</ p_name><p_comment/><proband/></p_record>")},
      {"blank in an end tag", after("<p_record><p_name>a</p_name ><p_comment/><proband/></p_record>")},
      {"more in an end tag", after("<p_record><p_name>a</p_name x><p_comment/><proband/></p_record>")},
      {"end tag of another name", after("<p_record><p_name>a</p_nam><p_comment/><proband/></p_record>")},
      {"name in capitals", after("<p_record><P_NAME>a</P_NAME><p_comment/><proband/></p_record>")},
      {"name running on", after("<p_record><p_name.x>a</p_name.x><p_comment/><proband/></p_record>")},
      {"slash apart from the bracket", after("<p_record><p_name/ ><p_comment/><proband/></p_record>")},
      {"three blanks of proband", with("   ")},
      {"two letters of proband", with("ab")},
      {"no sex", with("<info id=\"1\"/><data></data>")},
      {"sex in capitals", with("<info sex=\"Male\"/><data></data>")},
      {"sex empty", with("<info sex=\"\"/><data></data>")},
      {"sex twice", with("<info sex=\"male\" sex=\"female\"/><data></data>")},
      {"sex twice alike", with("<info sex=\"male\" sex=\"male\"/><data></data>")},
      {"attribute name in capitals", with("<info Sex=\"male\"/><data></data>")},
      {"unknown attribute", with("<info sex=\"male\" x=\"1\"/><data></data>")},
      {"single quotes", with("<info sex='male'/><data></data>")},
      {"bare value", with("<info sex=male/><data></data>")},
      {"blank before the equals sign", with("<info sex =\"male\"/><data></data>")},
      {"blank after the equals sign", with("<info sex= \"male\"/><data></data>")},
      {"attributes without a blank", with("<info id=\"1\"sex=\"male\"/><data></data>")},
      {"quote not closed", with("<info sex=\"male/><data></data>")},
      {"opening bracket in a value", with("<info id=\"a<b\" sex=\"male\"/><data></data>")},
      {"closing bracket in a value", with("<info id=\"a>b\" sex=\"male\"/><data></data>")},
      {"info with an end tag", with("<info sex=\"male\"></info><data></data>")},
      {"info after data", with("<data></data>" + info)},
      {"info twice", with(info + info + "<data></data>")},
      {"data missing", with(info)},
      {"data standing alone", with(info + "<data/>")},
      {"data twice", with(sex + "<data></data>")},
      {"data with an attribute", with(info + "<data x=\"1\"></data>")},
      {"text in data", with(info + "<data>x</data>")},
      {"unknown element in data", with(info + "<data><note/></data>")},
      {"visit standing alone", with(info + "<data><record age=\"5\"/></data>")},
      {"visit without age or date", with(info + "<data><record comment=\"x\"></record></data>")},
      {"visit with neither readable", with(info + "<data><record age=\"x\" date=\"32.1.2000\"></record></data>")},
      {"visit in a visit", with(info + "<data><record age=\"5\"><record age=\"6\"></record></record></data>")},
      {"unknown element in a visit", with(info + "<data><record age=\"5\"><note/></record></data>")},
      {"data in a visit", with(info + "<data><record age=\"5\"><data></data></record></data>")},
      {"value standing alone", with(info + "<data><val var=\"FATHER_HT\"/></data>")},
      {"value without a name", with(info + "<data><val>180</val></data>")},
      {"value name with a blank", with(info + "<data><val var=\"FATHER HT\">180</val></data>")},
      {"value name with a tab", with(info + "<data><record age=\"5\"><val var=\"\tHEIGHT\">99</val></record></data>")},
      {"value with another attribute", with(info + "<data><val var=\"FATHER_HT\" unit=\"cm\">180</val></data>")},
      {"value in a value", with(info + "<data><val var=\"FATHER_HT\"><val var=\"MOTHER_HT\">1</val></val></data>")},
      {"end tag of a visit for a value", with(info + "<data><record age=\"5\"><val var=\"HEIGHT\">99</record></data>")},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    ASSERT_EQ(std::string::npos, row.text.find('\n')) << "a row must be one line";
    expectEverywhere(row.text, false);
  }
}

// A record must fit the general road's capture, and a tag its tag buffer;
// the plain road leaves those near the limits to the general road, which
// keeps, empties or refuses them.
TEST_F(PlainReaderTest, LeavesLongRecordsAndLongTagsToTheGeneralRoad) {
  const R_File* file = (*knowledge)[0].file.get();
  // <p_record><p_name>...</p_name><p_comment /><proband /></p_record>
  const size_t frame = 10 + 8 + 9 + 13 + 11 + 11;
  auto sized = [&](size_t span) {
    return database(kGood + "<p_record><p_name>" + std::string(span - frame, 'n') +
                    "</p_name><p_comment /><proband /></p_record>" + kGood);
  };
  EXPECT_TRUE(takesPlainRoad(sized(R_A_SimpleDBPlainReader::longestRecord), file));
  expectSameAsGeneralRoad(sized(R_A_SimpleDBPlainReader::longestRecord), file);
  // The general road's capture holds a record of up to 16394 bytes.
  for (size_t span : {R_A_SimpleDBPlainReader::longestRecord + 1, size_t(16394), size_t(16395), size_t(20000)}) {
    SCOPED_TRACE(span);
    EXPECT_FALSE(takesPlainRoad(sized(span), file));
    expectSameAsGeneralRoad(sized(span), file);
  }
  for (size_t length : {size_t(4000), size_t(5000), size_t(8200)}) {
    SCOPED_TRACE(length);
    const std::string text = database(record("a", "<info sex=\"male\"/><data><record age=\"5\" comment=\"" +
                                                      std::string(length, 'c') + "\"></record></data>"));
    EXPECT_EQ(length == 4000, takesPlainRoad(text, file));
    expectSameAsGeneralRoad(text, file);
  }
}

// Every cut of a database with all kinds of element: no cut is plain, and
// the general road decides what each holds.
TEST_F(PlainReaderTest, GivesUpOnEveryTruncation) {
  const R_File* file = (*knowledge)[0].file.get();
  const std::string whole = "<?xml version='1.0'?>" + database(kGood + record("b", "<info sex=\"female\"/><data></data>"));
  EXPECT_TRUE(takesPlainRoad(whole, file));
  // The empty file is read without a fault, unlike the empty text.
  EXPECT_FALSE(takesPlainRoad("", file));
  Outcome empty = byFile("", file);
  EXPECT_EQ(0, empty.count);
  EXPECT_TRUE(empty.lines.empty());
  for (size_t length = 1; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    EXPECT_FALSE(takesPlainRoad(whole.substr(0, length), file));
    expectSameAsGeneralRoad(whole.substr(0, length), file);
  }
}

// A NUL byte is beyond what loadText can carry; the general road over the
// file ignores it outside records and empties the record holding it.
TEST_F(PlainReaderTest, GivesUpOnNulBytes) {
  const R_File* file = (*knowledge)[0].file.get();
  const std::string between = database(kGood + std::string(1, '\0'));
  EXPECT_FALSE(takesPlainRoad(between, file));
  Outcome outcome = byFile(between, file);
  EXPECT_EQ("Good/|", outcome.names);
  EXPECT_TRUE(outcome.lines.empty());

  const std::string inside = database(record(std::string("a\0b", 3), "") + kGood);
  EXPECT_FALSE(takesPlainRoad(inside, file));
  outcome = byFile(inside, file);
  EXPECT_EQ("Good/|", outcome.names);
  EXPECT_EQ(std::vector<std::string>({"no input data", "Error while processing database record.",
                                      "data error closing block </p_record>: error while reading record",
                                      "Error while processing database."}),
            outcome.lines);
}

// Databases as they are written: the fixtures, the sample and databases of
// the synthesizer. All but the fixture with a bad record take the plain
// road, and on both roads give the same records.
TEST_F(PlainReaderTest, ReadsWrittenDatabasesAsTheGeneralRoadDoes) {
  TempDir made;
  std::vector<std::pair<std::string, bool>> files = {
      {testData("proband/two_records_expected.xml"), true},
      {testData("proband/one_bad_record.xml"), false},
      {testData("exporter/database.xml"), true},
      {AUX_SOURCE_DIR "/samples/probands.xml", true},
  };
  for (int seed : {1, 2, 3}) {
    std::string path = made.file("synth" + std::to_string(seed) + ".xml");
    int exit_code = -1;
    runCommand(std::string(AUX_BIN_DIR) + "/auxtool synth " AUX_SOURCE_DIR "/samples/knowledge.xml 300 " + path +
                   " --seed " + std::to_string(seed) + " > /dev/null",
               &exit_code);
    ASSERT_EQ(0, exit_code);
    files.push_back({path, true});
  }
  for (const auto& entry : files) {
    SCOPED_TRACE(entry.first);
    expectEverywhere(readFile(entry.first), entry.second);
  }
}

// Many records, with blank runs of every length between them and one longer
// than a block, so that records straddle the ends of blocks.
TEST_F(PlainReaderTest, ReadsAcrossBlocks) {
  const R_File* file = (*knowledge)[0].file.get();
  std::string text = "<p_database>";
  for (int i = 0; i < 6000; ++i) {
    text += record("r" + std::to_string(i), "<info sex=\"male\"/><data><record age=\"" + std::to_string(i % 17) +
                                                "\"><val var=\"HEIGHT\">" + std::to_string(50 + i % 150) +
                                                "</val></record></data>") +
            std::string(static_cast<size_t>(i % 53), ' ');
    if (i == 3000) text += std::string(3 << 20, '\n');
  }
  text += "</p_database>";
  EXPECT_TRUE(takesPlainRoad(text, file));
  expectSameAsGeneralRoad(text, file);
}

// Blanks are read a block at a time: a file of 48 MB raises the peak memory
// by about a block, not by the file.
TEST_F(PlainReaderTest, KeepsOneBlockOfTheFileInMemory) {
  const std::string path = dir.file("large.xml");
  {
    std::ofstream out(path, std::ios::binary);
    out << "<p_database>" << kGood;
    const std::string blanks(1 << 20, ' ');
    for (int i = 0; i < 48; ++i) out << blanks;
    out << kGood << "</p_database>";
  }
  std::vector<R_A_SimpleDBRecord*> records;
  ResourceMeter meter;
  R_A_SimpleDBPlainReader reader((*knowledge)[0].file.get());
  EXPECT_TRUE(reader.read(path.c_str(), &records));
  EXPECT_LT(meter.peakGrowthMB(), 16);
  EXPECT_EQ(2u, records.size());
  for (R_A_SimpleDBRecord* item : records) delete item;
}

// Records are added behind those there; a failure takes back its own only.
TEST_F(PlainReaderTest, AddsBehindTheRecordsGivenAndTakesBackOnlyItsOwn) {
  const R_File* file = (*knowledge)[0].file.get();
  R_A_SimpleDBRecord kept(file);
  std::vector<R_A_SimpleDBRecord*> records = {&kept};
  R_A_SimpleDBPlainReader reader(file);
  writeFile(dir.file("bad.xml"), database(kGood + kGood + "x"));
  EXPECT_FALSE(reader.read(dir.file("bad.xml").c_str(), &records));
  EXPECT_EQ(std::vector<R_A_SimpleDBRecord*>({&kept}), records);
  EXPECT_FALSE(reader.read(dir.file("missing.xml").c_str(), &records));
  writeFile(dir.file("good.xml"), database(kGood + record("Second", "")));
  ASSERT_TRUE(reader.read(dir.file("good.xml").c_str(), &records));
  ASSERT_EQ(3u, records.size());
  EXPECT_EQ(&kept, records[0]);
  EXPECT_STREQ("Good", records[1]->getText(0).get());
  EXPECT_STREQ("Second", records[2]->getText(0).get());
  EXPECT_TRUE(records[1]->getProband()->isSexDefined());
  EXPECT_FALSE(records[2]->getProband()->isSexDefined());
  delete records[1];
  delete records[2];
}
