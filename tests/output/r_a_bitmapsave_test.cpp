#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "output/r_a_bitmapdraw.h"
#include "output/r_a_bitmapsavebmp.h"
#include "output/r_a_bitmapsavepcx.h"
#include "tests/output/canvas_dump.h"
#include "tests/support/test_files.h"

namespace {

std::string bytes(std::initializer_list<int> values) {
  std::string text;
  for (int v : values) text += static_cast<char>(v);
  return text;
}

std::string zeros(int count) { return std::string(count, '\0'); }

std::string encodedBMP(const std::vector<unsigned char>& row, int width) {
  std::vector<unsigned char> out(width + 1);
  const int length = R_A_BitmapSaveBMP::encodeRow(row.data(), width, out.data());
  return std::string(out.begin(), out.begin() + length);
}

// 4 by 2: row 0 is 1 0 0 1, row 1 all 0; palette 0 white, 1 #102030, 2 an
// unknown name that leaves black.
void drawSmall(R_A_BitmapDraw* canvas, R_A_BitmapSave* writer) {
  canvas->setPixel(0, 0, 1);
  canvas->setPixel(3, 0, 1);
  EXPECT_TRUE(writer->setColorName(0, "white"));
  EXPECT_TRUE(writer->setColorName(1, "#102030"));
  EXPECT_FALSE(writer->setColorName(2, "nosuchcolour"));
}

TEST(BitmapSaveBMPTest, SmallImageHasTheseExactBytes) {
  TempDir dir;
  R_A_BitmapDraw canvas(4, 2);
  R_A_BitmapSaveBMP writer;
  drawSmall(&canvas, &writer);
  ASSERT_TRUE(canvas.save(dir.file("a.bmp").c_str(), writer));
  const std::string expected =
      bytes({'B', 'M', 130, 0, 0, 0, 0, 0, 0, 0, 118, 0, 0, 0}) +
      bytes({40, 0, 0, 0, 4, 0, 0, 0, 2, 0, 0, 0, 1, 0, 4, 0, 2, 0, 0, 0, 12, 0, 0, 0,
             75, 0, 0, 0, 75, 0, 0, 0}) + zeros(8) +
      bytes({255, 255, 255, 0, 0x30, 0x20, 0x10, 0}) + zeros(56) +
      bytes({2, 0, 2, 0, 0, 0,             // row 1 first, closed by end of line
             2, 0x10, 2, 0x01, 0, 1});     // row 0, closed by end of bitmap alone
  EXPECT_EQ(expected, readFile(dir.file("a.bmp")));
  EXPECT_FALSE(fileExists(dir.file("a.bmp.tmp")));
}

TEST(BitmapSaveBMPTest, RowEncoderRunsLiteralsAndTheEarlyRowEnd) {
  struct Row {
    const char* label;
    std::vector<unsigned char> row;
    int width;
    std::string codes;
  } rows[] = {
      {"uniform 400: runs of 252, 146, 2", std::vector<unsigned char>(200, 0x55), 400,
       bytes({252, 0x55, 146, 0x55, 2, 0x55})},
      {"literal of 3 bytes is padded", {0x01, 0x23, 0x45, 0x67, 0x89}, 10,
       bytes({0, 6, 0x01, 0x23, 0x45, 0, 2, 0x67, 2, 0x89})},
      {"odd width ends with one pixel", {0x12, 0x34, 0x50}, 5, bytes({2, 0x12, 2, 0x34, 1, 0x50})},
      {"uniform 7 pixels: nothing written", {0x33, 0x33, 0x33, 0x30}, 7, ""},
      {"6 left, the last pair unseen: nothing written", {0x12, 0x34, 0xFF, 0xFF, 0xF0}, 10,
       bytes({0, 4, 0x12, 0x34})},
      {"change then 12 equal bytes: the literal stops", {0x01, 0x02, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
        0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11}, 32,
       bytes({0, 4, 0x01, 0x02, 26, 0x11, 2, 0x11})},
      {"11 equal bytes stay inside a literal", {0x01, 0x02, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
        0x11, 0x11, 0x11, 0x11, 0x03, 0x04, 0x05, 0x06, 0x07}, 36,
       bytes({0, 32, 0x01, 0x02, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
              0x03, 0x04, 0x05, 2, 0x06, 2, 0x07})},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.label);
    EXPECT_EQ(r.codes, encodedBMP(r.row, r.width));
  }
  // 130 bytes, each unlike the one before: a literal stops at 124 bytes.
  std::vector<unsigned char> ramp;
  std::string codes = bytes({0, 248});
  for (int j = 0; j < 130; ++j) ramp.push_back(static_cast<unsigned char>(j));
  codes.append(ramp.begin(), ramp.begin() + 124);
  codes += bytes({0, 8, 0x7C, 0x7D, 0x7E, 0x7F, 2, 0x80, 2, 0x81});
  EXPECT_EQ(codes, encodedBMP(ramp, 260));
}

