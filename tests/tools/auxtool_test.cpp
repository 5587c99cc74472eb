// Runs the built auxtool program on fixture files and compares its whole
// output and exit code.
#include <gtest/gtest.h>

#include <dirent.h>

#include <set>
#include <string>

#include "tests/support/test_files.h"
#include "tests/tools/auxtool_run.h"

namespace {

const std::string kKnowledge = testData("exporter/knowledge.xml");
const std::string kDatabase = testData("exporter/database.xml");

// The names in a directory: what a conversion left behind.
std::set<std::string> namesIn(const std::string& path) {
  std::set<std::string> names;
  DIR* handle = opendir(path.c_str());
  while (dirent* entry = readdir(handle))
    if (entry->d_name[0] != '.') names.insert(entry->d_name);
  closedir(handle);
  return names;
}

class AuxtoolTest : public ::testing::Test {
 protected:
  TempDir dir;
};

}  // namespace

TEST_F(AuxtoolTest, UsageErrorsExitWith2AndHelpWith0) {
  EXPECT_EQ(2, auxtool("").exit_code);
  EXPECT_EQ(2, auxtool("frobnicate").exit_code);
  EXPECT_EQ(2, auxtool("check").exit_code);
  EXPECT_EQ(2, auxtool("check a b c").exit_code);
  EXPECT_EQ(2, auxtool("convert knowledge a b").exit_code);
  EXPECT_EQ(2, auxtool("convert knowledge a b --to pdf").exit_code);
  EXPECT_EQ(2, auxtool("calc k d").exit_code);
  ToolRun help = auxtool("--help");
  EXPECT_EQ(0, help.exit_code);
  EXPECT_NE(std::string::npos, help.output.find("auxtool calc KNOWLEDGE DATABASE FORMULA..."));
  ToolRun check_help = auxtool("check --help");
  EXPECT_EQ(0, check_help.exit_code);
  EXPECT_EQ(0u, check_help.output.find("usage: auxtool check KNOWLEDGE [DATABASE]\n"));
}

TEST_F(AuxtoolTest, CheckPrintsASummaryOfGoodFiles) {
  ToolRun run = auxtool("check " + kKnowledge + " " + kDatabase);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ("knowledge file " + kKnowledge + ": 18 variables, 0 references, 0 texts\n" + "database " + kDatabase +
                ": 5 probands\n",
            run.output);
}

TEST_F(AuxtoolTest, CheckPrintsEveryLineOfARefusalAndExitsWith1) {
  std::string missing = dir.file("missing.xml");
  ToolRun run = auxtool("check " + missing);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("File " + missing + " not found\n", run.output);

  std::string broken = dir.file("broken.xml");
  writeFile(broken, "<quorl>\n</quorl>\n");
  run = auxtool("check " + broken);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("(3) No file information defined\n(3) Error while making file statistics\nStatistics not loaded\n"
            "Error while processing file.\nError reading knowledge file " + broken + " as XML\n",
            run.output);

  std::string empty = dir.file("empty.bin");
  writeFile(empty, "");
  run = auxtool("check " + empty);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("Error reading knowledge file " + empty + " as BIN\n", run.output);
}

