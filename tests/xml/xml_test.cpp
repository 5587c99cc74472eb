// The XML layer: the parser with its input, and the text output.
#include "xml/r_xmlparser.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <regex>
#include <string>
#include <vector>

#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmlinputfile.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutputbuffer.h"
#include "xml/r_xmltextoutputfile.h"

namespace {

using namespace std::string_literals;

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "|") + line;
  return text;
}

// A parse as one text: the events joined by '|', then after a failure "! " and the messages joined by '|'. Parses
// `input` as a text, or as the bytes of a file when `as_file`.
std::string parse(RecordingRecipient& recipient, const std::string& input, bool as_file = false) {
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  TempDir dir;
  if (as_file) writeFile(dir.file("in.xml"), input);
  bool ok = as_file ? recipient.parseFile(parser, dir.file("in.xml")) : recipient.parseString(parser, input.c_str());
  std::string events = joined(recipient.events());
  if (ok && reporter.lines().empty()) return events;
  return events + (events.empty() ? "" : " ") + (ok ? "? " : "! ") + joined(reporter.lines());
}

struct Row { const char* label; std::vector<std::string> tags; std::string input, outcome; };

void runRows(const std::vector<Row>& rows, bool as_file) {
  for (const Row& row : rows) {
    RecordingRecipient recipient(row.tags);
    EXPECT_EQ(row.outcome, parse(recipient, row.input, as_file)) << row.label;
  }
}

const std::string kFits(R_XMLParser::captureSize - 4, 'x');  // "<a>" + kFits + "</a>" just fits
const std::string kLongest = "<a" + std::string(R_XMLParser::longestTag - 3, ' ') + ">";
const std::string kUnterminated = "<" + std::string(R_XMLParser::longestTag - 1, 'a');

std::string nested(int depth, const std::string& tag) {
  std::string text;
  while (depth-- > 0) text += tag;
  return text;
}

const std::string kDeep = nested(200000, "<b x=\"1\">");

using Writing = std::function<void(R_XMLTextOutput&)>;

std::string writtenToFile(const Writing& write) {
  TempDir dir;
  {
    R_XMLTextOutputFile output(dir.file("out.xml").c_str());
    write(output);
    EXPECT_TRUE(output.isOK());
  }
  return readFile(dir.file("out.xml"));
}

std::string writtenToBuffer(const Writing& write) {
  char buffer[1024];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  write(output);
  EXPECT_TRUE(output.isOK() && strlen(buffer) == static_cast<size_t>(output.getCount()));
  return buffer;
}

// <name>text</name>
Writing element(const char* name, const std::string& text) {
  return [=](R_XMLTextOutput& output) {
    output.openTag(name);
    output.endOpenTag();
    output.writeText(text.c_str());
    output.closeTag(name);
  };
}

// A small document with header, nesting, attributes, an empty element, values and text and names that need escaping.
void document(R_XMLTextOutput& output) {
  output.writeDirective('?', "xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"");
  output.writeDirective('!', "DOCTYPE quorl");
  output.openTag("quorl");
  output.endOpenTag();
  output.openTag("var");
  output.writeAttribute("name", "A&B");
  output.writeAttribute("n", R_Integer(7));
  output.endOpenTag();
  output.openTag("min");
  output.writeAttribute("closed", R_Number(1.5));
  output.writeAttribute("open", R_Number());
  output.endOpenTag();
  output.writeNumber(R_Number(-2.25));
  output.writeNumber(R_Number());
  output.writeNumber(R_Number(1e20));
  output.closeTag("min");
  output.openTag("empty");
  output.writeAttribute("q", "\"1&2\"");
  output.endEmptyTag();
  output.openTag("n<te");
  output.endOpenTag();
  output.writeText("x < y & z > w");
  output.writeInteger(R_Integer(-3));
  output.writeString(R_String("x&y"));
  output.closeTag("n<te");
  output.closeTag("var");
  output.closeTag("quorl");
}

}  // namespace

