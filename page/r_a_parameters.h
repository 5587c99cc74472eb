// One page request as the application sees it: seventeen typed parameters
// known by index, a list of free name and value pairs in arrival order, the
// page path, the client number the front end gives, and today's date.
// Abstract; R_A_CGIParameters fills one from a query string.
#ifndef PAGE_R_A_PARAMETERS_H
#define PAGE_R_A_PARAMETERS_H

#include "core/r_date.h"

class R_A_Parameters {
 public:
  // The typed parameters; the names are the query keys.
  enum Type {
    parProbandId = 0,    // _p_id
    parVisitId = 1,      // _m_id
    parTextId = 2,       // _t_id
    parProbandName = 3,  // _p_name
    parProbandDob = 4,   // _p_dob
    parProbandSex = 5,   // _p_sex
    parProbandComment = 6,  // _p_cmt
    parVisitDate = 7,    // _m_date
    parVisitAge = 8,     // _m_age
    parVisitComment = 9,  // _m_cmt
    parCommand = 10,     // _cmd
    parPage = 11,        // _page
    parSearch = 12,      // _srch
    parOrder = 13,       // _order
    parErrorPage = 14,   // _errorpage
    parTop = 15,         // _top
    parGraphWidth = 16,  // _graph_width
    _parTypeCount = 17
  };

  R_A_Parameters() = default;
  virtual ~R_A_Parameters();
  R_A_Parameters(const R_A_Parameters&) = delete;
  R_A_Parameters& operator=(const R_A_Parameters&) = delete;

  // The value of `index` made harmless for a page: empty when not given;
  // otherwise up to `size` bytes with " and ' as ~, < as (, > as ) and & as
  // ^, then the terminator, so `buffer` holds size + 1 bytes.
  // Requires: 0 <= index < _parTypeCount.
  virtual void copyValue(int index, char* buffer, int size) const = 0;
  // The page path, or the empty text.
  virtual const char* getPage() const = 0;
  virtual int getClient() const = 0;
  // Whether the typed parameter is given; false for an index out of range.
  virtual bool isDefined(int index) const = 0;
  // Requires: isDefined(index).
  virtual const char* get(int index) const = 0;
  virtual int getVarCount() const = 0;
  // Requires: 0 <= i < getVarCount().
  virtual const char* getVarName(int i) const = 0;
  virtual const char* getVarValue(int i) const = 0;
  virtual R_Date getToday() const = 0;
  // The link that stays on this request with another text block `target`.
  // This base copies `target` into `buffer`, at most `size` bytes.
  virtual void encodeURL(const char* target, char* buffer, int size) const;

  // get(index) read as a number and truncated; -1 when it is undefined.
  // Requires: isDefined(index).
  int getInt(int index) const;
  // The parameter is given and reads as a defined number.
  bool isInt(int index) const;
  // The page path equals `text` without regard to ASCII case.
  bool isPage(const char* text) const;
  // _cmd is given and equals `text` without regard to ASCII case.
  bool isCommand(const char* text) const;
};

#endif
