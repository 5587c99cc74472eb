// The attributes of all open elements, newest first: the innermost
// element's come before its ancestors', and within one tag the one written
// last comes first. Each entry carries the level of its element (the number
// of open elements below it, so the root's are 0). Owns the names and
// values. A cursor (select) walks the entries. Not copyable.
#ifndef XML_R_XMLATTRIBUTES_H
#define XML_R_XMLATTRIBUTES_H

#include <cstddef>

#include "core/r_ascii.h"

class R_XMLAttributes {
 public:
  R_XMLAttributes() : head(nullptr), selected(nullptr), spare(nullptr) {}
  ~R_XMLAttributes();
  R_XMLAttributes(const R_XMLAttributes&) = delete;
  R_XMLAttributes& operator=(const R_XMLAttributes&) = delete;

  // The bytes of element and attribute names, and of bare values.
  static bool isNameChar(int c) { return R_isAlnum(c) || c == '_' || c == '-' || c == '.'; }

  // Puts the cursor on the newest entry when `first`, else on the next one.
  // Answers whether the cursor stands on an entry.
  bool select(bool first);
  // The selected entry's parts. Requires: the cursor stands on an entry.
  bool isName(const char* to) const;
  bool isValue(const char* to) const;
  const char* getName() const;
  const char* getValue() const;
  int getElement() const;

  // The value of the newest attribute `name` on the level `element`, or on
  // any level when `element` is negative; null if there is none.
  const char* findValue(const char* name, int element) const;
  // Whether some attribute `name` on the level `element` (any level when
  // negative) has exactly `value`.
  bool hasValue(const char* name, int element, const char* value) const;

  // Reads one attribute of `text` from `*position` on and adds it for the
  // level `element`. Skips to the next ASCII letter (stray bytes and '/' are
  // passed over), reads the name, then '=' and a value in double quotes or
  // bare; blanks may stand around '='. Answers false, adding nothing, when
  // no letter comes or the name has no value: a single quote is no quote,
  // so x='1' has none. A quoted value runs to the next double quote or the
  // end of the text and may be empty. `*position` moves past what was read.
  // Requires: `element` is not below the level of the newest entry, as when
  // the attributes of each newly opened element are added.
  bool parse(const char* text, int* position, int element);
  // Removes the entries of the level `element`; a negative level removes all.
  void removeElement(int element);

 private:
  struct Entry {
    Entry* next;
    char* name;   // points into the same allocation
    char* value;  // points into the same allocation
    int element;
    size_t capacity;  // bytes of the allocation
  };

  bool add(const char* name, int name_length, const char* value, int value_length,
           int element);
  const Entry* findEntry(const Entry* from, const char* name, int element) const;

  Entry* head;
  Entry* selected;  // the cursor; null when it stands on nothing
  // Removed entries, kept for the next ones: an element's attributes come
  // and go with it, and the same few blocks serve a whole parse.
  Entry* spare;
};

#endif
