#include "knowledge/r_file.h"

#include <cassert>
#include <cstring>
#include <vector>

#include "core/r_fileinputstream.h"
#include "core/r_safefile.h"
#include "core/r_typecodes.h"
#include "document/r_supertext.h"
#include "knowledge/r_knowledgexml.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutputstream.h"

namespace {

enum Code { codeVar, codeRef, codeText, codeLines };
const char* const kTags[] = {"quorl:var", "quorl:ref", "quorl:text", "quorl:graphlines"};

// The messages of one kind of object: more elements than the pre-scan
// counted, a refused element, and fewer elements at the end.
struct KindMessages {
  const char* too_many;
  const char* failed;
  const char* internal;
};
const KindMessages kVariableMessages = {"too much variables", "error loading variable", "Internal error (variables)"};
const KindMessages kReferenceMessages = {"too much references", "error loading reference", "Internal error (reference)"};
const KindMessages kTextMessages = {"too much texts", "error loading text", "Internal error (text)"};

template <class T>
T** createArray(int count) {
  if (count <= 0) return nullptr;
  T** array = new T*[count];
  for (int i = 0; i < count; ++i) array[i] = new T();
  return array;
}

template <class T>
void deleteArray(T** array, int count) {
  if (!array) return;
  for (int i = 0; i < count; ++i) delete array[i];
  delete[] array;
}

// Fills the next empty object of its kind from an element's inner text.
template <class T>
const char* loadNext(T** array, int count, int* loaded, const KindMessages& messages, const char* text,
                     const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) {
  if (*loaded >= count) return messages.too_many;
  T* object = array[(*loaded)++];
  return object->loadXML(text, statistics, reporter) ? nullptr : messages.failed;
}

// Creates and reads `count` objects one by one, so that a damaged count
// costs no more memory than the bytes that back it. Answers the whole array,
// or null, with everything read deleted, once `ok` is false.
template <class T, class Reader>
T** readArray(int count, bool* ok, Reader read) {
  if (!*ok || count <= 0) return nullptr;
  std::vector<T*> objects;
  while (*ok && static_cast<int>(objects.size()) < count) {
    objects.push_back(new T());
    read(*objects.back(), static_cast<int>(objects.size()) - 1);
  }
  if (!*ok) {
    for (T* object : objects) delete object;
    return nullptr;
  }
  T** array = new T*[count];
  for (int i = 0; i < count; ++i) array[i] = objects[i];
  return array;
}

template <class T>
void saveElements(R_XMLTextOutput& output, const char* tag, T* const* array, int count,
                  const R_FileStatistics& statistics) {
  for (int i = 0; i < count; ++i) {
    R_openElement(output, tag);
    array[i]->saveXML(output, statistics);
    output.closeTag(tag);
  }
}

bool isVarIndex(int var_index, int var_count) { return var_index >= 0 && var_index < var_count; }

// Each index is -1 or a variable's.
bool namesVariables(const R_XYVar& xyref, int var_count) {
  for (int var_index : {xyref.getAVar(), xyref.getXVar(), xyref.getYVar()}) {
    if (var_index != -1 && !isVarIndex(var_index, var_count)) return false;
  }
  return true;
}

}  // namespace

R_File::R_File()
    : is_ok(false),
      read_whole(false),
      variables(nullptr),
      references(nullptr),
      texts(nullptr),
      var_age_index(-1),
      followed_vars(nullptr),
      anamnestic_vars(nullptr),
      reporter(nullptr),
      loaded_variables(0),
      loaded_references(0),
      loaded_texts(0),
      lines_received(false) {}

R_File::~R_File() {
  deleteArray(variables, getVarCount());
  deleteArray(references, getRefCount());
  deleteArray(texts, getTextCount());
  delete anamnestic_vars;
  delete followed_vars;
}

const R_Variable* R_File::getVariable(int index) const {
  assert(index >= 0 && index < getVarCount() && variables);
  return variables[index];
}

const R_Reference* R_File::getReference(int index) const {
  assert(index >= 0 && index < getRefCount() && references);
  return references[index];
}

