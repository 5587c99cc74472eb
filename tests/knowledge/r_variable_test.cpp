#include "knowledge/r_variable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

const std::string kHeightHead =
    "<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>Height</name>";
const std::string kHeight = kHeightHead +
                            "<unit>cm</unit><precision>0.1</precision>"
                            "<values><interval><min boundary=\"open\">0</min><max>250</max></interval></values>"
                            "<xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>";
const std::string kTannerHead =
    "<id>TANNER</id><properties type=\"measured\" scope=\"followed\" data=\"list\"/><name>Tanner</name>";
const std::string kTanner =
    kTannerHead + "<values><list><item value=\"5\">T5</item><item value=\"1\">T1</item></list></values>";
const std::string kBMI =
    "<id>BMI</id><properties type=\"calculated\" scope=\"followed\" data=\"real\"/><name>BMI</name>"
    "<method><compute>WEIGHT/HEIGHT</compute></method>";

// AGE 0, HEIGHT 1, WEIGHT 2, TANNER 3, BMI 4.
class VariableTest : public ::testing::Test {
 protected:
  VariableTest() : statistics{"AGE", "HEIGHT", "WEIGHT", "TANNER", "BMI"} {}

  // Loads into `variable`; answers the reported lines.
  std::vector<std::string> load(R_Variable& variable, const std::string& xml) {
    CollectingReporter reporter;
    bool loaded = variable.loadXML(xml.c_str(), statistics, &reporter);
    EXPECT_EQ(reporter.lines().empty(), loaded);
    return reporter.lines();
  }

  std::string xmlOf(const R_Variable& variable) {
    return xmlWrittenBy([&](R_XMLTextOutput& out) { variable.saveXML(out, statistics); });
  }

  NamedStatistics statistics;
};

}  // namespace

