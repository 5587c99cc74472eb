#include "proband/r_proband.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "core/r_bufferoutputstream.h"
#include "core/r_typecodes.h"
#include "tests/proband/proband_support.h"

// knowledge.xml: AGE, HEIGHT (followed, 30..250), FATHER_HT (anamnestic,
// 100..250), WEIGHT (followed, 0.5..250), MOTHER_HT (anamnestic, no
// interval). Anamnestic order: FATHER_HT, MOTHER_HT; followed: HEIGHT, WEIGHT.

namespace {

class ProbandTest : public ::testing::Test {
 protected:
  ProbandTest() : file(loadKnowledge("knowledge.xml")), proband(file.get()) {}

  std::string load(const std::string& content) {
    if (!loadText(proband, content)) return "refused";
    return textOf(proband);
  }

  std::unique_ptr<R_File> file;
  R_Proband proband;
};

R_Number undefined() { return R_Number(); }

}  // namespace

TEST_F(ProbandTest, SexIsAnsweredAsZeroOneTwoAndStoredAsOneTwoMinusOne) {
  EXPECT_EQ(2, proband.getSex());
  proband.setSex(0);
  EXPECT_EQ(0, proband.getSex());
  EXPECT_TRUE(proband.isSexDefined());
  EXPECT_EQ(std::string("\x02\x01\x00\x00\x00", 5), bytesOf(proband).substr(9, 5));
  proband.setSex(1);
  EXPECT_EQ(1, proband.getSex());
  EXPECT_EQ(std::string("\x02\x02\x00\x00\x00", 5), bytesOf(proband).substr(9, 5));
  proband.setSex(7);
  EXPECT_EQ(2, proband.getSex());
  EXPECT_FALSE(proband.isSexDefined());
  EXPECT_EQ(std::string("\x02\xFF\xFF\xFF\xFF", 5), bytesOf(proband).substr(9, 5));
}

TEST_F(ProbandTest, NamesAreFoundWithoutRegardToCaseInTheirOwnSubsetOnly) {
  EXPECT_EQ(0, proband.getAnamnesticOrder("father_ht"));
  EXPECT_EQ(1, proband.getAnamnesticOrder("Mother_HT"));
  EXPECT_EQ(-1, proband.getAnamnesticOrder("HEIGHT"));
  EXPECT_EQ(-1, proband.getAnamnesticOrder("AGE"));
  EXPECT_EQ(-1, proband.getAnamnesticOrder(nullptr));
  EXPECT_EQ(0, proband.getFollowedOrder("height"));
  EXPECT_EQ(1, proband.getFollowedOrder("WEIGHT"));
  EXPECT_FALSE(proband.isFollowedName("FATHER_HT"));
  EXPECT_TRUE(proband.isAnamnesticName("FATHER_HT"));
}

TEST_F(ProbandTest, ValuesOutsideTheIntervalOrNotFiniteBecomeUndefined) {
  struct Row {
    const char* name;
    double value;
    bool kept;
  } rows[] = {
      {"FATHER_HT", 100, true},   {"FATHER_HT", 250, true},   {"FATHER_HT", 99.99, false},
      {"FATHER_HT", 250.01, false}, {"MOTHER_HT", 1000, true}, {"MOTHER_HT", -5, true},
      {"MOTHER_HT", std::numeric_limits<double>::infinity(), false},
      {"MOTHER_HT", std::numeric_limits<double>::quiet_NaN(), false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.name) + " " + std::to_string(row.value));
    proband.setAnamnesticValue(row.name, R_Number(170.0));
    proband.setAnamnesticValue(row.name, R_Number(row.value));
    R_Number result;
    proband.getAnamnesticValue(result, row.name);
    ASSERT_EQ(row.kept, result.isDefined());
    if (row.kept) {
      EXPECT_EQ(row.value, result.getValue());
    }
  }
  proband.setAnamnesticValue("SHOE_SIZE", R_Number(40.0));
  R_Number result(1.0);
  proband.getAnamnesticValue(result, "SHOE_SIZE");
  EXPECT_FALSE(result.isDefined());
}

