#include "proband/r_a_simpledbplainreader.h"

#include <cassert>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/r_ascii.h"
#include "core/r_number.h"
#include "proband/r_a_simpledbrecord.h"
#include "proband/r_proband.h"

namespace {

// The bytes read at once: large enough that the unfinished record moved to
// the front at each refill costs nothing worth counting.
const size_t kBlockSize = size_t(1) << 20;
static_assert(kBlockSize > 2 * R_A_SimpleDBPlainReader::longestRecord, "a block holds a whole record and more");

// A `proband` element with this little content holds no proband.
const long kLongestEmptyProband = 2;
const int kMostAttributes = 3;
// The variable table starts with room for this many names (a power of two).
const size_t kFirstVariableSlots = 64;
// FNV-1a, 32 bits.
const uint32_t kHashBasis = 2166136261u;
const uint32_t kHashPrime = 16777619u;

// The elements of the layout, with the attributes each may carry and the
// forms it may take: standalone (<x/>) or with content (<x>...</x>).
struct ElementForm {
  const char* name;
  const char* attributes[kMostAttributes];
  bool may_stand_alone;
  bool may_open;
};

// The attributes of each element, in the order of its form below.
enum ValueAttribute { kValueVar };
enum VisitAttribute { kVisitDate, kVisitAge, kVisitComment };
enum InfoAttribute { kInfoId, kInfoDob, kInfoSex };

// The most frequent come first, since a tag's name is looked up in order.
enum Element { kValue, kVisit, kDatabase, kRecord, kName, kComment, kProband, kInfo, kData, kElementCount };

const ElementForm kForms[] = {
    {"val", {"var"}, false, true},
    {"record", {"date", "age", "comment"}, false, true},
    {"p_database", {}, false, true},
    {"p_record", {}, false, true},
    {"p_name", {}, true, true},
    {"p_comment", {}, true, true},
    {"proband", {}, true, true},
    {"info", {"id", "dob", "sex"}, true, false},
    {"data", {}, false, true},
};
static_assert(sizeof(kForms) / sizeof(kForms[0]) == kElementCount, "one form per element");

// What a byte is to this reader, as bits of one table: a blank allowed
// between tags (the general road ignores any text there, but other text may
// be a layout this reader does not know), a byte that ends a text ('<'
// starts the next tag, '>' and NUL are faults of the general road), a byte
// of an element or attribute name.
enum ByteClass { kBlank = 1, kTextEnd = 2, kNameChar = 4 };

struct ByteClasses {
  unsigned char of[256];
  constexpr ByteClasses() : of() {
    for (int c = 0; c < 256; ++c) {
      bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
      bool name = letter || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.';
      of[c] = static_cast<unsigned char>((c == ' ' || c == '\n' || c == '\r' || c == '\t' ? kBlank : 0) |
                                         (c == '<' || c == '>' || c == 0 ? kTextEnd : 0) | (name ? kNameChar : 0));
    }
  }
};
constexpr ByteClasses kClasses;

inline bool is(char c, ByteClass kind) { return (kClasses.of[static_cast<unsigned char>(c)] & kind) != 0; }

char* skipNameChars(char* p, const char* stop) {
  while (p < stop && is(*p, kNameChar)) ++p;
  return p;
}

// Whether the `length` bytes at `name` are the name `known`.
bool isNamed(const char* known, const char* name, size_t length) {
  size_t n = 0;
  while (n < length && known[n] == name[n]) ++n;
  return n == length && known[n] == 0;
}

// The element named by the `length` bytes at `name`; -1 for any other name.
int elementNamed(const char* name, size_t length) {
  for (int i = 0; i < kElementCount; ++i)
    if (isNamed(kForms[i].name, name, length)) return i;
  return -1;
}

// The place of an attribute among those of `form`; -1 if it has none such.
int attributeNamed(const ElementForm& form, const char* name, size_t length) {
  for (int i = 0; i < kMostAttributes; ++i)
    if (form.attributes[i] && isNamed(form.attributes[i], name, length)) return i;
  return -1;
}

// The whitespace of a variable's name the general road would normalise;
// such names are left to it.
bool hasBlank(const char* text) {
  for (; *text; ++text)
    if (R_isBlank(static_cast<unsigned char>(*text))) return true;
  return false;
}

}  // namespace

// One start tag as read: its element, its form, and the values of its
// attributes by their places in the element's form, null for an absent one.
// The values are terminated in place, over the closing quote, and stay
// valid while the block is not refilled.
struct R_A_SimpleDBPlainReader::Tag {
  int element;
  bool standalone;
  const char* values[kMostAttributes];
};

