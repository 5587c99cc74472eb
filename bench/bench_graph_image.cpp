// A typical growth graph drawn on the bitmap canvas and saved as each image
// kind: 512 by 384 pixels with its backgrounds, raster, seven reference
// curves, a band, a data line with marks and about thirty labels. Items
// processed are graphs, so items per second read as graphs per second.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "output/r_a_bitmapdraw.h"
#include "output/r_a_bitmapsavebmp.h"
#include "output/r_a_bitmapsavepcx.h"
#include "output/r_a_vectordraw.h"

namespace {

const int kWidth = 512, kHeight = 384;
const int kLeft = 40, kTop = 10, kRight = 500, kBottom = 350;
const int kSolid = 0xFFFF;

const char* const kPalette[16] = {"white", "black", "darkslateblue", "lightslateblue", "darkgreen", "red",
                                  "black", "grey86", "black", "grey11", "blue", "black",
                                  "black", "white", "grey96", "black"};

int curveY(int curve, int x) {
  return kBottom - 20 - curve * 35 - static_cast<int>(120 * std::sqrt((x - kLeft) / 460.0));
}

void drawRaster(R_A_BitmapDraw* canvas) {
  for (int x = kLeft; x <= kRight; x += 10)
    canvas->drawLine(x, kTop, x, kBottom, x % 50 ? 4 : 5, x % 50 ? 0xCCCC : 0x7777, 1);
  for (int y = kTop; y <= kBottom; y += 10)
    canvas->drawLine(kLeft, y, kRight, y, y % 50 ? 4 : 5, y % 50 ? 0xCCCC : 0x7777, 1);
  canvas->drawLine(kLeft, kBottom, kRight, kBottom, 1, kSolid, 1);
  canvas->drawLine(kLeft, kTop, kLeft, kBottom, 1, kSolid, 1);
}

void drawCurves(R_A_BitmapDraw* canvas) {
  for (int x = kLeft + 1; x < kRight; ++x)  // the band between two curves
    canvas->drawLine(x, curveY(2, x), x, curveY(4, x), 7, kSolid, 1);
  for (int curve = 0; curve < 7; ++curve)
    for (int x = kLeft; x + 5 <= kRight; x += 5)
      canvas->drawLine(x, curveY(curve, x), x + 5, curveY(curve, x + 5), curve == 3 ? 2 : 3, kSolid, 1);
}

void drawData(R_A_BitmapDraw* canvas) {
  int px = kLeft + 20, py = curveY(3, px) + 4;
  for (int i = 1; i <= 12; ++i) {
    const int x = kLeft + 20 + i * 36, y = curveY(3, x) + 4 - (i % 3) * 3;
    canvas->drawLine(px, py, x, y, 8, kSolid, 2);
    for (int r = 2; r <= 2; ++r) canvas->drawCircle(x, y, r, 0);
    canvas->drawLine(x - 4, y - 4, x + 4, y + 4, 8, kSolid, 1);
    canvas->drawLine(x - 4, y + 4, x + 4, y - 4, 8, kSolid, 1);
    canvas->drawCircle(x, y, 4, 8);
    px = x;
    py = y;
  }
}

void drawLabels(R_A_BitmapDraw* canvas) {
  char text[16];
  for (int i = 0; i <= 18; ++i) {
    std::snprintf(text, sizeof text, "%d", i);
    canvas->drawString(kLeft + i * 25 - 4, kBottom + 4, 1, false, 0, text);
  }
  for (int i = 0; i <= 6; ++i) {
    std::snprintf(text, sizeof text, "%d", 60 + i * 20);
    canvas->drawString(4, kBottom - i * 50 - 5, 1, false, 0, text);
  }
  canvas->drawString(200, kBottom + 20, 15, false, 0, "V\xFDk v\xFD\x9Aky (cm)");
  for (int curve = 0; curve < 7; ++curve) canvas->drawString(kRight - 30, curveY(curve, kRight) - 12, 2, false, 0, "P97");
}

void drawGraph(R_A_BitmapDraw* canvas) {
  canvas->fillRect(0, 0, kWidth - 1, kHeight - 1, 0);
  canvas->fillRect(kLeft, kTop, kRight, kBottom, 13);
  drawRaster(canvas);
  drawCurves(canvas);
  drawData(canvas);
  drawLabels(canvas);
}

// The directory of the image files: $AUX_BENCH_IMAGE_DIR, else the system's
// temporary directory. A disk file system that is busy creating and removing
// thousands of files shows in the figures; /dev/shm shows the code alone.
std::string imagePath(const char* extension, int64_t number) {
  const char* dir = std::getenv("AUX_BENCH_IMAGE_DIR");
  return std::string(dir != nullptr && *dir != '\0' ? dir : P_tmpdir) + "/bench_graph_image" +
         std::to_string(number) + "." + extension;
}

void BM_DrawGraph(benchmark::State& state) {
  for (auto _ : state) {
    R_A_BitmapDraw canvas(kWidth, kHeight);
    drawGraph(&canvas);
    benchmark::DoNotOptimize(canvas.getPixel(100, 100));
  }
  state.SetItemsProcessed(state.iterations());
}

// Each graph gets a file name of its own, as on a page; the files are
// removed after the timing.
template <class Writer>
void drawAndSave(benchmark::State& state, const char* extension) {
  int64_t count = 0;
  for (auto _ : state) {
    R_A_BitmapDraw canvas(kWidth, kHeight);
    drawGraph(&canvas);
    Writer writer;
    for (int i = 0; i < 16; ++i) writer.setColorName(i, kPalette[i]);
    const std::string path = imagePath(extension, count++);
    if (!canvas.save(path.c_str(), writer)) state.SkipWithError("cannot write the image");
  }
  state.SetItemsProcessed(state.iterations());
  for (int64_t i = 0; i < count; ++i) std::remove(imagePath(extension, i).c_str());
}

// A stream that drops every byte.
class NullStream : public R_OutputStream {
 public:
  void put(int) override {}
  void writeBytes(const unsigned char*, int) override {}
};

// The same without the file system: the writer's bytes are dropped, so that
// the figure shows the canvas and the encoder alone.
template <class Writer>
void drawAndEncode(benchmark::State& state) {
  NullStream sink;
  for (auto _ : state) {
    R_A_BitmapDraw canvas(kWidth, kHeight);
    drawGraph(&canvas);
    Writer writer;
    for (int i = 0; i < 16; ++i) writer.setColorName(i, kPalette[i]);
    writer.write(sink, canvas.getWidth(), canvas.getHeight(), canvas.getRowBytes(), canvas.getPixels());
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_DrawAndSaveBMP(benchmark::State& state) { drawAndSave<R_A_BitmapSaveBMP>(state, "bmp"); }
void BM_DrawAndSavePCX(benchmark::State& state) { drawAndSave<R_A_BitmapSavePCX>(state, "pcx"); }
void BM_DrawAndEncodeBMP(benchmark::State& state) { drawAndEncode<R_A_BitmapSaveBMP>(state); }
void BM_DrawAndEncodePCX(benchmark::State& state) { drawAndEncode<R_A_BitmapSavePCX>(state); }

// The metafile of this system holds the alignment records only; this is the
// cost of a graph's file when "wmf" is chosen.
void BM_DrawAndSaveWMF(benchmark::State& state) {
  int64_t count = 0;
  for (auto _ : state) {
    R_A_VectorDraw vector(imagePath("wmf", count++).c_str(), kWidth, kHeight);
    for (int i = 0; i < 13; ++i) vector.setColorName(i, kPalette[i]);
    for (int label = 0; label < 34; ++label) vector.drawText(label, label, 1, 2, 1, "label");
  }
  state.SetItemsProcessed(state.iterations());
  for (int64_t i = 0; i < count; ++i) std::remove(imagePath("wmf", i).c_str());
}

}  // namespace

BENCHMARK(BM_DrawGraph)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DrawAndSaveBMP)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DrawAndSavePCX)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DrawAndEncodeBMP)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DrawAndEncodePCX)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DrawAndSaveWMF)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
