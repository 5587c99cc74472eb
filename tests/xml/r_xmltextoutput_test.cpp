#include "xml/r_xmltextoutput.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmlbuffer.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutputbuffer.h"
#include "xml/r_xmltextoutputfile.h"

namespace {

using Writing = std::function<void(R_XMLTextOutput&)>;

std::string writtenToFile(const Writing& write) {
  TempDir dir;
  {
    R_XMLTextOutputFile output(dir.file("out.xml").c_str());
    EXPECT_TRUE(output.isOK());
    write(output);
    EXPECT_TRUE(output.isOK());
  }
  return readFile(dir.file("out.xml"));
}

std::string writtenToBuffer(const Writing& write) {
  char buffer[1024];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  write(output);
  EXPECT_TRUE(output.isOK());
  EXPECT_EQ(strlen(buffer), static_cast<size_t>(output.getCount()));
  return buffer;
}

void elementWithText(R_XMLTextOutput& output) {
  output.openTag("a");
  output.endOpenTag();
  output.writeText("x");
  output.closeTag("a");
}

void fileHeader(R_XMLTextOutput& output) {
  output.writeDirective('?', "xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"");
  output.writeDirective('!', "DOCTYPE quorl");
}

// A small document with header, nesting, attributes, an empty element and
// text that needs escaping.
void document(R_XMLTextOutput& output) {
  fileHeader(output);
  output.openTag("quorl");
  output.endOpenTag();
  output.openTag("var");
  output.writeAttribute("name", "A&B");
  output.writeAttribute("n", R_Integer(7));
  output.endOpenTag();
  output.openTag("min");
  output.writeAttribute("closed", R_Number(1.5));
  output.endOpenTag();
  output.writeNumber(R_Number(-2.25));
  output.closeTag("min");
  output.openTag("empty");
  output.endEmptyTag();
  output.openTag("note");
  output.endOpenTag();
  output.writeText("x < y & z > w");
  output.closeTag("note");
  output.closeTag("var");
  output.closeTag("quorl");
}

}  // namespace

TEST(XMLTextOutputTest, TextAfterATagGoesOnItsOwnDeeperLine) {
  EXPECT_EQ("<a>\n  x\n</a>", writtenToFile(elementWithText));
  EXPECT_EQ("<a>x</a>", writtenToBuffer(elementWithText));
}

TEST(XMLTextOutputTest, AWholeDocumentIsIndentedInAFileAndFlatInABuffer) {
  EXPECT_EQ(
      "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?>\n"
      "<!DOCTYPE quorl>\n"
      "<quorl>\n"
      " <var name=\"A&amp;B\" n=\"7\">\n"
      "  <min closed=\"1.5\">\n"
      "    -2.25\n"
      "  </min>\n"
      "  <empty />\n"
      "  <note>\n"
      "    x &lt; y &amp; z &gt; w\n"
      "  </note>\n"
      " </var>\n"
      "</quorl>",
      writtenToFile(document));
  EXPECT_EQ(
      "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?><!DOCTYPE quorl>"
      "<quorl><var name=\"A&amp;B\" n=\"7\"><min closed=\"1.5\">-2.25</min><empty />"
      "<note>x &lt; y &amp; z &gt; w</note></var></quorl>",
      writtenToBuffer(document));
}

TEST(XMLTextOutputTest, EverythingIsEscapedButDoubleQuotes) {
  EXPECT_EQ("<a&lt;b q=\"\"1&amp;2\"\">a&lt;b&amp;c&gt;d</a&lt;b>",
            writtenToBuffer([](R_XMLTextOutput& output) {
              output.openTag("a<b");
              output.writeAttribute("q", "\"1&2\"");
              output.endOpenTag();
              output.writeText("a<b&c>d");
              output.closeTag("a<b");
            }));
}

TEST(XMLTextOutputTest, ValuesWriteInTheirTextForms) {
  EXPECT_EQ("<v n=\"?\" i=\"-3\">?1e+20-3x&amp;y</v>", writtenToBuffer([](R_XMLTextOutput& output) {
              output.openTag("v");
              output.writeAttribute("n", R_Number());
              output.writeAttribute("i", R_Integer(-3));
              output.endOpenTag();
              output.writeNumber(R_Number());
              output.writeNumber(R_Number(1e20));
              output.writeInteger(R_Integer(-3));
              output.writeString(R_String("x&y"));
              output.closeTag("v");
            }));
}

TEST(XMLTextOutputTest, LongLinesBreakAtTheFirstBlankFromColumn61) {
  struct Row {
    const char* label;
    std::string text;
    std::string expected_lines;
  };
  const std::string a60(60, 'a');
  const std::vector<Row> rows = {
      {"70 letters without a blank stay on one line", std::string(70, 'l'), std::string(70, 'l')},
      {"a blank at column 60 stays", a60 + " b", a60 + " b"},
      {"a blank at column 61 starts a line", a60 + "a bb cc", a60 + "a\n   bb cc"},
      {"a line feed counts as a blank", a60 + "a\nb", a60 + "a\n  \nb"},
      {"words break at the first blank at or after column 61",
       "abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi ab",
       "abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi abcdefghi\n   ab"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ("<a>\n  " + row.expected_lines + "\n</a>",
              writtenToFile([&](R_XMLTextOutput& output) {
                output.openTag("a");
                output.endOpenTag();
                output.writeText(row.text.c_str());
                output.closeTag("a");
              }));
  }
}

TEST(XMLTextOutputTest, ALongTagBreaksBeforeAnAttribute) {
  const std::string value(60, 'v');
  EXPECT_EQ("<a x=\"" + value + "\"\n   y=\"1\" />", writtenToFile([&](R_XMLTextOutput& output) {
              output.openTag("a");
              output.writeAttribute("x", value.c_str());
              output.writeAttribute("y", "1");
              output.endEmptyTag();
            }));
}

TEST(XMLTextOutputTest, ACloseAtLevelZeroKeepsTheLevelAtZero) {
  EXPECT_EQ("</a>\n<b>\n <c />\n</b>", writtenToFile([](R_XMLTextOutput& output) {
              output.closeTag("a");
              output.openTag("b");
              output.endOpenTag();
              output.openTag("c");
              output.endEmptyTag();
              output.closeTag("b");
            }));
}

TEST(XMLTextOutputTest, ABufferKeepsWhatFitsAndTellsOfTheOverflow) {
  char buffer[4];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  EXPECT_STREQ("", buffer);
  output.writeText("abc");
  EXPECT_TRUE(output.isOK());
  EXPECT_EQ(3, output.getCount());
  output.writeText("d");
  EXPECT_FALSE(output.isOK());
  EXPECT_STREQ("abc", buffer);
  EXPECT_EQ(3, output.getCount());
}

TEST(XMLTextOutputTest, AFileThatDoesNotOpenWritesNothing) {
  TempDir dir;
  R_XMLTextOutputFile no_name("");
  EXPECT_FALSE(no_name.isOK());
  elementWithText(no_name);
  R_XMLTextOutputFile no_directory(dir.file("missing/out.xml").c_str());
  EXPECT_FALSE(no_directory.isOK());
  elementWithText(no_directory);
  EXPECT_FALSE(fileExists(dir.file("missing/out.xml")));
}

TEST(XMLTextOutputTest, TheBaseWritesFlatToStandardOutput) {
  testing::internal::CaptureStdout();
  R_XMLTextOutput output;
  elementWithText(output);
  fflush(stdout);
  EXPECT_EQ("<a>x</a>", testing::internal::GetCapturedStdout());
}

namespace {

std::vector<std::string> normalized(const std::vector<std::string>& events) {
  std::vector<std::string> result;
  for (std::string event : events) {
    R_XMLBuffer::normalize(&event[0]);
    result.push_back(event.c_str());
  }
  return result;
}

const std::vector<std::string> kDocumentTags = {"quorl:var", "quorl:var:min", "quorl:var:empty",
                                                ">quorl"};

std::vector<std::string> readBack(RecordingRecipient& reader, bool ok) {
  EXPECT_TRUE(ok);
  return normalized(reader.events());
}

}  // namespace

TEST(XMLTextOutputTest, WhatTheWriterWritesTheReaderReadsBack) {
  // Entities stay entities on the way back: the reader does not decode them.
  // The file's line breaks and indentation stand in the captured text.
  const std::string first = "2: name=A&amp;B closed=NULL";
  const std::string last = "3: name=NULL closed=NULL";
  const std::string asked = " name=A&amp;B closed=NULL";
  TempDir dir;
  {
    R_XMLTextOutputFile output(dir.file("doc.xml").c_str());
    document(output);
  }
  CollectingReporter reporter;
  R_XMLParser parser(R_XMLParser::captureSize, &reporter);
  RecordingRecipient from_file(kDocumentTags);
  from_file.askFor("name");
  from_file.askFor("closed");
  EXPECT_EQ(std::vector<std::string>(
                {first,
                 "0: <min closed=\"1.5\"> -2.25 </min> <empty /> <note> x &lt; y &amp; z &gt; w "
                 "</note>" + asked,
                 last}),
            readBack(from_file, from_file.parseFile(parser, dir.file("doc.xml"))));

  RecordingRecipient from_buffer(kDocumentTags);
  from_buffer.askFor("name");
  from_buffer.askFor("closed");
  std::string flat = writtenToBuffer(document);
  EXPECT_EQ(std::vector<std::string>(
                {first,
                 "0:<min closed=\"1.5\">-2.25</min><empty /><note>x &lt; y &amp; z &gt; w</note>" +
                     asked,
                 last}),
            readBack(from_buffer, from_buffer.parseString(parser, flat.c_str())));
  EXPECT_TRUE(reporter.lines().empty());
}