TEST(XMLParserTest, WellFormedTextsDeliverTheirEvents) {
  runRows({
      {"capture of a nested element", {"r:a"}, "<r><a>1</a></r>", "0:1"},
      {"inner text is raw, nested tags and comments kept", {"a"}, "<a> x <b y=\"1\">z</b><!-- c --> </a>",
       "0: x <b y=\"1\">z</b><!-- c --> "},
      {"text outside a capture is dropped", {"r:a"}, "<r>t<a>1</a>u</r>v", "0:1"},
      {"start, capture and end events in that order", {"<a", "a", ">a"}, "<a>t</a>", "0:|1:t|2:"},
      {"inside a capture, end and standalone tags fire but start tags do not", {"a", "<a:b", ">a:b", "a:c"},
       "<a><b>1</b><c/></a>", "2:|3:|0:<b>1</b><c/>"},
      {"a standalone element arrives with empty text", {"a"}, "<a x=\"1\"/>", "0:"},
      {"a path entry does not match a longer path", {"a:b"}, "<a><b><c>1</c></b></a>", "0:<c>1</c>"},
      {"skipped tags are not interpreted", {"a"}, "<?xml version='1.0' encoding=\"W\"?><!DOCTYPE a><a>1</a>", "0:1"},
      {"entities stay as they are", {"a"}, "<a>&lt;b&amp;&gt;</a>", "0:&lt;b&amp;&gt;"},
      {"bytes above 127 pass unchanged", {"a"}, "<a>\xC8\xFF</a>", "0:\xC8\xFF"},
      {"names may hold digits, '_', '-' and '.'", {"a1_b-c.d"}, "<a1_b-c.d>1</a1_b-c.d>", "0:1"},
      {"a tag ends at its first '>', also inside quotes", {"a"}, "<a x=\"1>2\"</a>", "0:2\""},
      // Kept on purpose: the capture ends at the inner end tag, and the outer one delivers the code again with empty
      // text; so does a later end tag of the captured name.
      {"a nested element of the captured name ends the capture", {"a"}, "<a><a>x</a>y</a>", "0:<a>x|0:"},
      {"a later end tag of the captured name", {"r:a"}, "<r><a>1</a><x><a>2</a></x></r>", "0:1|0:"},
      {"a tag of exactly the longest length", {"a"}, kLongest + "1</a>", "0:1"},
      {"an inner text that fits with its end tag", {"a"}, "<a>" + kFits + "</a>", "0:" + kFits},
      {"one byte more arrives empty", {"a"}, "<a>" + kFits + "y</a>", "0:"},
      {"the next capture starts afresh", {"r:a"}, "<r><a>" + kFits + "y</a><a>z</a></r>", "0:|0:z"},
      {"200000 levels in a capture", {"r:c"}, "<r><c>" + kDeep + nested(200000, "</b>") + "</c></r>", "0:"},
  }, false);
}

TEST(XMLParserTest, EachStructureFaultStopsWithItsMessageAndAStringShowsNoLineNumber) {
  runRows({
      {"empty text", {"a"}, "", "! no input data"},
      {"end of input with open elements", {"a"}, "<a>", "! unfinished structure (missing end tags)"},
      {"end of input inside a tag", {"a"}, "<a", "! unfinished tag"},
      {"'>' outside a tag", {"a"}, "a > b", "! unexpected closing char"},
      {"'>' after a tag that ended in quotes", {"a"}, "<a x=\"1>2\"></a>", "! unexpected closing char"},
      {"'<' inside a comment", {"a"}, "<!-- one < two -->", "! unexpected opening char"},
      {"end tag of another element", {"a", "c"}, "<a></b><c/>", "! wrong structure: b"},
      {"end tag with nothing open", {"a"}, "</a>", "! wrong structure: a"},
      {"end tag after the root closed", {"a"}, "<a>1</a></a>", "0:1 ! wrong structure: a"},
      {"name starting with a digit", {"a"}, "<1a>", "! wrong tag type [<1a>]"},
      {"blank before the name", {"a"}, "< a>", "! wrong tag type [< a>]"},
      {"a name starts with a letter", {"a"}, "<_a></_a>", "! wrong tag type [<_a>]"},
      {"an ASCII letter", {"a"}, "<\xC8>", "! wrong tag type [<\xC8>]"},
      {"a tag one byte too long", {"a"}, "<a " + kLongest.substr(2) + "1</a>", "! too long tag"},
      {"a megabyte of tag", {"a"}, "<" + std::string(1 << 20, 'a'), "! too long tag"},
      {"an unterminated tag of the longest length", {"a"}, kUnterminated, "! unfinished tag"},
      {"200000 open levels", {"a"}, kDeep, "! unfinished structure (missing end tags)"},
      {"no line number in a string", {"a"}, "<a>\n\n\n</b>", "! wrong structure: b"},
      {"messages are cut at 255 bytes", {"a"}, "<a></" + std::string(300, 'b') + ">",
       "! " + ("wrong structure: " + std::string(300, 'b')).substr(0, 255)},
  }, false);
}

