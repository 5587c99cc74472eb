#include "xml/r_xmlbuffer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string capture(R_XMLBuffer& buffer, const std::string& bytes) {
  buffer.startReading();
  for (char c : bytes) buffer.put(static_cast<unsigned char>(c));
  buffer.stopReading();
  return buffer.getText();
}

}  // namespace

TEST(XMLBufferTest, ACaptureEndsBeforeItsLastOpeningChar) {
  R_XMLBuffer buffer(64);
  EXPECT_EQ("x<b/>", capture(buffer, "x<b/></a>"));
  EXPECT_EQ("", capture(buffer, "</a>"));
  EXPECT_EQ("no tag", capture(buffer, "no tag"));
  EXPECT_EQ("", capture(buffer, ""));
}

TEST(XMLBufferTest, OverflowAndNulEmptyTheWholeCapture) {
  R_XMLBuffer buffer(4);
  EXPECT_EQ("ab", capture(buffer, "ab</"));
  EXPECT_EQ("", capture(buffer, "abc</"));
  EXPECT_EQ("", capture(buffer, std::string("a\0<", 3)));
  // A new capture starts without the overflow.
  EXPECT_EQ("a", capture(buffer, "a<"));
}

TEST(XMLBufferTest, BytesPutWhileNotReadingAreIgnored) {
  R_XMLBuffer buffer(8);
  buffer.put('x');
  EXPECT_FALSE(buffer.isReading());
  EXPECT_STREQ("", buffer.getText());
  buffer.startReading();
  EXPECT_TRUE(buffer.isReading());
  buffer.put('y');
  buffer.stopReading();
  buffer.put('z');
  EXPECT_STREQ("y", buffer.getText());
  buffer.clear();
  EXPECT_STREQ("", buffer.getText());
}

TEST(XMLBufferTest, NormalizeFoldsRunsOfControlBytesAndBlanks) {
  struct Row {
    const char* label;
    std::string text;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {"runs inside", "a \t\n\r b", "a b"},
      {"both ends", " \n a b \n ", "a b"},
      {"byte 1 is a blank", "a\x01" "b", "a b"},
      {"bytes of 128 and above are text", "\xA0" "a\xFF", "\xA0" "a\xFF"},
      {"only blanks", " \t ", ""},
      {"empty", "", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    std::string text = row.text;
    int length = R_XMLBuffer::normalize(&text[0]);
    EXPECT_EQ(row.expected, text.c_str());
    EXPECT_EQ(static_cast<int>(row.expected.size()), length);
  }
  R_XMLBuffer buffer(64);
  capture(buffer, "\n  a \n  b\n </a>");
  buffer.normalize();
  EXPECT_STREQ("a b", buffer.getText());
}
