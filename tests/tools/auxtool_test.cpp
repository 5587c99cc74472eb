// Runs the built auxtool program on fixture files and compares its whole
// output, the files it writes and its exit code.
#include <gtest/gtest.h>

#include <dirent.h>
#include <sys/stat.h>

#include <set>
#include <string>

#include "tests/support/test_files.h"

namespace {

struct ToolRun { std::string output; int exit_code; };

// Standard output only, or both streams with `with_errors`; a run that
// hangs is stopped after 20 s of processor time.
ToolRun auxtool(const std::string& arguments, bool with_errors = false) {
  ToolRun run;
  run.output = runCommand("ulimit -t 20; exec " AUX_BIN_DIR "/auxtool" + std::string(with_errors ? " 2>&1 " : " 2>/dev/null ") +
                          arguments, &run.exit_code);
  return run;
}

std::string sample(const std::string& name) { return std::string(AUX_SOURCE_DIR) + "/samples/" + name; }

const std::string kKnowledge = testData("exporter/knowledge.xml");
const std::string kDatabase = testData("exporter/database.xml");
const std::string kSummary = "knowledge file " + kKnowledge + ": 18 variables, 0 references, 0 texts\n";

// The names in a directory: what a command left behind.
std::set<std::string> namesIn(const std::string& path) {
  std::set<std::string> names;
  DIR* handle = opendir(path.c_str());
  while (dirent* entry = readdir(handle))
    if (entry->d_name[0] != '.') names.insert(entry->d_name);
  closedir(handle);
  return names;
}

struct Row {
  std::string arguments;
  int exit_code;
  std::string output;  // both streams
};

// Runs each row; when `dir` is given, a refused row must leave nothing in it.
void runRows(const std::vector<Row>& rows, const TempDir* dir = nullptr, bool with_errors = true) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.arguments.substr(0, 200));
    ToolRun run = auxtool(row.arguments, with_errors);
    EXPECT_EQ(row.exit_code, run.exit_code);
    EXPECT_EQ(row.output, run.output);
    if (dir && row.exit_code != 0) { EXPECT_TRUE(namesIn(dir->path()).empty()); }
  }
}

class AuxtoolTest : public ::testing::Test {
 protected:
  TempDir dir;
};

}  // namespace

TEST_F(AuxtoolTest, WrongUsageExitsWith2AndHelpWith0) {
  const char* const rows[] = {"", "frobnicate", "check", "check a b c", "convert knowledge a b",
                              "convert knowledge a b --to pdf", "calc k d", "synth k -5 a", "setup a b", "csv k a",
                              "csv k a b c --search", "import k l d --all --select 1", "report", "report k d p",
                              "report k d p t extra", "report k d p t --today 31.2.2020", "report k d p t --out",
                              "report k d p t --out a --out b", "report k d p t --frobnicate", "report --list",
                              "report --list k d", "report --list k --out a"};
  for (const char* row : rows) EXPECT_EQ(2, auxtool(row).exit_code) << row;
  for (const char* help : {"--help", "check --help", "report --help"}) EXPECT_EQ(0, auxtool(help).exit_code) << help;
  EXPECT_NE(std::string::npos, auxtool("--help").output.find("auxtool calc KNOWLEDGE DATABASE FORMULA..."));
  EXPECT_EQ(0u, auxtool("check --help").output.find("usage: auxtool check KNOWLEDGE [DATABASE]\n"));
  EXPECT_EQ(0u, auxtool("report --help").output.find("usage: auxtool report KNOWLEDGE DATABASE PROBAND TEXT [--out"));
}

