#include "page/r_a_textlist.h"

#include "document/r_supertext.h"
#include "knowledge/r_file.h"

R_A_TextList::R_A_TextList(const R_File& file) {
  if (!file.isOK()) return;
  for (int i = 0; i < file.getTextCount(); ++i) {
    if (!file.getText(i)->getTitle().isEmpty()) table.push_back(i);
  }
}
