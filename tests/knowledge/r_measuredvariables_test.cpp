#include "knowledge/r_measuredvariables.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_file_fixture.h"

class MeasuredVariablesTest : public KnowledgeFileTest {};

// minimal.xml: AGE 0, HEIGHT 1, WEIGHT 2, FATHER_HT 3, MOTHER_HT 4,
// TANNER_PH 5; HEIGHT, WEIGHT and TANNER_PH are followed.
TEST_F(MeasuredVariablesTest, MeasuredSubsetsHoldTheirVariablesInIndexOrderAndFindThemByName) {
  R_File file;
  ASSERT_EQ(std::vector<std::string>(), loadXML(file, minimalPath()));
  const R_MeasuredVariables& followed = *file.getFollowedVars();
  const R_MeasuredVariables& anamnestic = *file.getAnamnesticVars();
  ASSERT_EQ(3, followed.getCount());
  ASSERT_EQ(2, anamnestic.getCount());
  const struct {
    const char* name;
    int index, followed_order, anamnestic_order;
  } rows[] = {
      {"height", 1, 0, -1},    {"Weight", 2, 1, -1}, {"TANNER_PH", 5, 2, -1}, {"Father_HT", 3, -1, 0},
      {"MOTHER_HT", 4, -1, 1}, {"AGE", 0, -1, -1},  // the age variable is in neither subset
      {"LENGTH", 6, -1, -1},   {"", -1, -1, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (const auto& subset : {std::make_pair(&followed, row.followed_order),
                               std::make_pair(&anamnestic, row.anamnestic_order)}) {
      const R_MeasuredVariables& vars = *subset.first;
      int order = subset.second;
      EXPECT_EQ(order, vars.getOrder(row.name));
      EXPECT_EQ(order < 0 ? -1 : row.index, vars.getIndexOf(row.name));
      EXPECT_EQ(order >= 0, vars.contains(row.name));
      EXPECT_EQ(order, vars.getOrderOfIndex(row.index));
      if (order < 0) continue;
      EXPECT_EQ(row.index, vars.getIndex(order));
      EXPECT_STREQ(file.getStatistics().getVarName(row.index), vars.getName(order));
    }
  }
  EXPECT_EQ(-1, followed.getOrder(nullptr));
}
