// The elements written as an empty tag with one attribute that names
// something: an image (`img src`) and an insert of another text (`insert
// ref`). The name is stored with whitespace normalised and must not be
// empty. The two differ only in their codes and in what they write.
#ifndef DOCUMENT_R_TEXTNAMED_H
#define DOCUMENT_R_TEXTNAMED_H

#include "core/r_string.h"
#include "document/r_text.h"

class R_TextNamed : public R_Text {
 public:
  R_TextNamed(int element_type, const char* attribute_name) : R_Text(element_type), attribute(attribute_name) {}

  const R_String& getName() const { return name; }

  void loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics& statistics) override;
  void load(R_InputStream& stream, bool* ok) override;
  void save(R_OutputStream& stream) const override;
  void writeAttributes(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  bool isEmptyTag() const override { return true; }

 private:
  R_String name;
  const char* const attribute;  // a string constant
};

#endif