TEST(XMLParserTest, FileMessagesNameTheLineFromLineTwoOn) {
  const std::string cut_tag = "<1" + std::string(400, 'c') + ">";
  runRows({
      {"fault on line 1", {"a"}, "<a></b>", "! wrong structure: b"},
      {"fault on line 3", {"a"}, "<a>\n<b>\n</c>\n</a>\n", "! (3) wrong structure: c"},
      {"end of input after a line feed counts the new line", {"a"}, "<a>\n",
       "! (2) unfinished structure (missing end tags)"},
      {"unfinished tag", {"a"}, "<r>\n<a\n", "! (3) unfinished tag"},
      {"closing char", {"a"}, "\n\n>", "! (3) unexpected closing char"},
      {"the cut counts the line number", {"a"}, "\n\n\n" + cut_tag,
       "! " + ("(4) wrong tag type [" + cut_tag + "]").substr(0, 255)},
      // The byte 255 that a file reads past its end makes this tag one byte longer than in a text.
      {"the end of a file is one byte more", {"a"}, kUnterminated, "! too long tag"},
      {"a NUL byte is no tag character", {"a"}, "<a\0>"s, "! wrong tag type [<a]"},
      {"a NUL byte overflows a capture", {"a"}, "<a>x\0y</a>"s, "0:"},
  }, true);
}

TEST(XMLParserTest, RefusalsAreReportedByEventKindAndTheParseRunsOn) {
  const struct { std::vector<std::string> tags; const char* text; bool file; std::string input, outcome; } rows[] = {
      {{"r:a"}, "2", false, "<r><a>1</a><a>2</a><a>3</a><a>2</a></r>",
       "0:1|0:2|0:3|0:2 ! data error closing block </a>: no|data error closing block </a>: no"},
      {{"<a", ">a", "a:s", "a:b"}, nullptr, false, "<a><s/><b>x</b></a>",
       "0:|2:|3:x|1: ! data error opening block <a...>: no|data error processing standalone tag <s../>: no|"
       "data error closing block </b>: no|data error processing block <a>: no"},
      // In a file the message names the line of the end tag.
      {{"r:a"}, nullptr, true, "<r>\n<a>\n1\n</a>\n</r>\n", "0:\n1\n ! (4) data error closing block </a>: no"},
  };
  for (const auto& row : rows) {
    RecordingRecipient recipient(row.tags);
    recipient.refuse(-1, "no", row.text);
    EXPECT_EQ(row.outcome, parse(recipient, row.input, row.file)) << row.input;
  }
}

