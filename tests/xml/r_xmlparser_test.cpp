#include "xml/r_xmlparser.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

using Lines = std::vector<std::string>;

struct ParseRow {
  const char* label;
  std::vector<std::string> tags;
  std::string input;
  bool ok;
  Lines events;
  Lines messages;
};

struct Outcome {
  bool ok;
  Lines events;
  Lines messages;
};

Outcome parseText(RecordingRecipient& recipient, const std::string& input) {
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  bool ok = recipient.parseString(parser, input.c_str());
  return {ok, recipient.events(), reporter.lines()};
}

Outcome parseText(const std::vector<std::string>& tags, const std::string& input) {
  RecordingRecipient recipient(tags);
  return parseText(recipient, input);
}

Outcome parseFileWith(RecordingRecipient& recipient, const std::string& path) {
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  bool ok = recipient.parseFile(parser, path);
  return {ok, recipient.events(), reporter.lines()};
}

Outcome parseFileBytes(const std::vector<std::string>& tags, const std::string& bytes) {
  TempDir dir;
  writeFile(dir.file("in.xml"), bytes);
  RecordingRecipient recipient(tags);
  return parseFileWith(recipient, dir.file("in.xml"));
}

void expectOutcome(const Outcome& outcome, bool ok, const Lines& events, const Lines& messages) {
  EXPECT_EQ(ok, outcome.ok);
  EXPECT_EQ(events, outcome.events);
  EXPECT_EQ(messages, outcome.messages);
}

void runRows(const std::vector<ParseRow>& rows) {
  for (const ParseRow& row : rows) {
    SCOPED_TRACE(row.label);
    expectOutcome(parseText(row.tags, row.input), row.ok, row.events, row.messages);
  }
}

}  // namespace

TEST(XMLParserTest, WellFormedTextsDeliverTheirEvents) {
  runRows({
      {"capture of a nested element", {"r:a"}, "<r><a>1</a></r>", true, {"0:1"}, {}},
      {"inner text is raw, nested tags and comments kept",
       {"a"}, "<a> x <b y=\"1\">z</b><!-- c --> </a>", true,
       {"0: x <b y=\"1\">z</b><!-- c --> "}, {}},
      {"text outside a capture is dropped", {"r:a"}, "<r>t<a>1</a>u</r>v", true, {"0:1"}, {}},
      {"start, capture and end events in that order",
       {"<a", "a", ">a"}, "<a>t</a>", true, {"0:", "1:t", "2:"}, {}},
      {"inside a capture, end and standalone tags fire but start tags do not",
       {"a", "<a:b", ">a:b", "a:c"}, "<a><b>1</b><c/></a>", true,
       {"2:", "3:", "0:<b>1</b><c/>"}, {}},
      {"an end tag event alone", {">r:a"}, "<r><a>1</a></r>", true, {"0:"}, {}},
      {"a standalone element arrives with empty text", {"a"}, "<a x=\"1\"/>", true, {"0:"}, {}},
      {"a path entry does not match a longer path", {"a:b"}, "<a><b><c>1</c></b></a>", true,
       {"0:<c>1</c>"}, {}},
      {"the first equal entry wins", {"a", "a"}, "<a>1</a>", true, {"0:1"}, {}},
      {"names are case-sensitive", {"a"}, "<A>1</A>", true, {}, {}},
      {"skipped tags are not interpreted", {"a"},
       "<?xml version='1.0' encoding=\"Windows-1250\"?><!DOCTYPE a><a>1</a>", true, {"0:1"}, {}},
      {"entities stay as they are", {"a"}, "<a>&lt;b&amp;&gt;</a>", true, {"0:&lt;b&amp;&gt;"}, {}},
      {"bytes above 127 pass unchanged", {"a"}, "<a>\xC8\xFF</a>", true, {"0:\xC8\xFF"}, {}},
      {"names may hold digits, '_', '-' and '.'", {"a1_b-c.d"}, "<a1_b-c.d>1</a1_b-c.d>", true,
       {"0:1"}, {}},
      {"a tag ends at its first '>', also inside quotes", {"a"}, "<a x=\"1>2\"</a>", true,
       {"0:2\""}, {}},
      {"text without any tag", {"a"}, "just text", true, {}, {}},
      {"several roots", {"a"}, "<a>1</a><a>2</a>", true, {"0:1", "0:2"}, {}},
  });
}