const R_SuperText* R_File::getText(int index) const {
  assert(index >= 0 && index < getTextCount() && texts);
  return texts[index];
}

int R_File::findText(const char* id) const {
  if (!id) return -1;
  for (int i = 0; i < getTextCount(); ++i) {
    if (strcmp(texts[i]->getId().get(), id) == 0) return i;
  }
  return -1;
}

const R_Variable* R_File::getAgeVariable() const {
  assert(var_age_index >= 0);
  return variables[var_age_index];
}

// Formulas ask for a reference at every point of every proband, and only
// the references of the same variables can fit.
template <class Age>
int R_File::findReferenceOf(int sex, const Age& age, const R_XYVar& xyref) const {
  const int* candidate;
  const int* end;
  reference_index.find(xyref, &candidate, &end);
  for (; candidate < end; ++candidate)
    if (references[*candidate]->fits(sex, age, xyref)) return *candidate;
  return -1;
}

int R_File::findReference(int sex, const R_Number& age, const R_XYVar& xyref) const {
  return findReferenceOf(sex, age, xyref);
}

int R_File::findReference(int sex, const R_Interval& age, const R_XYVar& xyref) const {
  return findReferenceOf(sex, age, xyref);
}

bool R_File::loadXML(const char* filename, R_XMLErrorReporter* load_reporter) {
  assert(!variables && !references && !texts && !lines_received);
  // This parser reports the summary lines; before pass two it has read
  // nothing, so the lines of a failed pre-scan carry no number.
  R_XMLParser parser(R_XMLParser::captureSize, load_reporter);
  is_ok = true;
  loaded_variables = loaded_references = loaded_texts = 0;
  reporter = load_reporter;
  if (statistics.prescan(filename, reporter)) {
    createObjects();
    readObjects(parser, filename);
  } else {
    is_ok = false;
    parser.report("Statistics not loaded");
  }
  if (is_ok) checkAgeVariable(parser);
  if (!is_ok) parser.report("Error while processing file.");
  reporter = nullptr;
  read_whole = is_ok;
  if (is_ok) finish();
  return is_ok;
}

void R_File::createObjects() {
  variables = createArray<R_Variable>(getVarCount());
  references = createArray<R_Reference>(getRefCount());
  texts = createArray<R_SuperText>(getTextCount());
}

void R_File::readObjects(R_XMLParser& parser, const char* filename) {
  if (!R_parseFileTagged(parser, *this, kTags, filename)) {
    is_ok = false;
    parser.report("Data not loaded");
    return;
  }
  const struct {
    int loaded;
    int counted;
    const char* message;
  } counts[] = {{loaded_variables, getVarCount(), kVariableMessages.internal},
                {loaded_references, getRefCount(), kReferenceMessages.internal},
                {loaded_texts, getTextCount(), kTextMessages.internal}};
  for (const auto& count : counts) {
    if (count.loaded == count.counted) continue;
    is_ok = false;
    parser.report(count.message);
  }
}

void R_File::checkAgeVariable(R_XMLParser& parser) {
  int ages = 0;
  for (int i = 0; i < getVarCount(); ++i) {
    if (variables[i]->isAge()) ++ages;
  }
  if (ages == 1) return;
  is_ok = false;
  parser.report("No age-coding variable defined.");
}

const char* R_File::receive(int code, const char* text, const R_XMLParameters&) {
  switch (code) {
    case codeVar:
      return loadNext(variables, getVarCount(), &loaded_variables, kVariableMessages, text, statistics, reporter);
    case codeRef:
      return loadNext(references, getRefCount(), &loaded_references, kReferenceMessages, text, statistics,
                      reporter);
    case codeText:
      return loadNext(texts, getTextCount(), &loaded_texts, kTextMessages, text, statistics, reporter);
    case codeLines:
      return receiveLines(text);
  }
  return "unrecognized code in file";
}

const char* R_File::receiveLines(const char* text) {
  if (lines_received) return "duplicate line definition";
  lines_received = true;
  return lines.loadXML(text, reporter) ? nullptr : "can not load line definitions";
}

