// The knowledge file: all variables, references and texts, and the
// definition of the percentile and SD lines, read from one file in its XML or
// binary form. Objects are created empty before they are filled, so that a
// formula may name a variable that stands later in the file. Read-only once
// loaded; probands and databases hold pointers to it and must go first.
#ifndef KNOWLEDGE_R_FILE_H
#define KNOWLEDGE_R_FILE_H

#include "core/r_number.h"
#include "knowledge/r_filestatistics.h"
#include "knowledge/r_graphreflines.h"
#include "knowledge/r_referenceindex.h"
#include "xml/r_xmlrecipient.h"

class R_Interval;
class R_MeasuredVariables;
class R_OutputStream;
class R_Reference;
class R_SuperText;
class R_Variable;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XYVar;

class R_File : public R_XMLRecipient {
 public:
  R_File();
  ~R_File() override;
  R_File(const R_File&) = delete;
  R_File& operator=(const R_File&) = delete;

  // Two passes over the XML form; messages go to `reporter` (may be null),
  // innermost first. Answers isOK(). Requires: nothing loaded yet.
  bool loadXML(const char* filename, R_XMLErrorReporter* reporter);
  // The binary form; reports nothing. Answers isOK(). Unlike the XML load it
  // does not count the age variables, so getAgeIndex() may be -1 after it.
  // A file whose counts, indices or blocks are damaged is refused.
  // Requires: nothing loaded yet.
  bool loadBinary(const char* filename);
  // Require: isOK(). Answer whether the file was written and put in place
  // whole (through R_SafeFile); a failure leaves the old file as it was.
  bool saveXML(const char* filename) const;
  bool saveBinary(const char* filename) const;
  // The same forms into a stream. The XML form answers how many numbers it
  // rounded. A file read without line definitions has none in its XML form;
  // its binary form cannot go without them, and is not read back.
  int saveXML(R_OutputStream& stream) const;
  void saveBinary(R_OutputStream& stream) const;

  bool isOK() const { return is_ok; }
  // Whether the last load took the whole file: isOK(), and in the binary form
  // no bytes stand after the last text. The loads themselves ignore such
  // bytes; a caller about to write the file again asks here.
  bool isReadWhole() const { return read_whole; }

  // The queries below require isOK().
  int getVarCount() const { return statistics.getVarCount(); }
  int getRefCount() const { return statistics.getRefCount(); }
  int getTextCount() const { return statistics.getTextCount(); }
  // Require: index in 0 to count-1. Read-only, as the whole file is once
  // loaded: every proband and computation shares these objects.
  const R_Variable* getVariable(int index) const;
  const R_Reference* getReference(int index) const;
  const R_SuperText* getText(int index) const;
  // Index of the first text with exactly this identifier; -1 if none.
  int findText(const char* id) const;
  // Requires: getAgeIndex() >= 0.
  const R_Variable* getAgeVariable() const;
  // The first variable of type age; -1 if there is none.
  int getAgeIndex() const { return var_age_index; }
  const R_MeasuredVariables* getAnamnesticVars() const { return anamnestic_vars; }
  const R_MeasuredVariables* getFollowedVars() const { return followed_vars; }
  const R_FileStatistics& getStatistics() const { return statistics; }
  const R_GraphRefLines& getGraphRefLines() const { return lines; }

  // The first reference in file order that fits; -1 if none. Only the
  // references of the same variables are tried.
  int findReference(int sex, const R_Number& age, const R_XYVar& xyref) const;
  int findReference(int sex, const R_Interval& age, const R_XYVar& xyref) const;

  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;

 private:
  void createObjects();
  // Pass two: fills the objects and compares their numbers with the counts.
  void readObjects(R_XMLParser& parser, const char* filename);
  void checkAgeVariable(R_XMLParser& parser);
  const char* receiveLines(const char* text);
  bool hasValidIndices() const;
  // Makes the subsets, finds the age variable and indexes the references.
  // Requires: is_ok.
  void finish();
  // The references of these variables, in file order.
  template <class Age>
  int findReferenceOf(int sex, const Age& age, const R_XYVar& xyref) const;

  bool is_ok;
  bool read_whole;
  R_FileStatistics statistics;
  R_Variable** variables;     // owned, getVarCount() long, null while none
  R_Reference** references;   // owned, getRefCount() long, null while none
  R_SuperText** texts;        // owned, getTextCount() long, null while none
  R_ReferenceIndex reference_index;
  R_GraphRefLines lines;
  int var_age_index;
  R_MeasuredVariables* followed_vars;    // owned
  R_MeasuredVariables* anamnestic_vars;  // owned
  R_XMLErrorReporter* reporter;          // borrowed during the XML load
  int loaded_variables;
  int loaded_references;
  int loaded_texts;
  bool lines_received;  // a `graphlines` element (or the binary form) was read
};

#endif