TEST(XMLParserTest, EachStructureFaultStopsWithItsMessage) {
  runRows({
      {"empty text", {"a"}, "", false, {}, {"no input data"}},
      {"end of input with open elements", {"a"}, "<a>", false, {},
       {"unfinished structure (missing end tags)"}},
      {"end of input inside a tag", {"a"}, "<a", false, {}, {"unfinished tag"}},
      {"'>' outside a tag", {"a"}, "a > b", false, {}, {"unexpected closing char"}},
      {"'>' after a tag that ended in quotes", {"a"}, "<a x=\"1>2\"></a>", false, {},
       {"unexpected closing char"}},
      {"'<' inside a comment", {"a"}, "<!-- one < two -->", false, {},
       {"unexpected opening char"}},
      {"end tag of another element", {"a", "c"}, "<a></b><c/>", false, {}, {"wrong structure: b"}},
      {"end tag with nothing open", {"a"}, "</a>", false, {}, {"wrong structure: a"}},
      {"end tag after the root closed", {"a"}, "<a>1</a></a>", false, {"0:1"},
       {"wrong structure: a"}},
      {"name starting with a digit", {"a"}, "<1a>", false, {}, {"wrong tag type [<1a>]"}},
      {"empty tag", {"a"}, "<>", false, {}, {"wrong tag type [<>]"}},
      {"end tag without name", {"a"}, "<a></></a>", false, {}, {"wrong tag type [</>]"}},
      {"blank before the name", {"a"}, "< a>", false, {}, {"wrong tag type [< a>]"}},
      {"blank before an end tag's name", {"a"}, "<a></ a>", false, {}, {"wrong tag type [</ a>]"}},
  });
}

TEST(XMLParserTest, RefusalsAreReportedAndTheParseRunsOn) {
  RecordingRecipient recipient({"r:a"});
  recipient.refuse(0, "bad value", "2");
  Outcome outcome = parseText(recipient, "<r><a>1</a><a>2</a><a>3</a><a>2</a></r>");
  expectOutcome(outcome, false, {"0:1", "0:2", "0:3", "0:2"},
                {"data error closing block </a>: bad value", "data error closing block </a>: bad value"});
}

TEST(XMLParserTest, EachEventKindHasItsOwnRefusalMessage) {
  RecordingRecipient recipient({"<a", ">a", "a:s", "a:b"});
  recipient.refuse(-1, "no");
  Outcome outcome = parseText(recipient, "<a><s/><b>x</b></a>");
  expectOutcome(outcome, false, {"0:", "2:", "3:x", "1:"},
                {"data error opening block <a...>: no", "data error processing standalone tag <s../>: no",
                 "data error closing block </b>: no", "data error processing block <a>: no"});
}

