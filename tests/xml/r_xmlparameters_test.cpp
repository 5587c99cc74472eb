// The parser's parts: inputs, the capture buffer, the element stack, the
// attributes and parameters of open elements, and the recipient's tag table.
#include "xml/r_xmlparameters.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmlattributes.h"
#include "xml/r_xmlbuffer.h"
#include "xml/r_xmlinputfile.h"
#include "xml/r_xmlinputstring.h"
#include "xml/r_xmlstack.h"

TEST(XMLInputTest, AFileReadsAcrossBlocksCountsLinesAndEndsWithOneByte255AndAStringCountsNone) {
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
  R_XMLInputString text("a\n");
  EXPECT_EQ('a', text.getChar());
  EXPECT_EQ('\n', text.getChar());
  EXPECT_EQ(0, text.getLine());
  EXPECT_FALSE(text.canRead() || R_XMLInputString(nullptr).canRead());
}

TEST(XMLBufferTest, ACaptureEndsBeforeItsLastOpeningCharAndOverflowOrNulEmptyIt) {
  R_XMLBuffer buffer(64), small(4);
  const struct { R_XMLBuffer* buffer; std::string bytes, text; } rows[] = {
      {&buffer, "x<b/></a>", "x<b/>"}, {&buffer, "</a>", ""}, {&buffer, "no tag", "no tag"},
      {&small, "ab</", "ab"},          {&small, "abc</", ""}, {&small, std::string("a\0<", 3), ""},
      {&small, "a<", "a"} /* a new capture starts without the overflow */,
  };
  for (const auto& row : rows) {
    row.buffer->startReading();
    for (char c : row.bytes) row.buffer->put(static_cast<unsigned char>(c));
    row.buffer->stopReading();
    EXPECT_EQ(row.text, row.buffer->getText()) << row.bytes;
  }
}

TEST(XMLStackTest, PathsJoinTheNamesFromTheRootAndAnEmptyStackAnswersEmptyTexts) {
  R_XMLStack stack;
  stack.pop();
  EXPECT_STREQ("", stack.top());
  for (const char* name : {"quorl", "", static_cast<const char*>(nullptr), "var", "quorl"}) stack.push(name);
  EXPECT_STREQ(">quorl/var/quorl", stack.getPath('/', '>'));
  EXPECT_EQ(0, stack.find("quorl")) << "the outermost level of a name";
  EXPECT_EQ(-1, stack.find("Var"));
  stack.pop();
  EXPECT_STREQ("quorl:var", stack.getPath(':', 0));
  EXPECT_EQ(9u, stack.getPathLength());
}

TEST(XMLAttributesTest, TheCursorWalksTheNewestFirstAndElementsLeaveWithTheirAttributes) {
  R_XMLAttributes attributes;
  EXPECT_FALSE(attributes.select(true));
  int position = 2, inner = 0;
  while (attributes.parse("<a x=\"1\" y=2>", &position, 0)) {
  }
  EXPECT_TRUE(attributes.parse("z=\"\"", &inner, 1));
  std::string walk;
  for (bool first = true; attributes.select(first); first = false)
    walk += std::string(attributes.getName()) + "=" + attributes.getValue() + "@" + std::to_string(attributes.getElement()) + " ";
  EXPECT_EQ("z=@1 y=2@0 x=1@0 ", walk);
  attributes.removeElement(1);
  ASSERT_TRUE(attributes.select(true));
  EXPECT_TRUE(attributes.isName("y") && attributes.isValue("2"));
}

TEST(XMLParametersTest, CheckTagTellsTheKinds) {
  typedef R_XMLParameters P;
  const struct { const char* tag; P::TagKind kind; } rows[] = {
      {"<a x=\"1\">", P::elementBegin},  {"</a>", P::elementEnd},        {"</a/>", P::elementEnd},
      {"<a x=1 />", P::elementStandalone}, {"<!-- c -->", P::elementSkipped}, {"<?xml?>", P::elementSkipped},
      {"<>", P::elementUnknown},         {"</>", P::elementUnknown},      {"</1>", P::elementUnknown},
      {"< a>", P::elementUnknown},       {"<_a>", P::elementUnknown},     {"<\xC8>", P::elementUnknown},
      {"<a", P::elementUnknown},         {"a>", P::elementUnknown},
  };
  for (const auto& row : rows) EXPECT_EQ(row.kind, P::checkTag(row.tag)) << row.tag;
}

TEST(XMLParametersTest, ElementsComeAndGoWithTheirAttributes) {
  R_XMLParameters parameters;
  char element[64];
  parameters.beginElement("<o x=\"1\" y=\"a\">", element);
  parameters.beginElement("<i x=\"2\">", element);
  EXPECT_STREQ("i", element);
  EXPECT_TRUE(parameters.isParameterValue("x", "1")) << "any level";
  EXPECT_TRUE(parameters.isParameterValueInElement("y", "o", "a"));
  EXPECT_FALSE(parameters.isParameterValueInElement("x", "i", "1"));
  EXPECT_FALSE(parameters.isParameterInElement("x", "z"));
  bool struct_ok = true;
  parameters.endElement("</o>", element, &struct_ok, true);
  EXPECT_FALSE(struct_ok);
  parameters.endElement("</i>", element, &struct_ok, false);
  EXPECT_TRUE(struct_ok);
  EXPECT_STREQ("o:i", parameters.getPath(':', 0)) << "left open";
  parameters.endElement("</i>", element, &struct_ok, true);
  EXPECT_STREQ("1", parameters.getParameter("x"));
  parameters.clear();
  EXPECT_FALSE(parameters.isParameter("y") || parameters.hasOpenElements());
  parameters.endElement("</o>", element, &struct_ok, true);
  EXPECT_FALSE(struct_ok);
  EXPECT_STREQ("o", element) << "a stray end tag is named for the message";
}

TEST(XMLRecipientTest, FindTagComparesWholeEntries) {
  RecordingRecipient recipient({});
  recipient.setTagCount(3);
  recipient.setTag(0, "a:b");
  recipient.setTag(2, "<a:b");
  EXPECT_EQ(nullptr, recipient.getTag(1));
  EXPECT_EQ(2, recipient.findTag("<a:b"));
  for (const char* other : {"a:b:c", "a", "A:B"}) EXPECT_EQ(-1, recipient.findTag(other)) << other;
  recipient.clearTags();
  EXPECT_EQ(-1, recipient.findTag("a:b"));
}
