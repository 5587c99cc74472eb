#include "tools/auxtool/probandsynthesizer.h"

#include <cmath>
#include <cstring>
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

// Names and comments in Windows-1250. Surnames in their male and female form.
struct Surname {
  const char* male;
  const char* female;
};
const Surname kSurnames[] = {
    {"Nov\xE1k", "Nov\xE1kov\xE1"},
    {"Svoboda", "Svobodov\xE1"},
    {"Dvo\xF8\xE1k", "Dvo\xF8\xE1kov\xE1"},
    {"\xC8""ern\xFD", "\xC8""ern\xE1"},
    {"Proch\xE1zka", "Proch\xE1zkov\xE1"},
    {"Ku\xE8""era", "Ku\xE8""erov\xE1"},
    {"Vesel\xFD", "Vesel\xE1"},
    {"Hor\xE1k", "Hor\xE1kov\xE1"},
    {"N\xECmec", "N\xECmcov\xE1"},
    {"Pokorn\xFD", "Pokorn\xE1"},
    {"Mare\x9A", "Mare\x9Aov\xE1"},
    {"\x8A\x9D""astn\xFD", "\x8A\x9D""astn\xE1"},
    {"Kr\xE1l", "Kr\xE1lov\xE1"},
    {"Jel\xEDnek", "Jel\xEDnkov\xE1"},
    {"R\xF9\x9Ei\xE8ka", "R\xF9\x9Ei\xE8kov\xE1"},
    {"\x8Eiv\xFD", "\x8Eiv\xE1"},
};
const char* const kBoys[] = {
    "Jan", "Petr", "Tom\xE1\x9A", "Ji\xF8\xED", "Luk\xE1\x9A", "Ond\xF8""ej", "Vojt\xEC""ch", "\x8At\xEC""p\xE1n",
};
const char* const kGirls[] = {
    "Jana", "Tereza", "Eli\x9Aka", "Kate\xF8ina", "Lucie", "Barbora", "Zuzana", "\x8A\xE1rka",
};
const char* const kVisitComments[] = {
    "kontrola",
    "\xFA\xE8""et \xE8. 2",
    "nemocn\xE1 \x9Akolka",
    "po ang\xEDn\xEC",
    "m\xEC\xF8""en\xED v le\x9E""e",
    "bez pozn\xE1mky",
    "neklidn\xE9 d\xEDt\xEC, m\xEC\xF8""en\xED opakov\xE1no",
};
const char* const kProbandComments[] = {
    "p\xF8""ed\xE8""asn\xFD porod",
    "sourozenec v evidenci",
    "\x9Akoln\xED l\xE9ka\xF8 \x96 p\xF8""edvol\xE1n\xED",
    "d\xEDt\xEC z Plze\xF2sk\xE9ho kraje",
};

// No visit lies after this day: the survey ends here, whatever the seed.
const int kSurveyEndDay = 30, kSurveyEndMonth = 6, kSurveyEndYear = 2025;
const double kOldestVisit = 19.0;
const double kShareOfAnamnesticValues = 0.8;
const double kShareOfVisitComments = 0.1;
const double kShareOfProbandComments = 0.05;

template <class T, size_t N>
const T& pick(RandomSource& random, const T (&table)[N]) {
  return table[random.between(0, static_cast<int>(N) - 1)];
}

double clamp(double value, double low, double high) { return value < low ? low : value > high ? high : value; }

// The date `years` after `start`, through the Julian day number; undefined
// past 2100.
R_Date dateAfter(const R_Date& start, double years) {
  long jdn = start.getDayNumber() + static_cast<long>(years * 365.25);
  long a = jdn + 32044, b = (4 * a + 3) / 146097, c = a - 146097 * b / 4;
  long d = (4 * c + 3) / 1461, e = c - 1461 * d / 4, m = (5 * e + 2) / 153;
  int day = static_cast<int>(e - (153 * m + 2) / 5 + 1);
  int month = static_cast<int>(m + 3 - 12 * (m / 10));
  int year = static_cast<int>(100 * b + d - 4800 + m / 10);
  if (year > 2100) return R_Date();
  return R_Date(day, month, year);
}

double yearsBetween(const R_Date& from, const R_Date& to) {
  return (to.getDayNumber() - from.getDayNumber()) / 365.25;
}

}  // namespace

ProbandSynthesizer::ProbandSynthesizer(const R_File& knowledge, uint64_t seed)
    : file(knowledge), random(seed), made(0) {}

bool ProbandSynthesizer::addTo(R_A_SimpleDB& database) {
  int sex = random.between(0, 1);
  int index = database.addRecord(sex);
  if (index < 0) return false;
  const Surname& surname = pick(random, kSurnames);
  std::string name = std::string(sex == 0 ? surname.male : surname.female) + " " +
                     (sex == 0 ? pick(random, kBoys) : pick(random, kGirls)) + " " + std::to_string(++made);
  database.setText(index, 0, name.c_str());
  if (random.uniform() < kShareOfProbandComments) database.setText(index, 1, pick(random, kProbandComments));
  R_Proband& proband = *database.getProband(index);
  R_Date dob = dateAfter(R_Date(1, 1, 1995), random.uniform() * 25.5);
  proband.setDob(dob);
  proband.setId(std::to_string(made).c_str());
  fillAnamnestic(proband, sex);
  fillVisits(proband, sex, dob);
  return true;
}

