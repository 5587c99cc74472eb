// The names of the open elements, root first. Owns copies of the names and
// the text of the last getPath(). Grows without a fixed limit; nesting depth
// costs memory only. Not copyable.
#ifndef XML_R_XMLSTACK_H
#define XML_R_XMLSTACK_H

#include <cstddef>

class R_XMLStack {
 public:
  R_XMLStack();
  ~R_XMLStack();
  R_XMLStack(const R_XMLStack&) = delete;
  R_XMLStack& operator=(const R_XMLStack&) = delete;

  int getCount() const { return count; }
  bool isNotEmpty() const { return count > 0; }
  // The innermost name; the empty text on an empty stack.
  const char* top() const { return count > 0 ? names + starts[count - 1] : ""; }
  // Index, counted from the root, of the first open element named exactly
  // `item`; -1 if none.
  int find(const char* item) const;
  // The length of getPath() without prefix, known without building it.
  size_t getPathLength() const { return count > 0 ? names_used - 1 : 0; }
  // `prefix` (unless 0) and the names from the root joined by `separator`.
  // An empty stack gives the empty text, also with a prefix. The text stays
  // valid until the next call or change of the stack.
  const char* getPath(char separator, char prefix);

  // Pushes a copy of `item`; an empty or null item is ignored, and so is one
  // for which memory fails.
  void push(const char* item);
  // The same for the `length` bytes at `item`, which hold no NUL.
  void push(const char* item, size_t length);
  // Removes the innermost name; nothing on an empty stack.
  void pop();
  void clear();

 private:
  bool reserveNames(size_t needed);
  bool reserveStarts();
  static bool reserve(char** text, size_t* capacity, size_t needed);

  // The open names lie back to back in one block, each with its terminator,
  // so that pushing and popping allocate nothing once the block has grown.
  char* names;            // owned
  size_t names_used;
  size_t names_capacity;
  size_t* starts;         // owned; where each open name begins in names
  int starts_capacity;
  int count;
  char* path;             // owned text of the last getPath()
  size_t path_capacity;
};

#endif
