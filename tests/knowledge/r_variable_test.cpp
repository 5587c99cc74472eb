#include "knowledge/r_variable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

// AGE 0, HEIGHT 1, WEIGHT 2, TANNER 3, BMI 4.
NamedStatistics* makeStatistics() { return new NamedStatistics({"AGE", "HEIGHT", "WEIGHT", "TANNER", "BMI"}); }

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

const char* const kClosing = "Error while processing variable.";

struct LoadRow {
  std::string xml;
  std::vector<std::string> messages;  // empty: the load succeeds
};

class VariableTest : public ::testing::Test {
 protected:
  VariableTest() : statistics(makeStatistics()) {}
  ~VariableTest() override { delete statistics; }

  // Loads into `variable`; answers the reported lines.
  std::vector<std::string> load(R_Variable& variable, const std::string& xml) {
    CollectingReporter reporter;
    bool loaded = variable.loadXML(xml.c_str(), *statistics, &reporter);
    EXPECT_EQ(reporter.lines().empty(), loaded);
    return reporter.lines();
  }

  std::string formatted(const std::string& xml, const R_Number& value, bool with_unit, bool* shown = nullptr) {
    R_Variable variable;
    EXPECT_TRUE(load(variable, xml).empty());
    R_String buffer;
    bool answer = variable.formatValue(value, buffer, with_unit);
    EXPECT_EQ(!buffer.isEmpty(), answer);
    if (shown) *shown = answer;
    return buffer.get();
  }

  NamedStatistics* statistics;
};

}  // namespace

TEST_F(VariableTest, LoadTakesEveryElementInAnyOrder) {
  R_Variable variable;
  ASSERT_TRUE(load(variable, "<helpid>h-1</helpid><xyref><yvar>HEIGHT</yvar><xvar>AGE</xvar></xyref>" +
                                 kHeightHead + "<precision>0.1</precision><unit> cm </unit>")
                  .empty());
  EXPECT_EQ(1, variable.getIndex());
  EXPECT_EQ(128 | 32 | 64 | 8 | 16, variable.getProperties());
  EXPECT_STREQ("Height", variable.getName());
  EXPECT_STREQ("cm", variable.getUnit());
  EXPECT_TRUE(variable.getPrecision().isEqual(0.1));
  EXPECT_STREQ("h-1", variable.getHelpId());
  EXPECT_TRUE(variable.getXYVar() == R_XYVar(-1, 0, 1));
  EXPECT_TRUE(variable.isOwnY());
  EXPECT_FALSE(variable.isOwnX());
  EXPECT_FALSE(variable.getInterval().isDefined());
}

