// The binary database on hostile input: counts that claim two billion
// records, names or visits, and a proband stored with far more visits than
// any follow-up has. Each loads or fails in time and memory bounded by the
// bytes of the file, never by what its counts claim.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"
#include "tests/proband/proband_support.h"
#include "tests/support/resource_meter.h"
#include "tests/support/test_files.h"

namespace {

const int kTwoBillion = 2000000000;
// Generous: each load here takes well under a second under the sanitizers.
const double kSecondsBound = 30;
const long kMegabytesBound = 256;

// A stored database written block by block in its documented bytes,
// independent of the classes under test: type bytes, R_Integer (2 and four
// bytes little-endian), R_String (1, a 16-bit length and the bytes),
// R_Number (3, 1 and eight bytes of a double), R_Date (32 and four bytes).
class StoredDatabase {
 public:
  explicit StoredDatabase(int record_count) { type(81).integer(record_count); }

  StoredDatabase& type(int byte) {
    bytes += static_cast<char>(byte);
    return *this;
  }
  StoredDatabase& integer(int value) {
    type(2);
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>((static_cast<unsigned>(value) >> (8 * i)) & 0xFF);
    return *this;
  }
  StoredDatabase& text(const std::string& value) {
    type(1);
    bytes += static_cast<char>(value.size() & 0xFF);
    bytes += static_cast<char>(value.size() >> 8);
    bytes += value;
    return *this;
  }
  StoredDatabase& number(double value) {
    char raw[sizeof value];
    memcpy(raw, &value, sizeof value);
    type(3).type(1);
    bytes.append(raw, sizeof raw);
    return *this;
  }
  StoredDatabase& noDate() { return type(32).type(0).type(0).type(0).type(0); }

  // A record with its name, a female proband without a date of birth, and
  // the count of her anamnestic names.
  StoredDatabase& recordUpToNames(const std::string& name, int anamnestic_names) {
    return type(80).text(name).text("").type(33).text("id").noDate().integer(2).integer(anamnestic_names);
  }
  // Visits without a date, without a comment and without followed names,
  // aged 0, 0.01, 0.02 and so on.
  StoredDatabase& visits(int stored_count, int count) {
    integer(stored_count).integer(0);
    for (int i = 0; i < count; ++i) number(i * 0.01).noDate().text("");
    return *this;
  }

  std::string bytes;
};

class SimpleDBLimitsTest : public ::testing::Test {
 protected:
  SimpleDBLimitsTest() : file(loadKnowledge("knowledge.xml")), security(true) {}

  std::unique_ptr<R_A_SimpleDB> load(const StoredDatabase& stored) {
    std::string path = dir.file("hostile.bin");
    writeFile(path, stored.bytes);
    return std::unique_ptr<R_A_SimpleDB>(new R_A_SimpleDB(&security, file.get(), path.c_str(), true, nullptr));
  }

  void expectBounded(const ResourceMeter& meter) {
    EXPECT_LT(meter.seconds(), kSecondsBound);
    EXPECT_LT(meter.peakGrowthMB(), kMegabytesBound);
  }

  std::unique_ptr<R_File> file;
  FixedSecurity security;
  TempDir dir;
};

}  // namespace

// Under the sanitizers an allocation for the claimed number of records
// would itself abort the run (make test-asan caps one allocation at 1 GB).
TEST_F(SimpleDBLimitsTest, ARecordCountOfTwoBillionKeepsTheStoredRecordsAndFailsFast) {
  StoredDatabase stored(kTwoBillion);
  stored.recordUpToNames("one", 0).visits(0, 0);
  ResourceMeter meter;
  std::unique_ptr<R_A_SimpleDB> database = load(stored);
  // The record that the failed read began stays, empty, and sorts first.
  ASSERT_EQ(2, database->getN());
  EXPECT_STREQ("", database->getText(0, 0).get());
  EXPECT_STREQ("one", database->getText(1, 0).get());
  expectBounded(meter);
}

TEST_F(SimpleDBLimitsTest, NameAndVisitCountsOfTwoBillionEndTheReadFast) {
  StoredDatabase names(1);
  names.recordUpToNames("names", kTwoBillion).text("FATHER_HT");
  StoredDatabase visits(1);
  visits.recordUpToNames("visits", 0).visits(kTwoBillion, 3);
  StoredDatabase followed(1);
  followed.recordUpToNames("followed", 0).integer(1).integer(kTwoBillion).text("HEIGHT");
  for (const StoredDatabase* stored : {&names, &visits, &followed}) {
    ResourceMeter meter;
    std::unique_ptr<R_A_SimpleDB> database = load(*stored);
    EXPECT_EQ(1, database->getN());
    expectBounded(meter);
  }
}

// Each arriving visit is compared with those already there, so without a
// bound a file of a few megabytes of visits would take hours to read.
TEST_F(SimpleDBLimitsTest, AProbandKeepsItsFirstMaxVisitsAndReadsTheRestInBoundedTime) {
  const int stored_visits = 20 * R_Proband::maxVisits;
  StoredDatabase stored(1);
  stored.recordUpToNames("many", 0).visits(stored_visits, stored_visits);
  ResourceMeter meter;
  std::unique_ptr<R_A_SimpleDB> database = load(stored);
  ASSERT_EQ(1, database->getN());
  const R_Proband* proband = database->getProband(0);
  ASSERT_EQ(R_Proband::maxVisits, proband->getVisitCount());
  EXPECT_EQ(0.0, proband->getVisitAge(0).getValue());
  EXPECT_EQ((R_Proband::maxVisits - 1) * 0.01, proband->getVisitAge(R_Proband::maxVisits - 1).getValue());
  expectBounded(meter);
}