void ProbandSynthesizer::fillAnamnestic(R_Proband& proband, int sex) {
  const R_MeasuredVariables* vars = file.getAnamnesticVars();
  for (int order = 0; vars && order < vars->getCount(); ++order) {
    const R_Variable& variable = *file.getVariable(vars->getIndex(order));
    if (random.uniform() >= kShareOfAnamnesticValues || !variable.isForSex(sex)) continue;
    proband.setAnamnesticNumber(order, anamnesticValue(variable, sex, random.normal()));
  }
}

// Infants come every few months, older children every few months to a
// year and a half.
double ProbandSynthesizer::nextVisitStep(double age) {
  if (age < 2.0) return 0.1 + random.uniform() * 0.3;
  return 0.3 + random.uniform() * 1.2;
}

void ProbandSynthesizer::fillVisits(R_Proband& proband, int sex, const R_Date& dob) {
  const R_MeasuredVariables* vars = file.getFollowedVars();
  int count = vars ? vars->getCount() : 0;
  track.assign(static_cast<size_t>(count), 0.0);
  for (double& sd : track) sd = clamp(random.normal(), -3.0, 3.0);
  double span = clamp(yearsBetween(dob, R_Date(kSurveyEndDay, kSurveyEndMonth, kSurveyEndYear)), 0.0, kOldestVisit);
  int visits = random.between(1, 20);
  double age = random.uniform() * (span < 8.0 ? span : 8.0);
  for (int v = 0; v < visits && age < span; ++v) {
    int visit = proband.addVisit(R_Number(), dateAfter(dob, age));
    if (visit >= 0) {
      fillVisit(proband, sex, visit);
      if (random.uniform() < kShareOfVisitComments) proband.setVisitComment(visit, pick(random, kVisitComments));
    }
    age += nextVisitStep(age);
  }
}

// Height and weight are taken at nearly every visit, the rest now and then.
void ProbandSynthesizer::fillVisit(R_Proband& proband, int sex, int visit) {
  const R_MeasuredVariables* vars = file.getFollowedVars();
  const R_Number& age = proband.getVisitAge(visit);
  if (!age.isDefined()) return;
  for (int order = 0; order < vars->getCount(); ++order) {
    const R_Variable& variable = *file.getVariable(vars->getIndex(order));
    double share = order < 2 ? 0.95 : 0.35;
    if (random.uniform() >= share || !variable.isForSex(sex)) continue;
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
  return isAgeLike(variable) ? ageLikeValue(variable, age, sd) : growingValue(variable, age, sd);
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
  return intervalValue(variable, 0.5, sd);
}

// Stages rise with age from about 10 years on.
R_Number ProbandSynthesizer::listValue(const R_Variable& variable, double age) {
  const R_List& list = variable.getList();
  if (list.getN() == 0) return R_Number();
  double position = clamp((age - 9.5 + random.normal()) / 6.0, 0.0, 1.0);
  int item = static_cast<int>(position * (list.getN() - 1) + 0.5);
  return list.getValue(item);
}

bool ProbandSynthesizer::isAgeLike(const R_Variable& variable) const {
  const R_Variable* age = file.getAgeIndex() >= 0 ? file.getVariable(file.getAgeIndex()) : nullptr;
  return age && !variable.getUnit().isEmpty() && variable.getUnit() == age->getUnit();
}

// Bone age and its kind: the age, off by a tenth of it per SD.
R_Number ProbandSynthesizer::ageLikeValue(const R_Variable& variable, double age, double sd) {
  const R_Interval& interval = variable.getInterval();
  double value = age * (1.0 + 0.1 * sd);
  if (interval.getMin().isDefined()) value = fmax(value, interval.getMin().getValue());
  if (interval.getMax().isDefined()) value = fmin(value, interval.getMax().getValue());
  return rounded(variable, R_Number(value));
}

// From a tenth of the interval at birth to two fifths of it at 18.
R_Number ProbandSynthesizer::growingValue(const R_Variable& variable, double age, double sd) {
  return intervalValue(variable, 0.1 + 0.3 * clamp(age / 18.0, 0.0, 1.0), sd);
}

// The point at `share` of the interval, spread by a sixteenth of its width
// per SD, kept inside the interval.
R_Number ProbandSynthesizer::intervalValue(const R_Variable& variable, double share, double sd) {
  const R_Interval& interval = variable.getInterval();
  if (!interval.getMin().isDefined() || !interval.getMax().isDefined()) return R_Number();
  double low = interval.getMin().getValue(), high = interval.getMax().getValue();
  double centre = low + (high - low) * share, spread = (high - low) / 16;
  return rounded(variable, R_Number(clamp(centre + sd * spread, low, high)));
}

R_Number ProbandSynthesizer::rounded(const R_Variable& variable, const R_Number& value) {
  R_Number result = value;
  const R_Number& precision = variable.getPrecision();
  if (result.isDefined() && precision.isDefined() && precision.getValue() > 0) result.round(precision.getValue());
  return result;
}
