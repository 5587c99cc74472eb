#include "formula/r_namedequation.h"

#include <gtest/gtest.h>

#include <string>

#include "core/r_bufferinputstream.h"
#include "tests/support/stored_bytes.h"
#include "tests/formula/formula_statistics.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmlrecipient.h"
#include "xml/r_xmltextoutputbuffer.h"

namespace {

// Hands the attributes of each `targetpoint` to one named equation, as a
// graph block does.
class TargetRecipient : public R_XMLRecipient {
 public:
  TargetRecipient(R_NamedEquation& into, const R_FileStatistics& names)
      : target(into), statistics(names), result(false) {}

  bool parse(const char* xml) {
    R_XMLParser parser(R_XMLParser::captureSize, nullptr);
    setTagCount(1);
    setTag(0, "targetpoint");
    bool parsed = parser.parseString(xml, this);
    clearTags();
    return parsed && result;
  }

  const char* receive(int, const char*, const R_XMLParameters& parameters) override {
    result = target.loadXML(parameters, statistics);
    return nullptr;
  }

 private:
  R_NamedEquation& target;
  const R_FileStatistics& statistics;
  bool result;
};

bool loadTarget(R_NamedEquation& target, const char* xml) {
  FormulaStatistics statistics;
  TargetRecipient recipient(target, statistics);
  return recipient.parse(xml);
}

// Name "goal", then the equation HEIGHT:PREV+1.
const char kGoal[] =
    "01 01 04 00 67 6F 61 6C "
    "06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 04 00 50 52 45 56 01 04 00 40 41 2B 31";

}  // namespace

TEST(NamedEquationTest, LoadsNameAndMethodFromTheAttributes) {
  R_NamedEquation target;
  EXPECT_TRUE(loadTarget(target, "<targetpoint name=\"goal\" method=\"height:prev + 1\"/>"));
  EXPECT_TRUE(target.isDefined());
  EXPECT_STREQ("goal", target.getName().get());
  ASSERT_EQ(1, target.getMethodCount());
  EXPECT_STREQ("@A+1", target.getMethod(0).get());
  EXPECT_STREQ("PREV", target.getDefinition(0).get());
}

TEST(NamedEquationTest, IsUndefinedWithoutNameOrWithoutAWorkingMethod) {
  struct Row {
    const char* xml;
    bool valid;
  };
  const Row rows[] = {
      {"<targetpoint method=\"HEIGHT\"/>", true},
      {"<targetpoint name=\"\" method=\"HEIGHT\"/>", true},
      {"<targetpoint name=\"goal\"/>", false},
      {"<targetpoint name=\"goal\" method=\"HEIGHT:FOO\"/>", false},
      {"<targetpoint name=\"goal\" method=\"\"/>", false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.xml);
    R_NamedEquation target;
    EXPECT_FALSE(loadTarget(target, row.xml));
    EXPECT_FALSE(target.isDefined());
    EXPECT_EQ(row.valid, target.isValid());
  }
}

TEST(NamedEquationTest, WritesNameAndMethodAsAttributes) {
  R_NamedEquation target;
  ASSERT_TRUE(loadTarget(target, "<targetpoint name=\"goal\" method=\"height:prev + 1\"/>"));
  FormulaStatistics statistics;
  char buffer[256];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  output.openTag("targetpoint");
  target.saveXML(output, statistics);
  output.endEmptyTag();
  EXPECT_STREQ("<targetpoint name=\"goal\" method=\"HEIGHT:PREV+1\" />", buffer);
  R_NamedEquation again;
  ASSERT_TRUE(loadTarget(again, buffer));
  EXPECT_EQ(hexOf(savedBytes(target)), hexOf(savedBytes(again)));
}

TEST(NamedEquationTest, BinaryFormIsPinned) {
  R_NamedEquation target;
  ASSERT_TRUE(loadTarget(target, "<targetpoint name=\"goal\" method=\"HEIGHT:PREV+1\"/>"));
  EXPECT_EQ(kGoal, hexOf(savedBytes(target)));
  EXPECT_EQ(kGoal, hexOf(reloadAndSave<R_NamedEquation>(bytesOf(kGoal))));
  EXPECT_EQ("00", hexOf(savedBytes(R_NamedEquation())));
}

TEST(NamedEquationTest, TruncationAtEveryLengthFailsCleanly) {
  forEachTruncation<R_NamedEquation>(bytesOf(kGoal),
                                     [](const R_NamedEquation& target, bool ok, R_InputStream&) {
                                       EXPECT_FALSE(ok);
                                       EXPECT_FALSE(target.isDefined());
                                     });
}

TEST(NamedEquationTest, AnyMarkOtherThanOneIsAnAbsentTarget) {
  const char* forms[] = {"00", "02", "FF"};
  for (const char* form : forms) {
    SCOPED_TRACE(form);
    Bytes bytes = bytesOf(form) + bytesOf("06");
    R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    R_NamedEquation target;
    target.load(stream, &ok);
    EXPECT_TRUE(ok);
    EXPECT_FALSE(target.isDefined());
    EXPECT_EQ(6, stream.readByte());
  }
}

TEST(NamedEquationTest, AStoredTargetMustHoldExactlyOneExpression) {
  const char* forms[] = {
      "01 01 01 00 67 06 01 02 00 00 00 00 02 02 00 00 00 01 01 00 31 01 01 00 32",
      "01 01 01 00 67 06 00",
  };
  for (const char* form : forms) {
    SCOPED_TRACE(form);
    Bytes bytes = bytesOf(form);
    R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    R_NamedEquation target;
    target.load(stream, &ok);
    EXPECT_FALSE(ok);
  }
}