TEST_F(AuxtoolTest, CheckPrintsASummaryOrEveryLineOfARefusal) {
  const std::string missing = dir.file("missing.xml"), broken = dir.file("broken.xml"), empty = dir.file("empty.bin");
  const std::string bad = dir.file("bad.xml"), cut = dir.file("cut.bin");
  writeFile(broken, "<quorl>\n</quorl>\n");
  writeFile(empty, "");
  writeFile(bad,
            "<p_database>\n<p_record><p_name>A</p_name><proband><info sex=\"male\"/></proband></p_record>\n"
            "<p_record><p_name>B</p_name><proband><info/></proband></p_record>\n</p_database>\n");
  writeFile(cut, readFile(sample("probands.bin")).substr(0, 3000));
  runRows({
      {"check " + kKnowledge + " " + kDatabase, 0, kSummary + "database " + kDatabase + ": 5 probands\n"},
      {"check " + missing, 1, "File " + missing + " not found\n"},
      {"check " + broken, 1,
       "(3) No file information defined\n(3) Error while making file statistics\nStatistics not loaded\n"
       "Error while processing file.\nError reading knowledge file " + broken + " as XML\n"},
      {"check " + empty, 1, "Error reading knowledge file " + empty + " as BIN\n"},
      // A bad record: the rest is kept, and the exit code tells.
      {"check " + kKnowledge + " " + bad, 1,
       kSummary + "data error closing block </proband>: wrong proband data\n"
       "Error while processing database record.\n"
       "(3) data error closing block </p_record>: error while reading record\n"
       "(5) Error while processing database.\n"
       "Database file " + bad + " was not read whole; records read: 1\n" + "database " + bad + ": 1 probands\n"},
      {"check " + sample("knowledge.xml") + " " + cut, 1,
       "knowledge file " + sample("knowledge.xml") + ": 48 variables, 40 references, 7 texts\n" +
           "Database file " + cut + " was not read whole; records read: 3\n" + "database " + cut + ": 3 probands\n"},
  });
}

// The binary road stops at the first fault without a word; the tool must
// not pass what it got for the whole file, nor compute or write from it.
TEST_F(AuxtoolTest, ABinaryDatabaseCutAtAnyLengthIsRefused) {
  const std::string whole = readFile(testData("exporter/database.bin"));
  const std::string cut = dir.file("cut.bin"), out = dir.file("out.xml");
  for (size_t length = 1; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    writeFile(cut, whole.substr(0, length));
    ToolRun run = auxtool("check " + kKnowledge + " " + cut);
    ASSERT_EQ(1, run.exit_code);
    ASSERT_NE(std::string::npos, run.output.find("Database file " + cut + " was not read whole; records read: "));
  }
  writeFile(cut, whole.substr(0, 1000));
  EXPECT_EQ(1, auxtool("calc " + kKnowledge + " " + cut + " HEIGHT").exit_code);
  EXPECT_EQ(1, auxtool("convert database " + kKnowledge + " " + cut + " " + out + " --to xml").exit_code);
  EXPECT_FALSE(fileExists(out));
  writeFile(cut, whole + "x");
  EXPECT_EQ(1, auxtool("check " + kKnowledge + " " + cut).exit_code);
}

// XML to XML, to binary and back to XML gives the same XML; the binary
// form starts with its kind (9 knowledge, 81 database).
TEST_F(AuxtoolTest, ConvertRoundTripsThroughTheBinaryForm) {
  const struct { std::string kind, file; char first; } rows[] = {{"knowledge ", kKnowledge, 9},
              {"knowledge ", testData("formula/methods.xml"), 9},
              {"database " + kKnowledge + " ", kDatabase, 81},
              {"database " + sample("knowledge.xml") + " ", sample("probands.xml"), 81}};
  const std::string xml = dir.file("a.xml"), bin = dir.file("a.bin"), back = dir.file("b.xml");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.file);
    const std::string convert = "convert " + row.kind;
    ASSERT_EQ(0, auxtool(convert + row.file + " " + xml + " --to xml").exit_code);
    ASSERT_EQ(0, auxtool(convert + "--to bin " + row.file + " " + bin).exit_code);
    ASSERT_EQ(0, auxtool(convert + bin + " " + back + " --to xml").exit_code);
    EXPECT_EQ(row.first, readFile(bin)[0]);
    EXPECT_EQ(readFile(xml), readFile(back));
  }
  ASSERT_EQ(0, auxtool("convert knowledge " + sample("knowledge.xml") + " " + bin + " --to bin").exit_code);
  EXPECT_EQ(readFile(sample("knowledge.bin")), readFile(bin));
}