TEST_F(VariableTest, LoadReportsEveryFaultInnermostFirst) {
  const LoadRow rows[] = {
      {kHeight, {}},
      {kTanner, {}},
      {kBMI, {}},
      {kHeightHead + "<unit></unit>", {}},  // an empty unit is a unit
      {kHeightHead + "<comment>ignored</comment>", {}},
      {kHeightHead + "<unit></unit><unit>cm</unit>", {"data error closing block </unit>: double defined unit", kClosing}},
      {kHeightHead + "<precision>abc</precision>",
       {"data error closing block </precision>: precision load error", kClosing}},
      {kHeightHead + "<precision>1</precision><precision>2</precision>",
       {"data error closing block </precision>: double defined precision", kClosing}},
      {kHeightHead + "<name>Again</name>", {"data error closing block </name>: double defined name", kClosing}},
      {"<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name> </name>",
       {"data error closing block </name>: variable name load error", kClosing}},
      {kHeightHead + "<id>WEIGHT</id>", {}},  // a second id overwrites
      {kHeightHead + "<id></id>", {"data error closing block </id>: variable code is not recognized", kClosing}},
      {"<id>LENGTH</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>L</name>",
       {"Variable identification does notch match pre-scan.", kClosing}},
      {"<id>HEIGHT</id><name>H</name>", {"No properties/name defined.", kClosing}},
      {"<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/>",
       {"No properties/name defined.", kClosing}},
      {"<id>HEIGHT</id><properties type=\"weight\" scope=\"followed\" data=\"real\"/><name>H</name>",
       {"data error processing standalone tag <properties../>: wrong variable type", kClosing}},
      {"<id>HEIGHT</id><properties type=\"measured\" data=\"real\"/><name>H</name>",
       {"data error processing standalone tag <properties../>: wrong variable scope", kClosing}},
      {"<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"Real\"/><name>H</name>",
       {"data error processing standalone tag <properties../>: wrong variable data type", kClosing}},
      {kHeightHead + "<values><interval><min>1</min></interval><interval><max>2</max></interval></values>",
       {"data error closing block </interval>: double defined interval", kClosing}},
      {kHeightHead + "<values><interval><min>2</min><max>1</max></interval></values>",
       {"Invalid interval definition (min > max).", "Error while processing interval.",
        "data error closing block </interval>: variable values load error", kClosing}},
      {kTannerHead + "<values><list><item value=\"1\">a</item></list></values>", {"No list items.", kClosing}},
      {kTannerHead, {"No list items.", kClosing}},
      {kTanner + "<values><list><item value=\"1\">a</item><item value=\"2\">b</item></list></values>",
       {"data error closing block </list>: double defined list", kClosing}},
      {kTannerHead + "<values><list><item value=\"1\">a</item><item value=\"1\">b</item></list></values>",
       {"data error closing block </item>: wrong or duplicate list item", "Error while processing list.",
        "data error closing block </list>: list of values load error", kClosing}},
      {kHeightHead + "<values><list><item value=\"1\">a</item></list></values>",
       {"List items in real variable definition.", kClosing}},
      {"<id>BMI</id><properties type=\"calculated\" scope=\"followed\" data=\"real\"/><name>BMI</name>",
       {"No compute methods.", kClosing}},
      {kHeightHead + "<method><compute>WEIGHT</compute></method>", {"Compute methods in followed variable.", kClosing}},
      {kBMI + "<method><compute>WEIGHT</compute></method>",
       {"data error closing block </method>: double defined methods", kClosing}},
      {kHeightHead + "<xyref><xvar>AGE</xvar></xyref><xyref><xvar>AGE</xvar></xyref>",
       {"data error closing block </xyref>: double defined xyref", kClosing}},
      {kHeightHead + "<xyref><xvar>LENGTH</xvar></xyref>",
       {"data error closing block </xvar>: wrong x variable", "Error while processing X-Y variable definition.",
        "data error closing block </xyref>: x-y definition load error", kClosing}},
      {kHeightHead + "<helpid></helpid>", {"data error closing block </helpid>: variable help-id load error", kClosing}},
      {kHeightHead + "<helpid>a</helpid><helpid>b</helpid>",
       {"data error closing block </helpid>: double defined help id", kClosing}},
      // The checks after the parse all run and all report.
      {"<id>LENGTH</id>" + kTannerHead.substr(15) + "<values><list><item value=\"1\">a</item></list></values>",
       {"No list items.", "Variable identification does notch match pre-scan.", kClosing}},
  };
  for (const LoadRow& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Variable variable;
    EXPECT_EQ(row.messages, load(variable, row.xml));
  }
}

TEST_F(VariableTest, ASecondPropertiesElementOverwritesTheFirst) {
  R_Variable variable;
  ASSERT_TRUE(load(variable, kHeightHead + "<properties type=\"index\" scope=\"anamnestic\" data=\"real\" sex=\"male\"/>")
                  .empty());
  EXPECT_EQ(256 | 1 | 64 | 16, variable.getProperties());
}

TEST_F(VariableTest, PropertiesTellTheSexesFromTheAttribute) {
  const struct {
    const char* sex;
    bool male, female;
  } rows[] = {{"male", true, false}, {"female", false, true}, {"both", true, true}, {"Male", true, true}, {nullptr, true, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.sex ? row.sex : "(none)");
    std::string sex = row.sex ? std::string(" sex=\"") + row.sex + "\"" : "";
    R_Variable variable;
    ASSERT_TRUE(
        load(variable, "<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"" + sex +
                           "/><name>H</name>")
            .empty());
    EXPECT_EQ(row.male, variable.isMale());
    EXPECT_EQ(row.female, variable.isFemale());
    EXPECT_EQ(row.male, variable.isForSex(0));
    EXPECT_EQ(row.female, variable.isForSex(1));
    EXPECT_TRUE(variable.isForSex(2));
  }
}

