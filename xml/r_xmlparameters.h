// What the XML reader knows about the open elements while it delivers an
// event: their names (the stack) and their attributes. A recipient asks it
// for attributes during receive(); the texts it answers stay valid during
// that call only. All comparisons are exact and case-sensitive. Owns the
// stack and the attributes. Not copyable.
//
// The attributes of a tag are read only when someone asks for attributes
// while the element is open: most tags, those nested in a captured element,
// are opened and closed without anyone asking. Until then the tag's text
// after its name waits as it is; the first question reads every waiting
// level in the order the elements were opened, which gives the same
// attributes, in the same order, as reading each tag at once.
#ifndef XML_R_XMLPARAMETERS_H
#define XML_R_XMLPARAMETERS_H

#include <cstddef>
#include <vector>

class R_XMLAttributes;
class R_XMLStack;

class R_XMLParameters {
 public:
  // The kinds of tag that checkTag tells apart.
  enum TagKind {
    elementBegin = 0,       // <a ...>
    elementEnd = 1,         // </a>
    elementStandalone = 2,  // <a .../>
    elementSkipped = 3,     // <!...> and <?...>, never interpreted
    elementUnknown = 4      // anything else, which the reader refuses
  };

  R_XMLParameters();
  ~R_XMLParameters();
  R_XMLParameters(const R_XMLParameters&) = delete;
  R_XMLParameters& operator=(const R_XMLParameters&) = delete;

  // Whether any open element has the attribute.
  bool isParameter(const char* param_name) const;
  // Whether the open element `elem_name` has it. With several open elements
  // of that name, the one nearest the root counts.
  bool isParameterInElement(const char* param_name, const char* elem_name) const;
  // Whether any open element has it with exactly `value`.
  bool isParameterValue(const char* param_name, const char* value) const;
  // Whether the open element `elem_name` has it with exactly `value`.
  bool isParameterValueInElement(const char* param_name, const char* elem_name,
                                 const char* value) const;
  // The newest value of the attribute: the innermost element's, and within
  // one tag the last written. Null if no open element has it.
  const char* getParameter(const char* param_name) const;
  // Its value on the open element `elem_name`; null if absent.
  const char* getParameterInElement(const char* param_name, const char* elem_name) const;

  // The reader's side. `text` is a whole tag from '<' to '>'.
  static TagKind checkTag(const char* text);
  // The same for a tag of `length` bytes that holds no NUL and no '>' but
  // its last byte, as the reader cuts them: no search for the end.
  static TagKind checkTag(const char* text, size_t length);
  // A name is never longer than its tag, so `element` must hold at least
  // strlen(text) + 1 bytes for the functions that copy a name into it.
  //
  // Copies the tag's name into `element`, pushes the name and adds the
  // attributes that parse; the first broken one ends the list without a
  // message.
  void beginElement(const char* text, char* element);
  void standaloneElement(const char* text, char* element);
  // Copies the end tag's name into `element`. `*struct_ok` tells whether it
  // names the innermost open element (false on an empty stack); only then,
  // and when `pop` is set, that element goes with its attributes.
  void endElement(const char* text, char* element, bool* struct_ok, bool pop);
  // Removes the innermost element and the attributes of its level.
  void popElement();
  // Removes all elements and attributes.
  void clear();
  bool hasOpenElements() const;
  size_t getPathLength() const;
  // See R_XMLStack::getPath.
  const char* getPath(char separator, char prefix);

 private:
  static TagKind classify(const char* text, const char* close);
  int levelOf(const char* elem_name) const;
  // Reads the attributes of the levels that wait; see the class comment.
  void readWaiting() const;

  R_XMLAttributes* attributes;  // owned
  R_XMLStack* stack;            // owned
  // The waiting levels are those from `read_levels` to the top of the stack;
  // waiting_starts[i] is where the tag text of level read_levels + i begins
  // in waiting_text, each text with its terminator.
  mutable std::vector<char> waiting_text;
  mutable std::vector<size_t> waiting_starts;
  mutable int read_levels;
};

#endif
