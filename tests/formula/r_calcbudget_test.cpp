// The budget of one computation. Calculated variables that name each other
// many times over, through chains that compute per visit, fail in bounded
// time instead of running for hours; ordinary nesting computes as before.
#include "formula/r_calcbudget.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "formula/r_calcequation.h"
#include "formula/r_calcvalue.h"
#include "formula/r_calcvalueproband.h"
#include "knowledge/r_file.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"
#include "tests/formula/calcvalue_text.h"
#include "tests/support/resource_meter.h"
#include "tests/support/test_files.h"

namespace {

const int kVisits = 20;
// Unbounded, the fan-out below takes most of a minute without the
// sanitizers; within the budget it ends in a fraction of a second.
const double kSecondsBound = 10;

std::string calculated(const std::string& id, const std::string& method) {
  return "<var><id>" + id + "</id><properties type=\"calculated\" scope=\"followed\" data=\"real\"/><name>n</name>"
         "<method><compute>" + method + "</compute></method><xyref><xvar>AGE</xvar><yvar>" + id +
         "</yvar></xyref></var>\n";
}

// FANA names FANB three times, FANB names FANC three times, and so on down to
// the height: each level computes the next once per visit, twice over.
std::string knowledgeText() {
  std::string text =
      "<quorl><info><filename>fan-out</filename><copyright>c</copyright></info>\n"
      "<var><id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\"/><name>Age</name></var>\n"
      "<var><id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>H</name>"
      "<xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref></var>\n";
  const char* const names[] = {"FANA", "FANB", "FANC", "FAND", "HEIGHT"};
  for (int i = 0; i < 4; ++i) {
    std::string next = names[i + 1];
    text += calculated(names[i], next + " + " + next + ":PREV + " + next + ":NEXT");
  }
  return text + "</quorl>\n";
}

class CalcBudgetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string path = dir.file("fan-out.xml");
    writeFile(path, knowledgeText());
    ASSERT_TRUE(file.loadXML(path.c_str(), nullptr));
    proband.reset(new R_Proband(&file));
    proband->setSex(0);
    for (int i = 0; i < kVisits; ++i) {
      int visit = proband->addVisit(R_Number(1.0 + i), R_Date());
      proband->setFollowedValue(visit, "HEIGHT", R_Number(80.0 + i));
    }
  }

  // Evaluates the variable's equation from outside; "failed" when it fails.
  std::string evaluate(const char* name) {
    R_CalcEquation calc(file.getVariable(indexOf(name))->getEquation());
    if (!calc.evaluate(file, proband.get(), R_Number(), -1, 0)) return "failed";
    return valueText(calc.getResult());
  }
  // The variable's values at the visits, as nested variables are computed.
  std::string series(const char* name) {
    R_CalcValue value;
    if (!R_CalcValueProband::load(value, file, *proband, R_Number(), indexOf(name), 0)) return "failed";
    return valueText(value);
  }
  int indexOf(const char* name) const { return file.getStatistics().getVarIndex(name); }

  TempDir dir;
  R_File file;
  std::unique_ptr<R_Proband> proband;
};

}  // namespace

TEST_F(CalcBudgetTest, AFanOutBeyondTheBudgetFailsInBoundedTime) {
  ResourceMeter meter;
  EXPECT_EQ("failed", evaluate("FANA"));
  EXPECT_EQ("failed", series("FANA"));
  EXPECT_LT(meter.seconds(), kSecondsBound);
}

// The series of visits at the ages 1, 2, ... with `value(i)` at visit i,
// undefined where `defined(i)` is false.
template <class Value, class Defined>
std::string expectedSeries(Value value, Defined defined) {
  std::string text = "{";
  for (int i = 0; i < kVisits; ++i) {
    std::string age = std::to_string(i + 1);
    text += (i ? "|" : "") + age + " " + (defined(i) ? std::to_string(value(i)) : "?") + " " + age;
  }
  return text + "}";
}

TEST_F(CalcBudgetTest, NestingWithinTheBudgetComputesAsBefore) {
  // At visit i, PREV is the point of visit i-1 and NEXT that of visit i+1.
  // The series plus the previous point is that point doubled; plus the next
  // point, at another visit, a number. So FAND(i) = 2 h(i-1) + h(i+1) with
  // h(i) = 80 + i, which is 239 + 3i where both visits exist, and FANC(i) =
  // 2 FAND(i-1) + FAND(i+1) = 714 + 9i.
  EXPECT_EQ(expectedSeries([](int i) { return 239 + 3 * i; }, [](int i) { return i >= 1 && i <= kVisits - 2; }),
            series("FAND"));
  EXPECT_EQ(expectedSeries([](int i) { return 714 + 9 * i; }, [](int i) { return i >= 2 && i <= kVisits - 3; }),
            series("FANC"));
}

TEST_F(CalcBudgetTest, EachOutermostComputationHasTheWholeBudget) {
  EXPECT_EQ("failed", series("FANA"));
  EXPECT_NE("failed", series("FANC"));
  EXPECT_EQ("failed", evaluate("FANA"));
  EXPECT_NE("failed", evaluate("FANC"));
}
