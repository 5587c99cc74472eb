// Query strings parsed into whole request objects and written back.
#include "page/r_a_cgiparameters.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "page/r_a_clock.h"

namespace {

// The whole request as text: page path, typed parameters, free pairs.
std::string dump(const R_A_CGIParameters& p) {
  std::string text = std::string("page=[") + p.getPage() + "]";
  for (int i = 0; i < R_A_Parameters::_parTypeCount; i++) {
    if (p.isDefined(i)) text += std::string(" ") + R_A_CGIParameters::getTypeName(i) + "=[" + p.get(i) + "]";
  }
  for (int i = 0; i < p.getVarCount(); i++) text += std::string(" ") + p.getVarName(i) + ":[" + p.getVarValue(i) + "]";
  return text;
}

}  // namespace

TEST(CGIParametersTest, ParsesQueriesIntoWholeRequests) {
  struct Row {
    const char* query;
    std::string expected;
  } rows[] = {
      {"a=b&a=c", "page=[] a:[b] a:[c]"},
      {"_page=x&_page=y", "page=[] _page=[x]"},
      {"_P_ID=7&_Graph_Width=300", "page=[] _p_id=[7] _graph_width=[300]"},
      {"p/q.html?_cmd=new&x&=v&y=", "page=[p/q.html] _cmd=[new] y:[]"},
      {"?_p_name=", "page=[] _p_name=[]"},
      {"a=1=2&&b=+c%2Bd+", "page=[] a:[1=2] b:[ c+d ]"},
      {"a?b=1?2&c?d=3", "page=[a] b:[1?2] c?d:[3]"},
      {"n=%u010D&n=%u010c&n=%U017E&n=%u0416&n=%u01ZZ&n=%u00e9", "page=[] n:[\xE8] n:[\xC8] n:[\x9E] n:[_] n:[_] n:[\xE9]"},
      {"n=%00x&n=%u0000y&n=%zzq&n=%4g&n=%41%6a", "page=[] n:[x] n:[y] n:[q] n:[@] n:[Aj]"},
      {"n=x%&n=x%4&n=x%u&n=x%u012&n=%u01", "page=[] n:[x] n:[x] n:[x] n:[x] n:[]"},
      {"", "page=[]"},
  };
  R_A_CGIParameters parameters;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.query);
    parameters.parse(row.query, 5);
    EXPECT_EQ(row.expected, dump(parameters));
  }
}

TEST(CGIParametersTest, KeepsAThousandFreePairsAndStillTakesTypedOnes) {
  std::string query;
  for (int i = 0; i < 1005; i++) query += "v" + std::to_string(i) + "=" + std::to_string(i) + "&";
  query += "_top=1";
  R_A_CGIParameters parameters;
  parameters.parse(query.c_str(), 0);
  ASSERT_EQ(1000, parameters.getVarCount());
  EXPECT_STREQ("v999", parameters.getVarName(999));
  EXPECT_STREQ("1", parameters.get(R_A_Parameters::parTop));
  EXPECT_FALSE(parameters.addVar("late", "x"));
}

// Written into a buffer of `size`; with the room of 64 the query reads
// back as the same request.
TEST(CGIParametersTest, WritesTheRequestBackAsAQueryCutToItsBuffer) {
  const struct {
    const char* query;
    const char* target;
    int size;
    const char* expected;
  } rows[] = {
      {"p?_t_id=5&_p_id=7&a=b c&z=%26", nullptr, 64, "p?_p_id=7&_t_id=5&a=b+c&z=%26&"},
      {"p?_t_id=5&_p_id=7&a=b c&z=%26", "9 x", 64, "p?_p_id=7&_t_id=9+x&a=b+c&z=%26&"},
      {"_cmd=del&_order=x1&_p_id=1", "3", 64, "_p_id=1&_t_id=3&_cmd=del&_order=x1&"},
      {"?n=%27~%22+%3C%E8!@%23$*()[]{};/,-._", nullptr, 64, "?n=%27%7E%22+%3C%E8!@#$*()[]{};/,-._&"},
      {"", nullptr, 64, ""},
      {"a=bcdef", nullptr, 10, "a=bcdef&"}, {"a=bcdef", nullptr, 9, "a=bcde&"}, {"a=bcdef", nullptr, 8, "a=bcd&"},
      {"a=bcdef", nullptr, 6, "a=b&"},      {"a=bcdef", nullptr, 4, "a=&"},     {"a=bcdef", nullptr, 3, "a="},
      {"a=bcdef", nullptr, 1, ""},          {"a=1&b=2", nullptr, 8, "a=1&b=&"}, {"a=%20%20", nullptr, 8, "a=++&"},
      {"a=%E8", nullptr, 6, "a=%E8"},
  };
  R_A_CGIParameters parameters, again;
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.query) + " in " + std::to_string(row.size));
    parameters.parse(row.query, 0);
    char buffer[65];
    memset(buffer, '#', sizeof(buffer));
    parameters.encodeURL(row.target, buffer, row.size);
    EXPECT_EQ(row.expected, std::string(buffer));
    EXPECT_EQ('#', buffer[row.size]);
    again.parse(buffer, 0);
    EXPECT_TRUE(row.target || row.size < 64 || dump(parameters) == dump(again)) << dump(again);
  }
}