TEST_F(ProbandTest, VisitsCloserThanADayAreOneVisit) {
  EXPECT_EQ(0, proband.addVisit(R_Number(5.001), R_Date()));
  EXPECT_EQ(0, proband.addVisit(R_Number(5.002), R_Date()));
  EXPECT_EQ(1, proband.getVisitCount());
  EXPECT_EQ(5.001, proband.getVisitAge(0).getValue());

  R_Proband apart(file.get());
  EXPECT_EQ(0, apart.addVisit(R_Number(5.000), R_Date()));
  EXPECT_EQ(1, apart.addVisit(R_Number(5.003), R_Date()));
  EXPECT_EQ(2, apart.getVisitCount());
}

TEST_F(ProbandTest, TheAgeOfAVisitComesFromTheDateOfBirth) {
  proband.setDob(R_Date(1, 1, 2000));
  // 1827 days to 1.1.2005; 1827 / 365.25 = 5.00205.
  int index = proband.addVisit(R_Number(99.0), R_Date(1, 1, 2005));
  EXPECT_EQ(5.002, proband.getVisitAge(index).getValue());
  // Before the birth: undefined, and the given age is lost.
  index = proband.addVisit(R_Number(3.0), R_Date(1, 6, 1999));
  EXPECT_FALSE(proband.getVisitAge(index).isDefined());
  // Without an age the dates decide: it goes before the visit of 2005.
  EXPECT_EQ(0, index);
}

TEST_F(ProbandTest, VisitsKeepTheirOrderByAgeThenDateThenArrival) {
  proband.addVisit(R_Number(7.0), R_Date());
  proband.addVisit(R_Number(3.0), R_Date());
  proband.addVisit(undefined(), R_Date(1, 1, 2005));
  proband.addVisit(undefined(), R_Date(1, 1, 2003));
  proband.addVisit(R_Number(5.0), R_Date());
  ASSERT_EQ(5, proband.getVisitCount());
  EXPECT_EQ(3.0, proband.getVisitAge(0).getValue());
  EXPECT_EQ(5.0, proband.getVisitAge(1).getValue());
  EXPECT_EQ(7.0, proband.getVisitAge(2).getValue());
  EXPECT_EQ(2003, proband.getVisitDate(3).getYear());
  EXPECT_EQ(2005, proband.getVisitDate(4).getYear());
}

TEST_F(ProbandTest, ANewDateOfBirthRecomputesAgesAndLeavesTheOrder) {
  proband.addVisit(R_Number(10.0), R_Date());
  proband.addVisit(undefined(), R_Date(1, 1, 2005));
  proband.setDobText("1.1.2000");
  EXPECT_EQ(10.0, proband.getVisitAge(0).getValue());
  EXPECT_EQ(5.002, proband.getVisitAge(1).getValue());
  int index = proband.setVisitAgeDate(1, undefined(), R_Date(1, 1, 2005));
  EXPECT_EQ(0, index);
  EXPECT_EQ(5.002, proband.getVisitAge(0).getValue());
}

TEST_F(ProbandTest, FollowedValuesByNameIgnoreAnamnesticNames) {
  proband.setAnamnesticValue("FATHER_HT", R_Number(180.0));
  int index = proband.addVisit(R_Number(2.0), R_Date());
  proband.setFollowedValue(index, "height", R_Number(90.0));
  proband.setFollowedValue(index, "FATHER_HT", R_Number(180.0));
  R_Number result(1.0);
  proband.getFollowedValue(index, "FATHER_HT", result);
  EXPECT_FALSE(result.isDefined());
  proband.getFollowedValue(index, "HEIGHT", result);
  EXPECT_EQ(90.0, result.getValue());
  proband.setFollowedValue(index, "HEIGHT", R_Number(900.0));
  EXPECT_FALSE(proband.getFollowedNumber(index, 0).isDefined());
}

TEST_F(ProbandTest, ClearEmptiesEverything) {
  ASSERT_EQ("<proband><info id=\"A 1\" dob=\"2.3.2001\" sex=\"female\" /><data>"
            "<val var=\"MOTHER_HT\">160</val></data></proband>",
            load("<info id=\" A \n 1 \" dob=\"2.3.2001\" sex=\"female\"/><data><val var=\"MOTHER_HT\">160</val>"
                 "<record age=\"1\"/></data>"));
  proband.clear();
  EXPECT_FALSE(proband.isSexDefined());
  EXPECT_TRUE(proband.getId().isEmpty());
  EXPECT_FALSE(proband.getDob().isDefined());
  EXPECT_EQ(0, proband.getVisitCount());
  EXPECT_FALSE(proband.getAnamnesticNumber(1).isDefined());
}

// ---- XML form ----

