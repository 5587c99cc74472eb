// The first pass over a knowledge file: the counts of variables, references
// and texts, the variables' identifiers in file order (upper case), and the
// file's own information. A variable's index is its position here, so every
// loader turns a name into an index through this object before all variables
// have been filled.
#ifndef KNOWLEDGE_R_FILESTATISTICS_H
#define KNOWLEDGE_R_FILESTATISTICS_H

#include <vector>

#include "core/r_date.h"
#include "core/r_fieldtemplate.h"
#include "core/r_integer.h"
#include "core/r_string.h"
#include "xml/r_xmlrecipient.h"

class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XMLTextOutput;

class R_FileStatistics : public R_XMLRecipient {
 public:
  R_FileStatistics();
  ~R_FileStatistics() override;

  int getVarCount() const { return var_count.get(); }
  int getRefCount() const { return ref_count.get(); }
  int getTextCount() const { return text_count.get(); }
  const R_String& getFilename() const { return filename; }
  const R_String& getCopyright() const { return copyright; }

  // Index of the first identifier equal to `name` without regard to case;
  // -1 if none (also for a null name). A hash look-up: loaders and probands
  // ask this millions of times.
  int getVarIndex(const char* name) const;
  bool hasVar(const char* name) const { return getVarIndex(name) >= 0; }
  // Requires: 0 <= index < getVarCount().
  const char* getVarName(int index) const;
  const R_String& getVarString(int index) const;

  // Null is refused. Only ASCII letters and '_', at least 2 bytes, and no
  // existing identifier equal to it without regard to case.
  bool isNewValidName(const char* name) const;
  // Appends an identifier, upper-cased, if isNewValidName holds for it;
  // answers that. The pre-scan registers each `var:id` through this.
  bool addVar(const char* name);

  // The first pass over an XML knowledge file. Requires: no identifiers yet.
  bool prescan(const char* xmlfilename, R_XMLErrorReporter* reporter);
  // The same over a text in memory: how a writer learns whether the names
  // it would write read back. Requires: no identifiers yet.
  bool prescanText(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;

  // Requires for load: no identifiers yet.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;
  // Writes the `info` element.
  void saveXML(R_XMLTextOutput& output) const;

 private:
  const char* receiveVar(const char* text);
  // The checks after either pre-scan's parse; answers the result.
  bool finishPrescan(R_XMLParser& parser, bool ok);
  // Appends an identifier as it is, taking ownership (deleted on failure).
  bool addString(R_String* identifier);
  // The name index: open addressing over the identifiers' ASCII upper case.
  static unsigned hashName(const char* name);
  size_t findSlot(const char* name) const;
  void indexName(int var_index);
  void rebuildIndex(size_t wanted);

  R_Integer var_count;
  R_Integer ref_count;
  R_Integer text_count;
  R_FieldTemplate<R_String>* var;  // owned identifiers, null until the first load
  R_String filename;
  R_String copyright;
  R_Date info_date;  // carried along by the binary form, read by nothing
  std::vector<int> slots;  // name index: first variable index of a name, or -1; size a power of 2
};

#endif
