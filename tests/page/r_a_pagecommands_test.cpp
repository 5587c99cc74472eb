// Every page command at least once and the walker over odd templates: the
// rows of tests/data/page/walks.txt; here the windows, which need their own
// setup.
#include <gtest/gtest.h>

#include "page/r_a_pagecommands.h"
#include "tests/page/page_fixture.h"

namespace {
struct Row {
  const char* query;
  const char* page;
  const char* expected;
};
}  // namespace

class PageCommandsTest : public PageFixture {
 public:
  void runRows(const Row* rows, int count) {
    for (int i = 0; i < count; ++i) {
      SCOPED_TRACE(std::string(rows[i].query) + " | " + rows[i].page);
      EXPECT_EQ(rows[i].expected, walk(rows[i].query, rows[i].page));
      EXPECT_EQ("begin;end;", events());
    }
  }
};

TEST_F(PageCommandsTest, EveryCommandAndOddTemplatesGiveThePagesWorkedOut) {
  for (const WalkRow& row : walkRows("page/walks.txt")) {
    SCOPED_TRACE(row.group + ": " + row.query + " | " + row.page);
    EXPECT_EQ(row.text, walk(row.query, row.page));
    EXPECT_EQ(row.events, events());
  }
}

TEST_F(PageCommandsTest, AFullWindowWalksOneProbandMoreThanItsSize) {
  setup.setInt(R_A_Setup::intProbandsPerPage, 1);
  const Row rows[] = {
      // top 1 of 3 with size 1: previous 1 - 1 = 0, next 1 + 1 = 2.
      {"_top=1", "$get-window-top-previous/$get-window-top-next$if-window-previous p$end$if-window-next n$end", "0/2 p n"},
      {"_top=1", "$for-each-selected-proband-in-window$get-proband-name,$end", "Berta,Cyril,"},
      // A top beyond the last window becomes 3 - 1 = 2 (next: 2 + 1 = 3, as 2
      // is not above 2); a negative one 0.
      {"_top=9", "$get-window-top-previous/$get-window-top-next", "1/3"},
      {"_top=-4", "$for-each-selected-proband-in-window$get-proband-name,$end", "Adam,Berta,"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, WindowSumsDoNotOverflowForAnySize) {
  setup.setInt(R_A_Setup::intProbandsPerPage, -2147483647 - 1);
  const Row rows[] = {
      // previous: 0 - (-2^31) = 2147483648; next: 0 + (-2^31), as 0 is not
      // above 3 + 2^31. One body, and then the count exceeds the size.
      {"_top=5", "$get-window-top-previous/$get-window-top-next$if-window-next n$end", "2.14748e+09/-2.14748e+09 n"},
      {"", "$for-each-selected-proband-in-window$get-proband-name,$end", "Adam,"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
  setup.setInt(R_A_Setup::intProbandsPerPage, 2147483647);
  // top 5 becomes 3 - (2^31 - 1) = -2147483644; next: top is above that?
  // no, equal: top + size = 3.
  EXPECT_EQ("0/3", walk("_top=5", "$get-window-top-previous/$get-window-top-next"));
}
