// The base of every object that fills itself from XML. Around one parse the
// object holds a tag table: each entry is a path of element names joined by
// ':', counted from the first element of the text that parse reads. An
// entry "a:b" captures the inner text of b in a (empty for <b/>), "<a:b"
// fires at its start tag, ">a:b" at its end tag. The reader calls receive()
// with the index of the matching entry. The table exists only during a
// parse, so an object takes part in one parse at a time. Owns its table.
#ifndef XML_R_XMLRECIPIENT_H
#define XML_R_XMLRECIPIENT_H

class R_XMLParameters;

class R_XMLRecipient {
 public:
  R_XMLRecipient() : data(nullptr), data_count(0) {}
  // Frees a table still present.
  virtual ~R_XMLRecipient();
  R_XMLRecipient(const R_XMLRecipient&) = delete;
  R_XMLRecipient& operator=(const R_XMLRecipient&) = delete;

  // One event. `code` is the index of the matching entry; `text` is the
  // captured inner text, raw (line breaks and indentation kept), or the
  // empty text for events without a capture. Attributes of the open
  // elements can be asked from `parameters` during the call. Answers null
  // on success, else a message that stays valid after the call (a string
  // constant); the reader reports it and goes on, and the parse fails.
  virtual const char* receive(int code, const char* text, const R_XMLParameters& parameters) = 0;

  // Creates `count` empty entries. Requires: count > 0, no table present.
  void setTagCount(int count);
  // Requires: 0 <= index < the count, the entry still empty, text != null.
  void setTag(int index, const char* text);
  // Requires: 0 <= index < the count. Null for an entry never set.
  const char* getTag(int index) const;
  int getTagCount() const { return data_count; }
  // Index of the first entry equal to `tag` as a whole; -1 if none or
  // without a table.
  int findTag(const char* tag) const;
  // Frees the table. Requires: a table is present.
  void clearTags();

 private:
  char** data;     // owned array of owned texts; null outside a parse
  int data_count;
};

#endif
