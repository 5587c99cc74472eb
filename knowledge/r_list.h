// A list of coded values with their texts: the items of a `list` variable,
// or the labels of the percentile and SD lines. Every value is defined and no
// two are equal. The list owns its items. It is filled once: empty (no item
// and no storage) until a load starts, and a second load is not allowed. Not
// copyable.
#ifndef KNOWLEDGE_R_LIST_H
#define KNOWLEDGE_R_LIST_H

#include "core/r_fieldtemplate.h"
#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"
#include "xml/r_xmlrecipient.h"

class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_List : public R_XMLRecipient {
 public:
  R_List();
  ~R_List() override;
  R_List(const R_List&) = delete;
  R_List& operator=(const R_List&) = delete;

  int getN() const { return count.get(); }
  // Require: 0 <= index < getN().
  const R_String& getText(int index) const;
  const R_Number& getValue(int index) const;
  // The text of the item equal to `value`. With `best_fit`, failing that,
  // the text of the nearest item (the earlier one of two equally near). The
  // empty text for an undefined value, an empty list, or no equal item
  // without `best_fit`.
  const R_String& getText(const R_Number& value, bool best_fit) const;
  const R_String& getText(double value, bool best_fit) const;
  // A load has started into this list; a second one is not allowed.
  bool isLoaded() const { return text != nullptr; }

  // Fills the list from the inner text of a `list` element: `item` elements
  // with attribute `value` and the item's text as content. False, with the
  // reasons reported, for a refused item or a list without items.
  // Requires: !isLoaded().
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output) const;

  // Requires for load: !isLoaded(). Items with an undefined value are refused.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  void createTemplates(int capacity);
  bool hasValue(double value) const;
  // False when the storage can't grow.
  bool append(const R_String& item_text, const R_Number& item_value);
  void loadItem(R_InputStream& stream, bool* ok);

  R_FieldTemplate<R_String>* text;   // owned with its items, null until a load starts
  R_FieldTemplate<R_Number>* value;  // owned with its items, null until a load starts
  R_Integer count;
};

#endif
