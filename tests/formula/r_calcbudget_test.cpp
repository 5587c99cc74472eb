// The budget of one computation. Calculated variables that name each other
// many times over, through chains that compute per visit, fail in bounded
// time instead of running for hours; ordinary nesting computes as before.
#include "formula/r_calcbudget.h"

#include <gtest/gtest.h>

#include "formula/r_calcequation.h"
#include "formula/r_calcvalueproband.h"
#include "knowledge/r_file.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"
#include "tests/formula/calcvalue_text.h"
#include "tests/support/resource_meter.h"
#include "tests/support/test_files.h"

TEST(CalcBudgetTest, AnOutermostStepRenewsTheBudgetOfExactlyLimitSteps) {
  for (int round = 0; round < 2; ++round) {
    R_CalcBudget outermost;
    EXPECT_TRUE(outermost.isAllowed());
    for (long step = 1; step < R_CalcBudget::limit; ++step) ASSERT_TRUE(R_CalcBudget().isAllowed()) << step;
    EXPECT_FALSE(R_CalcBudget().isAllowed());
  }
}

// fanout.xml: FANA names FANB three times, FANB names FANC three times, and
// so on down to the height; PREV and NEXT compute the next level once per
// visit. Over twenty visits, unbounded, FANA takes most of a minute.
TEST(CalcBudgetTest, AFanOutBeyondTheBudgetFailsInBoundedTimeWhileNestingWithinItComputes) {
  R_File file;
  ASSERT_TRUE(file.loadXML(testData("formula/fanout.xml").c_str(), nullptr));
  R_Proband proband(&file);
  proband.setSex(0);
  for (int i = 0; i < 20; ++i)
    proband.setFollowedValue(proband.addVisit(R_Number(1.0 + i), R_Date()), "HEIGHT", R_Number(80.0 + i));
  for (const char* name : {"FANA", "FANC"}) {
    SCOPED_TRACE(name);
    ResourceMeter meter;
    int index = file.getStatistics().getVarIndex(name);
    R_CalcEquation calc(file.getVariable(index)->getEquation());
    R_CalcValue value;
    bool within = name[3] == 'C';
    EXPECT_EQ(within, calc.evaluate(file, &proband, R_Number(), -1, 0));
    EXPECT_EQ(within, R_CalcValueProband::load(value, file, proband, R_Number(), index, 0));
    // FAND(i) = 2 h(i-1) + h(i+1) = 239 + 3i where both visits exist (the
    // series plus the previous point is that point doubled); so FANC(i) =
    // 2 FAND(i-1) + FAND(i+1) = 714 + 9i for i from 2 to 17, at age i + 1.
    if (within) {
      EXPECT_EQ("{1 ? 1|2 ? 2|3 732 3|4 741 4|5 750 5|6 759 6|7 768 7|8 777 8|9 786 9|10 795 10|11 804 11|"
                "12 813 12|13 822 13|14 831 14|15 840 15|16 849 16|17 858 17|18 867 18|19 ? 19|20 ? 20}",
                valueText(value));
    }
    EXPECT_LT(meter.seconds(), 10.0);
  }
}
