#include "knowledge/r_refdata.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_refdataline.h"
#include "knowledge/r_refdatapercentiles.h"
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
const double kSD25 = -0.6744897477328777;
const double kSD90 = 1.2815515659749508;

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

struct Loaded {
  std::unique_ptr<R_RefData> data;
  bool ok;
  std::vector<std::string> messages;
};

Loaded load(int type, const std::string& xml) {
  Loaded loaded{std::unique_ptr<R_RefData>(new R_RefData(type)), false, {}};
  CollectingReporter reporter;
  loaded.ok = loaded.data->loadXML(xml.c_str(), &reporter);
  loaded.messages = reporter.lines();
  return loaded;
}

// Data that must load without a message.
std::unique_ptr<R_RefData> loadGood(int type, const std::string& xml) {
  Loaded loaded = load(type, xml);
  EXPECT_TRUE(loaded.ok);
  EXPECT_EQ(std::vector<std::string>(), loaded.messages);
  return std::move(loaded.data);
}

R_Number sdAt(const R_RefData& data, double x, double value) {
  R_Number result(-99.0);
  data.getSD(result, R_Number(x), R_Number(value));
  return result;
}

R_Number valueAt(const R_RefData& data, double x, double sd) {
  R_Number result(-99.0);
  data.getValue(result, R_Number(sd), R_Number(x));
  return result;
}

R_Number sdOf(const R_RefData& data, double value) {
  R_Number result(-99.0);
  data.getSD(result, R_Number(value));
  return result;
}

R_Number valueOf(const R_RefData& data, double sd) {
  R_Number result(-99.0);
  data.getValue(result, R_Number(sd));
  return result;
}

#define EXPECT_NUMBER(expected, number)            \
  do {                                             \
    R_Number n_ = (number);                        \
    ASSERT_TRUE(n_.isDefined());                   \
    EXPECT_DOUBLE_EQ((expected), n_.getValue());   \
  } while (0)

std::string xmlOf(const R_RefData& data) {
  return xmlWrittenBy([&](R_XMLTextOutput& output) { data.saveXML(output); });
}

Bytes saved(const R_RefData& data) { return savedBytes(data); }

std::unique_ptr<R_RefData> loadBytes(int type, const Bytes& bytes, bool* ok) {
  std::unique_ptr<R_RefData> data(new R_RefData(type));
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  *ok = true;
  data->load(stream, ok);
  return data;
}

// Stored pieces, written out by hand.
const char* const kNum2 = "03 01 00 00 00 00 00 00 00 40";
const char* const kNum4 = "03 01 00 00 00 00 00 00 10 40";
const char* const kNum5 = "03 01 00 00 00 00 00 00 14 40";
const char* const kNum6 = "03 01 00 00 00 00 00 00 18 40";
const char* const kNum100 = "03 01 00 00 00 00 00 00 59 40";
const char* const kNum110 = "03 01 00 00 00 00 00 80 5B 40";

Bytes hex(const std::string& text) { return bytesOf(text); }

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

TEST(RefDataTest, SDScoreBetweenTwoLinesComesFromTheInterpolatedLine) {
  auto data = loadGood(kSD, kSDLines);
  ASSERT_TRUE(data->isFollowed());
  // The line at x 3 has mean 105 and SD 5.5; the mean of the two lines'
  // own scores would be 0.6333.
  EXPECT_NUMBER(3 / 5.5, sdAt(*data, 3, 108));
  EXPECT_NUMBER(0.0, sdAt(*data, 3, 105));
}

TEST(RefDataTest, SDScoreExactlyOnALineUsesThatLine) {
  auto data = loadGood(kSD, kSDLines);
  EXPECT_NUMBER(2.0, sdAt(*data, 2, 110));
  EXPECT_NUMBER(-1.0, sdAt(*data, 4, 104));
  EXPECT_NUMBER(0.0, sdAt(*data, 2, 100));
}