TEST_F(AuxtoolTest, CheckOfADatabaseWithABadRecordKeepsTheRestAndExitsWith1) {
  std::string database = dir.file("db.xml");
  writeFile(database,
            "<p_database>\n<p_record><p_name>A</p_name><proband><info sex=\"male\"/></proband></p_record>\n"
            "<p_record><p_name>B</p_name><proband><info/></proband></p_record>\n</p_database>\n");
  ToolRun run = auxtool("check " + kKnowledge + " " + database);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("knowledge file " + kKnowledge + ": 18 variables, 0 references, 0 texts\n" +
                "data error closing block </proband>: wrong proband data\n"
                "Error while processing database record.\n"
                "(3) data error closing block </p_record>: error while reading record\n"
                "(5) Error while processing database.\n"
                "Database file " + database + " was not read whole; records read: 1\n" +
                "database " + database + ": 1 probands\n",
            run.output);
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

TEST_F(AuxtoolTest, TheSampleDatabaseCutTo3000BytesSaysHowManyRecordsItRead) {
  const std::string cut = dir.file("cut.bin");
  const std::string knowledge = std::string(AUX_SOURCE_DIR) + "/samples/knowledge.xml";
  writeFile(cut, readFile(std::string(AUX_SOURCE_DIR) + "/samples/probands.bin").substr(0, 3000));
  ToolRun run = auxtool("check " + knowledge + " " + cut);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("knowledge file " + knowledge + ": 48 variables, 40 references, 7 texts\n" + "Database file " + cut +
                " was not read whole; records read: 3\n" + "database " + cut + ": 3 probands\n",
            run.output);
}

TEST_F(AuxtoolTest, ConvertRoundTripsKnowledgeFilesThroughTheBinaryForm) {
  const std::string files[] = {kKnowledge, testData("formula/methods.xml")};
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    std::string xml = dir.file("k.xml"), bin = dir.file("k.bin"), back = dir.file("k2.xml");
    ASSERT_EQ(0, auxtool("convert knowledge " + file + " " + xml + " --to xml").exit_code);
    ASSERT_EQ(0, auxtool("convert knowledge --to bin " + file + " " + bin).exit_code);
    ASSERT_EQ(0, auxtool("convert knowledge " + bin + " " + back + " --to xml").exit_code);
    EXPECT_EQ(9, readFile(bin)[0]);
    EXPECT_EQ(readFile(xml), readFile(back));
    EXPECT_EQ(0, auxtool("check " + bin).exit_code);
  }
}

// The XML writer puts a paragraph's tags out escaped, and the XML reader
// knows no entities: a report text with mark-up goes to the binary form only.
TEST_F(AuxtoolTest, TheSampleKnowledgeFileGoesToBinaryButItsMarkedUpTextsDoNotGoToXML) {
  const std::string sample = std::string(AUX_SOURCE_DIR) + "/samples/knowledge.xml";
  const std::string bin = dir.file("k.bin"), xml = dir.file("k.xml");
  ASSERT_EQ(0, auxtool("convert knowledge " + sample + " " + bin + " --to bin").exit_code);
  EXPECT_EQ(readFile(std::string(AUX_SOURCE_DIR) + "/samples/knowledge.bin"), readFile(bin));
  for (const std::string& from : {sample, bin}) {
    SCOPED_TRACE(from);
    ToolRun run = auxtool("convert knowledge " + from + " " + xml + " --to xml", true);
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("text growth_summary cannot be written in XML: it reads back different\nNothing written to " + xml + "\n",
              run.output);
    EXPECT_FALSE(fileExists(xml));
  }
}

TEST_F(AuxtoolTest, ConvertRoundTripsDatabasesThroughTheBinaryForm) {
  struct Pair {
    std::string knowledge, database;
  } pairs[] = {{kKnowledge, kDatabase},
               {std::string(AUX_SOURCE_DIR) + "/samples/knowledge.xml", std::string(AUX_SOURCE_DIR) + "/samples/probands.xml"}};
  for (const Pair& pair : pairs) {
    SCOPED_TRACE(pair.database);
    std::string xml = dir.file("d.xml"), bin = dir.file("d.bin"), back = dir.file("d2.xml");
    std::string prefix = "convert database " + pair.knowledge + " ";
    ASSERT_EQ(0, auxtool(prefix + pair.database + " " + xml + " --to xml").exit_code);
    ASSERT_EQ(0, auxtool(prefix + pair.database + " " + bin + " --to bin").exit_code);
    ASSERT_EQ(0, auxtool(prefix + bin + " " + back + " --to xml").exit_code);
    EXPECT_EQ(81, readFile(bin)[0]);
    EXPECT_EQ(readFile(xml), readFile(back));
  }
}

TEST_F(AuxtoolTest, AFailedReadWritesNothing) {
  std::string broken = dir.file("broken.xml"), out = dir.file("out.bin");
  writeFile(broken, "<quorl><info>");
  ToolRun run = auxtool("convert knowledge " + broken + " " + out + " --to bin", true);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("unfinished structure (missing end tags)\nNo file information defined\nError while making file statistics\n"
            "Statistics not loaded\nError while processing file.\nError reading knowledge file " + broken + " as XML\n",
            run.output);
  EXPECT_FALSE(fileExists(out));
  std::string database = dir.file("db.xml");
  writeFile(database, "<p_database><p_record><proband><info/></proband></p_record></p_database>");
  EXPECT_EQ(1, auxtool("convert database " + kKnowledge + " " + database + " " + out + " --to bin").exit_code);
  EXPECT_FALSE(fileExists(out));
  EXPECT_EQ(1, auxtool("convert database " + kKnowledge + " " + dir.file("none.xml") + " " + out + " --to bin").exit_code);
  EXPECT_FALSE(fileExists(out));
}

