#include "proband/r_probandrecord.h"

#include <gtest/gtest.h>

#include <map>

namespace {

void expectValues(const R_ProbandRecord& record, const std::map<int, double>& expected) {
  for (int i = 0; i < record.getCount(); ++i) {
    auto found = expected.find(i);
    if (found == expected.end()) {
      EXPECT_FALSE(record.getValue(i).isDefined()) << i;
    } else {
      ASSERT_TRUE(record.getValue(i).isDefined()) << i;
      EXPECT_EQ(found->second, record.getValue(i).getValue()) << i;
    }
  }
}

}  // namespace

// Slots set in any order, past the room the record was made with,
// overwritten, cleared in the middle and set undefined read back as a
// plain array of slots would.
TEST(ProbandRecordTest, ValuesInAnyOrderReadBackAsSlots) {
  R_ProbandRecord* record = R_ProbandRecord::create(12, 1);
  std::map<int, double> expected;
  const int order[] = {7, 2, 11, 0, 5, 9, 3, 1, 10, 4, 8, 6};
  for (int index : order) {
    record->setValue(index, R_Number(index * 1.5));
    expected[index] = index * 1.5;
    expectValues(*record, expected);
  }
  record->setValue(5, R_Number(-2.0));
  expected[5] = -2.0;
  record->clearValue(3);
  expected.erase(3);
  record->setValue(9, R_Number());
  expected.erase(9);
  record->clearValue(3);
  expectValues(*record, expected);
  record->setValue(3, R_Number(0.0));
  expected[3] = 0.0;
  expectValues(*record, expected);
  delete record;
}

// Callers keep references to a visit's age, date and comment while they
// set its values: the record must not move when its values outgrow it.
TEST(ProbandRecordTest, AgeDateAndCommentStayInPlaceWhileValuesGrow) {
  R_ProbandRecord* record = R_ProbandRecord::create(40, 1);
  R_Date dob, date;
  dob.setFromText("1.1.2000");
  date.setFromText("1.7.2010");
  record->setAgeDate(R_Number(), date, dob);
  record->setComment("first visit \xE8");
  const R_Number& age = record->getAge();
  const R_Date& kept_date = record->getDate();
  const R_String& comment = record->getComment();
  std::map<int, double> expected;
  for (int i = 39; i >= 0; i -= 3) {
    record->setValue(i, R_Number(i + 0.25));
    expected[i] = i + 0.25;
  }
  expectValues(*record, expected);
  // 3834 days / 365.25 = 10.4969...
  ASSERT_TRUE(age.isDefined());
  EXPECT_DOUBLE_EQ(10.497, age.getValue());
  EXPECT_EQ(date.getDayNumber(), kept_date.getDayNumber());
  EXPECT_STREQ("first visit \xE8", comment.get());
  delete record;
}
