// The lines given as SD scores: the list's values are the scores, its texts
// the labels. Owned by R_GraphRefLines; not copyable.
#ifndef KNOWLEDGE_R_GRAPHREFLINESINSD_H
#define KNOWLEDGE_R_GRAPHREFLINESINSD_H

#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_list.h"

class R_GraphRefLinesInSD : public R_GraphRefLinesFormat {
 public:
  R_GraphRefLinesInSD() {}
  R_GraphRefLinesInSD(const R_GraphRefLinesInSD&) = delete;
  R_GraphRefLinesInSD& operator=(const R_GraphRefLinesInSD&) = delete;

  int getLineCount() const override { return list.getN(); }
  double getLineSD(int index) const override;
  const R_String& getLineText(int index) const override { return list.getText(index); }

  // The list has items, and every value is an SD score from -6 to 6.
  bool isOK() const;

  const R_List& getList() const { return list; }
  R_List& getList() { return list; }

 private:
  R_List list;
};

#endif
