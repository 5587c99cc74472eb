#include "xml/r_xmlparameters.h"

#include <gtest/gtest.h>

TEST(XMLParametersTest, CheckTagTellsTheKinds) {
  typedef R_XMLParameters P;
  const struct { const char* tag; P::TagKind kind; } rows[] = {
      {"<a>", P::elementBegin},          {"<a x=\"1\">", P::elementBegin}, {"</a>", P::elementEnd},
      {"</a/>", P::elementEnd},          {"<a/>", P::elementStandalone},   {"<a x=1 />", P::elementStandalone},
      {"<!-- c -->", P::elementSkipped}, {"<?xml?>", P::elementSkipped},   {"<!>", P::elementSkipped},
      {"<>", P::elementUnknown},         {"</>", P::elementUnknown},       {"</1>", P::elementUnknown},
      {"< a>", P::elementUnknown},       {"<_a>", P::elementUnknown},      {"<\xC8>", P::elementUnknown},
      {"<a", P::elementUnknown},         {"a>", P::elementUnknown},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.tag);
    EXPECT_EQ(row.kind, P::checkTag(row.tag));
  }
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
