// Runs the built exporter program and compares its whole standard output, exit code and result file; and the reporter
// that collects its messages.
#include <gtest/gtest.h>

#include <string>

#include "exporter/myreporter.h"
#include "tests/support/test_files.h"

TEST(ExporterProgramTest, EachRunGivesItsExitCodeWholeOutputAndResultFile) {
  TempDir dir;
  const std::string k = testData("exporter/knowledge.xml"), kbin = testData("exporter/knowledge.bin");
  const std::string d = testData("exporter/database.xml"), dbin = testData("exporter/database.bin");
  const std::string expected = readFile(testData("exporter/expected_result.txt"));
  const std::string missing = dir.file("missing.xml"), nul = dir.file("nul.xml"), empty = dir.file("empty.bin");
  const std::string blank = dir.file("blank.xml"), noinfo = dir.file("noinfo.xml"), cut = dir.file("cut.bin");
  const std::string empty_db = dir.file("empty_db.xml"), broken = dir.file("broken.xml"), out = dir.file("out.txt");
  const std::string nowhere = dir.file("no/such/dir/out.txt");
  writeFile(nul, std::string("\0<quorl>", 8));
  writeFile(empty, "");
  writeFile(blank, " <quorl></quorl>");
  writeFile(noinfo, "<quorl>\n</quorl>\n");
  writeFile(cut, readFile(kbin).substr(0, readFile(kbin).size() / 2));
  writeFile(empty_db, "<p_database>\n</p_database>\n");
  writeFile(broken, "<p_database>\n<p_record><p_name>A</p_name><proband><info sex=\"male\"/></proband></p_record>\n"
                    "<p_record><p_name>B</p_name><proband><info/></proband></p_record>\n</p_database>\n");
  const std::string usage = "There must be 3 arguments to this program: KNOWLEDGEFILE DATABASEFILE RESULTFILE\n";
  auto opened = [&](const std::string& knowledge, const std::string& db, const char* mode, int n) {
    return "* Successfully opened knowledge file " + knowledge + " in binary mode\n* Opened database file " + db +
           " in " + mode + " mode, got " + std::to_string(n) + " results\n";
  };
  const std::string k_line = "* Successfully opened knowledge file " + k + " in binary mode\n";
  const std::string kept = "old contents";  // a failed run leaves the result file as it was
  const struct { std::string arguments; int code; std::string output, result; } rows[] = {
      {"", 101, usage + "Currently there are 1\n", kept}, {"a b c d", 101, usage + "Currently there are 5\n", kept},
      {missing + " db " + out, 102, "File " + missing + " not found\n", kept},
      {nul + " db " + out, 102, "File " + nul + " not found\n", kept},
      {empty + " db " + out, 102, "Error reading knowledge file " + empty + " as BIN\n", kept},
      {blank + " db " + out, 102, "Error reading knowledge file " + blank + " as BIN\n", kept},
      {cut + " " + d + " " + out, 102, "Error reading knowledge file " + cut + " as BIN\n", kept},
      {noinfo + " db " + out, 102,
       "Error reading knowledge file " + noinfo + " as XML\n(3) No file information defined\n"
       "(3) Error while making file statistics\nStatistics not loaded\nError while processing file.\n\n", kept},
      {k + " " + missing + " " + out, 104, k_line + "File " + missing + " not found\n", kept},
      {k + " " + nul + " " + out, 104, k_line + "File " + nul + " not found\n", kept},
      {k + " " + empty_db + " " + out, 105, k_line + "Database file " + empty_db + " contains no records\n\n", kept},
      {k + " " + d + " " + nowhere, 106, opened(k, d, "XML", 5) + "Can not open output file " + nowhere + "\n", kept},
      {k + " " + d + " " + out, 0, opened(k, d, "XML", 5) + "* Created output file " + out + "\n", expected},
      {kbin + " " + d + " " + out, 0, opened(kbin, d, "XML", 5) + "* Created output file " + out + "\n", expected},
      {k + " " + dbin + " " + out, 0, opened(k, dbin, "BIN", 5) + "* Created output file " + out + "\n", expected},
      {kbin + " " + dbin + " " + out, 0, opened(kbin, dbin, "BIN", 5) + "* Created output file " + out + "\n",
       expected},
      // A database that breaks after some records still exports them.
      {k + " " + broken + " " + out, 0, opened(k, broken, "XML", 1) + "* Created output file " + out + "\n",
       "{\"indicator-class:proband:sex\":\"m\",\"indicator-class:proband:name\":\"A\",\"visit\":[]}|||"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.arguments);
    writeFile(out, kept);
    int code = -1;
    EXPECT_EQ(row.output, runCommand(std::string(AUX_BIN_DIR) + "/exporter " + row.arguments, &code));
    EXPECT_EQ(row.code, code);
    EXPECT_EQ(row.result, readFile(out));
  }
}

// 10000 bytes hold the lines with their line feeds and the closing NUL.
TEST(MyReporterTest, KeepsWholeLinesWhileTheyFitWithTheNulAndCutsEachAt9900) {
  MyReporter reporter;
  reporter.report(std::string(9899, 'a').c_str());  // 9899 + 1 = 9900 bytes
  reporter.report(std::string(99, 'b').c_str());    // 9900 + 100 leaves no room for the NUL
  reporter.report(std::string(98, 'c').c_str());    // 9900 + 99 + 1 = 10000: fits
  EXPECT_EQ(std::string(9899, 'a') + "\n" + std::string(98, 'c') + "\n", reporter.getText());
  MyReporter one;
  one.report(std::string(20000, 'x').c_str());
  EXPECT_EQ(std::string(9900, 'x') + "\n", one.getText());
}
