// The painter of one graph whose values, scales and geometry are settled:
// it computes nothing but pixels and talks only to the output, so that the
// same painter serves a bitmap and a vector file. It paints in layers, each
// over all blocks in the order of adding, so that later layers lie on
// earlier ones: image background, block backgrounds, reference areas, grids,
// reference lines, the one X axis, each block's Y axis and frame, targets,
// and last the proband's data (secondary plots under the primary one).
//
// Lines of the data and of the references are clipped to a block's plot;
// marks and arrows that lie outside the scale are left out whole; target
// values are not clipped. Texts of one kind that would lie on each other
// are left out, the later one giving way, and the central reference lines
// are labelled first so that their labels win. Borrows all it is given;
// lives on the stack of one graph's write. Not copyable.
#ifndef GRAPH_R_GRAPHDRAW_H
#define GRAPH_R_GRAPHDRAW_H

#include <string>

class R_CalcValue;
class R_GraphCalculator;
class R_GraphContainer;
class R_GraphLayout;
class R_GraphPlotCalculated;
class R_GraphRefLinesFormat;
class R_GraphReference;
class R_GraphTextMap;
class R_Number;
class R_OutputInterface;
class R_RefData;

class R_GraphDraw {
 public:
  // Requires: GR.ok(), layout.ok(), all made over the same container.
  R_GraphDraw(const R_GraphContainer& GC, const R_GraphReference& GR, const R_GraphCalculator& CALC,
              const R_GraphLayout& layout, const R_GraphRefLinesFormat& format, R_OutputInterface& output);
  R_GraphDraw(const R_GraphDraw&) = delete;
  R_GraphDraw& operator=(const R_GraphDraw&) = delete;

  // Paints the whole graph between beginGraph and endGraph of a graph of
  // kind 0 titled `caption`.
  void draw(const char* caption);

  // Block codes of fillArea and frameArea.
  enum Area { areaBackground = 0, areaData = 1, areaAnalysis = 2, areaList = 3, areaAnamnestic = 4 };
  // Fonts of drawText.
  enum Font {
    fontXNumber = 0,
    fontYNumber = 1,
    fontCaption = 3,
    fontRefMain = 4,
    fontRefOther = 5,
    fontRefMainShort = 6,
    fontRefOtherShort = 7,
    fontTarget = 8
  };
  // Kinds of drawRasterLine.
  enum Raster { rasterTick = 0, rasterMain = 2, rasterFine = 3 };

 private:
  // The reference data shown behind a block, or null.
  const R_RefData* shownRefData(int block) const;
  int areaCode(int block) const;
  bool isTransposed(int block) const;

  void drawBackgrounds();
  void drawRefArea(int block, const R_RefData& data);
  // Low and high of the line values at x index `index_x` (-1 for the
  // anamnestic line); false when no line has a value there.
  bool lineBand(const R_RefData& data, int index_x, double& low, double& high) const;
  void drawGrid(int block);
  void drawRefLines(int block, const R_RefData& data);
  void drawRefLinesAnamnestic(int block, const R_RefData& data, int line, int style, R_GraphTextMap& map);
  void drawRefLinesTransposed(int block, const R_RefData& data, int line, int style, R_GraphTextMap& map);
  void drawRefLinesOverX(int block, const R_RefData& data, int line, int style, R_GraphTextMap& map);
  void drawXAxis();
  void drawYAxis(int block);
  std::string yCaption(int block) const;
  void drawTargets(int block);
  void drawData(int block);
  void drawPlot(int block, const R_GraphPlotCalculated& value, int series);
  void drawLines(int block, const R_CalcValue& value, bool swap, int series);
  void drawMarks(int block, const R_GraphPlotCalculated& value, bool swap, int series);

  const R_GraphContainer* GC;
  const R_GraphReference* GR;
  const R_GraphCalculator* CALC;
  const R_GraphLayout* layout;
  const R_GraphRefLinesFormat* format;
  R_OutputInterface* output;
};

#endif
