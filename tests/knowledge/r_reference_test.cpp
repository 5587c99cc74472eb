#include "knowledge/r_reference.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

// A stored R_Number holding the double whose 8 bytes are `double_hex`.
std::string storedDouble(const char* double_hex) { return std::string("03 01 ") + double_hex; }

// Variable indices: AGE 0, HEIGHT 1, WEIGHT 2, FATHER_HT 3.
const R_XYVar kHeightByAge(-1, 0, 1);
const R_XYVar kWeightByAge(-1, 0, 2);
const R_XYVar kFather(3, -1, -1);

const char* const kSDData =
    "<data type=\"sd\"><line x=\"2\"><x>86</x><sd>3.5</sd></line>"
    "<line x=\"18\"><x>166</x><sd>6</sd></line></data>";

// Height of girls from 2 to 18, with three grid variants: X only, both
// axes (the default), Y only.
const std::string kGirls = std::string(
                               "<name>Height girls</name>\n"
                               "<sex sex=\"female\"/>\n"
                               "<xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>\n"
                               "<age><interval><min>2</min><max>18</max></interval></age>\n") +
                           kSDData +
                           "<granularity>"
                           "<variant><xaxe from=\"2\" to=\"6\" step=\"0.5\"/></variant>"
                           "<variant type=\"default\"><xaxe from=\"0\" to=\"20\" step=\"1\"/>"
                           "<yaxe from=\"40\" to=\"200\" step=\"10\"/></variant>"
                           "<variant><yaxe from=\"0\" to=\"100\" step=\"5\"/></variant>"
                           "</granularity>";

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

R_Interval ages(double from, double to) { return R_Interval(R_Number(from), R_Number(to)); }

void loadBytes(R_Reference& reference, const Bytes& bytes, bool* ok) {
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  *ok = true;
  reference.load(stream, ok);
}

}  // namespace

TEST_F(ReferenceTest, LoadReadsEveryPart) {
  R_Reference reference;
  loadGood(reference, kGirls);
  EXPECT_STREQ("Height girls", reference.getName());
  EXPECT_EQ(R_Reference::propFemale | R_Reference::propSD, reference.getProperties());
  EXPECT_TRUE(reference.getXYVar() == kHeightByAge);
  EXPECT_DOUBLE_EQ(2.0, reference.getAge().getMin().getValue());
  EXPECT_DOUBLE_EQ(18.0, reference.getAge().getMax().getValue());
  ASSERT_NE(nullptr, reference.getData());
  EXPECT_EQ(R_RefDataLine::typeSD, reference.getData()->getType());
  EXPECT_TRUE(reference.getData()->isFollowed());
  EXPECT_EQ(3, reference.getGranularityCount());
  EXPECT_TRUE(reference.getGranularity(1).isDefault());
  EXPECT_FALSE(reference.getGranularity(0).isDefault());
}

TEST_F(ReferenceTest, FitsTheSexTheVariablesAndAnAgeInsideItsInterval) {
  R_Reference reference;
  loadGood(reference, kGirls);
  EXPECT_TRUE(reference.fits(1, R_Number(2.0), kHeightByAge));
  EXPECT_TRUE(reference.fits(1, R_Number(18.0), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, R_Number(1.999), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, R_Number(18.001), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, R_Number(), kHeightByAge));
  EXPECT_FALSE(reference.fits(0, R_Number(10.0), kHeightByAge));
  EXPECT_FALSE(reference.fits(2, R_Number(10.0), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, R_Number(10.0), kWeightByAge));
  EXPECT_TRUE(reference.isForSex(1));
  EXPECT_FALSE(reference.isForSex(0));
  EXPECT_FALSE(reference.isForSex(-1));
}

TEST_F(ReferenceTest, FitsAnIntervalOnlyWithBothEndsInside) {
  R_Reference reference;
  loadGood(reference, kGirls);
  EXPECT_TRUE(reference.fits(1, ages(2, 18), kHeightByAge));
  EXPECT_TRUE(reference.fits(1, ages(3, 5), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, ages(1, 5), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, ages(5, 19), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, R_Interval(R_Number(3.0), R_Number()), kHeightByAge));
  EXPECT_FALSE(reference.fits(0, ages(3, 5), kHeightByAge));
  EXPECT_FALSE(reference.fits(1, ages(3, 5), kWeightByAge));
}