TEST(RefDataTest, XOutsideTheLinesHasNoAnswerHoweverNear) {
  auto data = loadGood(kSD, kSDLines);
  EXPECT_FALSE(sdAt(*data, 1.9999, 100).isDefined());
  EXPECT_FALSE(sdAt(*data, 4.0001, 110).isDefined());
  EXPECT_FALSE(valueAt(*data, 1.9999, 0).isDefined());
  EXPECT_FALSE(valueAt(*data, 4.0001, 0).isDefined());
}

TEST(RefDataTest, AnUndefinedArgumentGivesAnUndefinedResult) {
  auto data = loadGood(kSD, kSDLines);
  R_Number result(1.0);
  data->getSD(result, R_Number(), R_Number(100.0));
  EXPECT_FALSE(result.isDefined());
  result.set(1.0);
  data->getSD(result, R_Number(3.0), R_Number());
  EXPECT_FALSE(result.isDefined());
  result.set(1.0);
  data->getValue(result, R_Number(), R_Number(3.0));
  EXPECT_FALSE(result.isDefined());
  result.set(1.0);
  data->getValue(result, R_Number(1.0), R_Number());
  EXPECT_FALSE(result.isDefined());
}

TEST(RefDataTest, AScoreBeyondSixIsUndefinedRatherThanSix) {
  auto data = loadGood(kSD, kSDLines);
  EXPECT_NUMBER(6.0, sdAt(*data, 2, 130));
  EXPECT_NUMBER(-6.0, sdAt(*data, 2, 70));
  EXPECT_FALSE(sdAt(*data, 2, 130.5).isDefined());
  EXPECT_FALSE(sdAt(*data, 2, 69.5).isDefined());
}

TEST(RefDataTest, ValueAtAnSDScoreHasNoLimit) {
  auto data = loadGood(kSD, kSDLines);
  EXPECT_NUMBER(116.0, valueAt(*data, 3, 2));  // 105 + 2 * 5.5
  EXPECT_NUMBER(95.0, valueAt(*data, 2, -1));
  EXPECT_NUMBER(150.0, valueAt(*data, 2, 10));
}

TEST(RefDataTest, LinesMayStandInAnyOrderOfX) {
  auto data = loadGood(kSD,
                       "<line x=\"4\"><x>110</x><sd>6</sd></line>"
                       "<line x=\"2\"><x>100</x><sd>5</sd></line>");
  EXPECT_NUMBER(3 / 5.5, sdAt(*data, 3, 108));
  EXPECT_NUMBER(2.0, sdAt(*data, 2, 110));
}

TEST(RefDataTest, LogarithmicSDOfAnamnesticData) {
  auto data = loadGood(kLogSD, "<anamnestic><x>100</x><sd>0.1</sd></anamnestic>");
  ASSERT_TRUE(data->isAnamnestic());
  EXPECT_FALSE(data->isFollowed());
  EXPECT_NUMBER(0.9531017980432493, sdOf(*data, 110));  // ln(1.1) / 0.1
  EXPECT_NUMBER(0.0, sdOf(*data, 100));
  EXPECT_NUMBER(116.1834242728283, valueOf(*data, 1.5));  // exp(0.15) * 100
  EXPECT_FALSE(sdOf(*data, 0).isDefined());
  // The logarithm of a negative ratio has no value.
  EXPECT_FALSE(sdOf(*data, -5).isDefined());
}

TEST(RefDataTest, LogarithmicSDInterpolatesMedianAndSD) {
  auto data = loadGood(kLogSD,
                       "<line x=\"2\"><x>100</x><sd>0.1</sd></line>"
                       "<line x=\"4\"><x>120</x><sd>0.2</sd></line>");
  // Median 110 and SD 0.15 at x 3.
  EXPECT_NUMBER(0.6354011986954995, sdAt(*data, 3, 121));
  EXPECT_NUMBER(94.67787740675635, valueAt(*data, 3, -1));
}

