#include "knowledge/r_granularity.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

// A stored R_Number holding the double whose 8 bytes are `double_hex`.
std::string storedDouble(const char* double_hex) { return std::string("03 01 ") + double_hex; }

struct Loaded {
  bool ok;
  std::vector<std::string> messages;
};

Loaded load(R_Granularity& variant, const char* xml) {
  CollectingReporter reporter;
  bool ok = variant.loadXML(xml, &reporter);
  return Loaded{ok, reporter.lines()};
}

// "from to step small" of one axis, "?" for an undefined number.
std::string axisText(const R_Number& from, const R_Number& to, const R_Number& step, const R_Number& small) {
  std::string text;
  for (const R_Number* n : {&from, &to, &step, &small}) {
    char buffer[64];
    n->toText(buffer);
    if (!text.empty()) text += ' ';
    text += buffer;
  }
  return text;
}

std::string xAxis(const R_Granularity& g) {
  return axisText(g.getXFrom(), g.getXTo(), g.getXStep(), g.getXSmall());
}

std::string yAxis(const R_Granularity& g) {
  return axisText(g.getYFrom(), g.getYTo(), g.getYStep(), g.getYSmall());
}

std::string xmlOf(const R_Granularity& variant) {
  return xmlWrittenBy([&](R_XMLTextOutput& output) { variant.saveXML(output); });
}

const std::string kEnd = "Error while processing granularity variant.";

}  // namespace

