// Makes plausible synthetic probands for a knowledge file, for tests and
// benchmarks that need databases of any size. Everything is drawn from one
// seeded generator, so a seed gives the same probands on every machine.
//
// A proband gets a Czech name (surname in its male or female form), a sex, a
// date of birth between 1995 and 2020 and 1 to 20 visits: the first before
// the age of 8, then every few months in infancy and every few months to a
// year and a half later on, none after the age of 19 or after the end of the
// survey (30 June 2025). It keeps one SD score per variable through its life,
// with a little noise per visit, so that its values track a reference curve
// where the file has one for its sex and age. Without a reference:
// - a variable in the unit of the age variable (bone age) follows the age;
// - another followed variable rises with age through the lower part of its
//   interval, and an anamnestic one (the parents' heights) lies near the
//   middle of its interval, spread by a sixteenth of its width;
// - a list variable (Tanner stages) climbs through its items from about the
//   age of 10.
// Variables meant for the other sex are left out, and so is about a fifth of
// the anamnestic values and some followed values per visit. A few probands
// and visits carry comments with accented Windows-1250 text.
#ifndef TOOLS_AUXTOOL_PROBANDSYNTHESIZER_H
#define TOOLS_AUXTOOL_PROBANDSYNTHESIZER_H

#include <cstdint>
#include <vector>

#include "core/r_date.h"
#include "core/r_number.h"
#include "tools/auxtool/randomsource.h"

class R_A_SimpleDB;
class R_File;
class R_Proband;
class R_Variable;

class ProbandSynthesizer {
 public:
  // Borrows `file`, which must outlive the synthesizer and be OK.
  ProbandSynthesizer(const R_File& file, uint64_t seed);

  // Adds one new proband to `database`; false when the database refused it.
  bool addTo(R_A_SimpleDB& database);

 private:
  void fillAnamnestic(R_Proband& proband, int sex);
  void fillVisits(R_Proband& proband, int sex, const R_Date& dob);
  void fillVisit(R_Proband& proband, int sex, int visit);
  R_Number followedValue(const R_Variable& variable, int sex, double age, double sd);
  R_Number anamnesticValue(const R_Variable& variable, int sex, double sd);
  R_Number listValue(const R_Variable& variable, double age);
  R_Number ageLikeValue(const R_Variable& variable, double age, double sd);
  R_Number growingValue(const R_Variable& variable, double age, double sd);
  R_Number intervalValue(const R_Variable& variable, double share, double sd);
  R_Number rounded(const R_Variable& variable, const R_Number& value);
  bool isAgeLike(const R_Variable& variable) const;
  double nextVisitStep(double age);

  const R_File& file;
  RandomSource random;
  std::vector<double> track;  // the proband's SD score per followed order
  long made;
};

#endif
