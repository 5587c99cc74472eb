// Runs the built exporter program and compares its whole standard output, exit code and result file; and its parts:
// the fields of a result record and the reporter that collects the messages.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>

#include "core/r_date.h"
#include "core/r_number.h"
#include "exporter/myreporter.h"
#include "exporter/resultrecordwriter.h"
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

TEST(ResultRecordWriterTest, FoldCharacterMapsCzechLettersAndDashesTheRest) {
  const std::string bytes = "\xE1\xC4\xE8\xC8\xEF\xCF\xEC\xCB\xED\xCD\xE5\xC5\xF2\xD2\xF6\xD4"
                            "\xE0\xD8\x9A\x8A\x9D\x8D\xF9\xDC\xFD\xDD\x9E\x8E\x80\xFF\xA0\xB9";
  const std::string folded = "aAcCdDeEiIlLnNoOrRsStTuUyYzZ----";
  for (size_t i = 0; i < bytes.size(); ++i) {
    EXPECT_EQ(folded[i], foldCharacter(static_cast<unsigned char>(bytes[i]))) << static_cast<int>(bytes[i] & 0xFF);
  }
}

// Each field as written to a stream, and whether the writer said it wrote one.
TEST(ResultRecordWriterTest, FieldsFoldTextsKeepPunctuationAndWriteNothingWhenEmpty) {
  typedef std::function<bool(FILE*)> Write;
  auto text = [](const char* value) { return [=](FILE* f) { return writeStringField(f, "k", value); }; };
  auto number = [](double value) { return [=](FILE* f) { return writeNumberField(f, "n", R_Number(value)), true; }; };
  const struct { Write write; std::string written; bool wrote; } rows[] = {
      {text("\x8E\xE1" "ba"), "\"k\":\"Zaba\"", true},
      {text("a b!@#$%^&*()=-/+.,?;"), "\"k\":\"a b!@#$%^&*()=-/+.,?;\"", true},
      {text("x\"':<>\\[]{}_|~y"), "\"k\":\"xy\"", true}, {text("line\nbreak\ttab\r"), "\"k\":\"linebreaktab\"", true},
      {text("\x80"), "\"k\":\"-\"", true}, {text("\""), "\"k\":\"\"", true}, {text(""), "", false},
      {text(nullptr), "", false},
      {[](FILE* f) { return writeDateField(f, "d", R_Date(5, 3, 2001)); }, "\"d\":\"20010305\"", true},
      {[](FILE* f) { return writeDateField(f, "d", R_Date()); }, "", false},
      {number(123.4567), "\"n\":123.457", true},  // six significant digits
      {number(1000000), "\"n\":1e+06", true}, {number(-0.5), "\"n\":-0.5", true},
      {[](FILE* f) { return writeIntegerField(f, "i", -3), true; }, "\"i\":-3", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.written);
    FILE* file = tmpfile();
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(row.wrote, row.write(file));
    std::string bytes(static_cast<size_t>(ftell(file)), '\0');
    rewind(file);
    EXPECT_EQ(bytes.size(), fread(&bytes[0], 1, bytes.size(), file));
    fclose(file);
    EXPECT_EQ(row.written, bytes);
  }
}
