// Makes plausible synthetic probands for a knowledge file. Each proband
// keeps one SD score per variable through its life, with a little noise per
// visit, so that its values track a reference curve where the file has one;
// variables without a reference take a value inside their interval.
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
  R_Number intervalValue(const R_Variable& variable, double sd);
  R_Number rounded(const R_Variable& variable, const R_Number& value);
  R_Date dateAfter(const R_Date& start, double years);

  const R_File& file;
  RandomSource random;
  std::vector<double> track;  // the proband's SD score per followed order
  long made;
};

#endif
