#include "core/r_integer.h"

#include <gtest/gtest.h>

#include "tests/support/stored_bytes.h"

TEST(IntegerTest, SetFromTextReadsLikeAtolAndAlwaysSucceeds) {
  const struct {
    const char* text;
    int expected;
  } rows[] = {{"42", 42}, {"  -7x", -7}, {"+3", 3}, {"abc", 0}, {"", 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_Integer n(99);
    EXPECT_TRUE(n.setFromText(row.text));
    EXPECT_EQ(row.expected, n.get());
  }
}

TEST(IntegerTest, BitsAndTextForm) {
  R_Integer n(4);
  n |= 1;
  EXPECT_TRUE(n.hasBits(1));
  EXPECT_FALSE(n.hasBits(2));
  n += 10;
  char buffer[64];
  n.toText(buffer);
  EXPECT_STREQ("15", buffer);
  R_Integer(-2147483647 - 1).toText(buffer);
  EXPECT_STREQ("-2147483648", buffer);
}

TEST(IntegerTest, StoredFormIsTypeByteAndFourLittleEndianBytes) {
  EXPECT_EQ("02 FE FF FF FF", hexOf(savedBytes(R_Integer(-2))));
  EXPECT_EQ("02 04 03 02 01", hexOf(savedBytes(R_Integer(0x01020304))));
  EXPECT_EQ("02 00 00 00 80", hexOf(reloadAndSave<R_Integer>(bytesOf("02 00 00 00 80"))));
}

TEST(IntegerTest, ACutOrMistypedBlockFailsWithValueZero) {
  forEachTruncation<R_Integer>(savedBytes(R_Integer(77)), [](const R_Integer& n, bool ok, R_InputStream&) {
    EXPECT_FALSE(ok);
    EXPECT_EQ(0, n.get());
  });
  Bytes bytes = bytesOf("03 01 00 00 00");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Integer n(in, &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(0, n.get());
}
