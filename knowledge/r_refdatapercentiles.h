// The percentile list of a percentile reference: the percentiles (in
// percent) with their labels, as an R_List, and beside it the SD score of
// each percentile, built once after the list has been read. A percentile at
// or outside 0 and 100 is accepted in the list; its SD score is undefined,
// and every search over the table skips it. Owned by its R_RefData, read by
// the lines of that reference; not copyable.
#ifndef KNOWLEDGE_R_REFDATAPERCENTILES_H
#define KNOWLEDGE_R_REFDATAPERCENTILES_H

#include "core/r_number.h"
#include "knowledge/r_list.h"

class R_RefDataPercentiles : public R_List {
 public:
  R_RefDataPercentiles();
  ~R_RefDataPercentiles() override;

  const R_List& getList() const { return *this; }
  // Fills the table of SD scores from the list. Requires: getN() > 0 and no
  // table built yet.
  void buildSDTable();
  bool hasSDTable() const { return sd_table != nullptr; }
  // The SD score of percentile `index`. Requires: hasSDTable(),
  // 0 <= index < getN().
  const R_Number& getSD(int index) const;
  // getN() numbers; null until built.
  const R_Number* getSDTable() const { return sd_table; }

 private:
  R_Number* sd_table;  // owned, getN() long, null until built
};

#endif
