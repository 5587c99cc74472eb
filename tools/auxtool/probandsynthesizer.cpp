#include "tools/auxtool/probandsynthesizer.h"

#include <cmath>
#include <string>

#include "knowledge/r_file.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_list.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_refdata.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"

namespace {

// Names and comments in Windows-1250.
const char* const kSurnames[] = {
    "Nov\xE1""k",
    "Svoboda",
    "Dvo\xF8""\xE1""k",
    "\xC8""ern\xFD",
    "Proch\xE1""zka",
    "Ku\xE8""era",
    "Vesel\xFD",
    "Hor\xE1""k",
    "N\xEC""mec",
    "Pokorn\xFD",
    "Mare\x9A",
    "\x8A""\x9D""astn\xFD",
    "Kr\xE1""l",
    "Jel\xED""nek",
    "R\xF9""\x9E""i\xE8""ka",
};
const char* const kBoys[] = {
    "Jan",
    "Petr",
    "Tom\xE1""\x9A",
    "Ji\xF8""\xED",
    "Luk\xE1""\x9A",
    "Ond\xF8""ej",
    "Vojt\xEC""ch",
};
const char* const kGirls[] = {
    "Jana",
    "Tereza",
    "Eli\x9A""ka",
    "Kate\xF8""ina",
    "Lucie",
    "Barbora",
    "Zuzana",
};
const char* const kComments[] = {
    "kontrola",
    "\xFA""\xE8""et \xE8"". 2",
    "nemocn\xE1"" \x9A""kolka",
    "po ang\xED""n\xEC",
    "m\xEC""\xF8""en\xED"" v le\x9E""e",
    "bez pozn\xE1""mky",
};

template <class T, size_t N>
const char* pick(RandomSource& random, T (&table)[N]) {
  return table[random.between(0, static_cast<int>(N) - 1)];
}

double clamp(double value, double low, double high) { return value < low ? low : value > high ? high : value; }

}  // namespace

ProbandSynthesizer::ProbandSynthesizer(const R_File& knowledge, uint64_t seed)
    : file(knowledge), random(seed), made(0) {}

bool ProbandSynthesizer::addTo(R_A_SimpleDB& database) {
  int sex = random.between(0, 1);
  int index = database.addRecord(sex);
  if (index < 0) return false;
  std::string name = std::string(pick(random, kSurnames)) + " " + (sex == 0 ? pick(random, kBoys) : pick(random, kGirls)) +
                     " " + std::to_string(++made);
  database.setText(index, 0, name.c_str());
  R_Proband& proband = *database.getProband(index);
  R_Date dob = dateAfter(R_Date(1, 1, 1995), random.uniform() * 25.0);
  proband.setDob(dob);
  proband.setId(std::to_string(made).c_str());
  fillAnamnestic(proband, sex);
  fillVisits(proband, sex, dob);
  return true;
}

void ProbandSynthesizer::fillAnamnestic(R_Proband& proband, int sex) {
  const R_MeasuredVariables* vars = file.getAnamnesticVars();
  for (int order = 0; vars && order < vars->getCount(); ++order) {
    if (random.uniform() < 0.2) continue;
    const R_Variable& variable = *file.getVariable(vars->getIndex(order));
    proband.setAnamnesticNumber(order, anamnesticValue(variable, sex, random.normal()));
  }
}

void ProbandSynthesizer::fillVisits(R_Proband& proband, int sex, const R_Date& dob) {
  const R_MeasuredVariables* vars = file.getFollowedVars();
  int count = vars ? vars->getCount() : 0;
  track.assign(static_cast<size_t>(count), 0.0);
  for (double& sd : track) sd = clamp(random.normal(), -3.0, 3.0);
  int visits = random.between(1, 20);
  double age = random.uniform() * 8.0;
  for (int v = 0; v < visits && age < 19.0; ++v) {
    R_Date date = dateAfter(dob, age);
    int visit = proband.addVisit(R_Number(), date);
    if (visit >= 0) {
      fillVisit(proband, sex, visit);
      if (random.uniform() < 0.15) proband.setVisitComment(visit, pick(random, kComments));
    }
    age += 0.2 + random.uniform() * 1.3;
  }
}

