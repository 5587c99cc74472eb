// The geometry of an auxogram: the image size, the columns side by side
// from the left edge, the line labels right of them, the line areas one
// under the other below the headings, and the scale texts at the foot.
//
// Built from the data and the output's metrics. Not ok when a column is too
// narrow for its heading or its scale texts (too many visits for the image
// width), or when a measure is negative or the image would pass
// maxImageSize pixels on a side: then there is no picture. Borrows the data
// and the output, which must outlive it. Not copyable.
#ifndef GRAPH_R_AUXOGRAMLAYOUT_H
#define GRAPH_R_AUXOGRAMLAYOUT_H

class R_AuxogramData;
class R_File;
class R_OutputInterface;
class R_Proband;

class R_AuxogramLayout {
 public:
  static const int maxImageSize = 32767;

  // Measures everything at once. Requires: AD prepared for `proband`, with
  // at least one column.
  R_AuxogramLayout(const R_AuxogramData& AD, R_OutputInterface& output, const R_File& file,
                   const R_Proband& proband);
  R_AuxogramLayout(const R_AuxogramLayout&) = delete;
  R_AuxogramLayout& operator=(const R_AuxogramLayout&) = delete;

  bool ok() const { return is_ok; }
  // The rest requires ok(); columns lie in 0 to AD.getColumnCount()-1 and
  // lines in 0 to AD.getLineCount()-1.
  int getImageWidth() const { return image_width; }
  int getImageHeight() const { return image_height; }
  int getColumnLeft(int column) const;
  int getColumnRight(int column) const;
  // The middle of the line's area.
  int getLineY(int line) const;
  // The frame of the columns: one gap above the first line area and one
  // below the last.
  int getDataTop() const { return head - line_gap; }
  int getDataBottom() const { return data_bottom + line_gap; }
  // Where the line labels start.
  int getTextX() const { return text_x + column_gap; }

 private:
  // Sets the measures; false when one lies outside what a picture can hold.
  bool measure(const R_File& file);
  // Whether each column's heading and the short scale text fit a column.
  bool textsFit(const R_File& file, const R_Proband& proband);
  int widestLabel(const R_File& file);

  int image_width;
  int image_height;
  int text_x;        // the right edge of the columns' space
  int head;          // the top of the first line area
  int data_bottom;   // the bottom of the last line area
  int line_height;
  int column_gap;
  int line_gap;
  int column_width;
  const R_AuxogramData& AD;
  R_OutputInterface& output;
  bool is_ok;
};

#endif