TEST(GranularityTest, LoadAcceptsEitherAxisOrBoth) {
  struct Row {
    const char* xml;
    const char* x;
    const char* y;
  };
  const Row rows[] = {
      {"<xaxe from=\"0\" to=\"18\" step=\"1\" small=\"0.25\"/>", "0 18 1 0.25", "? ? ? ?"},
      {"<xaxe from=\"0\" to=\"18\" step=\"1\"/>", "0 18 1 ?", "? ? ? ?"},
      {"<yaxe from=\"40\" to=\"200\" step=\"10\"/>", "? ? ? ?", "40 200 10 ?"},
      {"<xaxe from=\"2\" to=\"4\" step=\"-1\"/><yaxe from=\"-3\" to=\"3\" step=\"0,5\" small=\"0.1\"/>",
       "2 4 -1 ?", "-3 3 0.5 0.1"},
      {"<xaxe from=\"9\" to=\"10\" step=\"1\"/><xaxe from=\"0\" to=\"1\" step=\"1\"/>", "0 1 1 ?", "? ? ? ?"},
      {"<xaxe from=\"0\" to=\"1\" step=\"1\"></xaxe>", "0 1 1 ?", "? ? ? ?"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Granularity variant;
    Loaded loaded = load(variant, row.xml);
    EXPECT_TRUE(loaded.ok);
    EXPECT_EQ(std::vector<std::string>(), loaded.messages);
    EXPECT_EQ(row.x, xAxis(variant));
    EXPECT_EQ(row.y, yAxis(variant));
  }
}

TEST(GranularityTest, LoadRefusesNearMissesWithTheirMessages) {
  struct Row {
    const char* xml;
    std::vector<std::string> messages;
  };
  const std::string x_error = "data error processing standalone tag <xaxe../>: granularity x error";
  const std::string y_error = "data error processing standalone tag <yaxe../>: granularity y error";
  const Row rows[] = {
      {" ", {"Missing at least some granularity values.", kEnd}},
      {"<zaxe from=\"0\" to=\"1\" step=\"1\"/>", {"Missing at least some granularity values.", kEnd}},
      {"<xaxe from=\"1\" to=\"1\" step=\"1\"/>", {"Wrong X granularity values.", kEnd}},
      {"<xaxe from=\"2\" to=\"1\" step=\"1\"/>", {"Wrong X granularity values.", kEnd}},
      {"<xaxe from=\"0\" to=\"1\" step=\"0\"/>", {"Wrong X granularity values.", kEnd}},
      {"<xaxe from=\"0\" to=\"1\" step=\"1\" small=\"0\"/>", {"Wrong X granularity values.", kEnd}},
      {"<yaxe from=\"0\" to=\"1\" step=\"0\"/>", {"Wrong Y granularity values.", kEnd}},
      {"<xaxe from=\"0\" to=\"0\" step=\"1\"/><yaxe from=\"0\" to=\"0\" step=\"1\"/>",
       {"Wrong X granularity values.", "Wrong Y granularity values.", kEnd}},
      {"<xaxe from=\"0\" step=\"1\"/>", {x_error, "Missing some X granularity values.", kEnd}},
      {"<xaxe from=\"0\" to=\"1\" step=\"x\"/>", {x_error, "Missing some X granularity values.", kEnd}},
      {"<yaxe from=\"0\" to=\"?\" step=\"1\"/>", {y_error, "Missing some Y granularity values.", kEnd}},
      {"<xaxe to=\"1\" step=\"1\"/>", {x_error, kEnd}},
      {"<xaxe from=\"\" to=\"1\" step=\"1\"/>", {x_error, kEnd}},
      {"<xaxe from=\"0\" to=\"1\"/><yaxe to=\"1\" step=\"1\"/>",
       {x_error, y_error, "Missing some X granularity values.", kEnd}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Granularity variant;
    Loaded loaded = load(variant, row.xml);
    EXPECT_FALSE(loaded.ok);
    EXPECT_EQ(row.messages, loaded.messages);
  }
}

TEST(GranularityTest, AnAxisIsDefinedByFromToAndStep) {
  R_Granularity x_only;
  ASSERT_TRUE(load(x_only, "<xaxe from=\"0\" to=\"18\" step=\"1\"/>").ok);
  EXPECT_TRUE(x_only.isXDefined());
  EXPECT_FALSE(x_only.isYDefined());
  EXPECT_FALSE(x_only.isDefined());
  R_Granularity both;
  ASSERT_TRUE(load(both, "<xaxe from=\"0\" to=\"18\" step=\"1\"/><yaxe from=\"40\" to=\"200\" step=\"10\"/>").ok);
  EXPECT_TRUE(both.isDefined());
}

TEST(GranularityTest, CoversWhenTheRangeHoldsTheAskedRange) {
  R_Granularity variant;
  ASSERT_TRUE(load(variant, "<xaxe from=\"0\" to=\"18\" step=\"1\"/>").ok);
  EXPECT_TRUE(variant.coversX(0, 18));
  EXPECT_TRUE(variant.coversX(2, 5));
  EXPECT_FALSE(variant.coversX(-0.5, 5));
  EXPECT_FALSE(variant.coversX(2, 18.5));
  // No Y axis: no Y range is covered, however small.
  EXPECT_FALSE(variant.coversY(1, 1));
}

TEST(GranularityTest, TheDefaultFlagComesFromConstruction) {
  R_Granularity plain;
  R_Granularity flagged(true);
  EXPECT_FALSE(plain.isDefault());
  EXPECT_TRUE(flagged.isDefault());
  ASSERT_TRUE(load(flagged, "<xaxe from=\"0\" to=\"1\" step=\"1\"/>").ok);
  EXPECT_TRUE(flagged.isDefault());
}

TEST(GranularityTest, XMLFormWritesEachDefinedAxis) {
  R_Granularity variant;
  ASSERT_TRUE(load(variant, "<yaxe step=\"10\" to=\"200\" from=\"40\"/><xaxe from=\"0\" to=\"18\" step=\"1\" small=\"0.5\"/>").ok);
  std::string written = xmlOf(variant);
  EXPECT_EQ("<xaxe from=\"0\" to=\"18\" step=\"1\" small=\"0.5\" /><yaxe from=\"40\" to=\"200\" step=\"10\" />", written);
  R_Granularity reloaded;
  ASSERT_TRUE(load(reloaded, written.c_str()).ok);
  EXPECT_EQ(written, xmlOf(reloaded));
  R_Granularity y_only;
  ASSERT_TRUE(load(y_only, "<yaxe from=\"1\" to=\"2\" step=\"1\"/>").ok);
  EXPECT_EQ("<yaxe from=\"1\" to=\"2\" step=\"1\" />", xmlOf(y_only));
}

TEST(GranularityTest, BinaryFormIsTheTypeByteAndEightNumbersInFixedOrder) {
  R_Granularity variant;
  ASSERT_TRUE(load(variant, "<xaxe from=\"0\" to=\"18\" step=\"1\" small=\"0.5\"/>").ok);
  // X from, X to, Y from, Y to, X step, X small, Y step, Y small.
  const std::string expected = "14 " + storedDouble("00 00 00 00 00 00 00 00") + " " +
                               storedDouble("00 00 00 00 00 00 32 40") + " 03 00 03 00 " +
                               storedDouble("00 00 00 00 00 00 F0 3F") + " " +
                               storedDouble("00 00 00 00 00 00 E0 3F") + " 03 00 03 00";
  Bytes bytes = savedBytes(variant);
  EXPECT_EQ(expected, hexOf(bytes));
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Granularity reloaded;
  reloaded.load(stream, &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(expected, hexOf(savedBytes(reloaded)));
  EXPECT_EQ("0 18 1 0.5", xAxis(reloaded));
  expectEveryTruncationFails(bytes, [](R_InputStream& in, bool* load_ok) {
    R_Granularity cut;
    cut.load(in, load_ok);
  });
}

TEST(GranularityTest, BinaryLoadRefusesAnotherTypeByte) {
  Bytes bytes = bytesOf("15 03 00 03 00 03 00 03 00 03 00 03 00 03 00 03 00");
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Granularity variant;
  variant.load(stream, &ok);
  EXPECT_FALSE(ok);
}
