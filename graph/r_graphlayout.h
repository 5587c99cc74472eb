// The pixel geometry of one graph: the image's size, the columns that all
// blocks share and, from top to bottom, each block's rows; with the
// conversion of values to pixels and the clipping of lines to a block's
// plot. The image width comes from the output; its height from the blocks.
// Pixels are ints, the origin at the top left, y growing downwards.
//
// ok() fails, without a message, when the plot would be narrower than 50
// pixels or a block would have no height: the graph is then left out.
// Borrows all it is given; lives on the stack of one graph's write. Not
// copyable.
#ifndef GRAPH_R_GRAPHLAYOUT_H
#define GRAPH_R_GRAPHLAYOUT_H

#include <vector>

class R_GraphCalculator;
class R_GraphContainer;
class R_GraphRefLinesFormat;
class R_GraphReference;
class R_Number;
class R_OutputInterface;

class R_GraphLayout {
 public:
  // Does all the work. Requires: CALC.ok(), GR.ok().
  R_GraphLayout(const R_GraphContainer& GC, const R_GraphReference& GR, const R_GraphCalculator& CALC,
                const R_GraphRefLinesFormat& format, R_OutputInterface& output);
  R_GraphLayout(const R_GraphLayout&) = delete;
  R_GraphLayout& operator=(const R_GraphLayout&) = delete;

  bool ok() const { return is_ok; }

  int getImageWidth() const { return image_width; }
  int getImageHeight() const { return image_height; }
  int getFrameLeft() const { return frame_left; }
  int getFrameRight() const { return frame_right; }
  int getPlotLeft() const { return plot_left; }
  int getPlotRight() const { return plot_right; }
  // Block arguments are indices into the container.
  int getBlockTop(int block) const { return rows[block].top; }
  int getBlockBottom(int block) const { return rows[block].bottom; }
  int getPlotTop(int block) const { return rows[block].plot_top; }
  int getPlotBottom(int block) const { return rows[block].plot_bottom; }

  // The pixel of a value, which need not lie inside the scale. A block
  // without Y extent (anamnestic) puts every value on its plot bottom.
  int toPixelX(double value) const;
  int toPixelY(int block, double value) const;
  // Both defined and inside the X scale and the block's Y scale, ends
  // included.
  bool isInScale(int block, const R_Number& x, const R_Number& y) const;
  // The part of the line inside the block's plot, in pixels. False when an
  // end is undefined or nothing of the line lies inside. The ends may come
  // back exchanged: callers must not rely on their order.
  bool clipLine(int block, const R_Number& x0, const R_Number& y0, const R_Number& x1, const R_Number& y1, int& px0,
                int& py0, int& px1, int& py1) const;

 private:
  struct Row {
    int bottom = 0;       // where the next block begins
    int top = 0;
    int plot_bottom = 0;  // pixel of Y_min
    int plot_top = 0;     // pixel of Y_max
  };

  bool computeColumns();
  // Returns the block's height; y is where the block begins.
  int computeRows(int block, int y);
  int plotHeight(int block);
  int getYLabelWidth(int block) const;
  int getTargetWidth(int block) const;
  int getRefLabelWidth(int block) const;

  int frame_left = 0;
  int plot_left = 0;
  int plot_right = 0;
  int frame_right = 0;
  int image_right = 0;
  int image_width = 0;
  int image_height = 0;
  bool is_ok = false;
  std::vector<Row> rows;  // one per block of GC
  const R_GraphContainer* GC;
  const R_GraphReference* GR;
  const R_GraphCalculator* CALC;
  const R_GraphRefLinesFormat* format;
  R_OutputInterface* output;
};

#endif
