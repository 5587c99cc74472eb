// The lines given as percentiles: the list's values are percentiles in
// percent, its texts the labels. Their SD scores are computed once by
// prepare(), which every getLineSD needs. Owned by R_GraphRefLines; not
// copyable.
#ifndef KNOWLEDGE_R_GRAPHREFLINESINPERCENTILES_H
#define KNOWLEDGE_R_GRAPHREFLINESINPERCENTILES_H

#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_list.h"

class R_GraphRefLinesInPercentiles : public R_GraphRefLinesFormat {
 public:
  R_GraphRefLinesInPercentiles() : sd_table(nullptr) {}
  ~R_GraphRefLinesInPercentiles() override;
  R_GraphRefLinesInPercentiles(const R_GraphRefLinesInPercentiles&) = delete;
  R_GraphRefLinesInPercentiles& operator=(const R_GraphRefLinesInPercentiles&) = delete;

  int getLineCount() const override { return list.getN(); }
  // Requires: isPrepared(), 0 <= index < getLineCount().
  double getLineSD(int index) const override;
  const R_String& getLineText(int index) const override { return list.getText(index); }

  // Computes the SD score of every line; false for an empty list or a value
  // that is not strictly between 0 and 100. A second call answers true at
  // once, so the table is made once.
  bool prepare();
  bool isPrepared() const { return sd_table != nullptr; }

  const R_List& getList() const { return list; }
  R_List& getList() { return list; }

 private:
  R_List list;
  double* sd_table;  // owned, one per item, null until prepared
};

#endif
