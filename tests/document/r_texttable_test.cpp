#include "document/r_texttable.h"

#include <gtest/gtest.h>

#include <cstring>

#include "document/r_texttablecolumn.h"
#include "tests/document/document_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

typedef std::vector<std::string> Lines;

TEST(TextTableColumnTest, EachTypeTakesItsOwnAttributes) {
  const struct {
    const char* attributes;
    bool ok;
  } rows[] = {
      {"type=\"date\" format=\"%d.%m.\"", true},
      {"type=\"date\"", false},
      {"type=\"date\" format=\"%Y\" precision=\"1\"", false},
      {"type=\"date\" format=\"%Y\" method=\"HEIGHT\"", false},
      {"type=\"date\" format=\"%Y\" method=\"NOPE\"", true},  // a method that doesn't parse counts as absent
      {"type=\"date\" format=\"1234567890123456789012345678901\"", true},
      {"type=\"date\" format=\"12345678901234567890123456789012\"", false},
      {"type=\"values\" method=\"HEIGHT\" precision=\"0.1\"", true},
      {"type=\"values\" method=\"HEIGHT\" precision=\"0,5\"", true},
      {"type=\"values\" method=\"HEIGHT\" precision=\"sd\"", true},
      {"type=\"values\" method=\"HEIGHT\" precision=\"percentiles\"", true},
      {"type=\"values\" method=\"HEIGHT\" precision=\"10\"", false},
      {"type=\"values\" method=\"HEIGHT\" precision=\"0\"", false},
      {"type=\"values\" method=\"HEIGHT\" precision=\"SD\"", false},
      {"type=\"values\" method=\"HEIGHT\"", false},
      {"type=\"values\" precision=\"1\"", false},
      {"type=\"values\" method=\"HEIGHT\" precision=\"1\" format=\"x\"", false},
      {"type=\"list\" method=\"HEIGHT\" format=\"HEIGHT\"", true},
      {"type=\"list\" method=\"HEIGHT\" format=\"HEIGHT\" precision=\"1\"", false},
      {"type=\"list\" method=\"HEIGHT\"", false},
      {"type=\"separator\" method=\"NOPE\" precision=\"99\" format=\"\"", true},
      {"type=\"Date\" format=\"%Y\"", false},
      {"format=\"%Y\"", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    NamedStatistics statistics({"AGE", "HEIGHT"});
    CollectingReporter reporter;
    R_SuperText text;
    std::string xml = std::string("<id>T</id><table><column ") + row.attributes + "/></table>";
    EXPECT_EQ(row.ok, text.loadXML(xml.c_str(), statistics, &reporter));
  }
}

// A table of one values column over the boy's three visits (heights 86, 90
// and none), written with the given selector and mode.
Lines tableTrace(const R_File& file, const R_Proband& boy, const std::string& attributes, int group = 6) {
  std::string xml = "<id>T</id><table " + attributes + "><column type=\"values\" method=\"HEIGHT\" "
                    "precision=\"1\"/></table>";
  R_SuperText text;
  EXPECT_TRUE(text.loadXML(xml.c_str(), file.getStatistics(), nullptr));
  RecordingOutput output;
  output.setInvertedColumnCount(group);
  text.getElement(0).write(file, boy, R_Number(3.0), output);
  Lines cells;  // the rows, the texts and the ends of the tables
  for (const std::string& call : output.calls()) {
    for (const char* kept : {"beginRow", "writeCell", "endTable", "writeInvertedBreak", "getInverted"}) {
      if (call.compare(0, strlen(kept), kept) == 0) cells.push_back(call);
    }
  }
  return cells;
}

TEST_F(DocumentTest, TheSelectorChoosesTheRowsOfANormalTable) {
  auto boy = proband("boy");
  const struct {
    const char* attributes;
    Lines cells;
  } rows[] = {
      {"", {"beginRow 0 1", "writeCell 0 0 \"\"", "beginRow 1 1", "writeCell 1 0 \"86\"", "beginRow 2 1",
            "writeCell 2 0 \"90\"", "endTable 1"}},
      {"><select method=\"HEIGHT-86\"/", {"beginRow 0 1", "writeCell 0 0 \"\"", "beginRow 2 1",
                                          "writeCell 2 0 \"90\"", "endTable 1"}},
      // A scalar chooses nothing: the empty row.
      {"><select method=\"1\"/", {"beginRow 0 1", "writeCell 0 0 \"\"", "beginRow 1 1", "writeCell 1 0 \"\"",
                                  "endTable 1"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    EXPECT_EQ(row.cells, tableTrace(*file, *boy, row.attributes));
  }
}

TEST_F(DocumentTest, AnInvertedTableShowsEveryVisitInGroups) {
  auto boy = proband("boy");
  Lines expected = {"getInvertedColumnCount", "beginRow 0 0", "writeCell 0 0 \"\"", "writeCell 0 1 \"86\"",
                    "writeCell 0 2 \"90\"", "endTable 0", "writeInvertedBreak", "beginRow 0 0",
                    "writeCell 0 0 \"\"", "writeCell 0 1 \"\"", "endTable 0"};
  EXPECT_EQ(expected, tableTrace(*file, *boy, "mode=\"inverted\"><select method=\"0\"/", 2));
  // A group size below 1 counts as 6: one group.
  Lines one = tableTrace(*file, *boy, "mode=\"inverted\"", 0);
  EXPECT_EQ(0, std::count(one.begin(), one.end(), "writeInvertedBreak"));
  EXPECT_EQ(1, std::count(one.begin(), one.end(), "writeCell 0 3 \"\""));
}

}  // namespace
