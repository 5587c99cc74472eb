// The synthesized probands are realistic; that one seed gives the same
// probands is checked on the files of `auxtool synth`.
#include "tools/auxtool/probandsynthesizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
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
    EXPECT_TRUE(loaded->loadXML((std::string(AUX_SOURCE_DIR) + "/samples/knowledge.xml").c_str(), nullptr));
    return loaded;
  }();
  return *file;
}

// `count` probands of one seed in a database without a file.
struct Synthesized {
  Synthesized(int count, uint64_t seed) : database(&security, &knowledge(), "", false, nullptr) {
    ProbandSynthesizer synthesizer(knowledge(), seed);
    for (int i = 0; i < count; ++i) EXPECT_TRUE(synthesizer.addTo(database));
  }
  MySecurity security;
  R_A_SimpleDB database;
};

bool hasAccent(const char* text) { return std::any_of(text, text + strlen(text), [](char c) { return c & 0x80; }); }

// Born 1995 to mid-2020; 1 to 20 visits in age order, before the age of 19
// and not after the survey's end on 30 June 2025. Variables of the other
// sex stay empty (testicular volume is the boys', breast stages and
// menarche the girls'). Each proband keeps one height SD score within -3
// to 3 with noise of 0.15 per visit; names and comments carry accents.
TEST(ProbandSynthesizerTest, ProbandsAreRealistic) {
  Synthesized made(300, 5);
  R_Equation equation;
  ASSERT_TRUE(equation.loadExpression("HEIGHT:SD", knowledge().getStatistics()));
  int boys = 0, scored = 0, accented = 0;
  for (int i = 0; i < made.database.getN(); ++i) {
    SCOPED_TRACE(made.database.getText(i, 0).get());
    const R_Proband& proband = *made.database.getProband(i);
    bool boy = proband.getSex() == 0;
    boys += boy;
    accented += hasAccent(made.database.getText(i, 0).get());
    EXPECT_GE(proband.getDob().getYear(), 1995);
    EXPECT_LE(proband.getDob().getDayNumber(), R_Date(1, 8, 2020).getDayNumber());
    EXPECT_TRUE(proband.getVisitCount() >= 1 && proband.getVisitCount() <= 20);
    R_Number menarche;
    proband.getAnamnesticValue(menarche, "MENARCHE");
    EXPECT_FALSE(boy && menarche.isDefined());
    for (int v = 0; v < proband.getVisitCount(); ++v) {
      double age = proband.getVisitAge(v).getValue();
      EXPECT_TRUE(age >= 0 && age < 19 && (v == 0 || age > proband.getVisitAge(v - 1).getValue())) << age;
      EXPECT_LE(proband.getVisitDate(v).getDayNumber(), R_Date(30, 6, 2025).getDayNumber());
      EXPECT_FALSE(proband.getFollowedNumber(v, proband.getFollowedOrder(boy ? "TANNER_M" : "TEST_VOLUME")).isDefined());
      accented += hasAccent(proband.getVisitComment(v).get());
    }
    R_CalcEquation calculation(equation);
    if (!calculation.evaluate(knowledge(), &proband, R_Number(30.0), -1, 0)) continue;
    const R_CalcValue& scores = calculation.getResult();
    double low = 99, high = -99;
    for (int v = 0; scores.isXY() && v < scores.getN(); ++v) {
      if (!scores.getPoint(v).isValid()) continue;
      double sd = scores.getPoint(v).getY().getValue();
      low = sd < low ? sd : low;
      high = sd > high ? sd : high;
      ++scored;
    }
    EXPECT_TRUE(low > high || (low >= -4.0 && high <= 4.0 && high - low < 2.0)) << low << " " << high;
  }
  EXPECT_TRUE(boys > 100 && boys < 200) << boys;
  EXPECT_GT(scored, 1000);
  EXPECT_GT(accented, 100);  // names and visit comments
}

}  // namespace