// What a conversion cannot write so that it reads back is refused, naming
// the object, and nothing is written. The XML reader knows no entities: a
// report text with mark-up and a name with '&' go to the binary form only.
TEST_F(AuxtoolTest, ConversionsThatWouldNotReadBackAreRefusedWithNothingWritten) {
  const std::string out = dir.file("out"), broken = dir.file("in/broken.xml"), in = dir.file("in/db.xml");
  const std::string bin = dir.file("in/db.bin");
  mkdir(dir.file("in").c_str(), 0777);
  writeFile(broken, "<quorl><info>");
  writeFile(in, "<p_database><p_record><p_name>Tom & Jerry</p_name><proband><info sex=\"male\"/></proband>"
                "</p_record></p_database>");
  ASSERT_EQ(0, auxtool("convert database " + kKnowledge + " " + in + " " + bin + " --to bin").exit_code);
  const std::string knowledge_bin = testData("tools/knowledge-bin-to-xml.bin");
  const std::string database = testData("tools/database-bin-to-xml.bin");
  const std::string database_of = "database " + testData("tools/database-bin-to-xml.knowledge.bin") + " ";
  const std::string tom = "record 1 (Tom & Jerry) cannot be written in XML: it reads back different\n";
  const std::string nothing = "Nothing written to " + out + "\n";
  const std::vector<Row> rows = {
      {"knowledge " + broken + " " + out + " --to bin", 1,
       "unfinished structure (missing end tags)\nNo file information defined\nError while making file statistics\n"
       "Statistics not loaded\nError while processing file.\nError reading knowledge file " + broken + " as XML\n"},
      {"knowledge " + testData("tools/knowledge-xml-to-bin.xml") + " " + out + " --to bin", 1,
       "the line definitions (graphlines) cannot be written in the binary form: the file has none, and the binary "
       "form cannot go without them\n" + nothing},
      {"knowledge " + knowledge_bin + " " + out + " --to xml", 1,
       "variable NESTED cannot be written in XML: it does not read back\n"
       "data error closing block </compute>: error in condition\nNo valid condition/method pairs found.\n"
       "Error while processing equation (wrong format or none defined).\n"
       "data error closing block </method>: variable method load error\nError while processing variable.\n" + nothing},
      // Found by the conversion fuzz target: the binary load takes any identifier.
      {"knowledge " + testData("tools/knowledge-bad-identifier.bin") + " " + out + " --to xml", 1,
       "the file information or a variable identifier cannot be written in XML: it does not read back\n"
       "data error closing block </id>: variable code is wrong\nError while making file statistics\n" + nothing},
      {database_of + database + " " + out + " --to xml", 1,
       "Database file " + database + " was not read whole; records read: 2\n"},
      {database_of + database + " " + out + " --to bin", 1,
       "Database file " + database + " was not read whole; records read: 2\n"},
      {"knowledge " + sample("knowledge.xml") + " " + out + " --to xml", 1,
       "text growth_summary cannot be written in XML: it reads back different\n" + nothing},
      {"knowledge " + sample("knowledge.bin") + " " + out + " --to xml", 1,
       "text growth_summary cannot be written in XML: it reads back different\n" + nothing},
      {"database " + kKnowledge + " " + in + " " + out + " --to xml", 1, tom + nothing},
      {"database " + kKnowledge + " " + bin + " " + out + " --to xml", 1, tom + nothing},
      {"knowledge " + testData("tools/knowledge-xml-to-bin.xml") + " " + out + " --to xml", 0, ""},
      {"knowledge " + knowledge_bin + " " + out + " --to bin", 0, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.arguments);
    ToolRun run = auxtool("convert " + row.arguments, true);
    EXPECT_EQ(row.exit_code, run.exit_code);
    EXPECT_EQ(row.output, run.output);
    EXPECT_EQ(row.exit_code == 0 ? 2u : 1u, namesIn(dir.path()).size());
    EXPECT_EQ(row.exit_code, row.exit_code == 0 ? auxtool("check " + out).exit_code : 1);
    remove(out.c_str());
  }
}

