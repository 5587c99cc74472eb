#include "xml/r_xmlbuffer.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string capture(R_XMLBuffer& buffer, const std::string& bytes) {
  buffer.startReading();
  for (char c : bytes) buffer.put(static_cast<unsigned char>(c));
  buffer.stopReading();
  return buffer.getText();
}

}  // namespace

TEST(XMLBufferTest, ACaptureEndsBeforeItsLastOpeningCharAndOverflowOrNulEmptyIt) {
  R_XMLBuffer buffer(64), small(4);
  const struct { R_XMLBuffer* buffer; std::string bytes, text; } rows[] = {
      {&buffer, "x<b/></a>", "x<b/>"}, {&buffer, "</a>", ""}, {&buffer, "no tag", "no tag"}, {&buffer, "", ""},
      {&small, "ab</", "ab"},          {&small, "abc</", ""}, {&small, std::string("a\0<", 3), ""},
      {&small, "a<", "a"} /* a new capture starts without the overflow */,
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    EXPECT_EQ(row.text, capture(*row.buffer, row.bytes));
  }
}

TEST(XMLBufferTest, NormalizeFoldsTheCapture) {
  R_XMLBuffer buffer(64);
  capture(buffer, "\n  a \n  b\n </a>");
  buffer.normalize();
  EXPECT_STREQ("a b", buffer.getText());
}