TEST_F(VariableTest, AListVariableTakesItsIntervalFromItsItems) {
  R_Variable variable;
  ASSERT_TRUE(load(variable, kTanner).empty());
  EXPECT_TRUE(variable.isList());
  EXPECT_TRUE(variable.getInterval().getMin().isEqual(1));
  EXPECT_TRUE(variable.getInterval().getMax().isEqual(5));
  EXPECT_EQ(17, variable.getInterval().getFlags());
}

TEST_F(VariableTest, FormatValueRoundsToThePrecisionAndAddsTheUnit) {
  bool shown = true;
  EXPECT_EQ("123.5 cm", formatted(kHeight, R_Number(123.456), true));
  EXPECT_EQ("123.5", formatted(kHeight, R_Number(123.456), false));
  EXPECT_EQ("250.0 cm", formatted(kHeight, R_Number(250), true));
  EXPECT_EQ("", formatted(kHeight, R_Number(0.0), true, &shown));  // the open end
  EXPECT_FALSE(shown);
  EXPECT_EQ("", formatted(kHeight, R_Number(250.01), true));
  EXPECT_EQ("", formatted(kHeight, R_Number(), true));
  // Without a precision: "%g". Without a unit: no blank.
  EXPECT_EQ("1.23457", formatted(kHeightHead, R_Number(1.23456789), true));
}

TEST_F(VariableTest, FormatValueOfAListVariableNeedsAnEqualItem) {
  bool shown = false;
  EXPECT_EQ("T5", formatted(kTanner, R_Number(5), true, &shown));
  EXPECT_TRUE(shown);
  EXPECT_EQ("", formatted(kTanner, R_Number(2.5), true, &shown));  // inside the interval, no item
  EXPECT_FALSE(shown);
  EXPECT_EQ("", formatted(kTanner, R_Number(6), true));
}