TEST_F(AuxtoolTest, AWriteInPlaceSaysWhatItRoundedAndAFailedWriteLeavesTheOldFile) {
  const std::string db = dir.file("db.xml");
  writeFile(db, "<p_database><p_record><p_name>A</p_name><proband><info sex=\"male\"/><data>"
            "<record age=\"5\"><val var=\"HEIGHT\">110.123456</val><val var=\"WEIGHT\">20.5</val></record>"
            "</data></proband></p_record></p_database>");
  const std::string convert = "convert database " + kKnowledge + " " + db + " " + db + " --to xml";
  runRows({{convert, 0, db + ": numbers rounded to six significant digits: 1\n"}});
  const std::string first = readFile(db);
  EXPECT_NE(std::string::npos, first.find("110.123\n"));
  runRows({{convert, 0, ""}});
  EXPECT_EQ(first, readFile(db));
  // Past a file size limit the write fails, is reported, and leaves the old file.
  const std::string out = dir.file("out.xml");
  writeFile(out, "old");
  int exit_code = -1;
  std::string output = runCommand("ulimit -f 8; " + std::string(AUX_BIN_DIR) + "/auxtool convert database " +
                                      sample("knowledge.xml") + " " + sample("probands.xml") + " " + out +
                                      " --to xml 2>&1",
                                  &exit_code);
  EXPECT_EQ(1, exit_code);
  EXPECT_EQ("Can not write " + out + "\n", output);
  EXPECT_EQ("old", readFile(out));
  EXPECT_EQ((std::set<std::string>{"db.xml", "out.xml"}), namesIn(dir.path()));
}

// One line per visit for a proband with a series, repeating the scalars;
// one line with empty visit and age for any other. HEIGHT:FIRST_VISIT is a
// series of one point: the second visit has none. Texts with the
// separator, a quote or a line end are quoted, quotes doubled.
TEST_F(AuxtoolTest, CalcPrintsOneLinePerVisitAndQuotesWhereNeeded) {
  const std::string calc = "calc " + kKnowledge + " " + kDatabase + " ";
  const std::string quoted = dir.file("q.xml");
  writeFile(quoted, "<p_database><p_record><p_name>Tom \"T\"</p_name><proband><info sex=\"male\"/></proband>"
                    "</p_record></p_database>");
  runRows({
      {calc + "HEIGHT FATHER_HT HEIGHT:N AGE_TODAY HEIGHT:FIRST_VISIT --today 1.1.2020", 0,
       "name,visit,age,HEIGHT,FATHER_HT,HEIGHT:N,AGE_TODAY,HEIGHT:FIRST_VISIT\n"
       "alpha,0,3.5,100.04,,2,,100.04\n"
       "alpha,1,5.001,110.3,,2,,\n"
       "Beta,,,,,,,\n"
       "Empty,,,,,,,\n"
       "Sample One,0,9.999,143.2,180.5,2,18.825,143.2\n"
       "Sample One,1,10.502,123.4567,180.5,2,18.825,\n"
       "\xC8" "ech,0,2,88,,1,20,88\n"},
      // Results that are not finite are empty.
      {calc + "'1E308*10' '(0-8)^(1/3)' 2 --today 1.1.2020", 0,
       "name,visit,age,1E308*10,(0-8)^(1/3),2\nalpha,,,,,2\nBeta,,,,,2\nEmpty,,,,,2\nSample One,,,,,2\n"
       "\xC8" "ech,,,,,2\n"},
      {"calc " + kKnowledge + " " + quoted + " \"$(printf '2\\n+1')\"", 0,
       "name,visit,age,\"2\n+1\"\n\"Tom \"\"T\"\"\",,,3\n"},
  });
  ToolRun run = auxtool(calc + "FATHER_HT --sep ' ' --today 1.1.2020");
  EXPECT_NE(std::string::npos, run.output.find("\n\"Sample One\"   180.5\n")) << run.output;
  run = auxtool(calc + "FATHER_HT --sep tab --today 1.1.2020");
  EXPECT_NE(std::string::npos, run.output.find("\nSample One\t\t\t180.5\n")) << run.output;
  runRows({{calc + "HEIGHT >/dev/full", 1, "auxtool calc: can not write the output\n"}});
}