R_A_SimpleDBPlainReader::R_A_SimpleDBPlainReader(const R_File* knowledge)
    : F(knowledge),
      file(nullptr),
      block(nullptr),
      next(nullptr),
      end(nullptr),
      limit(nullptr),
      ended(false),
      variable_count(0) {}

R_A_SimpleDBPlainReader::~R_A_SimpleDBPlainReader() { close(); }

bool R_A_SimpleDBPlainReader::read(const char* path, std::vector<R_A_SimpleDBRecord*>* records) {
  assert(path && records);
  size_t first = records->size();
  bool ok = open(path) && readDatabase(records);
  close();
  if (ok) return true;
  for (size_t i = first; i < records->size(); ++i) delete (*records)[i];
  records->resize(first);
  return false;
}

// ---- Blocks ----

bool R_A_SimpleDBPlainReader::open(const char* path) {
  close();
  block = static_cast<char*>(malloc(kBlockSize));
  file = block ? fopen(path, "rb") : nullptr;
  next = end = block;
  ended = false;
  return file && refill();
}

void R_A_SimpleDBPlainReader::close() {
  if (file) fclose(file);
  free(block);
  file = nullptr;
  block = next = end = nullptr;
  limit = nullptr;
}

// Moves the bytes not yet taken to the front of the block and reads on
// behind them until the block is full or the file ends. False after a
// read error.
bool R_A_SimpleDBPlainReader::refill() {
  size_t kept = static_cast<size_t>(end - next);
  memmove(block, next, kept);
  next = block;
  end = block + kept;
  while (!ended && end < block + kBlockSize) {
    size_t count = fread(end, 1, static_cast<size_t>(block + kBlockSize - end), file);
    end += count;
    if (count == 0) ended = true;
  }
  return !ferror(file);
}

// At least `bytes` are read ahead, or the file has no more.
bool R_A_SimpleDBPlainReader::ensure(size_t bytes) {
  return static_cast<size_t>(end - next) >= bytes || ended || refill();
}

bool R_A_SimpleDBPlainReader::skipBlanksAcrossBlocks() {
  for (;;) {
    while (next < end && is(*next, kBlank)) ++next;
    if (next < end || ended) return true;
    if (!refill()) return false;
  }
}

const char* R_A_SimpleDBPlainReader::ahead(size_t bytes, const char* bound) const {
  return static_cast<size_t>(bound - next) > bytes ? next + bytes : bound;
}

void R_A_SimpleDBPlainReader::skipBlanks() {
  while (next < limit && is(*next, kBlank)) ++next;
}

// ---- The layout ----

// database -> prologue <p_database> { record } </p_database> blanks
// The prologue and the start tag must lie in the first block; each record
// is read with the block holding at least longestRecord bytes of it.
bool R_A_SimpleDBPlainReader::readDatabase(std::vector<R_A_SimpleDBRecord*>* records) {
  limit = end;
  Tag tag;
  if (!readPrologue() || !expect(kDatabase, &tag)) return false;
  for (;;) {
    if (!skipBlanksAcrossBlocks() || !ensure(longestRecord)) return false;
    limit = ahead(longestRecord, end);
    if (readEndTag(kDatabase)) break;
    R_A_SimpleDBRecord* record = new R_A_SimpleDBRecord(F);
    records->push_back(record);
    if (!readRecord(record)) return false;
  }
  return skipBlanksAcrossBlocks() && next == end;
}

// prologue -> { blanks ('<?' | '<!') bytes '>' } blanks
// The general road skips such tags whole, up to the first '>'; a '<' or a
// NUL inside would be its faults.
bool R_A_SimpleDBPlainReader::readPrologue() {
  for (;;) {
    skipBlanks();
    if (limit - next < 2 || next[0] != '<' || (next[1] != '?' && next[1] != '!')) return true;
    const char* stop = ahead(longestTag, limit);
    char* p = next + 2;
    while (p < stop && !is(*p, kTextEnd)) ++p;
    if (p == stop || *p != '>') return false;
    next = p + 1;
  }
}

// record -> <p_record> name comment proband </p_record>
bool R_A_SimpleDBPlainReader::readRecord(R_A_SimpleDBRecord* record) {
  Tag tag;
  return expect(kRecord, &tag) && readRecordText(record, kName) && readRecordText(record, kComment) &&
         readProband(record->getProband()) && closeElement(kRecord);
}

// name -> <p_name/> | <p_name> text </p_name>, the same for the comment.
bool R_A_SimpleDBPlainReader::readRecordText(R_A_SimpleDBRecord* record, int element) {
  Tag tag;
  if (!expect(element, &tag)) return false;
  char* text = nullptr;
  char* text_end = nullptr;
  if (!tag.standalone && !readContent(element, &text, &text_end)) return false;
  record->setTextNormalized(element == kName ? 0 : 1, text ? text : "");
  return true;
}

