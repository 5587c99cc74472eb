// Paints an auxogram through the output: per column a heading, a frame, the
// scale from -L to L SD at the foot with ticks and dotted lines at each
// whole SD, per line its label and a wedge in each column where it has a
// score, and last the zero lines over the wedges. L is the data's SD limit.
// Scores beyond L are not cut: their wedges pass the column's edge.
// Borrows the layout, the data and the output. Not copyable.
#ifndef GRAPH_R_AUXOGRAMDRAW_H
#define GRAPH_R_AUXOGRAMDRAW_H

class R_AuxogramData;
class R_AuxogramLayout;
class R_File;
class R_OutputInterface;
class R_Proband;

class R_AuxogramDraw {
 public:
  // Requires: layout.ok(), made from AD and output.
  R_AuxogramDraw(const R_AuxogramLayout& layout, const R_AuxogramData& AD, R_OutputInterface& output);
  R_AuxogramDraw(const R_AuxogramDraw&) = delete;
  R_AuxogramDraw& operator=(const R_AuxogramDraw&) = delete;

  // One whole picture, from beginGraph to endGraph, titled `caption`.
  void draw(const R_File& file, const R_Proband& proband, const char* caption);

 private:
  // The horizontal middle of a column and half its width.
  struct Column {
    int left, right, mid, half;
  };
  Column column(int index) const;
  void drawColumn(const R_File& file, const R_Proband& proband, int index, int limit);
  // `h`: half the wedge's height at the zero line.
  void drawLine(const R_File& file, int line, int limit, int h);

  const R_AuxogramLayout& layout;
  const R_AuxogramData& AD;
  R_OutputInterface& output;
};

#endif
