#include "xml/r_xmltextoutput.h"

#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <string>

#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "tests/support/test_files.h"
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
