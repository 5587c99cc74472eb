// The ordered subset of the variables that a proband stores: the measured
// variables of one scope (anamnestic or followed), in index order. The
// position in this table is the variable's column in a proband's record,
// its `order`. Holds indices only, no copies of the variables.
#ifndef KNOWLEDGE_R_MEASUREDVARIABLES_H
#define KNOWLEDGE_R_MEASUREDVARIABLES_H

class R_File;

class R_MeasuredVariables {
 public:
  // Requires: all variables of `file` are loaded.
  R_MeasuredVariables(const R_File* file, bool followed);
  ~R_MeasuredVariables();
  R_MeasuredVariables(const R_MeasuredVariables&) = delete;
  R_MeasuredVariables& operator=(const R_MeasuredVariables&) = delete;

  int getCount() const { return count; }
  // The name as registered in the statistics. Requires: order in range.
  const char* getName(int order) const;
  // Variable index at that position. Requires: order in range.
  int getIndex(int order) const;
  // Position of a variable index; -1 if it is not in this subset or out of
  // range. A table look-up.
  int getOrderOfIndex(int var_index) const;
  // Position of a name (case ignored); -1 if unknown or not in this subset.
  int getOrder(const char* name) const;
  // Variable index if the name is in this subset, else -1.
  int getIndexOf(const char* name) const;
  bool contains(const char* name) const { return getOrder(name) >= 0; }

 private:
  const R_File* file;
  int* indices;  // owned, count entries: order to variable index; null when count is 0
  int* orders;   // owned, one entry per variable: its order or -1; null without variables
  int count;
};

#endif