TEST_F(AuxtoolTest, CalcRefusesABadFormulaOrOptionBeforeAnyOutputSayingWhy) {
  std::string many = "HEIGHT";  // and 26 more references: one too many
  for (int i = 1; i <= 26; ++i) many += "+HEIGHT:ABOVE[" + std::to_string(i) + "]";
  const std::string calc = "calc " + kKnowledge + " " + kDatabase + " HEIGHT ";
  const std::string sep = "auxtool calc: --sep takes \"tab\" or one character other than a digit, '.', '-', '\"' or "
                          "a line end, not ";
  const std::string today = "auxtool calc: --today takes a date D.M.YYYY from 1.1.1900 to 31.12.2100, not ";
  std::vector<Row> rows = {
      {calc + "HEIGHTX:SD", 1, "HEIGHTX names no variable, keyword or function"},
      {calc + "HEIGHT:FOO", 1, "FOO is no method (in HEIGHT:FOO)"},
      {calc + "'(HEIGHT'", 1, "the parentheses do not pair up"},
      {calc + "'HEIGHT;2'", 1, "the character ';' has no meaning here"},
      {calc + "'HEIGHT:ABOVE[2'", 1, "a bracket in HEIGHT:ABOVE[2 is not closed"},
      {calc + "'" + many + "'", 1, "a formula holds at most 26 different variable references"},
  };
  for (Row& row : rows) {
    std::string formula = row.arguments.substr(calc.size());
    if (formula[0] == '\'') formula = formula.substr(1, formula.size() - 2);
    row.output = "Formula " + formula + " does not translate: " + row.output + "\n";
  }
  rows.insert(rows.end(), {
      {calc + "--today 31.2.2020", 2, today + "\"31.2.2020\"\n"},
      {calc + "--today", 2, today + "nothing\n"},
      {calc + "--sep .", 2, sep + "\".\"\n"},
      {calc + "--sep -", 2, sep + "\"-\"\n"},
      {calc + "--sep 7", 2, sep + "\"7\"\n"},
      {calc + "--sep ';;'", 2, sep + "\";;\"\n"},
      {calc + "--sep \"$(printf '\\n')\"", 2, sep + "\"\"\n"},
      {"calc " + kKnowledge + " " + dir.file("none.xml") + " HEIGHT", 1, "File " + dir.file("none.xml") + " not found\n"},
  });
  runRows(rows);
}

// A refused count must end at once: a wrong bound would start a synthesis
// of minutes, which the time limit cuts short.
TEST_F(AuxtoolTest, SynthIsDeterministicItsDatabasesLoadAndItsCountIsBounded) {
  const std::string a = dir.file("a.xml"), b = dir.file("b.xml"), c = dir.file("c.bin");
  const std::string synth = "synth " + kKnowledge + " 50 ";
  ASSERT_EQ(0, auxtool(synth + a + " --seed 7").exit_code);
  ASSERT_EQ(0, auxtool(synth + b + " --seed 7").exit_code);
  ASSERT_EQ(0, auxtool(synth + c + " --seed 7 --to bin").exit_code);
  EXPECT_EQ(readFile(a), readFile(b));
  runRows({{"check " + kKnowledge + " " + c, 0, kSummary + "database " + c + ": 50 probands\n"}});
  int exit_code = -1;
  std::string output = runCommand("timeout -s KILL 5 " + std::string(AUX_BIN_DIR) + "/auxtool synth " + kKnowledge +
                                      " 1000001 " + dir.file("d.xml") + " 2>&1 | head -c 200",
                                  &exit_code);
  EXPECT_EQ("auxtool synth: N is a count from 0 to 1000000 (about 2 KB of memory each), not \"1000001\"\n",
            output.substr(0, output.find('\n') + 1));
  EXPECT_FALSE(fileExists(dir.file("d.xml")));
}

