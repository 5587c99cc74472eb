#include "knowledge/r_reference.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/case_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

// Variable indices: AGE 0, HEIGHT 1, WEIGHT 2, FATHER_HT 3.
const char* const kSDData =
    "<data type=\"sd\"><line x=\"2\"><x>86</x><sd>3.5</sd></line>"
    "<line x=\"18\"><x>166</x><sd>6</sd></line></data>";

// Height of girls from 2 to 18, with three grid variants: X only, both
// axes (the default), Y only; the inner elements of a reference.
const std::string kGirls = readFile(testData("knowledge/girls_reference.txt"));
// Fathers, without an age; a twice given sex is one sex.
const std::string kFathers =
    "<name>F</name><sex sex=\"male\"/><sex sex=\"male\"/><xyref><avar>FATHER_HT</avar></xyref>"
    "<data type=\"sd\"><anamnestic><x>176</x><sd>7</sd></anamnestic></data>";

class ReferenceTest : public ::testing::Test {
 protected:
  ReferenceTest() : statistics{"AGE", "HEIGHT", "WEIGHT", "FATHER_HT"} {}

  // Loads `xml` into `reference`; answers the reported lines.
  std::vector<std::string> load(R_Reference& reference, const std::string& xml, bool expect_ok = true) {
    CollectingReporter reporter;
    EXPECT_EQ(expect_ok, reference.loadXML(xml.c_str(), statistics, &reporter));
    return reporter.lines();
  }

  void loadGood(R_Reference& reference, const std::string& xml) {
    EXPECT_EQ(std::vector<std::string>(), load(reference, xml));
  }

  std::string xmlOf(const R_Reference& reference) {
    return xmlWrittenBy([&](R_XMLTextOutput& output) { reference.saveXML(output, statistics); });
  }

  NamedStatistics statistics;
};

}  // namespace

// Which references fit a sex, an age and a pair of variables is pinned by
// the searches of r_file_test.cpp over two fixture files.
TEST_F(ReferenceTest, PropertiesHoldTheSexAndTheDataType) {
  R_Reference girls, fathers;
  loadGood(girls, kGirls);
  loadGood(fathers, kFathers);
  EXPECT_TRUE(girls.isForSex(1));
  EXPECT_FALSE(girls.isForSex(0) || girls.isForSex(-1));
  EXPECT_EQ(R_Reference::propMale | R_Reference::propSD, fathers.getProperties());
}

TEST_F(ReferenceTest, LoadMessagesNameEachFaultInnermostFirst) {
  for (const TextCase& row : readCases("knowledge/reference_messages.txt")) {
    SCOPED_TRACE(row.input);
    R_Reference reference;
    EXPECT_EQ(row.out, load(reference, row.input, false));
  }
}

TEST_F(ReferenceTest, GranularityIsFoundInOrderOfTheVariants) {
  R_Reference reference, unflagged, none, failed;
  loadGood(reference, kGirls);
  EXPECT_EQ(0, reference.findGranularityX(3, 5));
  EXPECT_EQ(1, reference.findGranularityX(1, 5));
  EXPECT_EQ(-1, reference.findGranularityX(-1, 5));
  EXPECT_EQ(1, reference.findGranularityY(50, 60));
  EXPECT_EQ(2, reference.findGranularityY(10, 20));
  EXPECT_EQ(-1, reference.findGranularityY(-10, 20));
  EXPECT_EQ(1, reference.getDefaultGranularity());
  const std::string variant = "<variant><xaxe from=\"0\" to=\"1\" step=\"1\"/></variant>";
  loadGood(unflagged, "<name>R</name>" + std::string(kSDData) + "<granularity>" + variant + variant + "</granularity>");
  EXPECT_EQ(0, unflagged.getDefaultGranularity());  // without a default, the first
  loadGood(none, std::string("<name>R</name>") + kSDData);
  EXPECT_EQ(-1, none.getDefaultGranularity());
  EXPECT_EQ(-1, none.findGranularityX(0, 1));
  // A failed variant is kept, and the reference fails.
  load(failed, "<name>R</name>" + std::string(kSDData) + "<granularity><variant><xaxe from=\"1\" to=\"1\" step=\"1\"/>"
               "</variant>" + variant + "</granularity>", false);
  EXPECT_EQ(2, failed.getGranularityCount());
}

TEST_F(ReferenceTest, XMLFormIsWrittenInItsFixedOrder) {
  R_Reference reference;
  loadGood(reference, kGirls);
  EXPECT_EQ(
      "<name>Height girls</name><sex sex=\"female\" />"
      "<xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>"
      "<age><interval><min boundary=\"closed\">2</min><max boundary=\"closed\">18</max></interval></age>"
      "<data type=\"sd\"><line x=\"2\"><x>86</x><sd>3.5</sd></line><line x=\"18\"><x>166</x><sd>6</sd></line></data>"
      "<granularity><variant><xaxe from=\"2\" to=\"6\" step=\"0.5\" /></variant>"
      "<variant type=\"default\"><xaxe from=\"0\" to=\"20\" step=\"1\" /><yaxe from=\"40\" to=\"200\" step=\"10\" />"
      "</variant><variant><yaxe from=\"0\" to=\"100\" step=\"5\" /></variant></granularity>",
      xmlOf(reference));
  R_Reference plain;
  loadGood(plain, "<data type=\"logsd\"><anamnestic><x>176</x><sd>0.04</sd></anamnestic></data><name>P</name>");
  EXPECT_EQ("<name>P</name><data type=\"logsd\"><anamnestic><x>176</x><sd>0.04</sd></anamnestic></data>",
            xmlOf(plain));
}