TEST_F(AuxtoolTest, ConversionsOfDamagedFilesReadBackOrAreRefusedWithNothingWritten) {
  const std::string knowledge_xml = testData("tools/knowledge-xml-to-bin.xml");
  const std::string knowledge_bin = testData("tools/knowledge-bin-to-xml.bin");
  const std::string database_knowledge = testData("tools/database-bin-to-xml.knowledge.bin");
  const std::string database = testData("tools/database-bin-to-xml.bin");
  const std::string out = dir.file("out");
  const struct {
    std::string arguments;
    int exit_code;
    std::string messages;
  } rows[] = {
      {"knowledge " + knowledge_xml + " " + out + " --to bin", 1,
       "the line definitions (graphlines) cannot be written in the binary form: the file has none, and the binary "
       "form cannot go without them\nNothing written to " + out + "\n"},
      {"knowledge " + knowledge_xml + " " + out + " --to xml", 0, ""},
      {"knowledge " + knowledge_bin + " " + out + " --to xml", 1,
       "variable NESTED cannot be written in XML: it does not read back\n"
       "data error closing block </compute>: error in condition\nNo valid condition/method pairs found.\n"
       "Error while processing equation (wrong format or none defined).\n"
       "data error closing block </method>: variable method load error\nError while processing variable.\n"
       "Nothing written to " + out + "\n"},
      {"knowledge " + knowledge_bin + " " + out + " --to bin", 0, ""},
      // Found by the conversion fuzz target: the binary load takes any identifier.
      {"knowledge " + testData("tools/knowledge-bad-identifier.bin") + " " + out + " --to xml", 1,
       "the file information or a variable identifier cannot be written in XML: it does not read back\n"
       "data error closing block </id>: variable code is wrong\nError while making file statistics\n"
       "Nothing written to " + out + "\n"},
      {"database " + database_knowledge + " " + database + " " + out + " --to xml", 1,
       "Database file " + database + " was not read whole; records read: 2\n"},
      {"database " + database_knowledge + " " + database + " " + out + " --to bin", 1,
       "Database file " + database + " was not read whole; records read: 2\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.arguments);
    ToolRun run = auxtool("convert " + row.arguments, true);
    EXPECT_EQ(row.exit_code, run.exit_code);
    EXPECT_EQ(row.messages, run.output);
    EXPECT_EQ(row.exit_code == 0 ? std::set<std::string>{"out"} : std::set<std::string>{}, namesIn(dir.path()));
    if (row.exit_code == 0) {
      EXPECT_EQ(0, auxtool("check " + out).exit_code);
    }
    remove(out.c_str());
  }
}

// The XML reader knows no entities: '&' is written as "&amp;" and read back
// as those five bytes, so such a text cannot go to XML, from either form.
TEST_F(AuxtoolTest, ATextTheXMLFormCannotGiveBackIsRefusedNamingItsRecord) {
  const std::string xml = dir.file("db.xml"), bin = dir.file("db.bin");
  const std::string original =
      "<p_database><p_record><p_name>Tom & Jerry</p_name><proband><info sex=\"male\"/></proband></p_record>"
      "</p_database>";
  writeFile(xml, original);
  const std::string prefix = "convert database " + kKnowledge + " ";
  ASSERT_EQ(0, auxtool(prefix + xml + " " + bin + " --to bin").exit_code);
  for (const std::string& in : {xml, bin}) {
    SCOPED_TRACE(in);
    ToolRun run = auxtool(prefix + in + " " + xml + " --to xml", true);
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("record 1 (Tom & Jerry) cannot be written in XML: it reads back different\nNothing written to " + xml +
                  "\n",
              run.output);
    EXPECT_EQ(original, readFile(xml));
  }
  EXPECT_EQ((std::set<std::string>{"db.bin", "db.xml"}), namesIn(dir.path()));
}

TEST_F(AuxtoolTest, ConvertOntoItsInputAndSaysHowManyNumbersItRounded) {
  const std::string db = dir.file("db.xml");
  writeFile(db,
            "<p_database><p_record><p_name>A</p_name><proband><info sex=\"male\"/><data>"
            "<record age=\"5\"><val var=\"HEIGHT\">110.123456</val><val var=\"WEIGHT\">20.5</val></record>"
            "</data></proband></p_record></p_database>");
  ToolRun run = auxtool("convert database " + kKnowledge + " " + db + " " + db + " --to xml", true);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(db + ": numbers rounded to six significant digits: 1\n", run.output);
  EXPECT_NE(std::string::npos, readFile(db).find("110.123\n"));
  const std::string first = readFile(db);
  run = auxtool("convert database " + kKnowledge + " " + db + " " + db + " --to xml", true);
  EXPECT_EQ("", run.output);
  EXPECT_EQ(first, readFile(db));
  EXPECT_EQ(std::set<std::string>{"db.xml"}, namesIn(dir.path()));
}

// Past a file size limit the write fails, is reported, and leaves the old file.
TEST_F(AuxtoolTest, AWriteStoppedByAFileSizeLimitLeavesTheOldFile) {
  const std::string out = dir.file("out.xml");
  writeFile(out, "old");
  int exit_code = -1;
  std::string output = runCommand("ulimit -f 8; " + std::string(AUX_BIN_DIR) + "/auxtool convert database " +
                                      AUX_SOURCE_DIR + "/samples/knowledge.xml " + AUX_SOURCE_DIR +
                                      "/samples/probands.xml " + out + " --to xml 2>&1",
                                  &exit_code);
  EXPECT_EQ(1, exit_code);
  EXPECT_EQ("Can not write " + out + "\n", output);
  EXPECT_EQ("old", readFile(out));
  EXPECT_EQ(std::set<std::string>{"out.xml"}, namesIn(dir.path()));
}

TEST_F(AuxtoolTest, CalcPrintsOneLinePerVisitAndRepeatsScalars) {
  ToolRun run = auxtool("calc " + kKnowledge + " " + kDatabase + " HEIGHT FATHER_HT HEIGHT:N AGE_TODAY --today 1.1.2020");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(
      "name,visit,age,HEIGHT,FATHER_HT,HEIGHT:N,AGE_TODAY\n"
      "alpha,0,3.5,100.04,,2,\n"
      "alpha,1,5.001,110.3,,2,\n"
      "Beta,,,,,,\n"
      "Empty,,,,,,\n"
      "Sample One,0,9.999,143.2,180.5,2,18.825\n"
      "Sample One,1,10.502,123.4567,180.5,2,18.825\n"
      "\xC8" "ech,0,2,88,,1,20\n",
      run.output);
}

TEST_F(AuxtoolTest, CalcQuotesTextsThatHoldTheSeparator) {
  ToolRun run = auxtool("calc " + kKnowledge + " " + kDatabase + " FATHER_HT --sep ' ' --today 1.1.2020");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_NE(std::string::npos, run.output.find("\n\"Sample One\"   180.5\n")) << run.output;
  run = auxtool("calc " + kKnowledge + " " + kDatabase + " FATHER_HT --sep tab --today 1.1.2020");
  EXPECT_NE(std::string::npos, run.output.find("\nSample One\t\t\t180.5\n")) << run.output;
}

TEST_F(AuxtoolTest, AFormulaThatDoesNotTranslateEndsTheRunBeforeAnyOutputSayingWhy) {
  std::string many = "HEIGHT";  // and 26 more references: one too many
  for (int i = 1; i <= 26; ++i) many += "+HEIGHT:ABOVE[" + std::to_string(i) + "]";
  const struct {
    std::string formula;
    std::string reason;
  } rows[] = {
      {"HEIGHTX:SD", "HEIGHTX names no variable, keyword or function"},
      {"HEIGHT:FOO", "FOO is no method (in HEIGHT:FOO)"},
      {"(HEIGHT", "the parentheses do not pair up"},
      {"HEIGHT;2", "the character ';' has no meaning here"},
      {"HEIGHT:ABOVE[2", "a bracket in HEIGHT:ABOVE[2 is not closed"},
      {many, "a formula holds at most 26 different variable references"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.formula);
    ToolRun run = auxtool("calc " + kKnowledge + " " + kDatabase + " HEIGHT '" + row.formula + "'", true);
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ("Formula " + row.formula + " does not translate: " + row.reason + "\n", run.output);
  }
  ToolRun run = auxtool("calc " + kKnowledge + " " + dir.file("none.xml") + " HEIGHT", true);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("File " + dir.file("none.xml") + " not found\n", run.output);
}

TEST_F(AuxtoolTest, ABadOptionValueIsNamedInOneLine) {
  const struct {
    std::string option;
    std::string message;
  } rows[] = {
      {"--today 31.2.2020", "--today takes a date D.M.YYYY from 1.1.1900 to 31.12.2100, not \"31.2.2020\""},
      {"--today", "--today takes a date D.M.YYYY from 1.1.1900 to 31.12.2100, not nothing"},
      {"--sep .", "--sep takes \"tab\" or one character other than a digit, '.', '-', '\"' or a line end, not \".\""},
      {"--sep -", "--sep takes \"tab\" or one character other than a digit, '.', '-', '\"' or a line end, not \"-\""},
      {"--sep 7", "--sep takes \"tab\" or one character other than a digit, '.', '-', '\"' or a line end, not \"7\""},
      {"--sep ';;'", "--sep takes \"tab\" or one character other than a digit, '.', '-', '\"' or a line end, not \";;\""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.option);
    ToolRun run = auxtool("calc " + kKnowledge + " " + kDatabase + " HEIGHT " + row.option, true);
    EXPECT_EQ(2, run.exit_code);
    EXPECT_EQ("auxtool calc: " + row.message + "\n", run.output);
  }
  int exit_code = 0;
  runCommand("nl=$(printf '\\nx'); " + std::string(AUX_BIN_DIR) + "/auxtool calc " + kKnowledge + " " + kDatabase +
                 " HEIGHT --sep \"${nl%x}\" 2>/dev/null",
             &exit_code);
  EXPECT_EQ(2, exit_code);
}

TEST_F(AuxtoolTest, CalcPrintsResultsThatAreNotFiniteAsEmptyAndReportsAFailedWrite) {
  ToolRun run = auxtool("calc " + kKnowledge + " " + kDatabase + " '1E308*10' '(0-8)^(1/3)' 2 --today 1.1.2020");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ("name,visit,age,1E308*10,(0-8)^(1/3),2\nalpha,,,,,2\nBeta,,,,,2\nEmpty,,,,,2\nSample One,,,,,2\n"
            "\xC8" "ech,,,,,2\n",
            run.output);
  int exit_code = 0;
  std::string output = runCommand(std::string(AUX_BIN_DIR) + "/auxtool calc " + kKnowledge + " " + kDatabase +
                                      " HEIGHT 2>&1 >/dev/full",
                                  &exit_code);
  EXPECT_EQ(1, exit_code);
  EXPECT_EQ("auxtool calc: can not write the output\n", output);
}

TEST_F(AuxtoolTest, SynthIsDeterministicAndItsDatabasesLoad) {
  std::string a = dir.file("a.xml"), b = dir.file("b.xml"), c = dir.file("c.bin");
  ASSERT_EQ(0, auxtool("synth " + kKnowledge + " 50 " + a + " --seed 7").exit_code);
  ASSERT_EQ(0, auxtool("synth " + kKnowledge + " 50 " + b + " --seed 7").exit_code);
  ASSERT_EQ(0, auxtool("synth " + kKnowledge + " 50 " + c + " --seed 7 --to bin").exit_code);
  EXPECT_EQ(readFile(a), readFile(b));
  ToolRun run = auxtool("check " + kKnowledge + " " + c);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_NE(std::string::npos, run.output.find(": 50 probands\n"));
  EXPECT_EQ(2, auxtool("synth " + kKnowledge + " -5 " + a).exit_code);
  run = auxtool("synth " + kKnowledge + " 1000001 " + a, true);
  EXPECT_EQ(2, run.exit_code);
  EXPECT_EQ(0u, run.output.find("auxtool synth: N is a count from 0 to 1000000 (about 2 KB of memory each), not "
                                "\"1000001\"\n"));
}
