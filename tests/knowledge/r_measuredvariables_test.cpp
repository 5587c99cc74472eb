#include "knowledge/r_measuredvariables.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_file_fixture.h"

namespace {

// minimal.xml: AGE 0, HEIGHT 1, WEIGHT 2, FATHER_HT 3, MOTHER_HT 4, TANNER_PH 5.
class MeasuredVariablesTest : public KnowledgeFileTest {
 protected:
  void SetUp() override { ASSERT_EQ(std::vector<std::string>(), loadXML(file, minimalPath())); }

  R_File file;
};

}  // namespace

TEST_F(MeasuredVariablesTest, FollowedSubsetHoldsTheFollowedMeasuredVariablesInIndexOrder) {
  const R_MeasuredVariables& followed = *file.getFollowedVars();
  ASSERT_EQ(3, followed.getCount());
  const int indices[] = {1, 2, 5};
  const char* const names[] = {"HEIGHT", "WEIGHT", "TANNER_PH"};
  for (int order = 0; order < 3; ++order) {
    EXPECT_EQ(indices[order], followed.getIndex(order));
    EXPECT_STREQ(names[order], followed.getName(order));
    EXPECT_EQ(order, followed.getOrderOfIndex(indices[order]));
  }
}

TEST_F(MeasuredVariablesTest, AnamnesticSubsetHoldsTheAnamnesticMeasuredVariables) {
  const R_MeasuredVariables& anamnestic = *file.getAnamnesticVars();
  ASSERT_EQ(2, anamnestic.getCount());
  EXPECT_EQ(3, anamnestic.getIndex(0));
  EXPECT_EQ(4, anamnestic.getIndex(1));
  EXPECT_STREQ("MOTHER_HT", anamnestic.getName(1));
}

TEST_F(MeasuredVariablesTest, LookupsByNameIgnoreCaseAndAnswerMinusOneOutsideTheSubset) {
  const R_MeasuredVariables& followed = *file.getFollowedVars();
  const R_MeasuredVariables& anamnestic = *file.getAnamnesticVars();
  const struct {
    const char* name;
    int followed_order, followed_index, anamnestic_order, anamnestic_index;
  } rows[] = {
      {"Weight", 1, 2, -1, -1},   {"tanner_ph", 2, 5, -1, -1}, {"Father_HT", -1, -1, 0, 3},
      {"AGE", -1, -1, -1, -1},  // the age variable is in neither subset
      {"LENGTH", -1, -1, -1, -1}, {"", -1, -1, -1, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.followed_order, followed.getOrder(row.name));
    EXPECT_EQ(row.followed_index, followed.getIndexOf(row.name));
    EXPECT_EQ(row.followed_order >= 0, followed.contains(row.name));
    EXPECT_EQ(row.anamnestic_order, anamnestic.getOrder(row.name));
    EXPECT_EQ(row.anamnestic_index, anamnestic.getIndexOf(row.name));
    EXPECT_EQ(row.anamnestic_order >= 0, anamnestic.contains(row.name));
  }
}

TEST_F(MeasuredVariablesTest, OrderOfAnIndexOutsideTheVariablesIsMinusOne) {
  const R_MeasuredVariables& followed = *file.getFollowedVars();
  EXPECT_EQ(-1, followed.getOrderOfIndex(-1));
  EXPECT_EQ(-1, followed.getOrderOfIndex(0));
  EXPECT_EQ(-1, followed.getOrderOfIndex(3));
  EXPECT_EQ(-1, followed.getOrderOfIndex(6));
  EXPECT_EQ(-1, followed.getOrder(nullptr));
}