void ProbandSynthesizer::fillVisit(R_Proband& proband, int sex, int visit) {
  const R_MeasuredVariables* vars = file.getFollowedVars();
  const R_Number& age = proband.getVisitAge(visit);
  if (!age.isDefined()) return;
  for (int order = 0; order < vars->getCount(); ++order) {
    const R_Variable& variable = *file.getVariable(vars->getIndex(order));
    double share = order < 2 ? 0.95 : 0.35;
    if (random.uniform() >= share) continue;
    double sd = track[static_cast<size_t>(order)] + 0.15 * random.normal();
    R_Number value = variable.isList() ? listValue(variable, age.getValue())
                                       : followedValue(variable, sex, age.getValue(), sd);
    proband.setFollowedNumber(visit, order, value);
  }
}

R_Number ProbandSynthesizer::followedValue(const R_Variable& variable, int sex, double age, double sd) {
  int ref = file.findReference(sex, R_Number(age), variable.getXYVar());
  if (ref >= 0 && variable.getXYVar().getXVar() == file.getAgeIndex()) {
    const R_RefData* data = file.getReference(ref)->getData();
    if (data && data->isFollowed()) {
      R_Number value;
      data->getValue(value, R_Number(sd), R_Number(age));
      if (value.isDefined()) return rounded(variable, value);
    }
  }
  return intervalValue(variable, sd);
}

R_Number ProbandSynthesizer::anamnesticValue(const R_Variable& variable, int sex, double sd) {
  int ref = file.findReference(sex, R_Number(), variable.getXYVar());
  if (ref >= 0) {
    const R_RefData* data = file.getReference(ref)->getData();
    if (data && data->isAnamnestic()) {
      R_Number value;
      data->getValue(value, R_Number(sd));
      if (value.isDefined()) return rounded(variable, value);
    }
  }
  return intervalValue(variable, sd);
}

// Stages rise with age from about 10 years on.
R_Number ProbandSynthesizer::listValue(const R_Variable& variable, double age) {
  const R_List& list = variable.getList();
  if (list.getN() == 0) return R_Number();
  double position = clamp((age - 9.5 + random.normal()) / 6.0, 0.0, 1.0);
  int item = static_cast<int>(position * (list.getN() - 1) + 0.5);
  return list.getValue(item);
}

// A value near the middle of the interval, spread by an eighth of its width.
R_Number ProbandSynthesizer::intervalValue(const R_Variable& variable, double sd) {
  const R_Interval& interval = variable.getInterval();
  if (!interval.getMin().isDefined() || !interval.getMax().isDefined()) return R_Number();
  double low = interval.getMin().getValue(), high = interval.getMax().getValue();
  double middle = (low + high) / 2, spread = (high - low) / 8;
  return rounded(variable, R_Number(clamp(middle + sd * spread, low, high)));
}

R_Number ProbandSynthesizer::rounded(const R_Variable& variable, const R_Number& value) {
  R_Number result = value;
  const R_Number& precision = variable.getPrecision();
  if (result.isDefined() && precision.isDefined() && precision.getValue() > 0) result.round(precision.getValue());
  return result;
}

// The date `years` after `start`, through the Julian day number.
R_Date ProbandSynthesizer::dateAfter(const R_Date& start, double years) {
  long jdn = start.getDayNumber() + static_cast<long>(years * 365.25);
  long a = jdn + 32044, b = (4 * a + 3) / 146097, c = a - 146097 * b / 4;
  long d = (4 * c + 3) / 1461, e = c - 1461 * d / 4, m = (5 * e + 2) / 153;
  int day = static_cast<int>(e - (153 * m + 2) / 5 + 1);
  int month = static_cast<int>(m + 3 - 12 * (m / 10));
  int year = static_cast<int>(100 * b + d - 4800 + m / 10);
  if (year > 2100) return R_Date();
  return R_Date(day, month, year);
}
