// The common face of the two lists of lines that graphs draw over a
// reference without a percentile list of its own: each line has an SD score
// and a label. The lists belong to the R_GraphRefLines of the knowledge
// file; callers borrow this face.
#ifndef KNOWLEDGE_R_GRAPHREFLINESFORMAT_H
#define KNOWLEDGE_R_GRAPHREFLINESFORMAT_H

#include "core/r_string.h"

class R_GraphRefLinesFormat {
 public:
  virtual ~R_GraphRefLinesFormat() {}

  virtual int getLineCount() const = 0;
  // The line's SD score. Requires: 0 <= index < getLineCount(), and for the
  // percentile lines a successful prepare().
  virtual double getLineSD(int index) const = 0;
  // The line's label. Requires: 0 <= index < getLineCount().
  virtual const R_String& getLineText(int index) const = 0;

  // The importance class of line `index` among `count` lines: 0 for the
  // central line(s), 1 and 2 for outer ones, which graphs draw thinner. An
  // index outside a list of 3 to 6 lines gives 2.
  static int getLineClass(int index, int count);
};

#endif
