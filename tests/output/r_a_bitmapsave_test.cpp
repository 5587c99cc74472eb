#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

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

// 4 by 2: row 0 is 1 0 0 1, row 1 all 0; palette 0 white, 1 #102030, 2 an
// unknown name that leaves black. The header fields the decoder below does
// not read (resolution, palette kind) are pinned here.
TEST(BitmapSavePCXTest, SmallImageHasTheseExactBytes) {
  TempDir dir;
  R_A_BitmapDraw canvas(4, 2);
  R_A_BitmapSavePCX writer;
  canvas.setPixel(0, 0, 1);
  canvas.setPixel(3, 0, 1);
  EXPECT_TRUE(writer.setColorName(0, "white"));
  EXPECT_TRUE(writer.setColorName(1, "#102030"));
  EXPECT_FALSE(writer.setColorName(2, "nosuchcolour"));
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

// A graph-like canvas with text, dashes, a circle and rows of noise. At 600
// wide the area rows hold runs longer than one code can count (252 pixels)
// and the noise rows literals longer than one code can carry (124 bytes);
// odd widths end rows on a single pixel.
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

// Colour names as the setup gives them: any case, grey or gray, hex with
// trailing bytes; an unknown name or a short hex colour leaves black.
const char* const kPalette[16] = {"white", "black", "DarkSlateBlue", "lightslateblue", "darkgreen", "RED",
                                  "#0a0b0cx", "gray90", "#ff80", "grey11", "blue", "orange",
                                  "maroon", "nosuchcolour", "grey96", "navy"};

std::string expectedDump(const R_A_BitmapDraw& canvas) {
  return "ffffff000000483d8b8470ff006400ff00000a0b0ce5e5e50000001c1c1c0000ffffa500b03060000000"
         "f5f5f5000080\n" + dumpCanvas(canvas);
}

// Both files go through a decoder that shares nothing with the writers:
// Pillow for BMP, a few lines of Python for PCX.
TEST(BitmapSaveTest, BMPAndPCXOfOneCanvasDecodeToItsPixels) {
  int status = -1;
  runCommand("/usr/bin/python3 -c 'import PIL' 2>/dev/null", &status);
  if (status != 0) GTEST_SKIP() << "python3-pil is not installed";
  TempDir dir;
  for (int width : {61, 64, 97, 600}) {
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