// Every key with its origin; a value's control bytes as escapes.
TEST_F(AuxtoolTest, SetupListsEveryKeyWithItsOrigin) {
  ToolRun run = auxtool("setup " + testData("page/setup.txt"));
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(readFile(testData("page/setup_expected.txt")), run.output);
  writeFile(dir.file("s.txt"), "page-default = a\x1f" "b\x01" "c\td\n");
  run = auxtool("setup " + dir.file("s.txt"));
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(109, std::count(run.output.begin(), run.output.end(), '\n'));
  EXPECT_NE(std::string::npos, run.output.find("\n3 int graph-optimal-width = 512 (default)\n"));
  EXPECT_NE(std::string::npos, run.output.find("\n49 str page-default = a\\x1Fb\\x01c\\td (file)\n"));
  runRows({{"setup " + dir.file("missing.txt"), 1, "Setup file " + dir.file("missing.txt") + " cannot be opened\n"}});
}

const char kCsvHead[] =
    "PROBAND_INDEX,NAME,SEX,DOB,COMMENT,FATHER_HT,MOTHER_HT,MEASURE_INDEX,DATE,MEASURE_COMMENT,HEIGHT,WEIGHT\n";
const char kZed[] =
    "3,\"Zed\",F,6/15/2012,\"three visits\",,,1,1/1/2015,\"\",110,18.25\n,,,,,,,2,6/1/2015,\"second_ visit\",112,\n"
    ",,,,,,,3,1/2/2016,\"\",,\n";

TEST_F(AuxtoolTest, CsvWritesEveryProbandOrThoseTheSearchSelectsAndARefusalLeavesTheOldFile) {
  const std::string csv = "csv " + testData("proband/knowledge.xml") + " ", out = dir.file("out.csv");
  const std::string database = testData("output/csv_database.xml");
  ASSERT_EQ(0, auxtool(csv + database + " " + out).exit_code);
  EXPECT_EQ(readFile(testData("output/csv_expected.csv")), readFile(out));
  ASSERT_EQ(0, auxtool(csv + database + " " + out + " --search zE").exit_code);
  EXPECT_EQ(std::string(kCsvHead) + kZed, readFile(out));
  writeFile(dir.file("bad.xml"), "<p_database><p_record><p_name>A</p_name><proband><info sex=\"male\"/>");
  EXPECT_EQ(1, auxtool(csv + dir.file("bad.xml") + " " + out).exit_code);
  EXPECT_EQ(1, auxtool(csv + dir.file("none.xml") + " " + out).exit_code);
  EXPECT_EQ(std::string(kCsvHead) + kZed, readFile(out));
}

// The listing, the database after an import (read back through `auxtool
// csv`), and refusals that leave the database byte for byte as it was.
TEST_F(AuxtoolTest, ImportListsTheEntriesAndAddsTheSelectedOnesOrChangesNothing) {
  const std::string list = testData("proband/import_list.xml"), database = dir.file("db.xml");
  const std::string original = readFile(testData("output/csv_database.xml"));
  const std::string import = "import " + testData("proband/knowledge.xml") + " ";
  const std::string listing = "info\tExport from the clinic\n1\tNov\xE1kov\xE1 Eva\tF\t3.4.2010\tshort stature\n"
                              "2\tSvoboda Jan\tM\t15.6.2012\ttall stature\n";
  writeFile(dir.file("broken.xml"),
            "<import_list><import_proband><name>A</name><proband><info sex=\"male\"/></proband>");
  const std::string broken = "<p_database><p_record><p_name>A</p_name><proband><info sex=\"male\"/>";
  // No selection gives a listing only; a number past the list is refused.
  const struct { std::string list, options, output, database; int exit_code; } refusals[] = {
      {list, "", listing, original, 0},           {dir.file("broken.xml"), "--all", "", original, 1},
      {dir.file("missing.xml"), "--all", "", original, 1}, {list, "--select 1,3", "", original, 2},
      {list, "--select 0", "", original, 2},      {list, "--select 1,x", "", original, 2},
      {list, "--select 1,", "", original, 2},     {list, "--all", "", broken, 1}};
  for (const auto& row : refusals) {
    writeFile(database, row.database);
    runRows({{import + row.list + " " + database + " " + row.options, row.exit_code, row.output}}, nullptr, false);
    EXPECT_EQ(row.database, readFile(database)) << row.list << " " << row.options;
  }

  writeFile(database, original);
  runRows({{import + list + " " + database + " --select 2,1", 0,
            listing + "imported 2 of 2 entries into " + database + "\n"}});
  ASSERT_EQ(0, auxtool("csv " + testData("proband/knowledge.xml") + " " + database + " " + dir.file("o.csv")).exit_code);
  EXPECT_EQ(std::string(kCsvHead) +
                "1,\"Nov\xE1kov\xE1 Eva\",F,4/3/2010,\"first comment\",180,,1,1/1/2015,\"check\",110.5,\n"
                "2,\"One__Two_\",M,4/3/2010,\"x;y\",180.5,,,,,,\n3,\"Other\",F,,\"\",,,,,,,\n"
                "4,\"Svoboda Jan\",M,6/15/2012,\"\",,,,,,,\n" + ("5" + std::string(kZed).substr(1)),
            readFile(dir.file("o.csv")));
}

