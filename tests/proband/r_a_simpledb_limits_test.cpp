// The binary database on hostile counts: time and memory stay bounded by the
// bytes of the file, never by what its counts claim (under the sanitizers an
// allocation for a claimed count would itself abort the run).
#include <gtest/gtest.h>

#include <cstdio>
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

// A stored database in its documented bytes, independent of the classes
// under test: a type byte, then R_Integer (2) four bytes little-endian,
// R_String (1) a 16-bit length and the bytes, R_Number (3) 1 and a double,
// R_Date (32) four bytes.
struct Stored {
  explicit Stored(int record_count) { type(81).integer(record_count); }
  Stored& type(int byte) {
    bytes += static_cast<char>(byte);
    return *this;
  }
  Stored& integer(int value) {
    return type(2).type(value & 0xFF).type(value >> 8 & 0xFF).type(value >> 16 & 0xFF).type(value >> 24 & 0xFF);
  }
  Stored& text(const std::string& value) {
    type(1).type(int(value.size() & 0xFF)).type(int(value.size() >> 8)).bytes += value;
    return *this;
  }
  Stored& noDate() { return type(32).type(0).type(0).type(0).type(0); }
  // A record with its name, a female proband without a date of birth, and
  // the count of her anamnestic names.
  Stored& upToNames(const std::string& name, int names) {
    return type(80).text(name).text("").type(33).text("id").noDate().integer(2).integer(names);
  }
  // Visits without date, comment or followed names, aged 0, 0.01, 0.02...
  Stored& visits(int stored_count, int count) {
    integer(stored_count).integer(0);
    for (int i = 0; i < count; ++i) {
      double age = i * 0.01;
      char raw[sizeof age];
      memcpy(raw, &age, sizeof age);
      type(3).type(1).bytes.append(raw, sizeof raw);
      noDate().text("");
    }
    return *this;
  }
  std::string bytes;
};

}  // namespace

// Rows: the records kept, "name/first age/last age" of each. Each arriving
// visit is compared with those there, so without a bound a few megabytes of
// visits would take hours: a proband keeps its first maxVisits.
TEST(SimpleDBLimitsTest, HugeCountsEndTheReadFastKeepingWhatWasRead) {
  std::unique_ptr<R_File> file = loadKnowledge("knowledge.xml");
  FixedSecurity security(true);
  TempDir dir;
  const int many = 20 * R_Proband::maxVisits;
  const struct {
    Stored stored;
    std::string records;
  } rows[] = {
      {Stored(kTwoBillion).upToNames("one", 0).visits(0, 0), "/0// one/0//"},  // the record begun stays, empty
      {Stored(1).upToNames("names", kTwoBillion).text("FATHER_HT"), "names/0//"},
      {Stored(1).upToNames("visits", 0).visits(kTwoBillion, 3), "visits/3/0/0.02"},
      {Stored(1).upToNames("followed", 0).integer(1).integer(kTwoBillion).text("HEIGHT"), "followed/0//"},
      {Stored(1).upToNames("many", 0).visits(many, many),
       "many/" + std::to_string(R_Proband::maxVisits) + "/0/10.23"},  // 1023 * 0.01
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.records);
    writeFile(dir.file("hostile.bin"), row.stored.bytes);
    ResourceMeter meter;
    R_A_SimpleDB db(&security, file.get(), dir.file("hostile.bin").c_str(), true, nullptr);
    std::string records;
    for (int i = 0; i < db.getN(); ++i) {
      const R_Proband* proband = db.getProband(i);
      const int visits = proband->getVisitCount();
      char ages[64] = "/";
      if (visits) snprintf(ages, sizeof ages, "%g/%g", proband->getVisitAge(0).getValue(), proband->getVisitAge(visits - 1).getValue());
      records += std::string(i ? " " : "") + db.getText(i, 0).get() + "/" + std::to_string(visits) + "/" + ages;
    }
    EXPECT_EQ(row.records, records);
    EXPECT_LT(meter.seconds(), 30);  // generous: well under a second under the sanitizers
    EXPECT_LT(meter.peakGrowthMB(), 256);
  }
}
