// The knowledge file on hostile input: binary counts that claim two billion
// objects, and XML files nested a million deep or repeating one element
// fifty thousand times. Each loads or fails in time and memory bounded by
// the bytes of the file, never by what its counts claim.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "knowledge/r_measuredvariables.h"
#include "tests/knowledge/knowledge_file_fixture.h"
#include "tests/support/resource_meter.h"

namespace {

const int kTwoBillion = 2000000000;
// Generous: each load here takes a second or two under the sanitizers.
const double kSecondsBound = 30;
const long kMegabytesBound = 512;

// Offsets of the values of the three counts at the head of a binary file:
// type byte 9, type byte 5, then three R_Integer blocks (a type byte 2 and
// four bytes each).
const size_t kVariableCountAt = 3;
const size_t kReferenceCountAt = 8;
const size_t kTextCountAt = 13;

std::string withCount(std::string bytes, size_t at, int count) {
  for (int i = 0; i < 4; ++i) bytes[at + static_cast<size_t>(i)] = static_cast<char>((count >> (8 * i)) & 0xFF);
  return bytes;
}

std::string repeated(const std::string& piece, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

// A distinct identifier of letters for every number: "AAAA", "AAAB", ...
std::string letterName(int number) {
  std::string name(4, 'A');
  for (int i = 3; i >= 0; --i, number /= 26) name[static_cast<size_t>(i)] = static_cast<char>('A' + number % 26);
  return name;
}

class KnowledgeFileLimitsTest : public KnowledgeFileTest {
 protected:
  // The binary form of minimal.xml.
  std::string minimalBinary() {
    R_File file;
    EXPECT_TRUE(loadXML(file, minimalPath()).empty());
    std::string path = dir.file("minimal.bin");
    EXPECT_TRUE(file.saveBinary(path.c_str()));
    std::string bytes = readFile(path);
    for (size_t at : {kVariableCountAt, kReferenceCountAt, kTextCountAt}) EXPECT_EQ(2, bytes[at - 1]);
    return bytes;
  }

  void expectBounded(const ResourceMeter& meter) {
    EXPECT_LT(meter.seconds(), kSecondsBound);
    EXPECT_LT(meter.peakGrowthMB(), kMegabytesBound);
  }
};

}  // namespace

// Under the sanitizers an allocation for the claimed number of objects
// would itself abort the run (make test-asan caps one allocation at 1 GB).
TEST_F(KnowledgeFileLimitsTest, BinaryCountsClaimingTwoBillionObjectsFailFast) {
  std::string bytes = minimalBinary();
  const struct {
    const char* what;
    size_t at;
  } rows[] = {{"variables", kVariableCountAt}, {"references", kReferenceCountAt}, {"texts", kTextCountAt}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    std::string path = write("claims.bin", withCount(bytes, row.at, kTwoBillion));
    ResourceMeter meter;
    R_File file;
    EXPECT_FALSE(file.loadBinary(path.c_str()));
    expectBounded(meter);
  }
}

TEST_F(KnowledgeFileLimitsTest, AnElementNestedAMillionDeepIsIgnoredInBoundedTimeAndMemory) {
  std::string deep = repeated("<note>", 1000000) + repeated("</note>", 1000000);
  std::string path = write("deep.xml", joinLines(smallFileHead()) + deep + "\n</quorl>\n");
  ResourceMeter meter;
  R_File file;
  EXPECT_EQ(std::vector<std::string>{}, loadXML(file, path));
  EXPECT_EQ(1, file.getVarCount());
  expectBounded(meter);
}

TEST_F(KnowledgeFileLimitsTest, FiftyThousandVariablesLoadInBoundedTimeAndMemory) {
  const int count = 50000;
  std::string variables;
  for (int i = 0; i < count; ++i) {
    variables += "<var><id>" + letterName(i) +
                 "</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>n</name></var>\n";
  }
  std::string path = write("many.xml", joinLines(smallFileHead()) + variables + "</quorl>\n");
  ResourceMeter meter;
  R_File file;
  EXPECT_EQ(std::vector<std::string>{}, loadXML(file, path));
  EXPECT_EQ(count + 1, file.getVarCount());
  EXPECT_EQ(count, file.getFollowedVars()->getCount());
  EXPECT_EQ(count + 1, file.getStatistics().getVarIndex(letterName(count - 1).c_str()) + 1);
  expectBounded(meter);
}