TEST_F(ReferenceTest, WithoutAnAgeItFitsEveryAgeAndAnUndefinedOne) {
  R_Reference reference;
  loadGood(reference, std::string("<name>F</name><sex sex=\"male\"/><xyref><avar>FATHER_HT</avar></xyref>") +
                          "<data type=\"sd\"><anamnestic><x>176</x><sd>7</sd></anamnestic></data>");
  EXPECT_FALSE(reference.getAge().isDefined());
  EXPECT_TRUE(reference.fits(0, R_Number(), kFather));
  EXPECT_TRUE(reference.fits(0, R_Number(-40.0), kFather));
  EXPECT_TRUE(reference.fits(0, ages(0, 100), kFather));
  // An undefined end of an asked interval is never inside.
  EXPECT_FALSE(reference.fits(0, R_Interval(R_Number(), R_Number(5.0)), kFather));
  EXPECT_FALSE(reference.fits(1, R_Number(30.0), kFather));
  EXPECT_TRUE(reference.getData()->isAnamnestic());
}

TEST_F(ReferenceTest, WithoutASexItLoadsAndNeverFits) {
  R_Reference reference;
  loadGood(reference, std::string("<name>N</name><xyref><xvar>AGE</xvar><yvar>HEIGHT</yvar></xyref>") + kSDData);
  for (int sex = 0; sex < 3; ++sex) {
    SCOPED_TRACE(sex);
    EXPECT_FALSE(reference.fits(sex, R_Number(5.0), kHeightByAge));
    EXPECT_FALSE(reference.fits(sex, ages(3, 4), kHeightByAge));
  }
}

TEST_F(ReferenceTest, TheSameSexTwicePassesAndTheOtherSexIsRefused) {
  R_Reference twice;
  loadGood(twice, std::string("<name>R</name><sex sex=\"male\"/><sex sex=\"male\"/>") + kSDData);
  EXPECT_EQ(R_Reference::propMale | R_Reference::propSD, twice.getProperties());
  R_Reference both;
  EXPECT_EQ(std::vector<std::string>({"data error processing standalone tag <sex../>: duplicate sex definition",
                                      "Error while processing reference"}),
            load(both, std::string("<name>R</name><sex sex=\"male\"/><sex sex=\"female\"/>") + kSDData, false));
}

