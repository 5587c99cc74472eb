#include "fuzz/database_checks.h"

#include <cstdio>
#include <memory>
#include <vector>

#include "exporter/mysecurity.h"
#include "exporter/resultrecordwriter.h"
#include "formula/r_calcequation.h"
#include "formula/r_equation.h"
#include "fuzz/fuzz_support.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_a_simpledbrecord.h"
#include "proband/r_proband.h"

namespace {

// Formulas of the sample knowledge file that reach references, series
// methods and nested calculated variables.
const char* const kFormulas[] = {"HEIGHT:SD", "BMI:P", "HEIGHT:LAST_DEFINED:SD:AVG", "HEIGHT_VEL",
                                 "TARGET_HT_SD", "WEIGHT:PREV", "FATHER_HT - MOTHER_HT"};
// Enough records to reach every kind of damage without making each run slow.
const int kRecordsComputed = 16;

const std::vector<std::unique_ptr<R_Equation>>& formulas() {
  static std::vector<std::unique_ptr<R_Equation>>* loaded = [] {
    auto* equations = new std::vector<std::unique_ptr<R_Equation>>;
    for (const char* text : kFormulas) {
      equations->emplace_back(new R_Equation);
      FUZZ_CHECK(equations->back()->loadExpression(text, sampleKnowledge().getStatistics()));
    }
    return equations;
  }();
  return *loaded;
}

FILE* nullOutput() {
  static FILE* output = fopen("/dev/null", "w");
  FUZZ_CHECK(output != nullptr);
  return output;
}

void computeFormulas(const R_File& file, const R_Proband& proband) {
  R_Number age_today(9.25);
  for (const auto& equation : formulas()) {
    R_CalcEquation calculation(*equation);
    calculation.evaluate(file, &proband, age_today, -1, 0);
    if (proband.getVisitCount() > 0) calculation.evaluate(file, &proband, age_today, 0, 0);
  }
}

// The blob forms, into buffers too small and large enough.
void exerciseBlobs(const R_File& file, const R_Proband& proband) {
  for (int size : {16, 65536}) {
    std::vector<unsigned char> bytes(static_cast<size_t>(size));
    int count = 0;
    if (proband.saveToBuffer(bytes.data(), &count, size)) {
      FUZZ_CHECK(count > 0 && count <= size);
      R_Proband copy(&file);
      FUZZ_CHECK(copy.loadFromBuffer(bytes.data(), count));
      FUZZ_CHECK(copy.getVisitCount() == proband.getVisitCount());
    }
    std::vector<char> text(static_cast<size_t>(size));
    proband.saveToText(text.data(), &count, size);
  }
  R_Proband copy(&file);
  copy.copyFrom(proband);
}

void exerciseRecord(const R_A_SimpleDB& database, int index) {
  const R_Proband* proband = database.getProband(index);
  FUZZ_CHECK(proband != nullptr);
  const R_File& file = *proband->getFile();
  writeResultRecord(*proband, nullOutput(), database.getText(index, 0).get(), database.getText(index, 1).get());
  computeFormulas(file, *proband);
  exerciseBlobs(file, *proband);
}

struct Summary {
  int sex;
  int visits;
  std::string name;
  bool operator==(const Summary& other) const {
    return sex == other.sex && visits == other.visits && name == other.name;
  }
};

std::vector<Summary> summarize(const R_A_SimpleDB& database) {
  std::vector<Summary> summary;
  for (int i = 0; i < database.getN(); ++i) {
    const R_Proband* proband = database.getProband(i);
    summary.push_back({proband->getSex(), proband->getVisitCount(), database.getText(i, 0).get()});
  }
  return summary;
}

}  // namespace

void exerciseRecords(const R_A_SimpleDB& database) {
  for (int i = 0; i < database.getN() && i < kRecordsComputed; ++i) exerciseRecord(database, i);
  FUZZ_CHECK(database.getProband(-1) == nullptr && database.getProband(database.getN()) == nullptr);
}

void checkDatabaseRoundTrips(const R_A_SimpleDB& database) {
  MySecurity security;
  const R_File* file = &sampleKnowledge();
  // Visits of the first generation may still merge when it is read: an XML
  // record can give the date of birth only after the visits, whose ages were
  // then not computed from it. From the second generation on nothing moves.
  const char* first_path = scratchPath("database-1.bin");
  FUZZ_CHECK(database.saveAs(first_path, true));
  R_A_SimpleDB first(&security, file, first_path, true, nullptr);
  FUZZ_CHECK(first.getN() == database.getN());
  const char* second_path = scratchPath("database-2.bin");
  FUZZ_CHECK(first.saveAs(second_path, true));
  R_A_SimpleDB second(&security, file, second_path, true, nullptr);
  FUZZ_CHECK(summarize(second) == summarize(first));

  const char* xml = scratchPath("database.xml");
  FUZZ_CHECK(database.saveAs(xml, false));
  CheckingReporter reporter;
  R_A_SimpleDB from_xml(&security, file, xml, false, &reporter);
}
