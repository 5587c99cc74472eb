// One element of a report text: a paragraph, a heading, a rule, an image, a
// table, a graph, an auxogram or an insert of another text. An element is
// made empty by its R_SuperText, filled once from XML or from the binary
// form, and is `ok` only when that load worked; an element that is not ok
// stays in its text and is skipped on output. The optional condition (the
// `if` attribute) decides at output time whether the element is shown.
// Owned by its R_SuperText. Not copyable.
#ifndef DOCUMENT_R_TEXT_H
#define DOCUMENT_R_TEXT_H

#include "formula/r_equation.h"

class R_File;
class R_FileStatistics;
class R_InputStream;
class R_Number;
class R_OutputInterface;
class R_OutputStream;
class R_Proband;
class R_XMLErrorReporter;
class R_XMLParameters;
class R_XMLTextOutput;

class R_Text {
 public:
  // The element kinds, as getType() answers them.
  enum Type {
    typeParagraph = 0,
    typeHeader = 1,
    typeImage = 2,
    typeHRule = 3,
    typeTable = 4,
    typeGraph = 5,
    typeInsert = 6,
    typeAuxogram = 7
  };

  explicit R_Text(int element_type) : loaded(false), type(element_type) {}
  virtual ~R_Text();
  R_Text(const R_Text&) = delete;
  R_Text& operator=(const R_Text&) = delete;

  int getType() const { return type; }
  bool isOK() const { return loaded; }
  // Invalid when the element has no condition.
  const R_Equation& getCondition() const { return condition; }
  // A null or empty text leaves the element without a condition and
  // succeeds; any other text is loaded as one expression, and the answer
  // tells whether it parsed. Requires: no condition set before.
  bool setCondition(const char* text, const R_FileStatistics& statistics);
  void loadCondition(R_InputStream& stream, bool* ok);
  void saveCondition(R_OutputStream& stream) const;
  // The condition's source text; false, leaving `buffer` empty, without one.
  bool getConditionText(R_String& buffer, const R_FileStatistics& statistics) const;

  // The element's character content from XML. The base takes nothing.
  virtual void loadText(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  // The element's own binary fields (the condition is stored apart).
  virtual void load(R_InputStream& stream, bool* ok);
  // The element's XML attributes, `if` aside.
  virtual void loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics& statistics);
  // The XML content between begin and end tag.
  virtual void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const;
  virtual void save(R_OutputStream& stream) const;
  // The attributes other than `if`.
  virtual void writeAttributes(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const;

  // The code handed to R_OutputInterface::beginBlock.
  virtual int getOutputKind() const = 0;
  // The byte that opens the element in the binary form.
  virtual int getBinaryCode() const = 0;
  virtual const char* getTag() const = 0;
  // Written as <tag ... /> without content.
  virtual bool isEmptyTag() const = 0;
  // Produces the element for `proband`; `age` is the age today, undefined
  // when unknown. The answer means nothing to the callers.
  virtual bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
                     R_OutputInterface& output) const = 0;

 protected:
  void setOK(bool value) { loaded = value; }

 private:
  bool loaded;  // the last load worked
  R_Equation condition;
  const int type;
};

#endif