TEST_F(VariableTest, SaveXMLWritesTheElementsInTheirFixedOrder) {
  const struct {
    std::string xml;
    std::string written;
  } rows[] = {
      {kHeight + "<helpid>h</helpid>",
       "<id>HEIGHT</id><properties type=\"measured\" scope=\"followed\" data=\"real\" /><name>Height</name>"
       "<values><interval><min boundary=\"open\">0</min><max boundary=\"closed\">250</max></interval></values>"
       "<unit>cm</unit><precision>0.1</precision><xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>"},
      {kTanner + "<unit>ignored</unit>",
       "<id>TANNER</id><properties type=\"measured\" scope=\"followed\" data=\"list\" /><name>Tanner</name>"
       "<values><list><item value=\"5\">T5</item><item value=\"1\">T1</item></list></values>"},
      {"<id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\" sex=\"female\"/><name>Age</name>"
       "<xyref><xvar>AGE</xvar><yvar>AGE</yvar></xyref>",
       "<id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\" sex=\"female\" /><name>Age</name>"},
      {"<id>WEIGHT</id><properties type=\"index\" scope=\"anamnestic\" data=\"real\"/><name>W</name>"
       "<unit>kg</unit><values><interval><min>0</min></interval></values>",
       "<id>WEIGHT</id><properties type=\"index\" scope=\"anamnestic\" data=\"real\" /><name>W</name>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Variable variable;
    ASSERT_TRUE(load(variable, row.xml).empty());
    EXPECT_EQ(row.written, xmlWrittenBy([&](R_XMLTextOutput& out) { variable.saveXML(out, *statistics); }));
  }
}

TEST_F(VariableTest, SaveXMLThenLoadXMLGivesTheSameVariable) {
  for (const std::string& xml : {kHeight, kTanner, kBMI}) {
    SCOPED_TRACE(xml);
    R_Variable first;
    ASSERT_TRUE(load(first, xml).empty());
    std::string written = xmlWrittenBy([&](R_XMLTextOutput& out) { first.saveXML(out, *statistics); });
    R_Variable second;
    ASSERT_TRUE(load(second, written).empty());
    EXPECT_EQ(written, xmlWrittenBy([&](R_XMLTextOutput& out) { second.saveXML(out, *statistics); }));
    EXPECT_EQ(hexOf(savedBytes(first)), hexOf(savedBytes(second)));
  }
}

// HT: measured, followed, real, both sexes (248); name "H"; no help id; unit
// "cm"; no precision; no interval; no xyref.
const char* const kVariableBytes =
    "08 02 F8 00 00 00 01 01 00 48 01 00 00 01 02 00 63 6D 03 00 04 03 00 03 00 02 00 00 00 00 "
    "12 02 FF FF FF FF 02 FF FF FF FF 02 FF FF FF FF";

TEST(VariableBinaryTest, BinaryFormIsPinnedByItsBytes) {
  NamedStatistics statistics({"HT"});
  R_Variable variable;
  ASSERT_TRUE(variable.loadXML(
      "<id>HT</id><properties type=\"measured\" scope=\"followed\" data=\"real\"/><name>H</name><unit>cm</unit>",
      statistics, nullptr));
  EXPECT_EQ(kVariableBytes, hexOf(savedBytes(variable)));
}

TEST(VariableBinaryTest, LoadTakesTheIndexItIsGiven) {
  Bytes bytes = bytesOf(kVariableBytes);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Variable variable;
  variable.load(7, stream, &ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(7, variable.getIndex());
  EXPECT_STREQ("cm", variable.getUnit());
  EXPECT_EQ(kVariableBytes, hexOf(savedBytes(variable)));
}

TEST_F(VariableTest, BinaryFormOfEveryKindLoadsAndSavesTheSameBytes) {
  for (const std::string& xml : {kHeight + "<helpid>h</helpid>", kTanner, kBMI}) {
    SCOPED_TRACE(xml);
    R_Variable variable;
    ASSERT_TRUE(load(variable, xml).empty());
    Bytes bytes = savedBytes(variable);
    R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    R_Variable loaded;
    loaded.load(variable.getIndex(), stream, &ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(-1, stream.readByte());
    EXPECT_EQ(hexOf(bytes), hexOf(savedBytes(loaded)));
    EXPECT_EQ(xmlWrittenBy([&](R_XMLTextOutput& out) { variable.saveXML(out, *statistics); }),
              xmlWrittenBy([&](R_XMLTextOutput& out) { loaded.saveXML(out, *statistics); }));
    expectEveryTruncationFails(bytes, [](R_InputStream& cut, bool* cut_ok) {
      R_Variable truncated;
      truncated.load(0, cut, cut_ok);
    });
  }
}

TEST_F(VariableTest, AnAgeVariableKeepsItsXYRefInTheBinaryFormOnly) {
  R_Variable variable;
  ASSERT_TRUE(load(variable, "<id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\"/><name>A</name>"
                             "<xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>")
                  .empty());
  EXPECT_EQ(std::string::npos,
            xmlWrittenBy([&](R_XMLTextOutput& out) { variable.saveXML(out, *statistics); }).find("xyref"));
  Bytes bytes = savedBytes(variable);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Variable loaded;
  loaded.load(0, stream, &ok);
  ASSERT_TRUE(ok);
  EXPECT_TRUE(loaded.getXYVar() == R_XYVar(-1, 0, 1));
}

TEST(VariableBinaryTest, ACalculatedVariableWithoutAValidEquationFails) {
  // Properties 4|32|64|24 = 124, name "C", no help id, then an equation
  // stored as invalid (tag 6, byte 0).
  Bytes bytes = bytesOf("08 02 7C 00 00 00 01 01 00 43 01 00 00 06 00 01 00 00 03 00 04 03 00 03 00 02 00 00 00 00 "
                           "12 02 FF FF FF FF 02 FF FF FF FF 02 FF FF FF FF");
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Variable variable;
  variable.load(0, stream, &ok);
  EXPECT_FALSE(ok);
}
