#include "knowledge/r_filestatistics.h"

#include <cassert>

#include "core/r_ascii.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

enum Code { codeVar, codeRef, codeText, codeFilename, codeCopyright };
const char* const kTags[] = {"quorl:var:id", "quorl:ref:name", "quorl:text:id", "quorl:info:filename",
                             "quorl:info:copyright"};

const int kPrescanCapacity = 2048;
// A stored count reserves at most this much before the identifiers arrive,
// so a damaged count costs no more than the bytes that back it.
const int kMaxStoredCapacity = 4096;
const size_t kMinSlots = 64;

bool isNameByte(char c) { return R_isLetter(c) || c == '_'; }

}  // namespace

R_FileStatistics::R_FileStatistics() : var_count(0), ref_count(0), text_count(0), var(nullptr) {}

R_FileStatistics::~R_FileStatistics() {
  for (int i = 0; i < var_count.get(); ++i) delete var->get(i);
  delete var;
}

int R_FileStatistics::getVarIndex(const char* name) const {
  if (!name || slots.empty()) return -1;
  return slots[findSlot(name)];
}

const char* R_FileStatistics::getVarName(int index) const { return getVarString(index).get(); }

const R_String& R_FileStatistics::getVarString(int index) const {
  assert(index >= 0 && index < var_count.get());
  return *var->get(index);
}

bool R_FileStatistics::isNewValidName(const char* name) const {
  if (!name) return false;
  int length = 0;
  for (; name[length]; ++length) {
    if (!isNameByte(name[length])) return false;
  }
  return length >= 2 && getVarIndex(name) < 0;
}

bool R_FileStatistics::addVar(const char* name) {
  if (!isNewValidName(name)) return false;
  if (!var) var = new R_FieldTemplate<R_String>(kPrescanCapacity);
  R_String* identifier = new R_String(name);
  identifier->toUpper();
  return addString(identifier);
}

bool R_FileStatistics::addString(R_String* identifier) {
  int at = var_count.get();
  if (!var->put(at, identifier)) {
    delete identifier;
    return false;
  }
  var_count += 1;
  indexName(at);
  return true;
}

// FNV-1a over the ASCII upper case, so that names equal without regard to
// case meet in one chain.
unsigned R_FileStatistics::hashName(const char* name) {
  unsigned hash = 2166136261u;
  for (; *name; ++name) {
    hash ^= static_cast<unsigned char>(R_toUpper(*name));
    hash *= 16777619u;
  }
  return hash;
}

// The slot that holds `name`, or the empty slot where it would go.
size_t R_FileStatistics::findSlot(const char* name) const {
  size_t mask = slots.size() - 1;
  size_t slot = hashName(name) & mask;
  while (slots[slot] >= 0 && R_stricmp(var->get(slots[slot])->get(), name) != 0) slot = (slot + 1) & mask;
  return slot;
}

// A name already indexed keeps its first index: that is the one a look-up
// must find.
void R_FileStatistics::indexName(int var_index) {
  size_t count = static_cast<size_t>(var_count.get());
  if (slots.size() < 2 * count) {
    rebuildIndex(4 * count);
    return;
  }
  size_t slot = findSlot(var->get(var_index)->get());
  if (slots[slot] < 0) slots[slot] = var_index;
}

void R_FileStatistics::rebuildIndex(size_t wanted) {
  size_t size = kMinSlots;
  while (size < wanted) size *= 2;
  slots.assign(size, -1);
  for (int i = 0; i < var_count.get(); ++i) {
    size_t slot = findSlot(var->get(i)->get());
    if (slots[slot] < 0) slots[slot] = i;
  }
}

bool R_FileStatistics::prescan(const char* xmlfilename, R_XMLErrorReporter* reporter) {
  assert(!var);
  var = new R_FieldTemplate<R_String>(kPrescanCapacity);
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  return finishPrescan(parser, R_parseFileTagged(parser, *this, kTags, xmlfilename));
}

bool R_FileStatistics::prescanText(const char* textXML, R_XMLErrorReporter* reporter) {
  assert(!var);
  var = new R_FieldTemplate<R_String>(kPrescanCapacity);
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  return finishPrescan(parser, R_parseTagged(parser, *this, kTags, textXML ? textXML : ""));
}

bool R_FileStatistics::finishPrescan(R_XMLParser& parser, bool ok) {
  if (filename.isEmpty() || copyright.isEmpty()) {
    parser.report("No file information defined");
    ok = false;
  }
  if (!ok) parser.report("Error while making file statistics");
  return ok;
}

const char* R_FileStatistics::receive(int code, const char* text, const R_XMLParameters&) {
  switch (code) {
    case codeVar: return receiveVar(text);
    case codeRef: ref_count += 1; return nullptr;
    case codeText: text_count += 1; return nullptr;
    case codeFilename: return filename.setNormalized(text, false) ? nullptr : "file name load error";
    case codeCopyright: return copyright.setNormalized(text, false) ? nullptr : "copyright load error";
  }
  return "unexpected code in statistics";
}

const char* R_FileStatistics::receiveVar(const char* text) {
  R_String identifier;
  identifier.setNormalized(text);
  return addVar(identifier.get()) ? nullptr : "variable code is wrong";
}

void R_FileStatistics::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  assert(!var);
  if (!stream.checkType(R_TypeFileStatistics)) {
    *ok = false;
    return;
  }
  R_Integer stored(stream, ok);
  ref_count.load(stream, ok);
  text_count.load(stream, ok);
  filename.load(stream, ok);
  copyright.load(stream, ok);
  info_date.load(stream, ok);
  if (*ok && (stored.get() < 0 || ref_count.get() < 0 || text_count.get() < 0)) *ok = false;
  if (!*ok || stored.get() == 0) return;
  var = new R_FieldTemplate<R_String>(stored.get() < kMaxStoredCapacity ? stored.get() : kMaxStoredCapacity);
  // Stored identifiers are taken as they are, unchecked: a file written by
  // this class holds only names that passed the pre-scan.
  while (*ok && var_count.get() < stored.get()) {
    R_String* identifier = new R_String(stream, ok);
    if (!*ok) delete identifier;
    else if (!addString(identifier)) *ok = false;
  }
}

void R_FileStatistics::save(R_OutputStream& stream) const {
  stream.put(R_TypeFileStatistics);
  var_count.save(stream);
  ref_count.save(stream);
  text_count.save(stream);
  filename.save(stream);
  copyright.save(stream);
  info_date.save(stream);
  for (int i = 0; i < var_count.get(); ++i) var->get(i)->save(stream);
}

void R_FileStatistics::saveXML(R_XMLTextOutput& output) const {
  R_openElement(output, "info");
  R_writeTextElement(output, "filename", filename);
  R_writeTextElement(output, "copyright", copyright);
  output.closeTag("info");
}
