// Runs the built `auxtool report` on a small knowledge file and database
// (tests/data/tools/report*.xml) and compares whole pages, messages and
// exit codes. The expected pages were written by hand from the fixture's
// texts and the templates.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"
#include "tests/tools/auxtool_run.h"

namespace {

const std::string kKnowledge = testData("tools/report.xml");
const std::string kDatabase = testData("tools/report_database.xml");
const std::string kFiles = kKnowledge + " " + kDatabase + " ";

ToolRun report(const std::string& arguments, bool with_errors = false) {
  return auxtool("report " + arguments, with_errors);
}

// The boy at 3 years: last height 90 cm, target (180 + 166 + 13) / 2; the
// table shows the two visits with a height, BMI 12 / 0.86^2 at the first.
const char* const kBoySummary =
    "<h1>Summary</h1><p>Height <b>now</b> <font color=red>90.0 cm</font>, target <font color=red>179.5 cm</font>; "
    "<a href=\"_t_id=visits&\">(*)</a> or <a href=\"http://example.org/\">[*]</a>.</p><p>A boy.</p>"
    "<p>Shared <i>note</i>.</p><hr /><center><img src=\"logo.png\"></img></center>"
    "<h2>Body mass index (kg/m<sup>2</sup>)</h2><center><table border=\"1\"><tr><th>Date</th><th>Height</th>"
    "<th>&nbsp;</th><th>BMI</th></tr><tr><td>1.1.2012</td><td>86.0</td><td>&nbsp;</td><td>16.2</td></tr>"
    "<tr><td>1.7.2012</td><td>90.0</td><td>&nbsp;</td><td>&nbsp;</td></tr></table></center>";

// Three visits in groups of two, with the setup's frame and head column.
const char* const kBoyVisits =
    "<!DOCTYPE html>\n<html><body>\n<h2 class=\"sub\">Weight</h2>"
    "<table class=\"inv\"><tr><th>Visit</th><td>1.1.</td><td>1.7.</td></tr>"
    "<tr><td height=2></td><td height=2></td><td height=2></td></tr>"
    "<tr><th>Weight</th><td>12.0</td><td>&nbsp;</td></tr></table><br>"
    "<table class=\"inv\"><tr><th>Visit</th><td>1.1.</td></tr><tr><td height=2></td><td height=2></td></tr>"
    "<tr><th>Weight</th><td>14.1</td></tr></table></body></html>";

}  // namespace

TEST(AuxtoolReportTest, WritesTheWholePageToStandardOutputOrAFile) {
  ToolRun run = report(kFiles + "\"Boy Jan\" summary --today 1.1.2013");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(kBoySummary, run.output);

  TempDir dir;
  run = report("--today 1.1.2013 --out " + dir.file("boy.html") + " " + kFiles + "\"Boy Jan\" summary", true);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ("", run.output);
  EXPECT_EQ(kBoySummary, readFile(dir.file("boy.html")));
  EXPECT_FALSE(fileExists(dir.file("boy.html.tmp")));
}

TEST(AuxtoolReportTest, TheSetupGivesTheTemplatesAndTheInvertedGroupSize) {
  ToolRun run = report(kFiles + "\"Boy Jan\" visits --today 1.1.2013 --setup " + testData("tools/report_setup.txt"));
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(kBoyVisits, run.output);
}

TEST(AuxtoolReportTest, ListPrintsEveryTextBlockWithItsTitle) {
  ToolRun run = report("--list " + kKnowledge);
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ("summary\tSummary\nnote\t\nvisits\tVisits\n", run.output);
}

TEST(AuxtoolReportTest, RefusalsTellWhatIsMissingAndWriteNothing) {
  TempDir dir;
  const std::string out = " --out " + dir.file("page.html");
  const std::string missing = dir.file("missing.xml");
  const struct {
    std::string arguments;
    std::string messages;
  } rows[] = {
      // Names are matched exactly; the hint ignores ASCII case and stops at five names.
      {kFiles + "\"boy jan\" summary", "Proband \"boy jan\" not found; names containing it:\n  Boy Jan\n"},
      {kFiles + "JAN summary",
       "Proband \"JAN\" not found; names containing it:\n  Bojan Ivo\n  Boy Jan\n  Jana Mal\xE1\n  Janda Petr\n"
       "  Jank\xF9 Ota\n"},
      {kFiles + "Xaver summary", "Proband \"Xaver\" not found\n"},
      {kFiles + "\"Boy Jan\" Summary", "Text \"Summary\" not found\n"},
      {missing + " " + kDatabase + " \"Boy Jan\" summary", "File " + missing + " not found\n"},
      {kKnowledge + " " + missing + " \"Boy Jan\" summary", "File " + missing + " not found\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.arguments);
    ToolRun run = report(row.arguments + out, true);
    EXPECT_EQ(1, run.exit_code);
    EXPECT_EQ(row.messages, run.output);
    EXPECT_FALSE(fileExists(dir.file("page.html")));
  }
  ToolRun run = report("--list " + missing, true);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("File " + missing + " not found\n", run.output);
  run = report(kFiles + "\"Boy Jan\" summary --out " + dir.file("no/such/folder/page.html"), true);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_EQ("Cannot write " + dir.file("no/such/folder/page.html") + "\n", run.output);
}

TEST(AuxtoolReportTest, WrongUsageExitsWith2AndHelpWith0) {
  const char* const rows[] = {"", "k d p", "k d p t extra", "k d p t --today 31.2.2020", "k d p t --out",
                              "k d p t --out a --out b", "k d p t --frobnicate", "--list", "--list k d",
                              "--list k --out a"};
  for (const char* row : rows) {
    SCOPED_TRACE(row);
    EXPECT_EQ(2, report(row).exit_code);
  }
  ToolRun help = report("--help");
  EXPECT_EQ(0, help.exit_code);
  EXPECT_EQ(0u, help.output.find("usage: auxtool report KNOWLEDGE DATABASE PROBAND TEXT [--out FILE]"));
}

// Two reports of the sample charts (five graphs each) made at once into one
// folder: each page keeps its own five image files.
TEST(AuxtoolReportTest, ReportsMadeTogetherIntoOneFolderKeepTheirOwnGraphs) {
  TempDir dir;
  const std::string samples = std::string(AUX_SOURCE_DIR) + "/samples/";
  const std::string files = samples + "knowledge.bin " + samples + "probands.bin \"Svoboda Martin\" growth_charts";
  for (const char* page : {"a.html", "b.html"}) {
    ToolRun run = report(files + " --today 1.6.2024 --out " + dir.file(page), true);
    ASSERT_EQ(0, run.exit_code) << run.output;
  }
  int status = 0;
  EXPECT_EQ("10\n", runCommand("ls " + dir.path() + " | grep -c '\\.bmp$'", &status));
}
