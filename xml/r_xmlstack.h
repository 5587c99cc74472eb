// The names of the open elements, root first. Owns copies of the names and
// the text of the last getPath(). Grows without a fixed limit; nesting depth
// costs memory only. Not copyable.
#ifndef XML_R_XMLSTACK_H
#define XML_R_XMLSTACK_H

#include <cstddef>

#include "core/r_fieldtemplate.h"

class R_XMLStack {
 public:
  R_XMLStack();
  ~R_XMLStack();
  R_XMLStack(const R_XMLStack&) = delete;
  R_XMLStack& operator=(const R_XMLStack&) = delete;

  int getCount() const { return count; }
  bool isNotEmpty() const { return count > 0; }
  // The innermost name; the empty text on an empty stack.
  const char* top() const;
  // Index, counted from the root, of the first open element named exactly
  // `item`; -1 if none.
  int find(const char* item) const;
  // The length of getPath() without prefix, known without building it.
  size_t getPathLength() const { return path_length; }
  // `prefix` (unless 0) and the names from the root joined by `separator`.
  // An empty stack gives the empty text, also with a prefix. The text stays
  // valid until the next call or change of the stack.
  const char* getPath(char separator, char prefix);

  // Pushes a copy of `item`; an empty or null item is ignored.
  void push(const char* item);
  // Removes the innermost name; nothing on an empty stack.
  void pop();
  void clear();

 private:
  bool reserveLevel();
  bool reservePath(size_t needed);

  R_FieldTemplate<char> field;  // owned names, 0 to count-1
  int count;
  size_t path_length;    // sum of the name lengths and one separator between each two
  char* path;         // owned text of the last getPath()
  size_t path_capacity;  // bytes allocated for path
};

#endif