// proband -> <proband/> | <proband> at most two blanks </proband>
//          | <proband> info data </proband>
// The first two hold no proband; the record's is then cleared as the
// general road clears it, which also makes its stored sex "undefined".
bool R_A_SimpleDBPlainReader::readProband(R_Proband* proband) {
  Tag tag;
  if (!expect(kProband, &tag)) return false;
  proband->clear();
  if (tag.standalone) return true;
  const char* content = next;
  skipBlanks();
  if (next - content <= kLongestEmptyProband && readEndTag(kProband)) return true;
  return readInfo(proband) && readData(proband) && closeElement(kProband);
}

// info -> <info id? dob? sex/>, sex "male" or "female" exactly as the
// general road compares it; without one the general road refuses the record.
// Coming first, the date of birth has no visits to give ages to.
bool R_A_SimpleDBPlainReader::readInfo(R_Proband* proband) {
  Tag tag;
  if (!expect(kInfo, &tag)) return false;
  const char* sex = tag.values[kInfoSex];
  int code = !sex ? -1 : strcmp(sex, "male") == 0 ? 0 : strcmp(sex, "female") == 0 ? 1 : -1;
  if (code < 0) return false;
  proband->setInfoTexts(tag.values[kInfoId], tag.values[kInfoDob]);
  proband->setSex(code);
  return true;
}

// data -> <data> { anamnestic value | visit } </data>
bool R_A_SimpleDBPlainReader::readData(R_Proband* proband) {
  Tag tag;
  if (!expect(kData, &tag)) return false;
  for (;;) {
    skipBlanks();
    if (readEndTag(kData)) return true;
    if (!readTag(&tag)) return false;
    bool ok = tag.element == kValue ? readAnamnestic(proband, tag) : tag.element == kVisit && readVisit(proband, tag);
    if (!ok) return false;
  }
}

// An empty text stores nothing, as in the general road; any other text
// stores what it reads as, undefined included.
bool R_A_SimpleDBPlainReader::readAnamnestic(R_Proband* proband, const Tag& tag) {
  const Variable* variable = nullptr;
  const char* number = nullptr;
  if (!readValue(*proband, tag, &variable, &number)) return false;
  if (number && variable->anamnestic >= 0) proband->setAnamnesticNumber(variable->anamnestic, numberOf(number));
  return true;
}

// visit -> <record date? age? comment?> { value } </record>
// A visit without age and date is a fault of the general road. A visit that
// merges into an earlier one takes its comment, absent or not; one that
// cannot be added keeps none of its values.
bool R_A_SimpleDBPlainReader::readVisit(R_Proband* proband, const Tag& tag) {
  int index = -1;
  if (!proband->addVisitFromTexts(tag.values[kVisitAge], tag.values[kVisitDate], tag.values[kVisitComment],
                                  valuesAhead(), &index))
    return false;
  Tag value_tag;
  for (;;) {
    skipBlanks();
    if (readEndTag(kVisit)) return true;
    const Variable* variable = nullptr;
    const char* number = nullptr;
    if (!readTag(&value_tag) || value_tag.element != kValue || !readValue(*proband, value_tag, &variable, &number))
      return false;
    if (index >= 0 && number && variable->followed >= 0)
      proband->setFollowedNumber(index, variable->followed, numberOf(number));
  }
}

// The `val` elements up to the end of the visit, as many as the tags
// before its end tag, two each; the visit is made with room for that many
// values.
int R_A_SimpleDBPlainReader::valuesAhead() const {
  static const char kVisitEnd[] = "</record>";
  const size_t kEndLength = sizeof kVisitEnd - 1;
  int tags = 0;
  const char* p = next;
  while ((p = static_cast<const char*>(memchr(p, '<', static_cast<size_t>(limit - p)))) != nullptr) {
    if (static_cast<size_t>(limit - p) >= kEndLength && memcmp(p, kVisitEnd, kEndLength) == 0) break;
    ++tags;
    ++p;
  }
  return tags / 2;
}

// value -> <val var="name"> text </val>, the name without blanks.
// `*number` is the text without the blanks around it, which reads as the
// whole text would, since reading normalises whitespace first; null for an
// empty text.
bool R_A_SimpleDBPlainReader::readValue(const R_Proband& proband, const Tag& tag, const Variable** variable,
                                        const char** number) {
  const char* name = tag.values[kValueVar];
  if (!name || hasBlank(name)) return false;
  const char* start = next;
  skipBlanks();
  char* text = nullptr;
  char* text_end = nullptr;
  if (!readContent(kValue, &text, &text_end)) return false;
  *variable = &variableNamed(proband, name);
  if (text_end == start) return true;
  while (text_end > text && is(text_end[-1], kBlank)) --text_end;
  *text_end = 0;
  *number = text;
  return true;
}

