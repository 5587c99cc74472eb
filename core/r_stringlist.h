// Cuts a text into words at bytes 1 to 32. Bytes above 127 belong to words;
// runs of separators give no empty words. Not copyable.
#ifndef CORE_R_STRINGLIST_H
#define CORE_R_STRINGLIST_H

class R_StringList {
 public:
  // Requires: text != null.
  explicit R_StringList(const char* text);
  ~R_StringList();
  R_StringList(const R_StringList&) = delete;
  R_StringList& operator=(const R_StringList&) = delete;

  int getCount() const { return actual_substrings; }
  // Requires: 0 <= index < getCount().
  const char* get(int index) const;
  const char* operator[](int index) const { return get(index); }

 private:
  char* buffer;           // copy of the text, separators overwritten by NUL
  int* offsets;           // start of each word in `buffer`
  int actual_substrings;  // words found
};

#endif