TEST_F(ReferenceTest, LoadMessagesNameEachFaultInnermostFirst) {
  struct Row {
    const char* label;
    std::string xml;
    std::vector<std::string> messages;
  };
  const std::string closing = "data error closing block ";
  const std::string end = "Error while processing reference";
  const Row rows[] = {
      {"unknown sex", std::string("<name>R</name><sex sex=\"Male\"/>") + kSDData,
       {"data error processing standalone tag <sex../>: unrecognized sex", end}},
      {"no sex attribute", std::string("<name>R</name><sex/>") + kSDData,
       {"data error processing standalone tag <sex../>: unrecognized sex", end}},
      {"no data", "<name>R</name>", {"No data defined", end}},
      {"no name", kSDData, {"Name not defined", end}},
      {"neither", "<sex sex=\"male\"/>", {"No data defined", "Name not defined", end}},
      {"blank name", std::string("<name> \n </name>") + kSDData,
       {closing + "</name>: reference name not defined", end}},
      {"unknown data type", "<name>R</name><data type=\"SD\"><anamnestic><x>1</x><sd>1</sd></anamnestic></data>",
       {closing + "</data>: unknown reference data type", end}},
      {"no data type", "<name>R</name><data><anamnestic><x>1</x><sd>1</sd></anamnestic></data>",
       {closing + "</data>: unknown reference data type", end}},
      {"second data", std::string("<name>R</name>") + kSDData + kSDData, {closing + "</data>: duplicate data", end}},
      {"broken data", "<name>R</name><data type=\"sd\"> </data>",
       {"No reference values defined", "Error while processing reference data", closing + "</data>: data load error",
        end}},
      {"unknown variable", std::string("<name>R</name><xyref><xvar>AGE</xvar><yvar>NOPE</yvar></xyref>") + kSDData,
       {closing + "</yvar>: wrong y variable", "Error while processing X-Y variable definition.",
        closing + "</xyref>: x-y definition load error", end}},
      {"empty age range", std::string("<name>R</name><age><interval><min>5</min><max>3</max></interval></age>") + kSDData,
       {"Invalid interval definition (min > max).", "Error while processing interval.",
        closing + "</interval>: age load error", end}},
      {"variant without axes", std::string("<name>R</name>") + kSDData + "<granularity><variant> </variant></granularity>",
       {"Missing at least some granularity values.", "Error while processing granularity variant.",
        closing + "</variant>: granularity load error", end}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    R_Reference reference;
    EXPECT_EQ(row.messages, load(reference, row.xml, false));
  }
}

TEST_F(ReferenceTest, AFailedVariantIsKeptAndTheReferenceFails) {
  R_Reference reference;
  load(reference,
       std::string("<name>R</name>") + kSDData +
           "<granularity><variant><xaxe from=\"1\" to=\"1\" step=\"1\"/></variant>"
           "<variant><xaxe from=\"0\" to=\"1\" step=\"1\"/></variant></granularity>",
       false);
  EXPECT_EQ(2, reference.getGranularityCount());
}

TEST_F(ReferenceTest, GranularityIsFoundInOrderOfTheVariants) {
  R_Reference reference;
  loadGood(reference, kGirls);
  EXPECT_EQ(0, reference.findGranularityX(3, 5));
  EXPECT_EQ(1, reference.findGranularityX(1, 5));
  EXPECT_EQ(-1, reference.findGranularityX(-1, 5));
  EXPECT_EQ(1, reference.findGranularityY(50, 60));
  EXPECT_EQ(2, reference.findGranularityY(10, 20));
  EXPECT_EQ(-1, reference.findGranularityY(-10, 20));
  EXPECT_EQ(1, reference.getDefaultGranularity());
}

TEST_F(ReferenceTest, DefaultGranularityIsTheFirstVariantOrNone) {
  R_Reference unflagged;
  loadGood(unflagged, std::string("<name>R</name>") + kSDData +
                          "<granularity><variant><xaxe from=\"0\" to=\"1\" step=\"1\"/></variant>"
                          "<variant><xaxe from=\"0\" to=\"2\" step=\"1\"/></variant></granularity>");
  EXPECT_EQ(0, unflagged.getDefaultGranularity());
  R_Reference none;
  loadGood(none, std::string("<name>R</name>") + kSDData);
  EXPECT_EQ(0, none.getGranularityCount());
  EXPECT_EQ(-1, none.getDefaultGranularity());
  EXPECT_EQ(-1, none.findGranularityX(0, 1));
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

TEST_F(ReferenceTest, XMLFormLoadsBackToTheSameReference) {
  const std::string sources[] = {
      kGirls,
      "<name>P</name><sex sex=\"male\"/><xyref><avar>FATHER_HT</avar></xyref>"
      "<data type=\"percentiles\"><percentiles><list><item value=\"10\">P10</item><item value=\"90\">P90</item>"
      "</list></percentiles><anamnestic><perc>170 182</perc></anamnestic></data>",
  };
  for (const std::string& source : sources) {
    R_Reference first;
    loadGood(first, source);
    std::string written = xmlOf(first);
    R_Reference second;
    loadGood(second, written);
    EXPECT_EQ(written, xmlOf(second));
    EXPECT_EQ(hexOf(savedBytes(first)), hexOf(savedBytes(second)));
  }
}

TEST_F(ReferenceTest, BinaryFormIsPinned) {
  R_Reference reference;
  loadGood(reference,
           "<name>R</name><sex sex=\"male\"/><xyref><avar>FATHER_HT</avar></xyref>"
           "<data type=\"sd\"><anamnestic><x>175</x><sd>7</sd></anamnestic></data>"
           "<granularity><variant type=\"default\"><xaxe from=\"0\" to=\"1\" step=\"1\"/></variant></granularity>");
  const std::string one = storedDouble("00 00 00 00 00 00 F0 3F");
  const std::string expected =
      "15 01 01 00 52 02 09 00 00 00 "                      // tag, name "R", male | SD
      "11 02 00 00 00 00 10 " +                              // data: no lines, the anamnestic line
      storedDouble("00 00 00 00 00 E0 65 40") + " " + storedDouble("00 00 00 00 00 00 1C 40") +
      " 04 03 00 03 00 02 00 00 00 00 "                     // any age
      "12 02 03 00 00 00 02 FF FF FF FF 02 FF FF FF FF "    // avar 3
      "02 01 00 00 00 02 01 00 00 00 "                      // one variant, default
      "14 " + storedDouble("00 00 00 00 00 00 00 00") + " " + one + " 03 00 03 00 " + one +
      " 03 00 03 00 03 00";
  Bytes bytes = savedBytes(reference);
  EXPECT_EQ(expected, hexOf(bytes));
  R_Reference reloaded;
  bool ok = false;
  loadBytes(reloaded, bytes, &ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(expected, hexOf(savedBytes(reloaded)));
  EXPECT_TRUE(reloaded.fits(0, R_Number(), kFather));
  EXPECT_EQ(0, reloaded.getDefaultGranularity());
  R_Number sd;
  reloaded.getData()->getSD(sd, R_Number(182.0));
  EXPECT_DOUBLE_EQ(1.0, sd.getValue());
}

TEST_F(ReferenceTest, TruncatedBinaryFormsFailCleanly) {
  R_Reference reference;
  loadGood(reference, kGirls);
  expectEveryTruncationFails(savedBytes(reference), [](R_InputStream& stream, bool* ok) {
    R_Reference cut;
    cut.load(stream, ok);
  });
}

TEST_F(ReferenceTest, BinaryLoadRefusesDamagedForms) {
  R_Reference reference;
  loadGood(reference, kGirls);
  Bytes good = savedBytes(reference);
  // The low byte of the properties follows the tag, the name and the
  // integer's own type byte; the variant count follows the xyref.
  const size_t properties = 1 + 3 + 12 + 1;
  ASSERT_EQ(0x0A, good[properties]);
  struct Row {
    const char* label;
    size_t at;
    Bytes patch;
  };
  size_t count_at = 0;
  for (size_t i = 0; i + 5 < good.size(); ++i) {
    if (good[i] == 0x12 && good[i + 1] == 0x02) count_at = i + 16 + 1;
  }
  ASSERT_EQ(3, good[count_at]);
  const Row rows[] = {
      {"no data type", properties, {0x02}},
      {"another tag byte", 0, {0x16}},
      {"a negative variant count", count_at, {0xFF, 0xFF, 0xFF, 0xFF}},
      {"a huge variant count", count_at, {0xFF, 0xFF, 0xFF, 0x7F}},
      {"one variant more than stored", count_at, {0x04}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    Bytes damaged = good;
    for (size_t i = 0; i < row.patch.size(); ++i) damaged[row.at + i] = row.patch[i];
    R_Reference loaded;
    bool ok = true;
    loadBytes(loaded, damaged, &ok);
    EXPECT_FALSE(ok);
  }
}

// R_File walks its references in file order and takes the first that fits.
TEST(ReferenceFileTest, TheFirstFittingReferenceInTheFileIsFound) {
  R_File file;
  CollectingReporter reporter;
  ASSERT_TRUE(file.loadXML(testData("refdata/references.xml").c_str(), &reporter));
  EXPECT_EQ(std::vector<std::string>(), reporter.lines());
  ASSERT_EQ(5, file.getRefCount());
  const R_XYVar height(-1, 0, 1);
  const R_XYVar father(2, -1, -1);
  EXPECT_EQ(0, file.findReference(1, R_Number(5.0), height));
  EXPECT_EQ(1, file.findReference(1, R_Number(12.0), height));
  EXPECT_EQ(1, file.findReference(1, R_Number(), height));
  EXPECT_EQ(2, file.findReference(0, R_Number(5.0), height));
  EXPECT_EQ(-1, file.findReference(2, R_Number(5.0), height));
  EXPECT_EQ(4, file.findReference(0, R_Number(), father));
  EXPECT_EQ(-1, file.findReference(1, R_Number(), father));
  EXPECT_EQ(0, file.findReference(1, R_Interval(R_Number(3.0), R_Number(9.0)), height));
  EXPECT_EQ(1, file.findReference(1, R_Interval(R_Number(3.0), R_Number(11.0)), height));
  // x_from 0, x_to 4, times 12, divided by 12: the first line stands at 2.
  const R_RefData& later = *file.getReference(1)->getData();
  EXPECT_DOUBLE_EQ(2.0, later.getX(0).getValue());
}

TEST(ReferenceFileTest, ReferencesSurviveBothStoredFormsOfTheFile) {
  R_File file;
  CollectingReporter reporter;
  ASSERT_TRUE(file.loadXML(testData("refdata/references.xml").c_str(), &reporter));
  TempDir dir;
  ASSERT_TRUE(file.saveBinary(dir.file("refs.bin").c_str()));
  ASSERT_TRUE(file.saveXML(dir.file("refs.xml").c_str()));
  R_File from_binary;
  ASSERT_TRUE(from_binary.loadBinary(dir.file("refs.bin").c_str()));
  R_File from_xml;
  ASSERT_TRUE(from_xml.loadXML(dir.file("refs.xml").c_str(), &reporter));
  EXPECT_EQ(std::vector<std::string>(), reporter.lines());
  for (const R_File* copy : {&from_binary, &from_xml}) {
    ASSERT_EQ(5, copy->getRefCount());
    for (int i = 0; i < 5; ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(hexOf(savedBytes(*file.getReference(i))), hexOf(savedBytes(*copy->getReference(i))));
    }
  }
}
