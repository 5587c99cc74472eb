// The variable names that a stored proband lists before its values: the
// names of the knowledge file that wrote it, which need not be the file it
// is read with. Every proband of a binary database carries two such tables,
// so the names of a usual file are kept inside the table, without asking
// the heap. Storage grows with the names actually read, so a damaged count
// cannot make it allocate more than the stream holds.
#ifndef PROBAND_R_PROBANDNAMETABLE_H
#define PROBAND_R_PROBANDNAMETABLE_H

#include "core/r_integer.h"
#include "core/r_smallarray.h"

class R_InputStream;

class R_ProbandNameTable {
 public:
  // Reads the count (an R_Integer block) and, if it is above 0, that many
  // names (R_String blocks). Follows the load convention: nothing is read
  // when *ok is false, and a failure sets it false, keeping the names read
  // before it.
  R_ProbandNameTable(R_InputStream& stream, bool* ok);
  R_ProbandNameTable(const R_ProbandNameTable&) = delete;
  R_ProbandNameTable& operator=(const R_ProbandNameTable&) = delete;

  // The names read, which is the stored count unless the read failed.
  int getCount() const { return starts.size(); }
  // A stored NUL ends the name there. Requires: 0 <= index < getCount().
  const char* getName(int index) const;

 private:
  bool readName(R_InputStream& stream);

  R_Integer size;                 // the stored count
  R_SmallArray<char, 512> bytes;  // the names, each with its terminator
  R_SmallArray<int, 48> starts;   // where each name begins in `bytes`
};

#endif