TEST(BitmapSavePCXTest, SmallImageHasTheseExactBytes) {
  TempDir dir;
  R_A_BitmapDraw canvas(4, 2);
  R_A_BitmapSavePCX writer;
  drawSmall(&canvas, &writer);
  ASSERT_TRUE(canvas.save(dir.file("a.pcx").c_str(), writer));
  const std::string expected =
      bytes({10, 5, 1, 4, 0, 0, 0, 0, 3, 0, 1, 0, 75, 0, 75, 0}) +
      bytes({255, 255, 255, 0x10, 0x20, 0x30}) + zeros(42) +
      bytes({0, 1, 16, 0, 1, 0}) + zeros(58) +
      bytes({0x10, 0x01, 192 + 14, 0,  // row 0: all 16 row bytes
             192 + 16, 0});            // row 1
  EXPECT_EQ(expected, readFile(dir.file("a.pcx")));
}

// Writes a few bytes, then reports a failure.
class FailingWriter : public R_A_BitmapSave {
 public:
  bool write(R_OutputStream& out, int, int, int, const unsigned char*) override {
    out.writeBytes(reinterpret_cast<const unsigned char*>("half"), 4);
    return false;
  }
  void setColor(int, int, int, int) override {}
};

TEST(BitmapSaveTest, FailedSaveLeavesNoFileAndTheOldOneIntact) {
  TempDir dir;
  const std::string path = dir.file("graph.bmp");
  writeFile(path, "old");
  R_A_BitmapDraw canvas(8, 8);
  FailingWriter failing;
  EXPECT_FALSE(canvas.save(path.c_str(), failing));
  EXPECT_EQ("old", readFile(path));
  EXPECT_FALSE(fileExists(path + ".tmp"));

  R_A_BitmapSaveBMP bmp;
  EXPECT_FALSE(canvas.save(dir.file("missing/graph.bmp").c_str(), bmp));
  R_A_BitmapDraw empty(0, 10);
  EXPECT_FALSE(empty.save(dir.file("empty.bmp").c_str(), bmp));
  EXPECT_FALSE(fileExists(dir.file("empty.bmp")));
}

// A graph-like canvas with text, dashes, a circle and rows of noise that
// exercise literal stretches.
void drawGraph(R_A_BitmapDraw* canvas) {
  const int w = canvas->getWidth(), h = canvas->getHeight();
  canvas->fillRect(4, 2, w - 5, h - 12, 13);
  canvas->drawLine(4, 2, w - 4, 2, 1, 0xFFFF, 1);
  canvas->drawLine(4, 2, 4, h - 11, 1, 0xFFFF, 1);
  canvas->drawLine(6, h - 13, w - 6, 4, 8, 0xFFFF, 2);
  canvas->drawLine(6, 6, w - 6, 6, 5, 0x7777, 1);
  canvas->drawCircle(20, 10, 4, 9);
  canvas->drawString(8, 4, 15, false, 0, "V\xFD\x9Aka");
  uint32_t seed = 7;
  for (int y = h - 5; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      seed = seed * 1103515245u + 12345u;
      canvas->setPixel(x, y, (seed >> 16) % 3 ? static_cast<int>((seed >> 20) & 15) : 6);
    }
}

const char* const kPalette[16] = {"white", "black", "darkslateblue", "lightslateblue", "darkgreen", "red",
                                  "#0a0b0c", "grey86", "black", "grey11", "blue", "orange",
                                  "maroon", "white", "grey96", "navy"};

std::string expectedDump(const R_A_BitmapDraw& canvas) {
  return "ffffff000000483d8b8470ff006400ff00000a0b0cdbdbdb0000001c1c1c0000ffffa500b03060ffffff"
         "f5f5f5000080\n" + dumpCanvas(canvas);
}

// Both files go through a decoder that shares nothing with the writers:
// Pillow for BMP, a few lines of Python for PCX.
TEST(BitmapSaveTest, BMPAndPCXOfOneCanvasDecodeToItsPixels) {
  int status = -1;
  runCommand("/usr/bin/python3 -c 'import PIL' 2>/dev/null", &status);
  if (status != 0) GTEST_SKIP() << "python3-pil is not installed";
  TempDir dir;
  for (int width : {61, 64, 97}) {
    SCOPED_TRACE(width);
    R_A_BitmapDraw canvas(width, 33);
    drawGraph(&canvas);
    R_A_BitmapSaveBMP bmp;
    R_A_BitmapSavePCX pcx;
    for (int i = 0; i < 16; ++i) {
      bmp.setColorName(i, kPalette[i]);
      pcx.setColorName(i, kPalette[i]);
    }
    ASSERT_TRUE(canvas.save(dir.file("g.bmp").c_str(), bmp));
    ASSERT_TRUE(canvas.save(dir.file("g.pcx").c_str(), pcx));
    const std::string decoder = "/usr/bin/python3 " + testData("output/decode_image.py");
    EXPECT_EQ(expectedDump(canvas), runCommand(decoder + " bmp " + dir.file("g.bmp"), &status));
    EXPECT_EQ(0, status);
    EXPECT_EQ(expectedDump(canvas), runCommand(decoder + " pcx " + dir.file("g.pcx"), &status));
    EXPECT_EQ(0, status);
  }
}

}  // namespace
