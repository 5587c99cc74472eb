#include "knowledge/r_measuredvariables.h"

#include <cassert>

#include "knowledge/r_file.h"
#include "knowledge/r_variable.h"

namespace {

bool belongs(const R_Variable& variable, bool followed) {
  return variable.isMeasured() && (followed ? variable.isFollowed() : variable.isAnamnestic());
}

}  // namespace

R_MeasuredVariables::R_MeasuredVariables(const R_File* owner, bool followed)
    : file(owner), indices(nullptr), orders(nullptr), count(0) {
  int var_count = file->getVarCount();
  for (int i = 0; i < var_count; ++i) {
    if (belongs(*file->getVariable(i), followed)) ++count;
  }
  if (var_count > 0) orders = new int[var_count];
  if (count > 0) indices = new int[count];
  int order = 0;
  for (int i = 0; i < var_count; ++i) {
    bool member = belongs(*file->getVariable(i), followed);
    orders[i] = member ? order : -1;
    if (member) indices[order++] = i;
  }
}

R_MeasuredVariables::~R_MeasuredVariables() {
  delete[] indices;
  delete[] orders;
}

const char* R_MeasuredVariables::getName(int order) const {
  return file->getStatistics().getVarName(getIndex(order));
}

int R_MeasuredVariables::getIndex(int order) const {
  assert(order >= 0 && order < count);
  return indices[order];
}

int R_MeasuredVariables::getOrderOfIndex(int var_index) const {
  if (var_index < 0 || var_index >= file->getVarCount()) return -1;
  return orders[var_index];
}

int R_MeasuredVariables::getOrder(const char* name) const {
  return getOrderOfIndex(file->getStatistics().getVarIndex(name));
}

int R_MeasuredVariables::getIndexOf(const char* name) const {
  int var_index = file->getStatistics().getVarIndex(name);
  return getOrderOfIndex(var_index) >= 0 ? var_index : -1;
}