TEST(XMLParserTest, AttributesOfOpenElementsCanBeAskedDuringAnEvent) {
  const struct { const char* label; const char* input; const char* events; } rows[] = {
      {"quoted value", "<a x=\"1\"/>", "0: x=1 y=NULL"}, {"bare values, '/' skipped", "<a x=1 y=2/>", "0: x=1 y=2"},
      {"a single quote is no quote", "<a x='1' y=\"2\"/>", "0: x=NULL y=NULL"},
      {"the last written wins", "<a x=\"1\" x=\"2\"/>", "0: x=2 y=NULL"},
      {"a name without value ends the list", "<a x y=\"2\"/>", "0: x=NULL y=NULL"},
      {"a value cut by the tag's end keeps the '>'", "<a x=\"1></a>", "0: x=1> y=NULL"},
      {"names are case-sensitive", "<a X=\"1\"/>", "0: x=NULL y=NULL"},
      {"attributes leave with their element", "<a x=\"1\"/><b/>", "0: x=1 y=NULL|1: x=NULL y=NULL"},
  };
  for (const auto& row : rows) {
    RecordingRecipient recipient({"a", "b"});
    recipient.askFor("x");
    recipient.askFor("y");
    EXPECT_EQ(row.events, parse(recipient, row.input)) << row.label;
  }
}

TEST(XMLParserTest, InnerAttributesWinAndElementLookupsTakeTheNamedLevel) {
  RecordingRecipient recipient({"o:i", "o:i:o"});
  recipient.askFor("x");
  recipient.askFor("x", "o");
  recipient.askFor("x", "i");
  recipient.askFor("x", "z");
  // The second <i> has no x of its own; the nested <o> is named like the root, and the lookup by element takes the
  // root's level.
  EXPECT_EQ("0: x=2 o/x=1 i/x=2 z/x=NULL|1: x=3 o/x=1 i/x=NULL z/x=NULL|0:<o x=\"3\"/> x=1 o/x=1 i/x=NULL z/x=NULL",
            parse(recipient, "<o x=\"1\"><i x=\"2\"></i><i><o x=\"3\"/></i></o>"));
}

TEST(XMLParametersTest, ValueLookupsByElementTakeTheNamedLevelFromTheRootOn) {
  R_XMLParameters parameters;
  char element[64];
  parameters.beginElement("<o x=\"1\" y=\"a\">", element);
  parameters.beginElement("<i x=\"2\">", element);
  EXPECT_TRUE(parameters.isParameterValueInElement("y", "o", "a") && parameters.isParameterValue("x", "1"));
  EXPECT_FALSE(parameters.isParameterValueInElement("x", "i", "1") ||
               parameters.isParameterValueInElement("x", "z", "2"));
}

TEST(XMLParserTest, ASummaryAfterAParseCarriesTheLastLineAndTheParserCanBeUsedAgain) {
  TempDir dir;
  writeFile(dir.file("in.xml"), "<a>\n<b>\n");
  for (bool with_reporter : {true, false}) {
    CollectingReporter reporter;
    R_XMLParser parser(R_XMLParser::captureSize, with_reporter ? &reporter : nullptr);
    parser.report("before any parse");
    RecordingRecipient recipient({"a"});
    EXPECT_FALSE(recipient.parseFile(parser, dir.file("in.xml")));
    parser.report("Error while loading.");
    EXPECT_TRUE(recipient.parseString(parser, "<a>1</a>"));
    EXPECT_EQ("0:1", joined(recipient.events()));
    EXPECT_EQ(with_reporter ? "before any parse|(3) unfinished structure (missing end tags)|(3) Error while loading."
                            : "",
              joined(reporter.lines()));
  }
}

TEST(XMLParserTest, AMissingFileHasNoInputDataAndAHugeOneWithoutClosingCharIsNotReadWhole) {
  TempDir dir;
  std::string path = dir.file("huge.xml");
  writeFile(path, "<a");
  // A sparse file of 4 GB: its bytes are NUL, so the tag never ends.
  ASSERT_EQ(0, truncate(path.c_str(), 4LL << 30));
  for (const std::string& file : {std::string("/nonexistent/missing.xml"), std::string(), path}) {
    CollectingReporter reporter;
    R_XMLParser parser(R_XMLParser::captureSize, &reporter);
    RecordingRecipient recipient({"a"});
    EXPECT_FALSE(recipient.parseFile(parser, file));
    EXPECT_EQ(file == path ? "too long tag" : "no input data", joined(reporter.lines()));
  }
}

