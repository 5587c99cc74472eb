#include "core/r_integer.h"

#include <gtest/gtest.h>

#include "tests/support/stored_bytes.h"

TEST(IntegerTest, SetFromTextReadsLikeAtolAndAlwaysSucceeds) {
  const struct { const char* text; int expected; } rows[] = {{"42", 42}, {"  -7x", -7}, {"+3", 3}, {"abc", 0}, {"", 0}};
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
  EXPECT_TRUE(n.hasBits(3) && !n.hasBits(2)) << "any bit of the mask";
  char buffer[64];
  R_Integer(-2147483647 - 1).toText(buffer);
  EXPECT_STREQ("-2147483648", buffer);
}

TEST(IntegerTest, StoredFormIsTypeByteAndFourLittleEndianBytes) {
  expectStoredForm(R_Integer(-2), "02 FE FF FF FF");
  expectStoredForm(R_Integer(0x01020304), "02 04 03 02 01");
  expectEveryCutFails<R_Integer>("02 4D 00 00 00", [](const R_Integer& n) { return n.get() == 0; });
  R_Integer n(5);
  EXPECT_FALSE(loadFrom(bytesOf("03 01 00 00 00"), &n));
  EXPECT_EQ(0, n.get());
}
