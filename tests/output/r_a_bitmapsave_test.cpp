#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "output/r_a_bitmapdraw.h"
#include "output/r_a_bitmapsavebmp.h"
#include "output/r_a_bitmapsavepcx.h"
#include "tests/output/canvas_dump.h"
#include "tests/support/test_files.h"

namespace {

// The bytes of `data` at `offsets`, in decimal.
std::string byteList(const std::string& data, std::initializer_list<size_t> offsets) {
  std::string list;
  for (size_t at : offsets) list += (list.empty() ? "" : " ") + std::to_string(static_cast<unsigned char>(data.at(at)));
  return list;
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
    // What the decoders pass by: a resolution of 75 in both files, and the
    // PCX palette kind 1 after the canvas's row bytes.
    const int row = canvas.getRowBytes();
    EXPECT_EQ("75 0 75 0 1 " + std::to_string(row % 256) + " " + std::to_string(row / 256) + " 1",
              byteList(readFile(dir.file("g.pcx")), {12, 13, 14, 15, 65, 66, 67, 68}));
    EXPECT_EQ("75 0 75 0", byteList(readFile(dir.file("g.bmp")), {38, 39, 42, 43}));
  }
}

}  // namespace