TEST_F(ProbandTest, LoadXMLReadsTheTextWithOrWithoutTheProbandElement) {
  const char* inner =
      "<info id=\"X7\" dob=\"05.03.2001\" sex=\"male\"/>"
      "<data><val var=\"FATHER_HT\">180.5</val><val var=\"mother_ht\"> 165 </val>"
      "<record date=\"5.3.2011\" comment=\" first \n visit \"><val var=\"HEIGHT\">143.2</val>"
      "<val var=\"WEIGHT\">35,25</val></record></data>";
  const std::string expected =
      "<proband><info id=\"X7\" dob=\"5.3.2001\" sex=\"male\" /><data>"
      "<val var=\"FATHER_HT\">180.5</val><val var=\"MOTHER_HT\">165</val>"
      "<record date=\"5.3.2011\" age=\"9.999\" comment=\"first visit\">"
      "<val var=\"HEIGHT\">143.2</val><val var=\"WEIGHT\">35.25</val></record></data></proband>";
  EXPECT_EQ(expected, load(inner));
  EXPECT_EQ(expected, load(std::string("<proband>") + inner + "</proband>"));
  EXPECT_EQ(expected, load(expected));
}

TEST_F(ProbandTest, RecordsCloserThanADayMergeAndTheLaterOneWins) {
  EXPECT_EQ("<proband><info sex=\"male\" /><data><record age=\"5.001\" comment=\"second\">"
            "<val var=\"HEIGHT\">111</val><val var=\"WEIGHT\">20</val></record></data></proband>",
            load("<info sex=\"male\"/><data>"
                 "<record age=\"5.001\" comment=\"first\"><val var=\"HEIGHT\">110</val><val var=\"WEIGHT\">20</val></record>"
                 "<record age=\"5.002\" comment=\"second\"><val var=\"HEIGHT\">111</val></record></data>"));
  EXPECT_EQ("<proband><info sex=\"male\" /><data><record age=\"5\"><val var=\"HEIGHT\">110</val></record>"
            "<record age=\"5.003\"><val var=\"HEIGHT\">111</val></record></data></proband>",
            load("<info sex=\"male\"/><data>"
                 "<record age=\"5.000\"><val var=\"HEIGHT\">110</val></record>"
                 "<record age=\"5.003\"><val var=\"HEIGHT\">111</val></record></data>"));
}

TEST_F(ProbandTest, AgesComeFromAnInfoThatStandsFirstOnly) {
  EXPECT_EQ("<proband><info dob=\"1.1.2000\" sex=\"female\" /><data>"
            "<record date=\"1.1.2005\" age=\"5.002\"><val var=\"HEIGHT\">110</val></record></data></proband>",
            load("<info sex=\"female\" dob=\"1.1.2000\"/><data>"
                 "<record date=\"1.1.2005\"><val var=\"HEIGHT\">110</val></record></data>"));
  EXPECT_EQ("<proband><info dob=\"1.1.2000\" sex=\"female\" /><data>"
            "<record date=\"1.1.2005\"><val var=\"HEIGHT\">110</val></record></data></proband>",
            load("<data><record date=\"1.1.2005\"><val var=\"HEIGHT\">110</val></record></data>"
                 "<info sex=\"female\" dob=\"1.1.2000\"/>"));
}

TEST_F(ProbandTest, AVisitBeforeTheBirthLosesItsAge) {
  EXPECT_EQ("<proband><info dob=\"1.1.2000\" sex=\"female\" /><data>"
            "<record date=\"1.6.1999\"><val var=\"HEIGHT\">100</val></record><record age=\"2\"></record>"
            "</data></proband>",
            load("<info sex=\"female\" dob=\"1.1.2000\"/><data>"
                 "<record date=\"1.6.1999\" age=\"4\"><val var=\"HEIGHT\">100</val></record>"
                 "<record age=\"2\"></record></data>"));
}

TEST_F(ProbandTest, RecordsReadOutOfOrderComeOutInAgeOrder) {
  EXPECT_EQ("<proband><info sex=\"male\" /><data><record age=\"1.5\"></record><record age=\"3\"></record>"
            "<record age=\"12\"></record></data></proband>",
            load("<info sex=\"male\"/><data><record age=\"12\"/><record age=\"3\"></record>"
                 "<record age=\"12\"></record><record age=\"1.5\"></record></data>"));
}