TEST(XMLParserTest, AttributesOfOpenElementsCanBeAskedDuringAnEvent) {
  struct Row {
    const char* label;
    std::string input;
    std::vector<std::string> questions;  // "x" or "elem/x"
    Lines events;
  };
  const std::vector<Row> rows = {
      {"quoted value", "<a x=\"1\"/>", {"x"}, {"0: x=1"}},
      {"bare values, '/' skipped", "<a x=1 y=2/>", {"x", "y"}, {"0: x=1 y=2"}},
      {"a single quote is no quote", "<a x='1' y=\"2\"/>", {"x", "y"}, {"0: x=NULL y=NULL"}},
      {"the last written wins", "<a x=\"1\" x=\"2\"/>", {"x"}, {"0: x=2"}},
      {"empty quoted value", "<a x=\"\"/>", {"x"}, {"0: x="}},
      {"blanks around '='", "<a x = \"1\"/>", {"x"}, {"0: x=1"}},
      {"a name without value ends the list", "<a x y=\"2\"/>", {"x", "y"}, {"0: x=NULL y=NULL"}},
      {"a value cut by the tag's end keeps the '>'", "<a x=\"1></a>", {"x"}, {"0: x=1>"}},
      {"names are case-sensitive", "<a X=\"1\"/>", {"x"}, {"0: x=NULL"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    RecordingRecipient recipient({"a"});
    for (const std::string& question : row.questions) recipient.askFor(question);
    expectOutcome(parseText(recipient, row.input), true, row.events, {});
  }
}

TEST(XMLParserTest, InnerAttributesWinAndElementLookupsTakeTheNamedLevel) {
  RecordingRecipient recipient({"o:i", "o:i:o"});
  recipient.askFor("x");
  recipient.askFor("x", "o");
  recipient.askFor("x", "i");
  recipient.askFor("x", "z");
  Outcome outcome =
      parseText(recipient, "<o x=\"1\"><i x=\"2\"></i><i><o x=\"3\"/></i></o>");
  // The second <i> has no x of its own; the nested <o> is named like the
  // root, and the lookup by element takes the root's level.
  expectOutcome(outcome, true,
                {"0: x=2 o/x=1 i/x=2 z/x=NULL", "1: x=3 o/x=1 i/x=NULL z/x=NULL",
                 "0:<o x=\"3\"/> x=1 o/x=1 i/x=NULL z/x=NULL"},
                {});
}

TEST(XMLParserTest, AttributesLeaveWithTheirElement) {
  RecordingRecipient recipient({"r:a", "r:b"});
  recipient.askFor("x");
  expectOutcome(parseText(recipient, "<r><a x=\"1\"/><b/></r>"), true, {"0: x=1", "1: x=NULL"}, {});
}

TEST(XMLParserTest, ANestedElementOfTheCapturedNameEndsTheCapture) {
  // Kept on purpose: the capture ends at the inner end tag, and the outer
  // one delivers the code again with empty text.
  expectOutcome(parseText({"a"}, "<a><a>x</a>y</a>"), true, {"0:<a>x", "0:"}, {});
}

TEST(XMLParserTest, ALaterEndTagOfTheCapturedNameDeliversTheCodeAgain) {
  expectOutcome(parseText({"r:a"}, "<r><a>1</a><x><a>2</a></x></r>"), true, {"0:1", "0:"}, {});
}

TEST(XMLParserTest, ATagOfExactlyTheLongestLengthPasses) {
  std::string longest = "<a" + std::string(R_XMLParser::longestTag - 3, ' ') + ">";
  ASSERT_EQ(8192u, longest.size());
  expectOutcome(parseText({"a"}, longest + "1</a>"), true, {"0:1"}, {});
  std::string too_long = "<a" + std::string(R_XMLParser::longestTag - 2, ' ') + ">";
  expectOutcome(parseText({"a"}, too_long + "1</a>"), false, {}, {"too long tag"});
}

TEST(XMLParserTest, AnInnerTextThatOverflowsTogetherWithItsEndTagArrivesEmpty) {
  std::string fits(R_XMLParser::captureSize - 4, 'x');
  expectOutcome(parseText({"a"}, "<a>" + fits + "</a>"), true, {"0:" + fits}, {});
  expectOutcome(parseText({"a"}, "<a>" + fits + "y</a>"), true, {"0:"}, {});
  std::string longer_end = "<ab>" + fits + "</ab>";
  expectOutcome(parseText({"ab"}, longer_end), true, {"0:"}, {});
  // The next capture starts afresh.
  expectOutcome(parseText({"r:a"}, "<r><a>" + fits + "y</a><a>z</a></r>"), true, {"0:", "0:z"}, {});
}

TEST(XMLParserTest, MessagesAreCutAt255Characters) {
  std::string name(300, 'b');
  Outcome outcome = parseText({"a"}, "<a></" + name + ">");
  ASSERT_EQ(1u, outcome.messages.size());
  EXPECT_EQ(("wrong structure: " + name).substr(0, 255), outcome.messages[0]);

  std::string tag = "<1" + std::string(400, 'c') + ">";
  outcome = parseFileBytes({"a"}, "\n\n\n" + tag);
  ASSERT_EQ(1u, outcome.messages.size());
  EXPECT_EQ(("(4) wrong tag type [" + tag + "]").substr(0, 255), outcome.messages[0]);
}

TEST(XMLParserTest, AParseOverAStringNeverShowsALineNumber) {
  expectOutcome(parseText({"a"}, "<a>\n\n\n</b>"), false, {}, {"wrong structure: b"});
}

TEST(XMLParserTest, FileMessagesNameTheLineFromLineTwoOn) {
  struct Row {
    const char* label;
    std::string bytes;
    const char* message;
  };
  const std::vector<Row> rows = {
      {"fault on line 1", "<a></b>", "wrong structure: b"},
      {"fault on line 3", "<a>\n<b>\n</c>\n</a>\n", "(3) wrong structure: c"},
      {"end of input after a line feed counts the new line", "<a>\n",
       "(2) unfinished structure (missing end tags)"},
      {"end of input on line 1", "<a>", "unfinished structure (missing end tags)"},
      {"unfinished tag", "<r>\n<a\n", "(3) unfinished tag"},
      {"closing char", "\n\n>", "(3) unexpected closing char"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    expectOutcome(parseFileBytes({"a"}, row.bytes), false, {}, {row.message});
  }
}

TEST(XMLParserTest, ARefusalInAFileNamesTheLineOfItsEndTag) {
  TempDir dir;
  writeFile(dir.file("in.xml"), "<r>\n<a>\n1\n</a>\n</r>\n");
  RecordingRecipient recipient({"r:a"});
  recipient.refuse(0, "bad");
  expectOutcome(parseFileWith(recipient, dir.file("in.xml")), false, {"0:\n1\n"},
                {"(4) data error closing block </a>: bad"});
}

TEST(XMLParserTest, AMissingFileHasNoInputDataButAnEmptyFileParses) {
  TempDir dir;
  RecordingRecipient missing({"a"});
  expectOutcome(parseFileWith(missing, dir.file("missing.xml")), false, {}, {"no input data"});
  RecordingRecipient no_name({"a"});
  expectOutcome(parseFileWith(no_name, ""), false, {}, {"no input data"});
  expectOutcome(parseFileBytes({"a"}, ""), true, {}, {});
}

TEST(XMLParserTest, TheFileReadsOneByte255PastItsEnd) {
  // The same unterminated tag of 8192 bytes is unfinished in a text but too
  // long in a file, where the byte 255 read at the end is one byte more.
  std::string tag = "<" + std::string(R_XMLParser::longestTag - 1, 'a');
  expectOutcome(parseText({"a"}, tag), false, {}, {"unfinished tag"});
  expectOutcome(parseFileBytes({"a"}, tag), false, {}, {"too long tag"});
}

TEST(XMLParserTest, ASummaryReportedAfterAParseCarriesTheLastLine) {
  TempDir dir;
  writeFile(dir.file("in.xml"), "<a>\n<b>\n");
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  parser.report("before any parse");
  RecordingRecipient recipient({"a"});
  EXPECT_FALSE(recipient.parseFile(parser, dir.file("in.xml")));
  parser.report("Error while loading.");
  EXPECT_EQ(Lines({"before any parse", "(3) unfinished structure (missing end tags)",
                   "(3) Error while loading."}),
            reporter.lines());
}

TEST(XMLParserTest, ANulByteInAFileIsNeitherTagNorText) {
  using namespace std::string_literals;
  expectOutcome(parseFileBytes({"a"}, "<a\0>"s), false, {}, {"wrong tag type [<a]"});
  // In a capture it overflows the capture, which then arrives empty.
  expectOutcome(parseFileBytes({"a"}, "<a>x\0y</a>"s), true, {"0:"}, {});
}

TEST(XMLParserTest, WithoutAReporterOnlyTheResultTellsOfTheFailure) {
  R_XMLParser parser(R_XMLParser::captureSize, nullptr);
  RecordingRecipient recipient({"a"});
  EXPECT_FALSE(recipient.parseString(parser, "<a></b>"));
  parser.report("nobody hears this");
  EXPECT_TRUE(recipient.parseString(parser, "<a>1</a>"));
}

TEST(XMLParserTest, AParserCanBeUsedAgainAfterAFailure) {
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  RecordingRecipient recipient({"a"});
  EXPECT_FALSE(recipient.parseString(parser, "<a><a>"));
  EXPECT_TRUE(recipient.parseString(parser, "<a>1</a>"));
  EXPECT_EQ(Lines({"0:1"}), recipient.events());
}

TEST(XMLParserTest, HugeAndDeepInputsFailOrPassWithoutTrouble) {
  expectOutcome(parseText({"a"}, "<" + std::string(1 << 20, 'a')), false, {}, {"too long tag"});
  expectOutcome(parseText({"a"}, std::string(1 << 20, 'a')), true, {}, {});
  const int depth = 200000;
  std::string open;
  std::string close;
  for (int i = 0; i < depth; ++i) open += "<b x=\"1\">";
  for (int i = 0; i < depth; ++i) close += "</b>";
  expectOutcome(parseText({"a"}, open), false, {}, {"unfinished structure (missing end tags)"});
  expectOutcome(parseText({"r:c"}, "<r><c>" + open + close + "</c></r>"), true, {"0:"}, {});
}

TEST(XMLParserTest, AHugeFileWithoutClosingCharIsNotReadWhole) {
  TempDir dir;
  std::string path = dir.file("huge.xml");
  writeFile(path, "<a");
  // A sparse file of 4 GB: its bytes are NUL, so the tag never ends.
  ASSERT_EQ(0, truncate(path.c_str(), 4LL << 30));
  RecordingRecipient recipient({"a"});
  expectOutcome(parseFileWith(recipient, path), false, {}, {"too long tag"});
}

TEST(XMLParserTest, ArbitraryBytesNeverBreakTheParser) {
  const char alphabet[] = "<>/!?=\"' ab\n\x01\xFF-";
  unsigned state = 12345;
  TempDir dir;
  for (int round = 0; round < 3000; ++round) {
    std::string bytes;
    int length = static_cast<int>(state % 60);
    for (int i = 0; i < length; ++i) {
      state = state * 1103515245u + 12345u;
      bytes += alphabet[(state >> 16) % (sizeof alphabet)];  // includes the NUL
    }
    RecordingRecipient in_text({"a", "<a", ">a", "a:b", "b"});
    in_text.askFor("a");
    parseText(in_text, bytes);
    if (round % 10 == 0) {
      writeFile(dir.file("in.xml"), bytes);
      RecordingRecipient in_file({"a", "a:b"});
      parseFileWith(in_file, dir.file("in.xml"));
    }
  }
}