TEST(XMLInputFileTest, ReadsAcrossBlocksCountsLinesAndEndsWithOneByte255) {
  TempDir dir;
  std::string bytes = std::string("\xFF\0", 2);
  for (int i = 2; i < 200000; ++i) bytes += static_cast<char>(i % 7 == 0 ? '\n' : 'a' + i % 26);
  writeFile(dir.file("long.txt"), bytes);
  R_XMLInputFile input(dir.file("long.txt").c_str());
  std::string read;
  while (input.canRead()) read += static_cast<char>(input.getChar());
  EXPECT_EQ(bytes + "\xFF", read);
  EXPECT_EQ(1 + 28571, input.getLine());  // line 1, then a line feed at each of 7, 14, ... 199997
  EXPECT_FALSE(R_XMLInputFile(dir.file("missing.txt").c_str()).canRead() || R_XMLInputFile("").canRead());
}

// A buffer gets the file's text without its line breaks and indentation.
TEST(XMLTextOutputTest, AWholeDocumentIsIndentedInAFileAndFlatInABufferAndEscapedButForDoubleQuotes) {
  const std::string indented =
      "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?>\n"
      "<!DOCTYPE quorl>\n"
      "<quorl>\n"
      " <var name=\"A&amp;B\" n=\"7\">\n"
      "  <min closed=\"1.5\" open=\"?\">\n"
      "    -2.25?1e+20\n"
      "  </min>\n"
      "  <empty q=\"\"1&amp;2\"\" />\n"
      "  <n&lt;te>\n"
      "    x &lt; y &amp; z &gt; w-3x&amp;y\n"
      "  </n&lt;te>\n"
      " </var>\n"
      "</quorl>";
  EXPECT_EQ(indented, writtenToFile(document));
  EXPECT_EQ(std::regex_replace(indented, std::regex("\n *"), ""), writtenToBuffer(document));
}

TEST(XMLTextOutputTest, FileLinesBreakAtTheFirstBlankFromColumn61AndIndentByTheLevel) {
  const std::string a60(60, 'a'), l70(70, 'l'), v60(60, 'v');
  const struct { const char* label; Writing write; std::string expected; } rows[] = {
      {"70 letters without a blank stay on one line", element("a", l70), "<a>\n  " + l70 + "\n</a>"},
      {"a blank at column 60 stays", element("a", a60 + " b"), "<a>\n  " + a60 + " b\n</a>"},
      {"a blank at column 61 starts a line", element("a", a60 + "a bb cc"), "<a>\n  " + a60 + "a\n   bb cc\n</a>"},
      {"a line feed counts as a blank", element("a", a60 + "a\nb"), "<a>\n  " + a60 + "a\n  \nb\n</a>"},
      {"a long tag breaks before an attribute",
       [&](R_XMLTextOutput& output) {
         output.openTag("a");
         output.writeAttribute("x", v60.c_str());
         output.writeAttribute("y", "1");
         output.endEmptyTag();
       },
       "<a x=\"" + v60 + "\"\n   y=\"1\" />"},
      {"a close at level 0 keeps the level at 0",
       [](R_XMLTextOutput& output) {
         output.closeTag("a");
         output.openTag("b");
         output.endOpenTag();
         output.openTag("c");
         output.endEmptyTag();
         output.closeTag("b");
       },
       "</a>\n<b>\n <c />\n</b>"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.expected, writtenToFile(row.write));
  }
}

TEST(XMLTextOutputTest, ABufferKeepsWhatFitsAndAFileThatDoesNotOpenWritesNothing) {
  char buffer[4];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  output.writeText("abc");
  EXPECT_TRUE(output.isOK());
  output.writeText("d");
  EXPECT_FALSE(output.isOK());
  EXPECT_EQ("abc 3", std::string(buffer) + " " + std::to_string(output.getCount()));
  TempDir dir;
  R_XMLTextOutputFile file(dir.file("missing/out.xml").c_str());
  EXPECT_FALSE(file.isOK() || R_XMLTextOutputFile("").isOK());
  element("a", "x")(file);
  EXPECT_FALSE(fileExists(dir.file("missing/out.xml")));
}
