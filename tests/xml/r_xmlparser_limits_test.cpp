// The XML reader on hostile input: a tag that never ends, nesting a million
// deep, a million repeated elements. Each passes or fails in time and memory
// bounded by what the reader has to keep, not by the size of the input.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/resource_meter.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmlparser.h"

namespace {

using Lines = std::vector<std::string>;

const int kMillion = 1000000;
// Generous: each parse here takes about a second under the sanitizers. Only
// work or copies that grow with the depth per element would pass them.
const double kSecondsBound = 30;
const long kMegabytesBound = 256;

std::string repeated(const std::string& piece, int count) {
  std::string text;
  text.reserve(piece.size() * static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

struct Parse {
  bool ok;
  Lines messages;
};

Parse parseText(RecordingRecipient& recipient, const std::string& text) {
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  bool ok = recipient.parseString(parser, text.c_str());
  return {ok, reporter.lines()};
}

void expectBounded(const ResourceMeter& meter) {
  EXPECT_LT(meter.seconds(), kSecondsBound);
  EXPECT_LT(meter.peakGrowthMB(), kMegabytesBound);
}

}  // namespace

TEST(XMLParserLimitsTest, ATagWithoutEndStopsAtTheLongestTagAndReadsNoFurther) {
  // A '<' and then 4 MB of line feeds: the message names the line of the
  // byte that broke the limit, which shows where reading stopped.
  TempDir dir;
  std::string path = dir.file("no-end.xml");
  writeFile(path, "<" + std::string(4 << 20, '\n'));
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  RecordingRecipient recipient({"a"});
  ResourceMeter meter;
  EXPECT_FALSE(recipient.parseFile(parser, path));
  // '<' and 8191 line feeds fill the tag; the next line feed, read at line
  // 8192, is one byte too many.
  EXPECT_EQ(Lines{"(8192) too long tag"}, reporter.lines());
  expectBounded(meter);
}

TEST(XMLParserLimitsTest, AMillionNestedElementsPassInBoundedTimeAndMemory) {
  std::string open = repeated("<a x=\"1\">", kMillion);
  std::string close = repeated("</a>", kMillion);
  RecordingRecipient recipient({"r", ">r"});
  ResourceMeter meter;
  Parse parse = parseText(recipient, "<r>" + open + close + "</r>");
  EXPECT_TRUE(parse.ok);
  // The capture of r overflows and arrives empty.
  EXPECT_EQ(Lines({"0:", "1:"}), recipient.events());
  expectBounded(meter);
}

TEST(XMLParserLimitsTest, AMillionOpenElementsFailAtTheEndOrAtAWrongEndTag) {
  std::string open = repeated("<a>", kMillion);
  ResourceMeter meter;
  RecordingRecipient unfinished({"a"});
  Parse parse = parseText(unfinished, open);
  EXPECT_FALSE(parse.ok);
  EXPECT_EQ(Lines{"unfinished structure (missing end tags)"}, parse.messages);
  RecordingRecipient wrong({"a"});
  parse = parseText(wrong, open + "</b>");
  EXPECT_FALSE(parse.ok);
  EXPECT_EQ(Lines{"wrong structure: b"}, parse.messages);
  expectBounded(meter);
}

TEST(XMLParserLimitsTest, AMillionRepeatedElementsAreEachDeliveredWithTheirAttributes) {
  RecordingRecipient recipient({"r:b"});
  recipient.askFor("x");
  ResourceMeter meter;
  Parse parse = parseText(recipient, "<r>" + repeated("<b x=\"1\">t</b>", kMillion) + "</r>");
  EXPECT_TRUE(parse.ok);
  ASSERT_EQ(static_cast<size_t>(kMillion), recipient.events().size());
  EXPECT_EQ("0:t x=1", recipient.events().front());
  EXPECT_EQ("0:t x=1", recipient.events().back());
  expectBounded(meter);
}