TEST(RefDataTest, PercentileListHoldsTheSDScoreOfEachPercentile) {
  auto data = loadGood(kPercentiles, std::string(kList3_50_97) + "<anamnestic><perc>90 100 110</perc></anamnestic>");
  ASSERT_TRUE(data->hasPercentiles());
  const R_RefDataPercentiles& percentiles = *data->getPercentiles();
  ASSERT_EQ(3, percentiles.getN());
  EXPECT_NUMBER(kSD3, percentiles.getSD(0));
  EXPECT_NUMBER(0.0, percentiles.getSD(1));
  EXPECT_NUMBER(kSD97, percentiles.getSD(2));
}

TEST(RefDataTest, PercentileScoresInterpolateBetweenTheBracketingPercentiles) {
  auto data = loadGood(kPercentiles, std::string(kList3_50_97) + "<anamnestic><perc>90 100 110</perc></anamnestic>");
  // Midway between the values of P50 and P97: half the score of P97.
  EXPECT_NUMBER(0.9403968024998903, sdOf(*data, 105));
  EXPECT_NUMBER(0.0, sdOf(*data, 100));
  EXPECT_NUMBER(kSD3, sdOf(*data, 90));
  EXPECT_NUMBER(kSD97, sdOf(*data, 110));
}

TEST(RefDataTest, PercentileScoresExtrapolateBeyondTheTableUpToSix) {
  auto data = loadGood(kPercentiles, std::string(kList3_50_97) + "<anamnestic><perc>90 100 110</perc></anamnestic>");
  EXPECT_NUMBER(2.821190407499671, sdOf(*data, 115));
  EXPECT_NUMBER(-2.821190407499671, sdOf(*data, 85));
  // 9.40 by the top two columns: beyond 6, so none.
  EXPECT_FALSE(sdOf(*data, 150).isDefined());
}

TEST(RefDataTest, ValueAtAnSDScoreOfPercentileData) {
  auto data = loadGood(kPercentiles, std::string(kList3_50_97) + "<anamnestic><perc>90 100 110</perc></anamnestic>");
  EXPECT_NUMBER(100.0, valueOf(*data, 0));
  EXPECT_NUMBER(105.0, valueOf(*data, kSD97 / 2));
  EXPECT_NUMBER(115.95071352871997, valueOf(*data, 3));
  EXPECT_NUMBER(86.7077387260667, valueOf(*data, -2.5));
}

TEST(RefDataTest, ValueAtSDZeroWithoutAMedianInterpolatesInSDScale) {
  auto data = loadGood(kPercentiles,
                       "<percentiles><list><item value=\"10\">P10</item><item value=\"25\">P25</item>"
                       "<item value=\"90\">P90</item></list></percentiles>"
                       "<anamnestic><perc>80 90 120</perc></anamnestic>");
  // In percent it would be 101.538.
  EXPECT_NUMBER(100.34471628496941, valueOf(*data, 0));
  EXPECT_NUMBER(90.0, valueOf(*data, kSD25));
  EXPECT_NUMBER(120.0, valueOf(*data, kSD90));
}

TEST(RefDataTest, FollowedPercentilesInterpolateTheValuesBeforeBracketing) {
  auto data = loadGood(kPercentiles, std::string(kList3_50_97) +
                                         "<line x=\"2\"><perc>90 100 110</perc></line>"
                                         "<line x=\"4\"><perc>100 110 130</perc></line>");
  // The line at x 3 is 95, 105, 120; the mean of the two lines' own scores
  // would be 1.2930.
  EXPECT_NUMBER(0.9403968024998903, sdAt(*data, 3, 112.5));
  EXPECT_NUMBER(105.0, valueAt(*data, 3, 0));
  EXPECT_NUMBER(kSD97, sdAt(*data, 4, 130));
}

