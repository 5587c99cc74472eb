#include "knowledge/r_variable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/knowledge/case_file.h"
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

// kHeight, kTanner and kBMI load; the faults are in variable_messages.txt.
TEST_F(VariableTest, LoadReportsEveryFaultInnermostFirst) {
  for (const std::string& good : {kHeight, kTanner, kBMI}) {
    R_Variable variable;
    EXPECT_EQ(std::vector<std::string>(), load(variable, good));
  }
  for (const TextCase& row : readCases("knowledge/variable_messages.txt")) {
    SCOPED_TRACE(row.input);
    R_Variable variable;
    EXPECT_EQ(row.out, load(variable, row.input));
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
  for (const TextCase& row : readCases("knowledge/variable_forms.txt")) {
    SCOPED_TRACE(row.input);
    R_Variable first, second, loaded;
    ASSERT_TRUE(load(first, row.input).empty());
    std::string written = xmlOf(first), expected;
    for (const std::string& part : row.out) expected += part;
    if (!row.out.empty()) {
      EXPECT_EQ(expected, written);
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
