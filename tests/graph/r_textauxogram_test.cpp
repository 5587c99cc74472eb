#include "graph/r_textauxogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "graph/r_auxogramline.h"
#include "tests/graph/graph_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/recording_output.h"

namespace {

TEST(TextAuxogramTest, TheXMLFormWritesCaptionThenEachLineWithVarThenMethod) {
  NamedStatistics statistics({"AGE", "HT_SDS"});
  R_SuperText text;
  ASSERT_TRUE(text.loadXML("<id>T</id><auxogram if=\"age\"><auxogramline method=\"ht_sds*2\" var=\"ht_sds\"/>"
                           "<caption> Growth   in SD </caption><auxogramline var=\"AGE\" method=\"AGE\"/></auxogram>",
                           statistics, nullptr));
  const std::string xml =
      "<id>T</id><toc></toc><auxogram if=\"AGE:\"><caption>Growth in SD</caption>"
      "<auxogramline var=\"HT_SDS\" method=\"HT_SDS:*2\" /><auxogramline var=\"AGE\" method=\"AGE:\" /></auxogram>";
  EXPECT_EQ(xml, xmlWrittenBy([&](R_XMLTextOutput& out) { text.saveXML(out, statistics); }));
  R_SuperText again;
  ASSERT_TRUE(again.loadXML(xml.c_str(), statistics, nullptr));
  EXPECT_EQ(xml, xmlWrittenBy([&](R_XMLTextOutput& out) { again.saveXML(out, statistics); }));
}

// The knowledge file auxogram.xml: SD scores stored as measured values
// (HT_SDS, WT_SDS, BMI_SDS per visit; MOTHER_SDS and FATHER_SDS once), so
// that every score below is the one written here.
class AuxogramTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { file = loadKnowledge("auxogram.xml"); }
  static void TearDownTestSuite() { delete file; }

  static const R_TextAuxogram& auxogram(const std::string& id) {
    return element<R_TextAuxogram>(*file, id, R_Text::typeAuxogram);
  }
  // Every call of writing auxogram `id` for a boy born 1.1.2010 with
  // `data` (anamnestic values and visits), on the metrics of
  // auxogram_traces.txt.
  static Lines traceOf(const std::string& id, const std::string& data) {
    R_Proband proband(file);
    std::string xml = "<proband><info id=\"p\" dob=\"1.1.2010\" sex=\"male\"/><data>" + data + "</data></proband>";
    EXPECT_TRUE(proband.loadXML(xml.c_str()));
    RecordingOutput output;
    output.setHeightMetric(3, 3);
    output.setWidthMetric(5, 6);
    output.setWidthMetric(0, 400);
    output.setWidthMetric(1, 10);
    EXPECT_TRUE(auxogram(id).write(*file, proband, R_Number(), output));
    return output.calls();
  }

  static inline R_File* file = nullptr;
};

// A visit: `when` is the record's date or age attribute, `values` pairs
// VAR=value separated by blanks.
std::string visit(const std::string& when, const std::string& values) {
  std::string xml = "<record " + when + ">";
  std::istringstream pairs(values);
  std::string pair;
  while (pairs >> pair) {
    size_t eq = pair.find('=');
    xml += "<val var=\"" + pair.substr(0, eq) + "\">" + pair.substr(eq + 1) + "</val>";
  }
  return xml + "</record>";
}
std::string dated(const std::string& date, const std::string& values) { return visit("date=\"" + date + "\"", values); }

// The picture's texts, wedges and dotted SD lines.
Lines painted(const Lines& calls) {
  Lines kept;
  for (const std::string& call : calls) {
    bool dotted = call.compare(0, 14, "drawRasterLine") == 0 && call.compare(call.size() - 2, 2, " 3") == 0;
    if (dotted || call.compare(0, 8, "drawText") == 0 || call.compare(0, 8, "drawBand") == 0) kept.push_back(call);
  }
  return kept;
}

// Each row's trace, whole or only its picture, is worked out in its section
// of auxogram_traces.txt.
TEST_F(AuxogramTest, ChartsArePaintedAsWorkedByHand) {
  const struct {
    const char* section;
    const char* id;
    std::string data;
    bool whole;
  } rows[] = {
      {"two visits", "aux", dated("1.1.2012", "HT_SDS=-0.5 BMI_SDS=7 WT_SDS=0.8") + dated("1.7.2012", "HT_SDS=1.5 BMI_SDS=8"),
       true},
      {"parents", "parents",
       "<val var=\"MOTHER_SDS\">-1.2</val><val var=\"FATHER_SDS\">0.6</val>" + dated("1.1.2012", "HT_SDS=3"), true},
      {"L = 1", "aux", dated("1.1.2012", "HT_SDS=-0.4") + dated("1.7.2012", "HT_SDS=0.3"), false},
      {"L = 3", "aux", dated("1.1.2012", "HT_SDS=-1.5") + dated("1.7.2012", "HT_SDS=2.1"), false},
      {"seven", "aux", dated("1.1.2012", "HT_SDS=7 WT_SDS=-1") + dated("1.7.2012", "HT_SDS=0.5"), false},
      {"no date", "aux", visit("age=\"2.5\"", "HT_SDS=1") + visit("age=\"3\"", "HT_SDS=-1"), false},
      {"scalar among series", "mixed",
       "<val var=\"MOTHER_SDS\">-1</val>" + dated("1.1.2012", "WT_SDS=1") + dated("1.7.2012", "HT_SDS=0.5"), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.section);
    Lines calls = traceOf(row.id, row.data);
    EXPECT_EQ(traceSection("auxogram_traces.txt", row.section), joined(row.whole ? calls : painted(calls)));
  }
}

// Nothing is drawn, only questions asked, or the one whole picture.
TEST_F(AuxogramTest, NoPictureWhenNothingIsLeftOrTheColumnsDoNotFit) {
  std::string five;
  for (int month = 1; month <= 5; ++month) five += dated("1." + std::to_string(month) + ".2012", "HT_SDS=1");
  const struct {
    const char* what;
    const char* id;
    std::string data;
    bool drawn;
  } rows[] = {
      // Column width (330 - 5 * 6) / 5 = 60 holds the 60 pixels of
      // "-1SD 0 1SD"; (330 - 6 * 6) / 6 = 49 does not.
      {"five visits fit", "aux", five, true},
      {"six visits are too many", "aux", five + dated("1.6.2012", "HT_SDS=1"), false},
      {"all scores above 6", "aux", dated("1.1.2012", "HT_SDS=6.5 WT_SDS=-7"), false},
      {"no visit with a score", "aux", dated("1.1.2012", "") + "<val var=\"MOTHER_SDS\">1</val>", false},
      {"scalars without any visit", "parents", "<val var=\"MOTHER_SDS\">1</val>", false},
      {"a score of exactly 6 is in range", "aux", dated("1.1.2012", "HT_SDS=6"), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Lines calls = traceOf(row.id, row.data);
    long asked = std::count_if(calls.begin(), calls.end(), [](const std::string& c) { return c.rfind("get", 0) == 0; });
    const std::string end = std::string("endGraph 1 \"") + auxogram(row.id).getCaption().get() + "\"";
    EXPECT_EQ(row.drawn ? 1 : 0, std::count(calls.begin(), calls.end(), end));
    EXPECT_EQ(!row.drawn, asked == static_cast<long>(calls.size()));
  }
}

}  // namespace