TEST_F(ProbandTest, QuestionMarksRangesAndUnknownNamesAreDroppedSilently) {
  EXPECT_EQ("<proband><info sex=\"male\" /><data><val var=\"MOTHER_HT\">170</val>"
            "<record age=\"4\"><val var=\"WEIGHT\">17</val></record></data></proband>",
            load("<info sex=\"male\"/><data>"
                 "<val var=\"FATHER_HT\">180</val><val var=\"FATHER_HT\">?</val>"
                 "<val var=\"MOTHER_HT\">170</val><val var=\"SHOE_SIZE\">40</val><val>5</val>"
                 "<val var=\"HEIGHT\">120</val><val var=\"MOTHER_HT\"></val>"
                 "<record age=\"4\"><val var=\"HEIGHT\">900</val><val var=\"WEIGHT\">17</val>"
                 "<val var=\"FATHER_HT\">180</val><val var=\"TAIL\">3</val></record></data>"));
}

TEST_F(ProbandTest, LoadXMLRefusesTextsWithoutSexOrWithBrokenRecords) {
  struct Row {
    const char* text;
    bool accepted;
  } rows[] = {
      {"<info sex=\"female\"/>", true},
      {"<info sex=\"male\"></info><data></data>", true},
      {"<info sex=\"male\"/><unknown a=\"1\"><data/></unknown>", true},
      {"<info sex=\"male\"/><data><record date=\"1.1.2000\"></record></data>", true},
      {"", false},
      {"<info id=\"7\"/>", false},
      {"<info sex=\"Male\"/>", false},
      {"<info sex=\"m\"/>", false},
      {"<info sex='male'/>", false},
      {"<info sex=\"male\"/><data><record comment=\"x\"></record></data>", false},
      {"<info sex=\"male\"/><data><record age=\"x\" date=\"31.2.2000\"></record></data>", false},
      {"<info sex=\"male\"/><data><record age=\"1\"><record></record></record></data>", true},
      {"<info sex=\"male\"/><data>", false},
      {"<info sex=\"male\"/><data></info>", false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    proband.setId("old");
    EXPECT_EQ(row.accepted, proband.loadXML(row.text));
    EXPECT_EQ(row.accepted, proband.isSexDefined());
    EXPECT_TRUE(proband.getId().isEmpty());
  }
  EXPECT_FALSE(proband.loadXML(nullptr));
}

TEST(ProbandWithoutFollowedTest, VisitsAreRefusedAndRecordElementsIgnored) {
  std::unique_ptr<R_File> file = loadKnowledge("knowledge_anamnestic_only.xml");
  R_Proband proband(file.get());
  EXPECT_EQ(-1, proband.addVisit(R_Number(1.0), R_Date()));
  EXPECT_EQ(0, proband.getVisitCount());
  ASSERT_TRUE(loadText(proband, "<info sex=\"male\"/><data><val var=\"FATHER_HT\">180</val>"
                                "<record age=\"3\" comment=\"c\"><val var=\"HEIGHT\">100</val></record></data>"));
  EXPECT_EQ("<proband><info sex=\"male\" /><data><val var=\"FATHER_HT\">180</val></data></proband>", textOf(proband));
}

// ---- Binary form ----

TEST_F(ProbandTest, TheBinaryFormOfASmallProbandIsPinned) {
  proband.setId("P1");
  proband.setDob(R_Date(1, 2, 2000));
  proband.setSex(0);
  proband.setAnamnesticNumber(0, R_Number(180.0));
  int index = proband.addVisit(R_Number(5.5), R_Date());
  proband.setVisitComment(index, "c");
  proband.setFollowedNumber(index, 0, R_Number(110.0));
  const std::string expected = std::string(
      "\x21"
      "\x01\x02\x00P1"
      "\x20\x01\x02\xD0\x07"
      "\x02\x01\x00\x00\x00"
      "\x02\x02\x00\x00\x00"
      "\x01\x09\x00" "FATHER_HT"
      "\x01\x09\x00" "MOTHER_HT"
      "\x03\x01\x00\x00\x00\x00\x00\x80\x66\x40"
      "\x03\x00"
      "\x02\x01\x00\x00\x00"
      "\x02\x02\x00\x00\x00"
      "\x01\x06\x00" "HEIGHT"
      "\x01\x06\x00" "WEIGHT"
      "\x03\x01\x00\x00\x00\x00\x00\x00\x16\x40"
      "\x20\x00\x00\x00\x00"
      "\x01\x01\x00" "c"
      "\x03\x01\x00\x00\x00\x00\x00\x80\x5B\x40"
      "\x03\x00",
      116);
  EXPECT_EQ(expected, bytesOf(proband));
  unsigned char buffer[200];
  int bytes = -1;
  ASSERT_TRUE(proband.saveToBuffer(buffer, &bytes, sizeof(buffer)));
  EXPECT_EQ(expected, std::string(reinterpret_cast<char*>(buffer), static_cast<size_t>(bytes)));
  EXPECT_FALSE(proband.saveToBuffer(buffer, &bytes, 115));
  EXPECT_EQ(0, bytes);
  EXPECT_TRUE(proband.saveToBuffer(buffer, &bytes, 116));
}

TEST_F(ProbandTest, SaveLoadSaveGivesTheSameBytesAndTruncationFailsCleanly) {
  ASSERT_NE("refused", load("<info id=\"Q\" dob=\"1.1.2000\" sex=\"female\"/><data>"
                            "<val var=\"MOTHER_HT\">162.5</val>"
                            "<record date=\"1.1.2005\" comment=\"one\"><val var=\"HEIGHT\">110</val></record>"
                            "<record age=\"7.25\"><val var=\"WEIGHT\">21.5</val><val var=\"HEIGHT\">121</val></record>"
                            "<record date=\"2.2.2010\"></record></data>"));
  const std::string bytes = bytesOf(proband);
  R_Proband again(file.get());
  ASSERT_TRUE(loadBytes(again, bytes));
  EXPECT_EQ(bytes, bytesOf(again));
  EXPECT_EQ(textOf(proband), textOf(again));
  for (size_t length = 0; length < bytes.size(); ++length) {
    SCOPED_TRACE(length);
    R_Proband cut(file.get());
    cut.setId("old");
    EXPECT_FALSE(loadBytes(cut, bytes.substr(0, length)));
    EXPECT_EQ(0, cut.getVisitCount());
    EXPECT_TRUE(cut.getId().isEmpty());
    EXPECT_FALSE(cut.isSexDefined());
  }
}

TEST_F(ProbandTest, TheXMLFormSurvivesARoundTrip) {
  const std::string text = load(
      "<info id=\"RD-1\" sex=\"male\"/><data><val var=\"FATHER_HT\">181.25</val>"
      "<record age=\"0.5\" comment=\"long comment with some words\"><val var=\"WEIGHT\">7.1</val></record>"
      "<record date=\"3.4.2008\"><val var=\"HEIGHT\">99.5</val></record></data>");
  R_Proband again(file.get());
  ASSERT_TRUE(loadText(again, text));
  EXPECT_EQ(text, textOf(again));
  EXPECT_EQ(bytesOf(proband), bytesOf(again));
}

TEST_F(ProbandTest, AStoredUndefinedSexLoadsFromBinaryButNotFromXML) {
  proband.setId("N");
  proband.setAnamnesticNumber(1, R_Number(150.0));
  unsigned char buffer[300];
  int bytes = 5;
  EXPECT_FALSE(proband.saveToBuffer(buffer, &bytes, sizeof(buffer)));
  EXPECT_EQ(0, bytes);
  char text[300] = "x";
  bytes = 5;
  EXPECT_FALSE(proband.saveToText(text, &bytes, sizeof(text)));
  EXPECT_STREQ("", text);
  EXPECT_EQ(0, bytes);

  R_Proband again(file.get());
  ASSERT_TRUE(loadBytes(again, bytesOf(proband)));
  EXPECT_EQ("N", std::string(again.getId().get()));
  EXPECT_EQ(150.0, again.getAnamnesticNumber(1).getValue());
  EXPECT_FALSE(loadText(again, "<info id=\"N\"/><data><val var=\"MOTHER_HT\">150</val></data>"));
}

namespace {

// A stored proband assembled block by block, independent of R_Proband::save.
class StoredProband {
 public:
  StoredProband() : stream(buffer, sizeof(buffer)) { stream.put(R_TypeProband); }
  StoredProband& text(const char* value) {
    R_String(value).save(stream);
    return *this;
  }
  StoredProband& integer(int value) {
    R_Integer(value).save(stream);
    return *this;
  }
  StoredProband& number(const R_Number& value) {
    value.save(stream);
    return *this;
  }
  StoredProband& date(const R_Date& value) {
    value.save(stream);
    return *this;
  }
  std::string bytes() const { return std::string(reinterpret_cast<const char*>(buffer), stream.getCount()); }

 private:
  unsigned char buffer[1000];
  R_BufferOutputStream stream;
};

}  // namespace

TEST_F(ProbandTest, BinaryValuesAreMatchedByNameSkippingUnknownAndOutOfRangeOnes) {
  StoredProband stored;
  stored.text("S").date(R_Date()).integer(2);
  stored.integer(3).text("shoe_size").text("father_ht").text("MOTHER_HT");
  stored.number(40.0).number(90.0).number(155.0);
  stored.integer(2).integer(3).text("WEIGHT").text("TAIL").text("HEIGHT");
  stored.number(5.001).date(R_Date()).text("a").number(20.0).number(1.0).number(110.0);
  stored.number(5.002).date(R_Date()).text("b").number(R_Number()).number(2.0).number(900.0);
  ASSERT_TRUE(loadBytes(proband, stored.bytes()));
  EXPECT_EQ("<proband><info id=\"S\" sex=\"female\" /><data><val var=\"MOTHER_HT\">155</val>"
            "<record age=\"5.001\" comment=\"b\"><val var=\"WEIGHT\">20</val></record></data></proband>",
            textOf(proband));
}

TEST_F(ProbandTest, DamagedCountsFailWithoutHugeAllocations) {
  StoredProband names;
  names.text("").date(R_Date()).integer(1).integer(0x7FFFFFFF).text("A");
  EXPECT_FALSE(loadBytes(proband, names.bytes()));
  StoredProband visits;
  visits.text("").date(R_Date()).integer(1).integer(0).integer(0x7FFFFFFF).integer(0);
  visits.number(1.0).date(R_Date()).text("");
  EXPECT_FALSE(loadBytes(proband, visits.bytes()));
  EXPECT_EQ(0, proband.getVisitCount());
  StoredProband odd_sex;
  odd_sex.text("").date(R_Date()).integer(7).integer(0).integer(0).integer(0);
  EXPECT_TRUE(loadBytes(proband, odd_sex.bytes()));
  EXPECT_EQ(std::string("\x02\xFF\xFF\xFF\xFF", 5), bytesOf(proband).substr(9, 5));
}

TEST_F(ProbandTest, CopyFromCarriesValuesByNameAcrossKnowledgeFiles) {
  ASSERT_NE("refused", load("<info id=\"C\" dob=\"1.1.2000\" sex=\"female\"/><data>"
                            "<val var=\"FATHER_HT\">180</val><val var=\"MOTHER_HT\">160</val>"
                            "<record date=\"1.1.2005\" comment=\"x\"><val var=\"HEIGHT\">110</val>"
                            "<val var=\"WEIGHT\">19</val></record></data>"));
  std::unique_ptr<R_File> other_file = loadKnowledge("knowledge_other.xml");
  R_Proband other(other_file.get());
  EXPECT_TRUE(other.copyFrom(proband));
  EXPECT_EQ("<proband><info id=\"C\" dob=\"1.1.2000\" sex=\"female\" /><data><val var=\"FATHER_HT\">180</val>"
            "<record date=\"1.1.2005\" age=\"5.002\" comment=\"x\"><val var=\"WEIGHT\">19</val>"
            "<val var=\"HEIGHT\">110</val></record></data></proband>",
            textOf(other));
  R_Proband back(file.get());
  EXPECT_TRUE(back.copyFrom(other));
  EXPECT_EQ("<proband><info id=\"C\" dob=\"1.1.2000\" sex=\"female\" /><data><val var=\"FATHER_HT\">180</val>"
            "<record date=\"1.1.2005\" age=\"5.002\" comment=\"x\"><val var=\"HEIGHT\">110</val>"
            "<val var=\"WEIGHT\">19</val></record></data></proband>",
            textOf(back));
  R_Proband empty(file.get());
  EXPECT_FALSE(back.copyFrom(empty));
  EXPECT_EQ(0, back.getVisitCount());
}

TEST_F(ProbandTest, SaveToTextRefusesWhatDoesNotFit) {
  proband.setSex(1);
  char text[64];
  int bytes = -1;
  ASSERT_TRUE(proband.saveToText(text, &bytes, sizeof(text)));
  EXPECT_STREQ("<proband><info sex=\"female\" /><data></data></proband>", text);
  EXPECT_EQ(53, bytes);
  EXPECT_TRUE(proband.saveToText(text, &bytes, 54));
  EXPECT_FALSE(proband.saveToText(text, &bytes, 53));
}
