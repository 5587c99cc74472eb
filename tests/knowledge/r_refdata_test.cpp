#include "knowledge/r_refdata.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_refdataline.h"
#include "knowledge/r_refdatapercentiles.h"
#include "tests/knowledge/case_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

const double U = NAN;                     // an undefined number in the tables

const int kSD = R_RefDataLine::typeSD;
const int kLogSD = R_RefDataLine::typeLogSD;
const int kPercentiles = R_RefDataLine::typePercentiles;

// Mean 100, SD 5 at x 2; mean 110, SD 6 at x 4.
const char* const kSDLines =
    "<line x=\"2\"><x>100</x><sd>5</sd></line>\n"
    "<line x=\"4\"><x>110</x><sd>6</sd></line>\n";
const char* const kList3_50_97 =
    "<percentiles><list><item value=\"3\">P3</item><item value=\"50\">P50</item>"
    "<item value=\"97\">P97</item></list></percentiles>\n";
const std::string kPercentiles90_110 = kList3_50_97 + std::string("<anamnestic><perc>90 100 110</perc></anamnestic>");

// Loads data of `type` into `*data`; answers the reported lines, of which
// there are none exactly when the load succeeds.
std::vector<std::string> load(int type, const std::string& xml, std::unique_ptr<R_RefData>* data) {
  data->reset(new R_RefData(type));
  CollectingReporter reporter;
  bool ok = (*data)->loadXML(xml.c_str(), &reporter);
  EXPECT_EQ(reporter.lines().empty(), ok);
  return reporter.lines();
}

// Data that must load without a message.
std::unique_ptr<R_RefData> loadGood(int type, const std::string& xml) {
  std::unique_ptr<R_RefData> data;
  EXPECT_EQ(std::vector<std::string>(), load(type, xml, &data));
  return data;
}

void expectNumber(double expected, const R_Number& number) {
  ASSERT_EQ(!std::isnan(expected), number.isDefined());
  if (number.isDefined()) {
    EXPECT_DOUBLE_EQ(expected, number.getValue());
  }
}

// A graph's general list of lines: -2, 0 and 2 SD.
class ThreeSDLines : public R_GraphRefLinesFormat {
 public:
  ThreeSDLines() : texts{"-2 SD", "0 SD", "+2 SD"} {}
  int getLineCount() const override { return 3; }
  double getLineSD(int index) const override { return (index - 1) * 2.0; }
  const R_String& getLineText(int index) const override { return texts[index]; }

 private:
  R_String texts[3];
};

}  // namespace

// A number of refdata_scores.txt: "U" is the undefined number.
R_Number numberOf(const std::string& text) {
  return text == "U" ? R_Number() : R_Number(std::strtod(text.c_str(), nullptr));
}

TEST(RefDataTest, ScoresAndValuesComeFromTheParametersInterpolatedAtX) {
  std::unique_ptr<R_RefData> data;
  for (const TextCase& row : readCases("knowledge/refdata_scores.txt")) {
    if (row.out.empty()) {
      data = loadGood(row.label == "sd" ? kSD : row.label == "logsd" ? kLogSD : kPercentiles, row.input);
      continue;
    }
    SCOPED_TRACE(row.label);
    std::istringstream fields(row.label);
    std::string ask, x, arg;
    fields >> ask >> x >> arg;
    R_Number result(-99.0), expected = numberOf(row.out[0]);
    if (ask == "S" && data->isAnamnestic()) data->getSD(result, numberOf(arg));
    if (ask == "S" && !data->isAnamnestic()) data->getSD(result, numberOf(x), numberOf(arg));
    if (ask == "V" && data->isAnamnestic()) data->getValue(result, numberOf(arg));
    if (ask == "V" && !data->isAnamnestic()) data->getValue(result, numberOf(arg), numberOf(x));
    expectNumber(expected.isDefined() ? expected.getValue() : NAN, result);
  }
}

