#include "xml/r_xmlparameters.h"

#include <gtest/gtest.h>

#include <vector>

TEST(XMLParametersTest, CheckTagTellsTheKinds) {
  struct Row {
    const char* tag;
    R_XMLParameters::TagKind kind;
  };
  const std::vector<Row> rows = {
      {"<a>", R_XMLParameters::elementBegin},
      {"<a x=\"1\">", R_XMLParameters::elementBegin},
      {"</a>", R_XMLParameters::elementEnd},
      {"</a/>", R_XMLParameters::elementEnd},
      {"<a/>", R_XMLParameters::elementStandalone},
      {"<a x=1 />", R_XMLParameters::elementStandalone},
      {"<!-- c -->", R_XMLParameters::elementSkipped},
      {"<?xml?>", R_XMLParameters::elementSkipped},
      {"<!>", R_XMLParameters::elementSkipped},
      {"<>", R_XMLParameters::elementUnknown},
      {"</>", R_XMLParameters::elementUnknown},
      {"</1>", R_XMLParameters::elementUnknown},
      {"< a>", R_XMLParameters::elementUnknown},
      {"<_a>", R_XMLParameters::elementUnknown},
      {"<\xC8>", R_XMLParameters::elementUnknown},
      {"<a", R_XMLParameters::elementUnknown},
      {"a>", R_XMLParameters::elementUnknown},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tag);
    EXPECT_EQ(row.kind, R_XMLParameters::checkTag(row.tag));
  }
}

TEST(XMLParametersTest, ElementsComeAndGoWithTheirAttributes) {
  R_XMLParameters parameters;
  char element[64];
  parameters.beginElement("<o x=\"1\" y=\"a\">", element);
  EXPECT_STREQ("o", element);
  parameters.beginElement("<i x=\"2\">", element);
  EXPECT_STREQ("i", element);
  EXPECT_STREQ("2", parameters.getParameter("x"));
  EXPECT_STREQ("1", parameters.getParameterInElement("x", "o"));
  EXPECT_TRUE(parameters.isParameterValue("x", "1"));
  EXPECT_TRUE(parameters.isParameterValueInElement("y", "o", "a"));
  EXPECT_FALSE(parameters.isParameterValueInElement("x", "i", "1"));
  EXPECT_FALSE(parameters.isParameterInElement("y", "i"));
  EXPECT_FALSE(parameters.isParameterInElement("x", "z"));
  EXPECT_STREQ("o:i", parameters.getPath(':', 0));

  bool struct_ok = true;
  parameters.endElement("</o>", element, &struct_ok, true);
  EXPECT_FALSE(struct_ok);
  EXPECT_STREQ("o", element);
  EXPECT_STREQ("o:i", parameters.getPath(':', 0));
  parameters.endElement("</i>", element, &struct_ok, false);
  EXPECT_TRUE(struct_ok);
  EXPECT_STREQ("o:i", parameters.getPath(':', 0));
  parameters.endElement("</i>", element, &struct_ok, true);
  EXPECT_TRUE(struct_ok);
  EXPECT_STREQ("o", parameters.getPath(':', 0));
  EXPECT_STREQ("1", parameters.getParameter("x"));
  EXPECT_TRUE(parameters.isParameter("y"));

  parameters.clear();
  EXPECT_FALSE(parameters.isParameter("x"));
  EXPECT_FALSE(parameters.hasOpenElements());
  parameters.endElement("</o>", element, &struct_ok, true);
  EXPECT_FALSE(struct_ok);
  EXPECT_STREQ("o", element);
}
