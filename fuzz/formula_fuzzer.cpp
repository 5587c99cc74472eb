// The formula language: the input is a formula in source form (or, when it
// holds '<', the content of a `method` element with `compute` pairs),
// translated against the sample knowledge file and evaluated over fixed
// probands, for today and for single visits. A translated single expression
// that evaluates, written back as source, must compute the same value. The input
// is also evaluated as a translated text itself, as a damaged binary
// knowledge file can hand any text to the evaluator, with all 26 slots bound.
#include <cstdint>
#include <memory>
#include <string>

#include "exporter/mysecurity.h"
#include "formula/r_calcequation.h"
#include "formula/r_calcexpression.h"
#include "formula/r_calcvalue.h"
#include "formula/r_equation.h"
#include "fuzz/fuzz_support.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"

namespace {

// The sample proband with the most visits, and a made one.
const R_Proband* probands[2];

void loadProbands() {
  static MySecurity security;
  static R_A_SimpleDB* database =
      new R_A_SimpleDB(&security, &sampleKnowledge(), AUX_FUZZ_SAMPLES_DIR "/probands.xml", false, nullptr);
  FUZZ_CHECK(database->getN() > 0);
  int best = 0;
  for (int i = 1; i < database->getN(); ++i) {
    if (database->getProband(i)->getVisitCount() > database->getProband(best)->getVisitCount()) best = i;
  }
  probands[0] = database->getProband(best);
  probands[1] = makeProband(sampleKnowledge());
}

// Answers whether the evaluation for today had no syntax fault.
bool evaluateOver(const R_Equation& equation, const R_Proband& proband) {
  const R_File& file = sampleKnowledge();
  R_Number age_today(10.5);
  R_CalcEquation calculation(equation);
  bool sound = calculation.evaluate(file, &proband, age_today, -1, 0);
  int visits = proband.getVisitCount();
  for (int visit : {0, visits / 2, visits - 1}) {
    if (visit >= 0 && visit < visits) calculation.evaluate(file, &proband, age_today, visit, 0);
  }
  calculation.evaluate(file, nullptr, age_today, -1, 0);
  return sound;
}

bool sameNumber(const R_Number& a, const R_Number& b) {
  if (a.isDefined() != b.isDefined()) return false;
  if (!a.isDefined()) return true;
  double x = a.getValue(), y = b.getValue();
  return x == y || (x != x && y != y);
}

bool sameValue(const R_CalcValue& a, const R_CalcValue& b) {
  if (a.isDefined() != b.isDefined() || a.isScalar() != b.isScalar() || a.getN() != b.getN()) return false;
  if (a.isScalar()) return sameNumber(a.getScalar(), b.getScalar());
  for (int i = 0; i < a.getN(); ++i) {
    if (!sameNumber(a.getPoint(i).getY(), b.getPoint(i).getY())) return false;
  }
  return true;
}

// Source text written from a single translated expression that evaluates,
// when it translates at all, computes the same value again. It may not
// translate: blanks between names are not kept, so "EXP ABS(1)" is stored
// as "EXPABS(1)", and junk behind a complete expression is kept but never
// read. Its references may take other slots: "BMI::" and "BMI:::" are two
// references with empty chains that are written alike.
void checkSourceRoundTrip(const R_Equation& equation, const R_Proband& proband) {
  if (equation.getMethodCount() != 1) return;
  const R_File& file = sampleKnowledge();
  R_String source;
  if (!equation.getText(source, file.getStatistics())) return;
  R_Equation again;
  if (!again.loadExpression(source.get(), file.getStatistics())) return;
  R_Number age_today(10.5);
  R_CalcEquation before(equation), after(again);
  bool before_ok = before.evaluate(file, &proband, age_today, -1, 0);
  FUZZ_CHECK(after.evaluate(file, &proband, age_today, -1, 0) == before_ok);
  FUZZ_CHECK(!before_ok || sameValue(before.getResult(), after.getResult()));
}

// Values of every kind for the slots: undefined, scalars, a series, a point.
struct SlotValues {
  R_CalcValue values[6];
  SlotValues() {
    values[1].set(2.0);
    values[2].set(0.0);
    values[3].set(-1.5);
    for (int which : {4, 5}) {
      values[which].setN(4);
      for (int i = 0; i < 4; ++i) {
        R_CalcPoint& point = values[which].getPoint(i);
        point.getX().set(i + 1.0);
        point.getAge().set(i + 1.0);
        if (which == 4 || i == 2) point.getY().set(10.0 * i);
      }
      values[which].normalise();
    }
  }
};

void evaluateTranslated(const std::string& text) {
  static SlotValues slots;
  R_CalcExpression expression(text.c_str());
  for (int slot = 0; slot < R_varCount; ++slot) expression.setVariable(slot, &slots.values[slot % 6]);
  expression.setContext(1, R_Number(7.0));
  if (expression.evaluate()) expression.getResult().isTrue();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (!probands[0]) loadProbands();
  std::string text = inputText(data, size);
  const R_FileStatistics& statistics = sampleKnowledge().getStatistics();
  R_Equation equation;
  CheckingReporter reporter;
  bool valid = text.find('<') != std::string::npos ? equation.loadXML(text.c_str(), statistics, &reporter)
                                                    : equation.loadExpression(text.c_str(), statistics);
  if (valid) {
    bool sound = evaluateOver(equation, *probands[0]);
    evaluateOver(equation, *probands[1]);
    if (sound) checkSourceRoundTrip(equation, *probands[0]);
  }
  evaluateTranslated(text);
  return 0;
}