// A text put through an operation with a buffer of `size`, and the result.
struct Sized {
  const char* text;
  int size;
  const char* expected;
};

TEST(CGIParametersTest, EncodeCGIEscapesAllButSafeBytesAndDecodesBack) {
  const Sized rows[] = {
      {"a b", 64, "a%20b"},  {"aZ09_-.!@#$*()[]{};/,", 64, "aZ09_-.!@#$*()[]{};/,"},
      {"+%&=?~'\"\xE8\x7F", 64, "%2B%25%26%3D%3F%7E%27%22%E8%7F"},
      {"abcdefgh", 8, "abcd"}, {" bcdefgh", 8, "%20b"}, {" ", 5, "%20"}, {" ", 4, ""},
  };
  for (const Sized& row : rows) {
    SCOPED_TRACE(row.text);
    char target[64];
    EXPECT_EQ(static_cast<int>(strlen(row.expected)), encodeCGI(row.text, target, row.size));
    EXPECT_STREQ(row.expected, target);
  }
  std::string every;
  for (int c = 1; c < 256; c++) every += static_cast<char>(c);
  char encoded[1024] = "v=";
  encodeCGI(every.c_str(), encoded + 2, sizeof(encoded) - 2);
  R_A_CGIParameters parameters;
  parameters.parse(encoded, 0);
  ASSERT_EQ(1, parameters.getVarCount());
  EXPECT_EQ(every, parameters.getVarValue(0));
}

TEST(CGIParametersTest, CopyValueMakesTheValueHarmless) {
  const Sized rows[] = {{"_p_name=a<b%26c>'%22", 15, "a(b^c)~~"}, {"_p_name=a<b", 3, "a(b"}, {"_p_name=ab", 0, ""},
                        {"_p_name=", 15, ""}, {"_srch=ab", 15, ""}};
  R_A_CGIParameters parameters;
  char buffer[16];
  for (const Sized& row : rows) {
    SCOPED_TRACE(row.text);
    parameters.parse(row.text, 0);
    memset(buffer, '#', sizeof(buffer));
    parameters.copyValue(R_A_Parameters::parProbandName, buffer, row.size);
    EXPECT_STREQ(row.expected, buffer);
  }
  parameters.copyValue(17, buffer, 15);
  EXPECT_STREQ("", buffer);
}

TEST(CGIParametersTest, TakesTodayFromTheClockAndTheClientFromTheCaller) {
  R_A_fixToday(R_Date(29, 2, 2024));
  R_A_CGIParameters parameters;
  parameters.parse("Main.HTML?_p_id=12.7&_cmd=NEW", 3);
  R_A_fixToday(R_Date());
  EXPECT_TRUE(parameters.getToday() == R_Date(29, 2, 2024));
  EXPECT_EQ(3, parameters.getClient());
  EXPECT_EQ(12, parameters.getInt(R_A_Parameters::parProbandId));
  EXPECT_TRUE(parameters.isPage("main.html"));
  EXPECT_TRUE(parameters.isCommand("new"));
  EXPECT_FALSE(parameters.isDefined(-1));
}
