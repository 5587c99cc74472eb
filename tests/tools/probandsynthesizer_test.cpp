#include "tools/auxtool/probandsynthesizer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "exporter/mysecurity.h"
#include "formula/r_calcequation.h"
#include "formula/r_equation.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"

namespace {

const R_File& knowledge() {
  static R_File* file = [] {
    R_File* loaded = new R_File;
    std::string path = std::string(AUX_SOURCE_DIR) + "/samples/knowledge.xml";
    EXPECT_TRUE(loaded->loadXML(path.c_str(), nullptr));
    return loaded;
  }();
  return *file;
}

// `count` probands of one seed in a database without a file.
class Synthesized {
 public:
  Synthesized(int count, uint64_t seed) : database(&security, &knowledge(), "", false, nullptr) {
    ProbandSynthesizer synthesizer(knowledge(), seed);
    for (int i = 0; i < count; ++i) EXPECT_TRUE(synthesizer.addTo(database));
  }
  int count() const { return database.getN(); }
  const R_Proband& proband(int index) const { return *database.getProband(index); }
  std::string name(int index) const { return database.getText(index, 0).get(); }
  std::string comment(int index) const { return database.getText(index, 1).get(); }
  std::string text(int index) const {
    char buffer[65536];
    int bytes = 0;
    EXPECT_TRUE(proband(index).saveToText(buffer, &bytes, sizeof buffer));
    return buffer;
  }

 private:
  MySecurity security;
  R_A_SimpleDB database;
};

bool hasAccent(const std::string& text) {
  for (unsigned char c : text)
    if (c > 127) return true;
  return false;
}

R_Number followed(const R_Proband& proband, int visit, const char* name) {
  return proband.getFollowedNumber(visit, proband.getFollowedOrder(name));
}

TEST(ProbandSynthesizerTest, TheSameSeedGivesTheSameProbandsAndAnotherSeedOthers) {
  Synthesized a(200, 3), b(200, 3), c(200, 4);
  ASSERT_EQ(200, a.count());
  bool differs = false;
  for (int i = 0; i < a.count(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(a.name(i), b.name(i));
    EXPECT_EQ(a.comment(i), b.comment(i));
    EXPECT_EQ(a.text(i), b.text(i));
    differs = differs || a.text(i) != c.text(i);
  }
  EXPECT_TRUE(differs);
}

// Born 1995 to mid-2020; 1 to 20 visits, in age order, before the age of
// 19 and not after the survey's end on 30 June 2025.
TEST(ProbandSynthesizerTest, VisitsAreOneToTwentyAtRealisticAgesAndDates) {
  Synthesized made(500, 7);
  const int survey_end = R_Date(30, 6, 2025).getDayNumber();
  for (int i = 0; i < made.count(); ++i) {
    SCOPED_TRACE(made.name(i));
    const R_Proband& proband = made.proband(i);
    ASSERT_TRUE(proband.getDob().isDefined());
    EXPECT_GE(proband.getDob().getYear(), 1995);
    EXPECT_LE(proband.getDob().getDayNumber(), R_Date(1, 8, 2020).getDayNumber());
    EXPECT_GE(proband.getVisitCount(), 1);
    EXPECT_LE(proband.getVisitCount(), 20);
    for (int v = 0; v < proband.getVisitCount(); ++v) {
      ASSERT_TRUE(proband.getVisitAge(v).isDefined());
      double age = proband.getVisitAge(v).getValue();
      EXPECT_GE(age, 0.0);
      EXPECT_LT(age, 19.0);
      if (v > 0) {
        EXPECT_GT(age, proband.getVisitAge(v - 1).getValue());
      }
      EXPECT_LE(proband.getVisitDate(v).getDayNumber(), survey_end);
    }
  }
}

// Testicular volume is a boys' variable, breast stages and menarche girls'.
TEST(ProbandSynthesizerTest, VariablesOfTheOtherSexStayEmpty) {
  Synthesized made(300, 11);
  int boys = 0, girls = 0;
  for (int i = 0; i < made.count(); ++i) {
    const R_Proband& proband = made.proband(i);
    bool boy = proband.getSex() == 0;
    (boy ? boys : girls) += 1;
    R_Number menarche;
    proband.getAnamnesticValue(menarche, "MENARCHE");
    if (boy) {
      EXPECT_FALSE(menarche.isDefined());
    }
    const char* other_sex_only = boy ? "TANNER_M" : "TEST_VOLUME";
    for (int v = 0; v < proband.getVisitCount(); ++v) {
      EXPECT_FALSE(followed(proband, v, other_sex_only).isDefined());
    }
  }
  EXPECT_GT(boys, 100);
  EXPECT_GT(girls, 100);
}

// Each proband keeps one height SD score (within -3 to 3) with noise of 0.15
// per visit, so its scores against the WHO reference stay close together.
TEST(ProbandSynthesizerTest, HeightsTrackTheReferenceCurve) {
  Synthesized made(300, 5);
  R_Equation equation;
  ASSERT_TRUE(equation.loadExpression("HEIGHT:SD", knowledge().getStatistics()));
  int scored = 0;
  for (int i = 0; i < made.count(); ++i) {
    SCOPED_TRACE(made.name(i));
    R_CalcEquation calculation(equation);
    if (!calculation.evaluate(knowledge(), &made.proband(i), R_Number(30.0), -1, 0)) continue;
    const R_CalcValue& scores = calculation.getResult();
    double low = 99, high = -99;
    for (int v = 0; scores.isXY() && v < scores.getN(); ++v) {
      if (!scores.getPoint(v).isValid()) continue;
      double sd = scores.getPoint(v).getY().getValue();
      low = sd < low ? sd : low;
      high = sd > high ? sd : high;
      ++scored;
    }
    if (low > high) continue;
    EXPECT_GE(low, -4.0);
    EXPECT_LE(high, 4.0);
    EXPECT_LT(high - low, 2.0);
  }
  EXPECT_GT(scored, 1000);
}

TEST(ProbandSynthesizerTest, SomeProbandsAndVisitsCarryAccentedComments) {
  Synthesized made(400, 13);
  int accented_names = 0, proband_comments = 0, visit_comments = 0;
  for (int i = 0; i < made.count(); ++i) {
    if (hasAccent(made.name(i))) ++accented_names;
    if (hasAccent(made.comment(i))) ++proband_comments;
    const R_Proband& proband = made.proband(i);
    for (int v = 0; v < proband.getVisitCount(); ++v)
      if (hasAccent(proband.getVisitComment(v).get())) ++visit_comments;
  }
  EXPECT_GT(accented_names, 100);
  EXPECT_GT(proband_comments, 0);
  EXPECT_GT(visit_comments, 50);
}

}  // namespace
