#include "proband/r_probandrecord.h"

#include <gtest/gtest.h>

#include <string>

// Slots set in any order, past the room the record was made with,
// overwritten, cleared and set undefined read back as a plain array of
// slots would. Callers keep references to a visit's age, date and comment
// while they set its values: the record must not move when values outgrow it.
TEST(ProbandRecordTest, ValuesInAnyOrderReadBackAsSlotsAndTheVisitStaysInPlace) {
  R_ProbandRecord* record = R_ProbandRecord::create(40, 1);
  R_Date dob, date;
  dob.setFromText("1.1.2000");
  date.setFromText("1.7.2010");
  record->setAgeDate(R_Number(), date, dob);
  record->setComment("first visit \xE8");
  const R_Number& age = record->getAge();
  const R_Date& kept_date = record->getDate();
  const R_String& comment = record->getComment();
  std::string expected(40, '.');
  auto slots = [&] {
    std::string text;
    for (int i = 0; i < record->getCount(); ++i)
      text += !record->getValue(i).isDefined() ? '.' : char('A' + int(record->getValue(i).getValue() * 2) % 26);
    return text;
  };
  for (int i = 0; i < 40; ++i) {
    const int index = (i * 7) % 40;  // 0, 7, 14, ... every slot once
    record->setValue(index, R_Number(index * 1.5));
    expected[size_t(index)] = char('A' + (index * 3) % 26);
    ASSERT_EQ(expected, slots()) << index;
  }
  record->setValue(5, R_Number(0.0));
  record->clearValue(3);
  record->setValue(9, R_Number());
  record->clearValue(3);
  expected[5] = 'A';
  expected[3] = expected[9] = '.';
  EXPECT_EQ(expected, slots());
  // 3834 days / 365.25 = 10.4969...
  EXPECT_EQ(10.497, age.getValue());
  EXPECT_EQ(date.getDayNumber(), kept_date.getDayNumber());
  EXPECT_STREQ("first visit \xE8", comment.get());
  delete record;
}
