#include "proband/r_probandnametable.h"

#include <cassert>
#include <climits>

#include "core/r_inputstream.h"
#include "core/r_typecodes.h"

R_ProbandNameTable::R_ProbandNameTable(R_InputStream& stream, bool* ok) {
  size.load(stream, ok);
  while (*ok && getCount() < size.get())
    if (!readName(stream)) *ok = false;
}

const char* R_ProbandNameTable::getName(int index) const {
  assert(index >= 0 && index < getCount());
  return bytes.data() + starts[index];
}

// A name is stored as an R_String: its type byte, the length as a word, the
// bytes. The block grows by at most one word's length beyond what was read,
// and never past the int range, whatever a damaged stream holds.
bool R_ProbandNameTable::readName(R_InputStream& stream) {
  if (!stream.checkType(R_TypeString)) return false;
  int length = stream.readWord();
  int start = bytes.size();
  if (!stream.isOK() || start > INT_MAX - length - 1) return false;
  bytes.resize(start + length + 1);
  stream.readBytes(reinterpret_cast<unsigned char*>(bytes.data() + start), length);
  bytes[start + length] = 0;
  if (!stream.isOK()) return false;
  starts.push(start);
  return true;
}