// The list accepts 0 and 100, whose scores are undefined; no search reads
// them as numbers, also beyond the ends of the table.
TEST(RefDataTest, PercentilesZeroAndHundredHaveNoScoreAndAreSkipped) {
  auto data = loadGood(kPercentiles,
                       "<percentiles><list><item value=\"0\">P0</item><item value=\"25\">P25</item>"
                       "<item value=\"50\">P50</item><item value=\"100\">P100</item></list></percentiles>"
                       "<anamnestic><perc>5 10 20 40</perc></anamnestic>");
  EXPECT_FALSE(data->getPercentiles()->getSD(0).isDefined());
  EXPECT_FALSE(data->getPercentiles()->getSD(3).isDefined());
  EXPECT_NUMBER(-0.33724487386643887, sdOf(*data, 15));
  EXPECT_NUMBER(0.0, sdOf(*data, 20));
  EXPECT_FALSE(sdOf(*data, 5).isDefined());
  EXPECT_FALSE(sdOf(*data, 7).isDefined());
  EXPECT_FALSE(sdOf(*data, 30).isDefined());
  EXPECT_FALSE(sdOf(*data, 50).isDefined());
  EXPECT_NUMBER(34.826022239199936, valueOf(*data, 1));
  EXPECT_NUMBER(12.586988880400032, valueOf(*data, -0.5));
}

TEST(RefDataTest, ASingleLineIsNeitherAnamnesticNorFollowed) {
  auto data = loadGood(kSD, "<line x=\"2\"><x>100</x><sd>5</sd></line>");
  EXPECT_FALSE(data->isAnamnestic());
  EXPECT_FALSE(data->isFollowed());
  EXPECT_EQ(1, data->getXCount());
}

TEST(RefDataTest, XOfALineFromItsAttributes) {
  struct Row {
    const char* attributes;
    double x;
  };
  const Row rows[] = {
      {"x=\"3\"", 3},
      {"x=\"2,5\"", 2.5},
      {"x_from=\"2\" x_to=\"3\"", 2.5},
      {"x_from=\"2\" x_to=\"3\" mul=\"12\"", 30},
      {"x=\"6\" div=\"12\"", 0.5},
      {"x=\"6\" div=\"0\"", 6},
      {"x=\"6\" div=\"?\"", 6},
      {"x=\"6\" mul=\"abc\"", 6},
      {"x=\"1\" mul=\"3\" div=\"2\"", 1.5},
      {"x=\"1\" x_from=\"5\" x_to=\"7\"", 1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.attributes);
    auto data = loadGood(kSD, std::string("<line ") + row.attributes +
                                  "><x>100</x><sd>5</sd></line><line x=\"1000\"><x>1</x><sd>1</sd></line>");
    ASSERT_EQ(2, data->getXCount());
    EXPECT_NUMBER(row.x, data->getX(0));
  }
}

TEST(RefDataTest, ALineWithoutAUsableXIsRefused) {
  const char* rows[] = {
      "",
      "x_from=\"2\"",
      "x_to=\"2\"",
      "x_from=\"2\" x_to=\"abc\"",
      "x=\"abc\"",
      "x=\"?\"",
      "x=\"abc\" x_from=\"2\" x_to=\"3\"",
      "x=\"2\"",                   // the x of the line before
      "x=\"24\" div=\"12\"",       // the same x once divided
      "x_from=\"1\" x_to=\"3\"",  // the same x as a mean
  };
  for (const char* attributes : rows) {
    SCOPED_TRACE(attributes);
    Loaded loaded = load(kSD, std::string("<line x=\"2\"><x>100</x><sd>5</sd></line><line ") + attributes +
                                  "><x>100</x><sd>5</sd></line>");
    EXPECT_FALSE(loaded.ok);
    EXPECT_EQ(std::vector<std::string>({"data error closing block </line>: data line load error",
                                        "Error while processing reference data"}),
              loaded.messages);
  }
}