void R_File::finish() {
  assert(is_ok);
  anamnestic_vars = new R_MeasuredVariables(this, false);
  followed_vars = new R_MeasuredVariables(this, true);
  var_age_index = -1;
  for (int i = 0; i < getVarCount() && var_age_index < 0; ++i) {
    if (variables[i]->isAge()) var_age_index = i;
  }
  for (int i = 0; i < getRefCount(); ++i) reference_index.add(references[i]->getXYVar());
  reference_index.finish();
}

bool R_File::loadBinary(const char* filename) {
  assert(!variables && !references && !texts && !lines_received);
  lines_received = true;
  R_FileInputStream stream(filename);
  is_ok = stream.isOK() && stream.checkType(R_TypeFile);
  statistics.load(stream, &is_ok);
  lines.load(stream, &is_ok);
  bool* ok = &is_ok;
  variables = readArray<R_Variable>(getVarCount(), ok,
                                    [&](R_Variable& variable, int i) { variable.load(i, stream, ok); });
  references = readArray<R_Reference>(getRefCount(), ok,
                                      [&](R_Reference& reference, int) { reference.load(stream, ok); });
  texts = readArray<R_SuperText>(getTextCount(), ok, [&](R_SuperText& text, int) { text.load(stream, ok); });
  if (!stream.isOK() || !hasValidIndices()) is_ok = false;
  read_whole = is_ok && stream.readByte() < 0;
  if (is_ok) finish();
  return is_ok;
}

// Only a damaged binary file can name a variable that does not exist; such a
// file is refused here, so that nothing later reads past the variables.
bool R_File::hasValidIndices() const {
  if (!is_ok) return false;
  int count = getVarCount();
  for (int i = 0; i < count; ++i) {
    if (!namesVariables(variables[i]->getXYVar(), count)) return false;
    const R_Equation& equation = variables[i]->getEquation();
    for (int k = 0; k < equation.getVarCount(); ++k) {
      if (!isVarIndex(equation.getVariable(k), count)) return false;
    }
  }
  for (int i = 0; i < getRefCount(); ++i) {
    if (!namesVariables(references[i]->getXYVar(), count)) return false;
  }
  return true;
}

bool R_File::saveBinary(const char* filename) const {
  assert(is_ok);
  if (!filename || !*filename) return false;
  R_SafeFile file(filename);
  if (!file.isOK()) return false;
  saveBinary(file);
  return file.commit();
}

bool R_File::saveXML(const char* filename) const {
  assert(is_ok);
  if (!filename || !*filename) return false;
  R_SafeFile file(filename);
  if (!file.isOK()) return false;
  saveXML(file);
  return file.commit();
}

void R_File::saveBinary(R_OutputStream& stream) const {
  assert(is_ok);
  stream.put(R_TypeFile);
  statistics.save(stream);
  lines.save(stream);
  for (int i = 0; i < getVarCount(); ++i) variables[i]->save(stream);
  for (int i = 0; i < getRefCount(); ++i) references[i]->save(stream);
  for (int i = 0; i < getTextCount(); ++i) texts[i]->save(stream);
}

// A file read without line definitions is written without them: empty
// lists would make a definition that no load takes.
int R_File::saveXML(R_OutputStream& stream) const {
  assert(is_ok);
  R_XMLTextOutputStream output(stream);
  output.writeDirective('?', "xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"");
  output.writeDirective('!', "DOCTYPE quorl SYSTEM \"quorl.dtd\"");
  R_openElement(output, "quorl");
  statistics.saveXML(output);
  if (lines.isComplete()) {
    R_openElement(output, "graphlines");
    lines.saveXML(output);
    output.closeTag("graphlines");
  }
  saveElements(output, "var", variables, getVarCount(), statistics);
  saveElements(output, "ref", references, getRefCount(), statistics);
  saveElements(output, "text", texts, getTextCount(), statistics);
  output.closeTag("quorl");
  return output.getRoundedCount();
}
