#include "knowledge/r_refdata.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_refdataline.h"
#include "knowledge/r_refdatapercentiles.h"
#include "tests/knowledge/case_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

// Expected scores and values were worked out by an independent python3
// script: it sums the same normal series, runs the same 30-step bisection
// for the SD scores of percentiles, and interpolates as
// (y1 - y0) * ((x - x0) / (x1 - x0)) + y0, all in IEEE doubles. Its output
// is pasted below as constants; the simple ones are hand arithmetic.
namespace {

const double kSD3 = -1.8807936049997807;  // percentile 3
const double kSD97 = 1.8807936049997807;  // percentile 97
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

R_Number numberOf(double value) { return std::isnan(value) ? R_Number() : R_Number(value); }

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

// Between two lines the parameters are interpolated, not the scores: the
// line at x 3 of kSDLines has mean 105 and SD 5.5, so 108 scores 3 / 5.5,
// where the mean of the two lines' own scores would be 0.6333.
TEST(RefDataTest, ScoresAndValuesComeFromTheParametersInterpolatedAtX) {
  const struct { int type; std::string xml; } sets[] = {
      {kSD, kSDLines},
      {kSD, "<line x=\"4\"><x>110</x><sd>6</sd></line><line x=\"2\"><x>100</x><sd>5</sd></line>"},
      {kLogSD, "<anamnestic><x>100</x><sd>0.1</sd></anamnestic>"},
      {kLogSD, "<line x=\"2\"><x>100</x><sd>0.1</sd></line><line x=\"4\"><x>120</x><sd>0.2</sd></line>"},
      {kPercentiles, kPercentiles90_110},
      {kPercentiles,
       "<percentiles><list><item value=\"10\">P10</item><item value=\"25\">P25</item>"
       "<item value=\"90\">P90</item></list></percentiles><anamnestic><perc>80 90 120</perc></anamnestic>"},
      {kPercentiles, kList3_50_97 + std::string("<line x=\"2\"><perc>90 100 110</perc></line>"
                                                "<line x=\"4\"><perc>100 110 130</perc></line>")},
      // 0 and 100 are accepted in the list, but have no score: no search
      // reads them as numbers, also beyond the ends of the table.
      {kPercentiles,
       "<percentiles><list><item value=\"0\">P0</item><item value=\"25\">P25</item>"
       "<item value=\"50\">P50</item><item value=\"100\">P100</item></list></percentiles>"
       "<anamnestic><perc>5 10 20 40</perc></anamnestic>"},
      {kSD, "<note>ignored</note><anamnestic><x>100</x><sd>-5</sd></anamnestic>"},
  };
  const struct {
    int set;
    char ask;  // 'S': the SD score of `arg`, 'V': the value at the SD score `arg`
    double x, arg, expected;
  } rows[] = {
      {0, 'S', 3, 108, 3 / 5.5}, {0, 'S', 3, 105, 0.0}, {0, 'S', 2, 110, 2.0}, {0, 'S', 4, 104, -1.0},
      // x outside the lines has no answer, however near; undefined arguments give none.
      {0, 'S', 1.9999, 100, U}, {0, 'S', 4.0001, 110, U}, {0, 'V', 1.9999, 0, U}, {0, 'V', 4.0001, 0, U},
      {0, 'S', U, 100, U}, {0, 'S', 3, U, U}, {0, 'V', 3, U, U}, {0, 'V', U, 1, U},
      // A score beyond 6 is undefined rather than 6; a value has no limit.
      {0, 'S', 2, 130, 6.0}, {0, 'S', 2, 70, -6.0}, {0, 'S', 2, 130.5, U}, {0, 'S', 2, 69.5, U},
      {0, 'V', 3, 2, 116.0}, {0, 'V', 2, -1, 95.0}, {0, 'V', 2, 10, 150.0},
      {1, 'S', 3, 108, 3 / 5.5}, {1, 'S', 2, 110, 2.0},
      // ln(1.1) / 0.1 and exp(0.15) * 100; the logarithm of a ratio of 0 or below has no value.
      {2, 'S', U, 110, 0.9531017980432493}, {2, 'S', U, 100, 0.0}, {2, 'V', U, 1.5, 116.1834242728283},
      {2, 'S', U, 0, U}, {2, 'S', U, -5, U},
      {3, 'S', 3, 121, 0.6354011986954995}, {3, 'V', 3, -1, 94.67787740675635},  // median 110, SD 0.15
      // Midway between the values of P50 and P97: half the score of P97;
      // beyond the table by the outer two columns, up to 6 (150 would be 9.40).
      {4, 'S', U, 105, 0.9403968024998903}, {4, 'S', U, 100, 0.0}, {4, 'S', U, 90, kSD3}, {4, 'S', U, 110, kSD97},
      {4, 'S', U, 115, 2.821190407499671}, {4, 'S', U, 85, -2.821190407499671}, {4, 'S', U, 150, U},
      {4, 'V', U, 0, 100.0}, {4, 'V', U, kSD97 / 2, 105.0}, {4, 'V', U, 3, 115.95071352871997},
      {4, 'V', U, -2.5, 86.7077387260667},
      // Without a median the value at 0 is interpolated in SD scale; in
      // percent it would be 101.538. P25 and P90 give their values.
      {5, 'V', U, 0, 100.34471628496941}, {5, 'V', U, -0.6744897477328777, 90.0},
      {5, 'V', U, 1.2815515659749508, 120.0},
      // The line at x 3 is 95, 105, 120: the values are interpolated before
      // bracketing, where the mean of the lines' own scores would be 1.2930.
      {6, 'S', 3, 112.5, 0.9403968024998903}, {6, 'V', 3, 0, 105.0}, {6, 'S', 4, 130, kSD97},
      {7, 'S', U, 15, -0.33724487386643887}, {7, 'S', U, 20, 0.0}, {7, 'S', U, 5, U}, {7, 'S', U, 7, U},
      {7, 'S', U, 30, U}, {7, 'S', U, 50, U}, {7, 'V', U, 1, 34.826022239199936},
      {7, 'V', U, -0.5, 12.586988880400032}, {8, 'S', U, 110, -2.0},  // a negative SD passes
  };
  std::vector<std::unique_ptr<R_RefData>> data;
  for (const auto& set : sets) data.push_back(loadGood(set.type, set.xml));
  ASSERT_TRUE(data[0]->isFollowed());
  ASSERT_TRUE(data[2]->isAnamnestic() && !data[2]->isFollowed());
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.set) + " " + row.ask + " x " + std::to_string(row.x) + " of " +
                 std::to_string(row.arg));
    const R_RefData& set = *data[row.set];
    R_Number result(-99.0);
    if (row.ask == 'S' && set.isAnamnestic()) set.getSD(result, numberOf(row.arg));
    if (row.ask == 'S' && !set.isAnamnestic()) set.getSD(result, numberOf(row.x), numberOf(row.arg));
    if (row.ask == 'V' && set.isAnamnestic()) set.getValue(result, numberOf(row.arg));
    if (row.ask == 'V' && !set.isAnamnestic()) set.getValue(result, numberOf(row.arg), numberOf(row.x));
    expectNumber(row.expected, result);
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
