// What the page application knows between and during requests: the
// knowledge file and the database it works on, the context of the walk in
// progress (which proband, visit, variable, text and list item the commands
// refer to), the temporary proband, the order token, the list of texts, and
// the texts the front end set (borrowed; null when not set).
//
// Context indices are -1 for none. checkContext tests a mask of the bits
// below, all of which must hold. Owned by R_Application; not copyable.
#ifndef PAGE_R_A_PAGECONTEXT_H
#define PAGE_R_A_PAGECONTEXT_H

#include "core/r_string.h"
#include "page/r_a_commandorder.h"
#include "page/r_a_textlist.h"
#include "proband/r_proband.h"

class R_A_Database;
class R_File;
class R_Variable;

class R_A_PageContext {
 public:
  // The context bits.
  enum Mask {
    maskNone = 0,
    maskAnamnestic = 1,      // the anamnestic order is within its list
    maskFollowed = 2,        // the followed order is within its list
    maskProband = 4,         // the proband index is within the database
    maskMeasure = 8,         // a current proband with the measure index among its visits
    maskText = 16,           // the text index is within the file's texts
    maskAnamnesticItem = 32,  // anamnestic, a list, and the list item within it
    maskFollowedItem = 64,   // followed, a list, and the list item within it
    maskLoaded = 128         // there is a current proband
  };

  // Requires: `file` loaded; both outlive the context.
  R_A_PageContext(R_A_Database& database, const R_File& file);
  R_A_PageContext(const R_A_PageContext&) = delete;
  R_A_PageContext& operator=(const R_A_PageContext&) = delete;

  // Whether every bit of `mask` holds.
  bool checkContext(int mask) const;
  // All six context indices to -1.
  void resetIndices();

  // The variable at the current anamnestic (followed) order; null when the
  // order is not within its list.
  const R_Variable* getAnamnesticVariable() const;
  const R_Variable* getFollowedVariable() const;
  int getAnamnesticCount() const;
  int getFollowedCount() const;

  const R_File& F;
  R_A_Database& database;

  int probandIndex;
  int measureIndex;
  int anamnesticOrder;
  int followedOrder;
  int textIndex;
  int listItem;

  R_Proband* current;  // borrowed from the database, the temporary one, or null
  R_Proband temporary;
  bool temporaryInUse;
  R_String temporaryName;
  R_String temporaryComment;
  R_A_CommandOrder order;
  R_A_TextList texts;
  bool searchedNotFound;

  const char* defaultPage;
  const char* imageBase;
  const char* pageBase;
  const char* pageDirectory;
  const char* pageExtension;
  const char* dateFormat;
  const char* graphDirectory;
  const char* graphUrl;
  const char* userStyle;

 private:
  bool hasListItem(const R_Variable* variable) const;
};

#endif