// `auxtool report` on a small knowledge file and database (tests/data/tools/
// report*.xml), with the pages written by hand from the fixture's texts and
// the templates (report_summary.html, report_visits.html). The boy at 3
// years: last height 90 cm, target (180 + 166 + 13) / 2; the table shows the
// two visits with a height, BMI 12 / 0.86^2 at the first. The visits: three
// in groups of two, with the setup's frame and head column.
TEST_F(AuxtoolTest, ReportWritesWholePagesAndRefusesSayingWhatIsMissing) {
  const std::string files = testData("tools/report.xml") + " " + testData("tools/report_database.xml") + " ";
  const std::string boy = files + "\"Boy Jan\" ", missing = dir.file("missing.xml"), page = dir.file("p.html");
  const std::string summary = readFile(testData("tools/report_summary.html"));
  runRows({
      {"report " + boy + "summary --today 1.1.2013", 0, summary},
      {"report " + boy + "visits --today 1.1.2013 --setup " + testData("tools/report_setup.txt"), 0,
       readFile(testData("tools/report_visits.html"))},
      {"report --list " + testData("tools/report.xml"), 0, "summary\tSummary\nnote\t\nvisits\tVisits\n"},
      {"report --list " + missing, 1, "File " + missing + " not found\n"},
      // Names are matched exactly; the hint ignores ASCII case and stops at five names.
      {"report " + files + "\"boy jan\" summary --out " + page, 1,
       "Proband \"boy jan\" not found; names containing it:\n  Boy Jan\n"},
      {"report " + files + "JAN summary --out " + page, 1,
       "Proband \"JAN\" not found; names containing it:\n  Bojan Ivo\n  Boy Jan\n  Jana Mal\xE1\n  Janda Petr\n"
       "  Jank\xF9 Ota\n"},
      {"report " + files + "Xaver summary --out " + page, 1, "Proband \"Xaver\" not found\n"},
      {"report " + boy + "Summary --out " + page, 1, "Text \"Summary\" not found\n"},
      {"report " + missing + " " + testData("tools/report_database.xml") + " \"Boy Jan\" summary --out " + page, 1,
       "File " + missing + " not found\n"},
      {"report " + testData("tools/report.xml") + " " + missing + " \"Boy Jan\" summary --out " + page, 1,
       "File " + missing + " not found\n"},
      {"report " + boy + "summary --out " + dir.file("no/such/page.html"), 1,
       "Cannot write " + dir.file("no/such/page.html") + "\n"},
      {"report --today 1.1.2013 --out " + page + " " + boy + "summary", 0, ""},
  }, &dir);
  EXPECT_EQ(summary, readFile(page));
  EXPECT_EQ(std::set<std::string>{"p.html"}, namesIn(dir.path()));
}

// Two reports of the sample charts (five graphs each) made at once into one
// folder: each page keeps its own five image files.
TEST_F(AuxtoolTest, ReportsMadeTogetherIntoOneFolderKeepTheirOwnGraphs) {
  const std::string files = sample("knowledge.bin") + " " + sample("probands.bin") + " \"Svoboda Martin\" growth_charts";
  for (const char* page : {"a.html", "b.html"})
    ASSERT_EQ(0, auxtool("report " + files + " --today 1.6.2024 --out " + dir.file(page)).exit_code);
  int status = 0;
  EXPECT_EQ("10\n", runCommand("ls " + dir.path() + " | grep -c '\\.bmp$'", &status));
}
