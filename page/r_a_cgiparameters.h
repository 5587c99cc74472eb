// The parameters of one page request read from a query string:
//   [page path '?'] name=value { '&' name=value }
// A name that is a typed parameter's name, without regard to ASCII case,
// sets that parameter, and its first occurrence wins; any other name adds a
// free pair, in order and duplicates included, up to maxVarCount pairs. A
// piece without '=' or with an empty name is passed over. Names are taken
// as they stand; values are decoded: '+' is a blank, %XX gives that byte,
// %uXXXX one Windows-1250 byte (the Czech letters of Latin Extended-A, '_'
// for any other letter beyond Latin-1), and a 0 byte so made is dropped.
// Hex digits that are no hex digits count as 0, and a % sequence cut off by
// the end of its piece ends the value there. Nothing in a query is an
// error. Owns copies of all texts. Not copyable.
#ifndef PAGE_R_A_CGIPARAMETERS_H
#define PAGE_R_A_CGIPARAMETERS_H

#include <vector>

#include "core/r_date.h"
#include "core/r_string.h"
#include "page/r_a_parameters.h"

class R_A_CGIParameters : public R_A_Parameters {
 public:
  static const int maxVarCount = 1000;

  // No parameters, no page path, client 0, today undefined.
  R_A_CGIParameters();

  // Clears everything, keeps `client` and today's date (R_A_today), and
  // reads `query`; a null query reads as "".
  void parse(const char* query, int client);

  void copyValue(int index, char* buffer, int size) const override;
  const char* getPage() const override;
  int getClient() const override { return client; }
  bool isDefined(int index) const override;
  const char* get(int index) const override;
  int getVarCount() const override { return static_cast<int>(vars.size()); }
  const char* getVarName(int i) const override;
  const char* getVarValue(int i) const override;
  R_Date getToday() const override { return today; }
  // The query that carries this request on: the page path and '?' when
  // there is one, then `name=value&` for each given typed parameter in
  // index order, with _t_id taking `target` instead when it is not null,
  // and for each free pair; the last '&' stays. Values are written with a
  // blank as '+', safe bytes (see encodeCGI) as they are and any other byte
  // as %XX. A value stops 3 bytes before the end of the buffer and further
  // pairs are left out when it is full; at most `size` bytes are written,
  // the terminator included, over the last byte when the buffer is full.
  void encodeURL(const char* target, char* buffer, int size) const override;

  // Requires: no page path yet. A null text is taken as "".
  void setPage(const char* text);
  // Sets the typed parameter unless it is set already; a null text leaves
  // it alone. Requires: 0 <= index < _parTypeCount.
  void set(int index, const char* text);
  // Adds a free pair; false, adding nothing, when maxVarCount pairs are
  // there already. Null texts are taken as "".
  bool addVar(const char* name, const char* value);

  // The query name of a typed parameter. Requires: index in range.
  static const char* getTypeName(int index);
  // The index of a query name without regard to ASCII case; -1 for none.
  static int findType(const char* name);

 private:
  struct Pair {
    R_String name;
    R_String value;
  };

  void clear();
  void parsePiece(const char* piece, const char* end);

  R_String values[_parTypeCount];
  bool given[_parTypeCount];  // a given value may be empty
  std::vector<Pair> vars;
  int client;
  R_Date today;
  R_String page;
  bool hasPage;
};

// Writes `source` URL-encoded: safe bytes (ASCII letters, digits and
// _ - . ! @ # $ * ( ) [ ] { } ; / ,) as they are, every other byte as '%'
// and two upper-case hex digits, so a blank is %20. Stops before a byte when
// the write position has reached size - 4, and terminates. Answers the
// length written; a size below 1 writes nothing.
int encodeCGI(const char* source, char* target, int size);

#endif
