#include "knowledge/r_graphreflinesformat.h"

namespace {

// Classes of the short lists, by count 3 to 6 and index; 2 past the end.
const int kShortClasses[4][6] = {
    {2, 0, 2, 2, 2, 2},
    {2, 1, 1, 2, 2, 2},
    {1, 2, 0, 2, 1, 2},
    {1, 2, 0, 0, 2, 1},
};

}  // namespace

int R_GraphRefLinesFormat::getLineClass(int index, int count) {
  if (count < 2) return 0;
  if (count == 2) return 1;
  if (count <= 6) return (index >= 0 && index < count) ? kShortClasses[count - 3][index] : 2;
  bool middle = (count % 2 == 1) ? index == (count - 1) / 2 : (index == count / 2 || index == count / 2 - 1);
  if (middle) return 0;
  if (index == 1 || index == count - 2) return 1;
  return 2;
}