TEST_F(VariableTest, LoadReportsEveryFaultInnermostFirst) {
  // HEIGHT with the given properties attributes and no name.
  auto height = [](const std::string& attributes) { return "<id>HEIGHT</id><properties " + attributes + "/>"; };
  const std::string c = "data error closing block ", tag = "data error processing standalone tag <properties../>: ";
  const std::string end = "Error while processing variable.", item1 = "<item value=\"1\">a</item>";
  const struct {
    std::string xml;
    std::vector<std::string> messages;  // empty: the load succeeds
  } rows[] = {
      {kHeight, {}},
      {kTanner, {}},
      {kBMI, {}},
      {kHeightHead + "<unit></unit>", {}},    // an empty unit is a unit
      {kHeightHead + "<unit></unit><unit>cm</unit>", {c + "</unit>: double defined unit", end}},
      {kHeightHead + "<precision>abc</precision>", {c + "</precision>: precision load error", end}},
      {height("type=\"measured\" scope=\"followed\" data=\"real\"") + "<name> </name>",
       {c + "</name>: variable name load error", end}},
      {kHeightHead + "<id></id>", {c + "</id>: variable code is not recognized", end}},
      {"<id>LENGTH</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>L</name>",
       {"Variable identification does notch match pre-scan.", end}},
      {"<id>HEIGHT</id><name>H</name>", {"No properties/name defined.", end}},
      {height("type=\"weight\" scope=\"followed\" data=\"real\"") + "<name>H</name>",
       {tag + "wrong variable type", end}},
      {height("type=\"measured\" scope=\"followed\" data=\"Real\"") + "<name>H</name>",
       {tag + "wrong variable data type", end}},
      {kHeightHead + "<values><interval><min>1</min></interval><interval><max>2</max></interval></values>",
       {c + "</interval>: double defined interval", end}},
      {kHeightHead + "<values><interval><min>2</min><max>1</max></interval></values>",
       {"Invalid interval definition (min > max).", "Error while processing interval.",
        c + "</interval>: variable values load error", end}},
      {kTannerHead + "<values><list>" + item1 + "</list></values>", {"No list items.", end}},
      {kTanner + "<values><list>" + item1 + "<item value=\"2\">b</item></list></values>",
       {c + "</list>: double defined list", end}},
      {kTannerHead + "<values><list>" + item1 + item1 + "</list></values>",
       {c + "</item>: wrong or duplicate list item", "Error while processing list.",
        c + "</list>: list of values load error", end}},
      {kHeightHead + "<values><list>" + item1 + "</list></values>", {"List items in real variable definition.", end}},
      {"<id>BMI</id><properties type=\"calculated\" scope=\"followed\" data=\"real\"/><name>BMI</name>",
       {"No compute methods.", end}},
      {kHeightHead + "<method><compute>WEIGHT</compute></method>", {"Compute methods in followed variable.", end}},
      {kHeightHead + "<xyref><xvar>LENGTH</xvar></xyref>",
       {c + "</xvar>: wrong x variable", "Error while processing X-Y variable definition.",
        c + "</xyref>: x-y definition load error", end}},
      {kHeightHead + "<helpid></helpid>", {c + "</helpid>: variable help-id load error", end}},
      // The checks after the parse all run and all report.
      {"<id>LENGTH</id>" + kTannerHead.substr(15) + "<values><list>" + item1 + "</list></values>",
       {"No list items.", "Variable identification does notch match pre-scan.", end}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Variable variable;
    EXPECT_EQ(row.messages, load(variable, row.xml));
  }
}

TEST_F(VariableTest, PropertiesTellTheSexesFromTheAttribute) {
  const struct {
    const char* sex;
    bool male, female;
  } rows[] = {{" sex=\"male\"", true, false}, {" sex=\"female\"", false, true}, {" sex=\"both\"", true, true},
              {" sex=\"Male\"", true, true},  {"", true, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.sex);
    R_Variable variable;
    ASSERT_TRUE(load(variable, "<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"" +
                                   std::string(row.sex) + "/><name>H</name>")
                    .empty());
    EXPECT_EQ(row.male, variable.isForSex(0));
    EXPECT_EQ(row.female, variable.isForSex(1));
    EXPECT_TRUE(variable.isForSex(2));
  }
}

TEST_F(VariableTest, FormatValueRoundsToThePrecisionOrNeedsAnEqualListItem) {
  const struct {
    const std::string& xml;
    double value;  // NaN: undefined
    bool with_unit;
    const char* text;
  } rows[] = {
      {kHeight, 123.456, false, "123.5"}, {kHeight, 250, true, "250.0 cm"}, {kHeight, 0.0, true, ""},  // open end
      {kHeight, 250.01, true, ""}, {kHeight, NAN, true, ""},
      {kHeightHead, 1.23456789, true, "1.23457"},  // without a precision "%g", without a unit no blank
      {kTanner, 5, true, "T5"}, {kTanner, 2.5, true, ""},  // inside the interval, but no item
      {kTanner, 6, true, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml + " " + std::to_string(row.value));
    R_Variable variable;
    ASSERT_TRUE(load(variable, row.xml).empty());
    R_String buffer;
    EXPECT_EQ(*row.text != '\0', variable.formatValue(row.value == row.value ? R_Number(row.value) : R_Number(), buffer,
                                                      row.with_unit));
    EXPECT_STREQ(row.text, buffer.get());
  }
}

// Each kind is written in the fixed order of the elements, and survives both
// stored forms; the help id, and the xyref of an age variable, are kept in
// the binary form only.
TEST_F(VariableTest, EveryKindIsWrittenInFixedOrderAndSurvivesBothStoredForms) {
  const struct {
    std::string xml, written;  // written "": not pinned here
  } rows[] = {
      // Any order in, the fixed order out; a second properties element
      // overwrites the first.
      {"<helpid>h-1</helpid><xyref><yvar>HEIGHT</yvar><xvar>AGE</xvar></xyref>" + kHeightHead +
           "<precision>0.1</precision><unit> cm </unit>",
       "<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\" /><name>Height</name>"
       "<unit>cm</unit><precision>0.1</precision><xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>"},
      {kHeightHead + "<properties type=\"index\" scope=\"anamnestic\" data=\"real\" sex=\"male\"/>",
       "<id>HEIGHT</id><properties type=\"index\" scope=\"anamnestic\" data=\"real\" sex=\"male\" />"
       "<name>Height</name>"},
      {kHeight + "<helpid>h</helpid>",
       "<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\" /><name>Height</name>"
       "<values><interval><min boundary=\"open\">0</min><max boundary=\"closed\">250</max></interval></values>"
       "<unit>cm</unit><precision>0.1</precision><xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>"},
      {kTanner + "<unit>ignored</unit>",
       "<id>TANNER</id><properties type=\"measured\" scope=\"followed\" data=\"list\" /><name>Tanner</name>"
       "<values><list><item value=\"5\">T5</item><item value=\"1\">T1</item></list></values>"},
      {"<id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\" sex=\"female\"/><name>Age</name>"
       "<xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>",
       "<id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\" sex=\"female\" /><name>Age</name>"},
      {"<id>WEIGHT</id><properties type=\"index\" scope=\"anamnestic\" data=\"real\"/><name>W</name>"
       "<unit>kg</unit><values><interval><min>0</min></interval></values>",
       "<id>WEIGHT</id><properties type=\"index\" scope=\"anamnestic\" data=\"real\" /><name>W</name>"},
      {kBMI, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Variable first, second, loaded;
    ASSERT_TRUE(load(first, row.xml).empty());
    std::string written = xmlOf(first);
    if (!row.written.empty()) {
      EXPECT_EQ(row.written, written);
    }
    ASSERT_TRUE(load(second, written).empty());
    EXPECT_EQ(written, xmlOf(second));
    Bytes bytes = savedBytes(first);
    R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    loaded.load(first.getIndex(), stream, &ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(first.getIndex(), loaded.getIndex());
    EXPECT_EQ(hexOf(bytes), hexOf(savedBytes(loaded)));
    EXPECT_EQ(written, xmlOf(loaded));
    EXPECT_STREQ(first.getHelpId(), loaded.getHelpId());
    EXPECT_TRUE(loaded.getXYVar() == first.getXYVar());
  }
}
