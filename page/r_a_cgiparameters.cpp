#include "page/r_a_cgiparameters.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_textbuffer.h"
#include "page/r_a_clock.h"
#include "proband/r_a_querytext.h"

namespace {

const char* const typeNames[] = {"_p_id",   "_m_id",  "_t_id",   "_p_name", "_p_dob",  "_p_sex",
                                 "_p_cmt",  "_m_date", "_m_age", "_m_cmt",  "_cmd",    "_page",
                                 "_srch",   "_order", "_errorpage", "_top", "_graph_width"};
static_assert(sizeof(typeNames) / sizeof(typeNames[0]) == R_A_Parameters::_parTypeCount,
              "one query name per typed parameter");

// Letters of Latin Extended-A (U+01xx) that Windows-1250 holds and Czech
// writes, by the low byte of their code.
struct ExtendedLetter {
  unsigned char low;
  unsigned char byte;
};
const ExtendedLetter extendedLetters[] = {
    {0x0D, 0xE8}, {0x0F, 0xEF}, {0x1B, 0xEC}, {0x48, 0xF2}, {0x59, 0xF8}, {0x61, 0x9A},
    {0x65, 0x9D}, {0x6F, 0xF9}, {0x7E, 0x9E}, {0x0C, 0xC8}, {0x0E, 0xCF}, {0x1A, 0xCC},
    {0x47, 0xD2}, {0x58, 0xD8}, {0x60, 0x8A}, {0x64, 0x8D}, {0x6E, 0xD9}, {0x7D, 0x8E},
};

const char hexDigits[] = "0123456789ABCDEF";

int hexValue(char c) {
  if (R_isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 0;
}

int hexPair(const char* text) { return hexValue(text[0]) * 16 + hexValue(text[1]); }

char unicodeByte(int high, int low) {
  if (high == 0) return static_cast<char>(low);
  if (high != 1) return '_';
  for (const ExtendedLetter& letter : extendedLetters) {
    if (letter.low == low) return static_cast<char>(letter.byte);
  }
  return '_';
}

// Decodes the value bytes from `text` to `end` onto `out`.
void decodeValue(const char* text, const char* end, R_TextBuffer& out) {
  while (text < end) {
    char c = *text++;
    if (c != '%') {
      out.put(c == '+' ? ' ' : c);
      continue;
    }
    char byte;
    if (text < end && (*text == 'u' || *text == 'U')) {
      if (end - text < 5) return;
      byte = unicodeByte(hexPair(text + 1), hexPair(text + 3));
      text += 5;
    } else {
      if (end - text < 2) return;
      byte = static_cast<char>(hexPair(text));
      text += 2;
    }
    if (byte != 0) out.put(byte);
  }
}


// Makes a byte harmless inside a page's attribute or text.
char harmless(char c) {
  switch (c) {
    case '"':
    case '\'':
      return '~';
    case '<':
      return '(';
    case '>':
      return ')';
    case '&':
      return '^';
    default:
      return c;
  }
}

// Writes a query into a buffer of `size` bytes, dropping what does not fit.
class QueryWriter {
 public:
  QueryWriter(char* buffer, int size) : bytes(buffer), room(size), length(0) {}

  bool hasRoom() const { return length < room - 1; }
  void put(char c) {
    if (length < room) bytes[length++] = c;
  }
  void putText(const char* text) {
    while (*text != 0) put(*text++);
  }
  void putPair(const char* name, const char* value) {
    putText(name);
    put('=');
    for (; *value != 0 && length < room - 3; value++) {
      char text[3];
      int count = R_A_QueryText::encodeValueByte(static_cast<unsigned char>(*value), text);
      for (int i = 0; i < count; i++) put(text[i]);
    }
    put('&');
  }
  void finish() {
    if (room > 0) bytes[length < room ? length : room - 1] = 0;
  }

 private:
  char* bytes;
  int room;
  int length;
};

}  // namespace

int encodeCGI(const char* source, char* target, int size) {
  if (size < 1) return 0;
  int length = 0;
  for (; *source != 0 && length < size - 4; source++) {
    unsigned char c = static_cast<unsigned char>(*source);
    if (R_A_QueryText::isSafe(c)) {
      target[length++] = static_cast<char>(c);
    } else {
      target[length++] = '%';
      target[length++] = hexDigits[c >> 4];
      target[length++] = hexDigits[c & 15];
    }
  }
  target[length] = 0;
  return length;
}

R_A_CGIParameters::R_A_CGIParameters() : given(), client(0), hasPage(false) {}

void R_A_CGIParameters::clear() {
  for (int i = 0; i < _parTypeCount; i++) {
    values[i].clear();
    given[i] = false;
  }
  vars.clear();
  client = 0;
  today = R_Date();
  page.clear();
  hasPage = false;
}

void R_A_CGIParameters::parse(const char* query, int client_number) {
  clear();
  client = client_number;
  today = R_A_today();
  if (query == nullptr) return;
  const char* rest = strchr(query, '?');
  if (rest != nullptr) {
    R_TextBuffer path;
    path.put(query, static_cast<size_t>(rest - query));
    path.put('\0');
    setPage(path.data());
    rest++;
  } else {
    rest = query;
  }
  while (true) {
    const char* end = strchr(rest, '&');
    if (end == nullptr) end = rest + strlen(rest);
    parsePiece(rest, end);
    if (*end == 0) break;
    rest = end + 1;
  }
}

void R_A_CGIParameters::parsePiece(const char* piece, const char* end) {
  const char* equals = static_cast<const char*>(memchr(piece, '=', static_cast<size_t>(end - piece)));
  if (equals == nullptr || equals == piece) return;
  R_TextBuffer name, value;
  name.put(piece, static_cast<size_t>(equals - piece));
  name.put('\0');
  decodeValue(equals + 1, end, value);
  value.put('\0');
  if (name.size() != static_cast<size_t>(equals - piece) + 1 || value.data() == nullptr) return;
  int index = findType(name.data());
  if (index >= 0)
    set(index, value.data());
  else
    addVar(name.data(), value.data());
}

void R_A_CGIParameters::copyValue(int index, char* buffer, int size) const {
  int length = 0;
  if (isDefined(index)) {
    const char* value = values[index].get();
    for (; length < size && value[length] != 0; length++) buffer[length] = harmless(value[length]);
  }
  buffer[length] = 0;
}

const char* R_A_CGIParameters::getPage() const { return page.get(); }

bool R_A_CGIParameters::isDefined(int index) const {
  return index >= 0 && index < _parTypeCount && given[index];
}

const char* R_A_CGIParameters::get(int index) const {
  assert(isDefined(index));
  return values[index].get();
}

const char* R_A_CGIParameters::getVarName(int i) const {
  assert(i >= 0 && i < getVarCount());
  return vars[static_cast<size_t>(i)].name.get();
}

const char* R_A_CGIParameters::getVarValue(int i) const {
  assert(i >= 0 && i < getVarCount());
  return vars[static_cast<size_t>(i)].value.get();
}

void R_A_CGIParameters::encodeURL(const char* target, char* buffer, int size) const {
  QueryWriter writer(buffer, size);
  if (hasPage) {
    writer.putText(page.get());
    writer.put('?');
  }
  for (int index = 0; index < _parTypeCount && writer.hasRoom(); index++) {
    if (index == parTextId && target != nullptr)
      writer.putPair(typeNames[index], target);
    else if (given[index])
      writer.putPair(typeNames[index], values[index].get());
  }
  for (size_t i = 0; i < vars.size() && writer.hasRoom(); i++) writer.putPair(vars[i].name.get(), vars[i].value.get());
  writer.finish();
}

void R_A_CGIParameters::setPage(const char* text) {
  assert(!hasPage);
  if (hasPage) return;
  page = text;
  hasPage = true;
}

void R_A_CGIParameters::set(int index, const char* text) {
  assert(index >= 0 && index < _parTypeCount);
  if (given[index] || text == nullptr) return;
  values[index] = text;
  given[index] = true;
}

bool R_A_CGIParameters::addVar(const char* name, const char* value) {
  if (getVarCount() >= maxVarCount) return false;
  vars.emplace_back();
  vars.back().name = name;
  vars.back().value = value;
  return true;
}

const char* R_A_CGIParameters::getTypeName(int index) {
  assert(index >= 0 && index < _parTypeCount);
  return typeNames[index];
}

int R_A_CGIParameters::findType(const char* name) {
  for (int index = 0; index < _parTypeCount; index++) {
    if (R_stricmp(typeNames[index], name) == 0) return index;
  }
  return -1;
}
