// Runs the built exporter program and compares its whole standard output,
// exit code and result file.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

namespace {

struct ProgramRun {
  std::string output;
  int exit_code;
};

ProgramRun runExporter(const std::string& arguments) {
  ProgramRun run;
  run.output = runCommand(std::string(AUX_BIN_DIR) + "/exporter " + arguments, &run.exit_code);
  return run;
}

std::string knowledgeFixture() { return testData("exporter/knowledge.xml"); }
std::string databaseFixture() { return testData("exporter/database.xml"); }

std::string knowledgeLine(const std::string& path) {
  return "* Successfully opened knowledge file " + path + " in binary mode\n";
}

class ExporterProgramTest : public ::testing::Test {
 protected:
  TempDir dir;
};

}  // namespace

TEST_F(ExporterProgramTest, WrongArgumentCountsAreCountedWithTheProgramName) {
  ProgramRun none = runExporter("");
  EXPECT_EQ(101, none.exit_code);
  EXPECT_EQ("There must be 3 arguments to this program: KNOWLEDGEFILE DATABASEFILE RESULTFILE\nCurrently there are 1\n",
            none.output);
  ProgramRun four = runExporter("a b c d");
  EXPECT_EQ(101, four.exit_code);
  EXPECT_EQ("There must be 3 arguments to this program: KNOWLEDGEFILE DATABASEFILE RESULTFILE\nCurrently there are 5\n",
            four.output);
}