// The x of a line from its attributes; U: the line is refused, also for an
// x that a line before has.
TEST(RefDataTest, XOfALineComesFromItsAttributes) {
  const struct { const char* attributes; double x; } rows[] = {
      {"x=\"3\"", 3}, {"x=\"2,5\"", 2.5}, {"x_from=\"2\" x_to=\"3\"", 2.5}, {"x_from=\"2\" x_to=\"3\" mul=\"12\"", 30},
      {"x=\"6\" div=\"12\"", 0.5}, {"x=\"6\" div=\"0\"", 6}, {"x=\"6\" div=\"?\"", 6}, {"x=\"6\" mul=\"abc\"", 6},
      {"x=\"1\" mul=\"3\" div=\"2\"", 1.5}, {"x=\"1\" x_from=\"5\" x_to=\"7\"", 1}, {"", U}, {"x_from=\"2\"", U},
      {"x_to=\"3\"", U}, {"x_from=\"2\" x_to=\"abc\"", U}, {"x=\"abc\"", U}, {"x=\"?\"", U},
      {"x=\"abc\" x_from=\"2\" x_to=\"3\"", U}, {"x=\"1000\"", U}, {"x=\"12000\" div=\"12\"", U},
      {"x_from=\"999\" x_to=\"1001\"", U},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    std::unique_ptr<R_RefData> data;
    std::vector<std::string> messages = load(kSD,
                                             "<line x=\"1000\"><x>1</x><sd>1</sd></line><line " +
                                                 std::string(row.attributes) + "><x>100</x><sd>5</sd></line>",
                                             &data);
    if (std::isnan(row.x)) {
      EXPECT_EQ(std::vector<std::string>({"data error closing block </line>: data line load error",
                                          "Error while processing reference data"}),
                messages);
    } else {
      expectNumber(row.x, data->getX(1));
    }
  }
}

TEST(RefDataTest, LoadMessagesNameEachFaultInnermostFirst) {
  for (const TextCase& row : readCases("knowledge/refdata_messages.txt")) {
    SCOPED_TRACE(row.input);
    std::unique_ptr<R_RefData> data;
    EXPECT_EQ(row.out, load(row.label == "sd" ? kSD : row.label == "logsd" ? kLogSD : kPercentiles, row.input, &data));
  }
}

TEST(RefDataTest, GraphLinesOfAnSDReferenceAreTheGeneralListAndOfAPercentileOneItsOwnTable) {
  ThreeSDLines lines;
  R_Number value;
  auto data = loadGood(kSD, kSDLines);
  ASSERT_EQ(3, data->getLineCount(lines));
  EXPECT_STREQ("+2 SD", data->getLineText(2, lines).get());
  EXPECT_EQ(2, data->getLineClass(0, lines));
  EXPECT_EQ(0, data->getLineClass(1, lines));
  data->getLineValue(1, 0, lines, value);  // x 4: 110 - 2 * 6
  expectNumber(98.0, value);
  auto anamnestic = loadGood(kSD, "<anamnestic><x>100</x><sd>5</sd></anamnestic>");
  anamnestic->getLineValue(2, lines, value);
  expectNumber(110.0, value);
  auto percentiles = loadGood(kPercentiles,
                              "<percentiles><list><item value=\"10\">P10</item><item value=\"50\">P50</item>"
                              "</list></percentiles><line x=\"1\"><perc>80 90</perc></line>"
                              "<line x=\"2\"><perc>85 95</perc></line>");
  ASSERT_EQ(2, percentiles->getLineCount(lines));
  EXPECT_STREQ("P50", percentiles->getLineText(1, lines).get());
  EXPECT_EQ(1, percentiles->getLineClass(0, lines));
  percentiles->getLineValue(1, 0, lines, value);
  expectNumber(85.0, value);
}

// The round trips of the XML form are those of the knowledge file.
TEST(RefDataTest, XMLFormIsWrittenInLoadOrder) {
  auto sd = loadGood(kSD, kSDLines), percentiles = loadGood(kPercentiles, kPercentiles90_110);
  EXPECT_EQ("<line x=\"2\"><x>100</x><sd>5</sd></line><line x=\"4\"><x>110</x><sd>6</sd></line>",
            xmlWrittenBy([&](R_XMLTextOutput& output) { sd->saveXML(output); }));
  EXPECT_EQ("<percentiles><list><item value=\"3\">P3</item><item value=\"50\">P50</item><item value=\"97\">P97</item>"
            "</list></percentiles><anamnestic><perc> 90  100  110 </perc></anamnestic>",
            xmlWrittenBy([&](R_XMLTextOutput& output) { percentiles->saveXML(output); }));
}