TEST(RefDataTest, LoadMessagesNameEachFaultInnermostFirst) {
  struct Row {
    const char* label;
    int type;
    std::string xml;
    std::vector<std::string> messages;
  };
  const std::string perc = "<anamnestic><perc>90 100 110</perc></anamnestic>";
  const std::string closing = "data error closing block ";
  const std::string end = "Error while processing reference data";
  const std::string item_end = "Error while processing reference data item.";
  const Row rows[] = {
      {"list in SD data", kSD, kList3_50_97, {closing + "</list>: percentile list unexpected", end}},
      {"second list", kPercentiles, std::string(kList3_50_97) + kList3_50_97 + perc,
       {closing + "</list>: duplicate percentile list", end}},
      {"broken list", kPercentiles,
       "<percentiles><list><item value=\"3\">a</item><item value=\"3\">b</item></list></percentiles>",
       {closing + "</item>: wrong or duplicate list item", "Error while processing list.",
        closing + "</list>: percentile list load error", end}},
      {"two anamnestic lines", kSD,
       "<anamnestic><x>1</x><sd>1</sd></anamnestic><anamnestic><x>1</x><sd>1</sd></anamnestic>",
       {closing + "</anamnestic>: double anamnestic data", end}},
      {"anamnestic after lines", kSD, std::string(kSDLines) + "<anamnestic><x>1</x><sd>1</sd></anamnestic>",
       {closing + "</anamnestic>: anamnestic and followed data defined", end}},
      {"line after anamnestic", kSD, "<anamnestic><x>1</x><sd>1</sd></anamnestic>" + std::string(kSDLines),
       {closing + "</line>: data and anamnestic data defined", closing + "</line>: data and anamnestic data defined",
        end}},
      {"anamnestic before the list", kPercentiles, perc + kList3_50_97,
       {closing + "</anamnestic>: percentile definition must precede anamnestic values", end}},
      {"line before the list", kPercentiles, "<line x=\"1\"><perc>1 2 3</perc></line>" + std::string(kList3_50_97),
       {closing + "</line>: Percentile definition must precede data", end}},
      {"anamnestic after a list of one", kPercentiles,
       "<percentiles><list><item value=\"50\">P50</item></list></percentiles><anamnestic><perc>1</perc></anamnestic>",
       {closing + "</anamnestic>: percentile list too short for anamnestic values", end}},
      {"line after a list of one", kPercentiles,
       "<percentiles><list><item value=\"50\">P50</item></list></percentiles><line x=\"1\"><perc>1</perc></line>",
       {closing + "</line>: Percentile definition must precede data", end}},
      {"unreadable mean", kSD, "<anamnestic><x>abc</x><sd>1</sd></anamnestic>",
       {closing + "</x>: x value error", "Undefined numeric value in line.", item_end,
        closing + "</anamnestic>: anamnestic data load error", end}},
      {"unreadable SD", kSD, "<anamnestic><x>1</x><sd></sd></anamnestic>",
       {closing + "</sd>: sd value error", "Undefined numeric value in line.", item_end, closing + "</anamnestic>: anamnestic data load error", end}},
      {"missing SD", kSD, "<anamnestic><x>1</x></anamnestic>",
       {"Undefined numeric value in line.", item_end, closing + "</anamnestic>: anamnestic data load error", end}},
      {"SD of 0", kLogSD, "<anamnestic><x>1</x><sd>0</sd></anamnestic>",
       {"Wrong SD value.", item_end, closing + "</anamnestic>: anamnestic data load error", end}},
      {"percentiles in SD data", kSD, "<anamnestic><perc>1 2</perc></anamnestic>",
       {closing + "</perc>: percentile values error", "Undefined numeric value in line.", item_end,
        closing + "</anamnestic>: anamnestic data load error", end}},
      {"mean in percentile data", kPercentiles, kList3_50_97 + std::string("<anamnestic><x>1</x><perc>1 2 3</perc></anamnestic>"),
       {closing + "</x>: data should be in percentiles", item_end, closing + "</anamnestic>: anamnestic data load error",
        end}},
      {"too few percentile values", kPercentiles, kList3_50_97 + std::string("<anamnestic><perc>1 2</perc></anamnestic>"),
       {closing + "</perc>: percentile values error", "Undefined numeric value in line.", item_end,
        closing + "</anamnestic>: anamnestic data load error", end}},
      {"unreadable percentile value", kPercentiles,
       kList3_50_97 + std::string("<anamnestic><perc>1 x 3</perc></anamnestic>"),
       {"Undefined numeric value in line.", item_end, closing + "</anamnestic>: anamnestic data load error", end}},
      {"no line at all", kSD, " ", {"No reference values defined", end}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    Loaded loaded = load(row.type, row.xml);
    EXPECT_FALSE(loaded.ok);
    EXPECT_EQ(row.messages, loaded.messages);
  }
}

TEST(RefDataTest, ANegativeSDAndUnknownElementsPass) {
  auto data = loadGood(kSD, "<note>ignored</note><anamnestic><x>100</x><sd>-5</sd></anamnestic>");
  EXPECT_NUMBER(-2.0, sdOf(*data, 110));
}

TEST(RefDataTest, GraphLinesOfAnSDReferenceComeFromTheGeneralList) {
  auto data = loadGood(kSD, kSDLines);
  ThreeSDLines lines;
  ASSERT_EQ(3, data->getLineCount(lines));
  EXPECT_STREQ("+2 SD", data->getLineText(2, lines).get());
  EXPECT_EQ(2, data->getLineClass(0, lines));
  EXPECT_EQ(0, data->getLineClass(1, lines));
  R_Number value;
  data->getLineValue(1, 0, lines, value);  // x 4: 110 - 2 * 6
  EXPECT_NUMBER(98.0, value);
  auto anamnestic = loadGood(kSD, "<anamnestic><x>100</x><sd>5</sd></anamnestic>");
  anamnestic->getLineValue(2, lines, value);
  EXPECT_NUMBER(110.0, value);
}

TEST(RefDataTest, GraphLinesOfAPercentileReferenceAreItsOwnTable) {
  auto data = loadGood(kPercentiles,
                       "<percentiles><list><item value=\"10\">P10</item><item value=\"50\">P50</item>"
                       "</list></percentiles>"
                       "<line x=\"1\"><perc>80 90</perc></line><line x=\"2\"><perc>85 95</perc></line>");
  ThreeSDLines lines;
  ASSERT_EQ(2, data->getLineCount(lines));
  EXPECT_STREQ("P50", data->getLineText(1, lines).get());
  EXPECT_EQ(1, data->getLineClass(0, lines));
  R_Number value;
  data->getLineValue(1, 0, lines, value);
  EXPECT_NUMBER(85.0, value);
}

TEST(RefDataTest, InterpolatingLineTakesEachNumberBetweenTheTwoLines) {
  R_RefDataLine left(kSD, nullptr);
  R_RefDataLine right(kSD, nullptr);
  ASSERT_TRUE(left.loadXML("<x>100</x><sd>5</sd>", nullptr));
  ASSERT_TRUE(right.loadXML("<x>110</x><sd>6</sd>", nullptr));
  R_RefDataLine middle(left, R_Number(2.0), right, R_Number(4.0), R_Number(3.0));
  EXPECT_NUMBER(105.0, middle.getNumber(0));
  EXPECT_NUMBER(5.5, middle.getNumber(1));
  R_RefDataLine beyond(left, R_Number(2.0), right, R_Number(4.0), R_Number(6.0));
  EXPECT_NUMBER(120.0, beyond.getNumber(0));
  R_RefDataLine same_x(left, R_Number(2.0), right, R_Number(2.0), R_Number(2.0));
  EXPECT_FALSE(same_x.getNumber(0).isDefined());
  R_RefDataLine no_x(left, R_Number(2.0), right, R_Number(4.0), R_Number());
  EXPECT_FALSE(no_x.getNumber(1).isDefined());
}

TEST(RefDataTest, XMLFormIsWrittenInLoadOrder) {
  auto data = loadGood(kSD, kSDLines);
  EXPECT_EQ(
      "<line x=\"2\"><x>100</x><sd>5</sd></line>"
      "<line x=\"4\"><x>110</x><sd>6</sd></line>",
      xmlOf(*data));
  auto percentiles = loadGood(kPercentiles, std::string(kList3_50_97) + "<anamnestic><perc>90 100 110</perc></anamnestic>");
  EXPECT_EQ(
      "<percentiles><list><item value=\"3\">P3</item><item value=\"50\">P50</item><item value=\"97\">P97</item>"
      "</list></percentiles><anamnestic><perc> 90  100  110 </perc></anamnestic>",
      xmlOf(*percentiles));
}

TEST(RefDataTest, XMLFormLoadsBackToTheSameData) {
  const std::string sources[] = {
      kSDLines,
      std::string(kList3_50_97) + "<line x=\"0.5\"><perc>90 100 110</perc></line><line x=\"1.5\"><perc>91 101 111</perc></line>",
      "<anamnestic><x>100</x><sd>0.25</sd></anamnestic>",
  };
  const int types[] = {kSD, kPercentiles, kLogSD};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(sources[i]);
    auto first = loadGood(types[i], sources[i]);
    std::string written = xmlOf(*first);
    auto second = loadGood(types[i], written);
    EXPECT_EQ(written, xmlOf(*second));
    EXPECT_EQ(hexOf(saved(*first)), hexOf(saved(*second)));
  }
}