R_Number R_A_SimpleDBPlainReader::numberOf(const char* text) {
  R_Number value;
  value.setFromText(text);
  return value;
}

// A proband answers the same slots for a name every time, since they
// depend on the knowledge file alone: each name is looked up once per file,
// then found again in a table open-addressed by the name's hash.
const R_A_SimpleDBPlainReader::Variable& R_A_SimpleDBPlainReader::variableNamed(const R_Proband& proband,
                                                                                const char* name) {
  uint32_t hash = kHashBasis;
  size_t length = 0;
  for (; name[length]; ++length) hash = (hash ^ static_cast<unsigned char>(name[length])) * kHashPrime;
  if (2 * (variable_count + 1) > variables.size()) growVariables();
  size_t mask = variables.size() - 1;
  size_t i = hash & mask;
  for (; variables[i].used; i = (i + 1) & mask) {
    const std::string& known = variables[i].name;
    if (known.size() == length && memcmp(known.data(), name, length) == 0) return variables[i];
  }
  Variable& variable = variables[i];
  variable = Variable{true, hash, proband.getAnamnesticOrder(name), proband.getFollowedOrder(name), name};
  ++variable_count;
  return variable;
}

void R_A_SimpleDBPlainReader::growVariables() {
  std::vector<Variable> old;
  old.swap(variables);
  variables.resize(old.empty() ? kFirstVariableSlots : 2 * old.size());
  size_t mask = variables.size() - 1;
  for (Variable& variable : old) {
    if (!variable.used) continue;
    size_t i = variable.hash & mask;
    while (variables[i].used) i = (i + 1) & mask;
    variables[i] = std::move(variable);
  }
}

// ---- Tags ----

// tag -> '<' name { blanks attribute } [blanks] ['/'] '>'
// The element's form must allow the tag's form.
bool R_A_SimpleDBPlainReader::readTag(Tag* tag) {
  const char* stop = ahead(longestTag, limit);
  if (next >= stop || *next != '<') return false;
  char* name = next + 1;
  char* p = skipNameChars(name, stop);
  tag->element = elementNamed(name, static_cast<size_t>(p - name));
  if (tag->element < 0) return false;
  for (const char*& value : tag->values) value = nullptr;
  for (;;) {
    char* before = p;
    while (p < stop && is(*p, kBlank)) ++p;
    if (p == stop) return false;
    if (*p == '>' || (*p == '/' && p + 1 < stop && p[1] == '>')) break;
    if (p == before || !readAttribute(&p, stop, tag)) return false;
  }
  tag->standalone = *p == '/';
  next = p + (tag->standalone ? 2 : 1);
  const ElementForm& form = kForms[tag->element];
  return tag->standalone ? form.may_stand_alone : form.may_open;
}

// attribute -> name '="' bytes '"', a name of the element's form, once.
bool R_A_SimpleDBPlainReader::readAttribute(char** cursor, const char* stop, Tag* tag) const {
  char* name = *cursor;
  char* p = skipNameChars(name, stop);
  int place = attributeNamed(kForms[tag->element], name, static_cast<size_t>(p - name));
  if (place < 0 || tag->values[place] || stop - p < 2 || p[0] != '=' || p[1] != '"') return false;
  char* value = p + 2;
  for (p = value; p < stop && *p != '"' && !is(*p, kTextEnd); ++p) {
  }
  if (p == stop || *p != '"') return false;
  *p = 0;
  tag->values[place] = value;
  *cursor = p + 1;
  return true;
}

bool R_A_SimpleDBPlainReader::expect(int element, Tag* tag) {
  skipBlanks();
  return readTag(tag) && tag->element == element;
}

// The text up to the element's end tag, [*text, *text_end), terminated in
// place over the '<' of the end tag.
bool R_A_SimpleDBPlainReader::readContent(int element, char** text, char** text_end) {
  char* begin = next;
  while (next < limit && !is(*next, kTextEnd)) ++next;
  char* stop = next;
  if (!readEndTag(element)) return false;
  *stop = 0;
  *text = begin;
  *text_end = stop;
  return true;
}

// end tag -> '</' name '>', exactly.
bool R_A_SimpleDBPlainReader::readEndTag(int element) {
  const char* name = kForms[element].name;
  size_t length = strlen(name);
  if (static_cast<size_t>(limit - next) < length + 3 || next[0] != '<' || next[1] != '/' ||
      memcmp(next + 2, name, length) != 0 || next[length + 2] != '>')
    return false;
  next += length + 3;
  return true;
}

bool R_A_SimpleDBPlainReader::closeElement(int element) {
  skipBlanks();
  return readEndTag(element);
}
