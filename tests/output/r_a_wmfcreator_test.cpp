#include "output/r_a_wmfcreator.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "output/r_a_vectordraw.h"
#include "tests/support/test_files.h"

namespace {

std::string bytes(std::initializer_list<int> values) {
  std::string text;
  for (int v : values) text += static_cast<char>(v);
  return text;
}

// 100 by 50. The checksum is CDD7 ^ 9AC6 ^ 0064 ^ 0032 ^ 012C = 566B.
std::string placeable() {
  return bytes({0xD7, 0xCD, 0xC6, 0x9A, 0, 0, 0, 0, 0, 0, 100, 0, 50, 0, 0x2C, 0x01, 0, 0, 0, 0, 0x6B, 0x56});
}

std::string metaHeader(int sizeWords, int objects, int maxRecord) {
  return bytes({1, 0, 9, 0, 0, 3, sizeWords, 0, 0, 0, objects, 0, maxRecord, 0, 0, 0, 0, 0});
}

const std::string kOpening = bytes({4, 0, 0, 0, 0x03, 0x01, 1, 0,                // map mode 1
                                    5, 0, 0, 0, 0x0B, 0x02, 0, 0, 0, 0,          // window origin
                                    5, 0, 0, 0, 0x0C, 0x02, 50, 0, 100, 0});     // extent: height, width

TEST(WMFCreatorTest, HeaderEndsWithTheFinalSizeObjectCountAndLongestRecord) {
  TempDir dir;
  {
    R_A_WMFCreator wmf(dir.file("a.wmf").c_str(), 100, 50);
    EXPECT_EQ(0, wmf.allocObject());
    EXPECT_EQ(1, wmf.allocObject());
    wmf.deleteObject(0);                 // 4 words
    EXPECT_EQ(0, wmf.allocObject());     // the freed slot comes back first
    wmf.selectObject(1);                 // 4 words
    const uint16_t words[7] = {1, 2, 3, 4, 5, 6, 0xABCD};
    wmf.writeRecord(0x0324, words, 7);   // 10 words, the longest
    for (int i = 2; i < 64; ++i) EXPECT_EQ(i, wmf.allocObject());
    EXPECT_EQ(-1, wmf.allocObject());    // the sixty-fifth is refused
  }
  const std::string records =
      bytes({4, 0, 0, 0, 0xF0, 0x01, 0, 0, 4, 0, 0, 0, 0x2D, 0x01, 1, 0}) +
      bytes({10, 0, 0, 0, 0x24, 0x03, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 0xCD, 0xAB});
  EXPECT_EQ(placeable() + metaHeader(23 + 18, 64, 10) + kOpening + records, readFile(dir.file("a.wmf")));
}

TEST(VectorDrawTest, OnlyTextAlignmentReachesTheFile) {
  const int flags[3][3] = {{0, 2, 6}, {8, 10, 14}, {24, 26, 30}};  // [vertical][horizontal]
  for (int v = 0; v < 3; ++v)
    for (int h = 0; h < 3; ++h) EXPECT_EQ(flags[v][h], R_A_VectorDraw::getTextAlignFlags(v, h));
  EXPECT_EQ(0, R_A_VectorDraw::getTextAlignFlags(3, -1));

  TempDir dir;
  {
    R_A_VectorDraw vector(dir.file("g.wmf").c_str(), 100, 50);
    EXPECT_TRUE(vector.setColorName(0, "white"));
    vector.setBigFontHeight(20);
    vector.drawLine(0, 0, 99, 49, 1, 0xFFFF, 2);
    vector.fillRect(0, 0, 10, 10, 3);
    vector.drawCircle(5, 5, 3, 1);
    vector.drawText(10, 10, 2, 1, 1, "label");
    EXPECT_EQ(0, vector.getTextWidth("label"));
    EXPECT_EQ(0, vector.getFontHeight(true));
  }
  EXPECT_EQ(placeable() + metaHeader(23 + 4, 0, 8) + kOpening + bytes({4, 0, 0, 0, 0x2E, 0x01, 26, 0}),
            readFile(dir.file("g.wmf")));
  EXPECT_FALSE(fileExists(dir.file("g.wmf.tmp")));
}

}  // namespace