TEST(RefDataTest, BinaryFormOfSDDataIsPinned) {
  auto data = loadGood(kSD, kSDLines);
  Bytes expected = hex("11 02 02 00 00 00") + hex(kNum2) + hex("10") + hex(kNum100) + hex(kNum5) + hex(kNum4) +
                   hex("10") + hex(kNum110) + hex(kNum6);
  EXPECT_EQ(hexOf(expected), hexOf(saved(*data)));
  bool ok = false;
  auto reloaded = loadBytes(kSD, expected, &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(hexOf(expected), hexOf(saved(*reloaded)));
  EXPECT_NUMBER(3 / 5.5, sdAt(*reloaded, 3, 108));
}

TEST(RefDataTest, BinaryFormOfPercentileDataIsPinned) {
  auto data = loadGood(kPercentiles,
                       "<percentiles><list><item value=\"4\">a</item><item value=\"50\">b</item></list></percentiles>"
                       "<anamnestic><perc>100 110</perc></anamnestic>");
  Bytes expected = hex("11 02 00 00 00 00  07 02 02 00 00 00  01 01 00 61") + hex(kNum4) + hex("01 01 00 62") +
                   hex("03 01 00 00 00 00 00 00 49 40") + hex("10") + hex(kNum100) + hex(kNum110);
  EXPECT_EQ(hexOf(expected), hexOf(saved(*data)));
  bool ok = false;
  auto reloaded = loadBytes(kPercentiles, expected, &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(hexOf(expected), hexOf(saved(*reloaded)));
  EXPECT_NUMBER(0.0, sdOf(*reloaded, 110));
}

TEST(RefDataTest, TruncatedBinaryFormsFailCleanly) {
  const std::string sources[] = {
      kSDLines,
      std::string(kList3_50_97) + "<anamnestic><perc>90 100 110</perc></anamnestic>",
  };
  const int types[] = {kSD, kPercentiles};
  for (int i = 0; i < 2; ++i) {
    int type = types[i];
    expectEveryTruncationFails(saved(*loadGood(type, sources[i])), [type](R_InputStream& stream, bool* ok) {
      R_RefData data(type);
      data.load(stream, ok);
    });
  }
}

TEST(RefDataTest, DamagedBinaryCountsAreRefused) {
  const char* rows[] = {
      "11 02 FF FF FF 7F",                              // two billion lines, no bytes behind
      "11 02 FF FF FF FF",                              // a negative count
      "11 02 00 00 00 00 10 03 00",                     // anamnestic line with a number missing
      "11 02 01 00 00 00 03 01 00 00 00 00 00 00 00",  // x cut inside its value
  };
  for (const char* row : rows) {
    SCOPED_TRACE(row);
    bool ok = true;
    loadBytes(kSD, hex(row), &ok);
    EXPECT_FALSE(ok);
  }
  // A percentile list of one item can't bracket anything.
  bool ok = true;
  loadBytes(kPercentiles, hex("11 02 00 00 00 00 07 02 01 00 00 00 01 00 00") + hex(kNum4) + hex("10") + hex(kNum100),
            &ok);
  EXPECT_FALSE(ok);
}

// Stored x values may repeat or be undefined. The first of equal x values
// is the line used; the undefined one is passed over.
TEST(RefDataTest, RepeatedAndUndefinedXValuesOfAStoredFormKeepTheFirstLine) {
  Bytes bytes = hex("11 02 05 00 00 00") + hex("03 01 00 00 00 00 00 00 F0 3F 10") + hex(kNum100) + hex(kNum5) +
                hex(kNum2) + hex("10") + hex(kNum110) + hex(kNum5) +  // x 2, first
                hex(kNum2) + hex("10") + hex(kNum100) + hex(kNum6) +  // x 2, second
                hex("03 00 10") + hex(kNum100) + hex(kNum6) +          // no x
                hex(kNum4) + hex("10") + hex(kNum100) + hex(kNum5);
  bool ok = false;
  auto data = loadBytes(kSD, bytes, &ok);
  ASSERT_TRUE(ok);
  EXPECT_NUMBER(0.0, sdAt(*data, 2, 110));
  EXPECT_NUMBER(0.0, sdAt(*data, 1.5, 105));   // between x 1 and the first x 2
  EXPECT_NUMBER(0.0, sdAt(*data, 3, 105));     // between the first x 2 and x 4
  EXPECT_NUMBER(1.0, sdAt(*data, 3, 110));
  EXPECT_EQ(hexOf(bytes), hexOf(saved(*data)));
}

// The look-up of lines by x must answer as a walk over all lines in order
// does: the first line of the largest x not above, the first of the
// smallest x not below. The walk is written out here on its own, and the
// SD score from it by hand arithmetic, for random tables with repeated and
// undefined x values.
TEST(RefDataTest, LineLookUpAnswersAsTheWalkOverAllLines) {
  std::mt19937 random(20240601);
  for (int table = 0; table < 200; ++table) {
    int n = 2 + static_cast<int>(random() % 12);
    std::vector<double> xs, means, sds;
    std::vector<bool> defined;
    Bytes bytes = hex("11 02") + Bytes{static_cast<unsigned char>(n), 0, 0, 0};
    for (int i = 0; i < n; ++i) {
      xs.push_back(static_cast<double>(random() % 8));
      defined.push_back(random() % 6 != 0);
      means.push_back(100.0 + random() % 20);
      sds.push_back(1.0 + random() % 5);
      R_Number x = defined.back() ? R_Number(xs.back()) : R_Number();
      bytes = bytes + savedBytes(x) + hex("10") + savedBytes(R_Number(means.back())) +
              savedBytes(R_Number(sds.back()));
    }
    bool ok = false;
    auto data = loadBytes(kSD, bytes, &ok);
    ASSERT_TRUE(ok);
    for (int q = 0; q < 40; ++q) {
      double x = (random() % 90) / 10.0 - 0.5;
      double value = 95.0 + (random() % 300) / 10.0;
      int low = -1, high = -1;
      for (int i = 0; i < n; ++i) {
        if (!defined[i]) continue;
        if (xs[i] >= x && (high < 0 || xs[high] > xs[i])) high = i;
        if (x >= xs[i] && (low < 0 || xs[i] > xs[low])) low = i;
      }
      R_Number expected;
      if (low >= 0 && high >= 0) {
        double ratio = low == high ? 0 : (x - xs[low]) / (xs[high] - xs[low]);
        double mean = (means[high] - means[low]) * ratio + means[low];
        double sd = (sds[high] - sds[low]) * ratio + sds[low];
        double score = (value - mean) / sd;
        if (score >= -6 && score <= 6) expected.set(score);
      }
      R_Number actual = sdAt(*data, x, value);
      SCOPED_TRACE("table " + std::to_string(table) + " x " + std::to_string(x));
      ASSERT_EQ(expected.isDefined(), actual.isDefined());
      if (expected.isDefined()) {
        EXPECT_EQ(expected.getValue(), actual.getValue());
      }
    }
  }
}
