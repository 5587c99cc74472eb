#include "page/r_a_pagecontext.h"

#include "knowledge/r_file.h"
#include "knowledge/r_list.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "proband/r_a_database.h"

namespace {
const R_Variable* variableAt(const R_File& file, const R_MeasuredVariables* vars, int order) {
  if (!vars || order < 0 || order >= vars->getCount()) return nullptr;
  return file.getVariable(vars->getIndex(order));
}
}  // namespace

R_A_PageContext::R_A_PageContext(R_A_Database& db, const R_File& file)
    : F(file), database(db), probandIndex(-1), measureIndex(-1), anamnesticOrder(-1), followedOrder(-1),
      textIndex(-1), listItem(-1), current(nullptr), temporary(&file), temporaryInUse(false), texts(file),
      searchedNotFound(false), defaultPage(nullptr), imageBase(nullptr), pageBase(nullptr),
      pageDirectory(nullptr), pageExtension(nullptr), dateFormat(nullptr), graphDirectory(nullptr),
      graphUrl(nullptr), userStyle(nullptr) {}

void R_A_PageContext::resetIndices() {
  probandIndex = measureIndex = anamnesticOrder = followedOrder = textIndex = listItem = -1;
}

int R_A_PageContext::getAnamnesticCount() const {
  const R_MeasuredVariables* vars = F.getAnamnesticVars();
  return vars ? vars->getCount() : 0;
}

int R_A_PageContext::getFollowedCount() const {
  const R_MeasuredVariables* vars = F.getFollowedVars();
  return vars ? vars->getCount() : 0;
}

const R_Variable* R_A_PageContext::getAnamnesticVariable() const {
  return variableAt(F, F.getAnamnesticVars(), anamnesticOrder);
}

const R_Variable* R_A_PageContext::getFollowedVariable() const {
  return variableAt(F, F.getFollowedVars(), followedOrder);
}

bool R_A_PageContext::hasListItem(const R_Variable* variable) const {
  return variable && variable->isList() && listItem >= 0 && listItem < variable->getList().getN();
}

bool R_A_PageContext::checkContext(int mask) const {
  if ((mask & maskAnamnestic) && !getAnamnesticVariable()) return false;
  if ((mask & maskFollowed) && !getFollowedVariable()) return false;
  if ((mask & maskProband) && (probandIndex < 0 || probandIndex >= database.getN())) return false;
  if ((mask & maskMeasure) && (!current || measureIndex < 0 || measureIndex >= current->getVisitCount()))
    return false;
  if ((mask & maskText) && (textIndex < 0 || textIndex >= F.getTextCount())) return false;
  if ((mask & maskAnamnesticItem) && !hasListItem(getAnamnesticVariable())) return false;
  if ((mask & maskFollowedItem) && !hasListItem(getFollowedVariable())) return false;
  if ((mask & maskLoaded) && !current) return false;
  return true;
}
