// Every page command at least once, the walker over odd templates and the
// windows of probands: the rows of tests/data/page/walks.txt.
#include <gtest/gtest.h>

#include "page/r_a_pagecommands.h"
#include "tests/page/page_fixture.h"

class PageCommandsTest : public PageFixture {};

TEST_F(PageCommandsTest, EveryCommandAndOddTemplatesGiveThePagesWorkedOut) {
  for (const WalkRow& row : walkRows("page/walks.txt")) {
    SCOPED_TRACE(row.group + ": " + row.query + " | " + row.page);
    if (row.window_set) setup.setInt(R_A_Setup::intProbandsPerPage, row.window);
    EXPECT_EQ(row.text, walk(row.query, row.page));
    EXPECT_EQ(row.events, events());
  }
}