TEST_F(ExporterProgramTest, KnowledgeFileFailuresExitWith102) {
  std::string missing = dir.file("missing.xml");
  std::string empty = dir.file("empty.bin");
  std::string blank = dir.file("blank.xml");
  std::string nul = dir.file("nul.xml");
  writeFile(empty, "");
  writeFile(blank, " <quorl></quorl>");
  writeFile(nul, std::string("\0<quorl>", 8));
  struct Row {
    std::string path;
    std::string output;
  } rows[] = {
      {missing, "File " + missing + " not found\n"},
      {nul, "File " + nul + " not found\n"},
      {empty, "Error reading knowledge file " + empty + " as BIN\n"},
      {blank, "Error reading knowledge file " + blank + " as BIN\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    ProgramRun run = runExporter(row.path + " db out");
    EXPECT_EQ(102, run.exit_code);
    EXPECT_EQ(row.output, run.output);
  }
  EXPECT_FALSE(fileExists("out"));
}

TEST_F(ExporterProgramTest, AnXmlKnowledgeFileThatFailsPrintsTheReporterLines) {
  std::string path = dir.file("noinfo.xml");
  writeFile(path, "<quorl>\n</quorl>\n");
  ProgramRun run = runExporter(path + " db " + dir.file("out"));
  EXPECT_EQ(102, run.exit_code);
  EXPECT_EQ("Error reading knowledge file " + path +
                " as XML\n(3) No file information defined\n(3) Error while making file statistics\n"
                "Statistics not loaded\nError while processing file.\n\n",
            run.output);
}

TEST_F(ExporterProgramTest, DatabaseFailuresExitWith104And105) {
  std::string missing = dir.file("missing.xml");
  std::string nul = dir.file("nul.xml");
  std::string empty_db = dir.file("empty.xml");
  writeFile(nul, std::string("\0", 1));
  writeFile(empty_db, "<p_database>\n</p_database>\n");
  std::string k = knowledgeFixture();
  ProgramRun run = runExporter(k + " " + missing + " " + dir.file("out"));
  EXPECT_EQ(104, run.exit_code);
  EXPECT_EQ(knowledgeLine(k) + "File " + missing + " not found\n", run.output);
  run = runExporter(k + " " + nul + " " + dir.file("out"));
  EXPECT_EQ(104, run.exit_code);
  EXPECT_EQ(knowledgeLine(k) + "File " + nul + " not found\n", run.output);
  run = runExporter(k + " " + empty_db + " " + dir.file("out"));
  EXPECT_EQ(105, run.exit_code);
  EXPECT_EQ(knowledgeLine(k) + "Database file " + empty_db + " contains no records\n\n", run.output);
}

TEST_F(ExporterProgramTest, AResultFileInAMissingDirectoryExitsWith106AfterReadingBoth) {
  std::string k = knowledgeFixture(), d = databaseFixture();
  std::string out = dir.file("no/such/dir/out.txt");
  ProgramRun run = runExporter(k + " " + d + " " + out);
  EXPECT_EQ(106, run.exit_code);
  EXPECT_EQ(knowledgeLine(k) + "* Opened database file " + d + " in XML mode, got 5 results\n" +
                "Can not open output file " + out + "\n",
            run.output);
}

TEST_F(ExporterProgramTest, AFailedRunLeavesAnExistingResultFileUntouched) {
  std::string out = dir.file("out.txt");
  writeFile(out, "old contents");
  ProgramRun run = runExporter(knowledgeFixture() + " " + dir.file("missing.xml") + " " + out);
  EXPECT_EQ(104, run.exit_code);
  EXPECT_EQ("old contents", readFile(out));
}

TEST_F(ExporterProgramTest, ExportsTheXmlDatabaseInNameOrder) {
  std::string k = knowledgeFixture(), d = databaseFixture(), out = dir.file("result.txt");
  ProgramRun run = runExporter(k + " " + d + " " + out);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(knowledgeLine(k) + "* Opened database file " + d + " in XML mode, got 5 results\n" +
                "* Created output file " + out + "\n",
            run.output);
  EXPECT_EQ(readFile(testData("exporter/expected_result.txt")), readFile(out));
}

TEST_F(ExporterProgramTest, BinaryInputsExportTheSameRecords) {
  struct Row {
    std::string knowledge, database, mode;
  } rows[] = {
      {testData("exporter/knowledge.bin"), databaseFixture(), "XML"},
      {knowledgeFixture(), testData("exporter/database.bin"), "BIN"},
      {testData("exporter/knowledge.bin"), testData("exporter/database.bin"), "BIN"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.knowledge + " " + row.database);
    std::string out = dir.file("result.txt");
    ProgramRun run = runExporter(row.knowledge + " " + row.database + " " + out);
    EXPECT_EQ(0, run.exit_code);
    EXPECT_EQ(knowledgeLine(row.knowledge) + "* Opened database file " + row.database + " in " + row.mode +
                  " mode, got 5 results\n" + "* Created output file " + out + "\n",
              run.output);
    EXPECT_EQ(readFile(testData("exporter/expected_result.txt")), readFile(out));
  }
}

TEST_F(ExporterProgramTest, ACutBinaryKnowledgeFileFailsAsBinary) {
  std::string cut = dir.file("cut.bin");
  std::string whole = readFile(testData("exporter/knowledge.bin"));
  writeFile(cut, whole.substr(0, whole.size() / 2));
  ProgramRun run = runExporter(cut + " " + databaseFixture() + " " + dir.file("out"));
  EXPECT_EQ(102, run.exit_code);
  EXPECT_EQ("Error reading knowledge file " + cut + " as BIN\n", run.output);
}

TEST_F(ExporterProgramTest, ADatabaseThatBreaksAfterSomeRecordsStillExportsThem) {
  std::string db = dir.file("broken.xml"), out = dir.file("result.txt");
  writeFile(db,
            "<p_database>\n<p_record><p_name>A</p_name><proband><info sex=\"male\"/></proband></p_record>\n"
            "<p_record><p_name>B</p_name><proband><info/></proband></p_record>\n</p_database>\n");
  std::string k = knowledgeFixture();
  ProgramRun run = runExporter(k + " " + db + " " + out);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(knowledgeLine(k) + "* Opened database file " + db + " in XML mode, got 1 results\n" +
                "* Created output file " + out + "\n",
            run.output);
  EXPECT_EQ("{\"indicator-class:proband:sex\":\"m\",\"indicator-class:proband:name\":\"A\",\"visit\":[]}|||",
            readFile(out));
}
