#include "xml/r_xmlattributes.h"

#include <cassert>
#include <cstdlib>
#include <cstring>


namespace {

// The smallest block of an entry.
const size_t kBlockBytes = 96;

int byteAt(const char* p) { return static_cast<unsigned char>(*p); }

const char* skipBlanks(const char* p) {
  while (R_isBlank(byteAt(p))) ++p;
  return p;
}

const char* skipNameChars(const char* p) {
  while (R_XMLAttributes::isNameChar(byteAt(p))) ++p;
  return p;
}

// The value that starts at `p`, in [*begin, *end); answers the position
// behind it, or null when no value starts here.
const char* readValue(const char* p, const char** begin, const char** end) {
  if (*p == '"') {
    *begin = p + 1;
    const char* q = *begin;
    while (*q && *q != '"') ++q;
    *end = q;
    return *q ? q + 1 : q;
  }
  if (!R_XMLAttributes::isNameChar(byteAt(p))) return nullptr;
  *begin = p;
  *end = skipNameChars(p);
  return *end;
}

}  // namespace

bool R_XMLAttributes::select(bool first) {
  selected = first ? head : (selected ? selected->next : nullptr);
  return selected != nullptr;
}

bool R_XMLAttributes::isName(const char* to) const {
  assert(selected);
  return strcmp(selected->name, to) == 0;
}

bool R_XMLAttributes::isValue(const char* to) const {
  assert(selected);
  return strcmp(selected->value, to) == 0;
}

const char* R_XMLAttributes::getName() const {
  assert(selected);
  return selected->name;
}

const char* R_XMLAttributes::getValue() const {
  assert(selected);
  return selected->value;
}

int R_XMLAttributes::getElement() const {
  assert(selected);
  return selected->element;
}

const R_XMLAttributes::Entry* R_XMLAttributes::findEntry(const Entry* from, const char* name,
                                                         int element) const {
  for (; from; from = from->next) {
    if ((element < 0 || from->element == element) && strcmp(from->name, name) == 0) return from;
  }
  return nullptr;
}

const char* R_XMLAttributes::findValue(const char* name, int element) const {
  const Entry* found = findEntry(head, name, element);
  return found ? found->value : nullptr;
}

bool R_XMLAttributes::hasValue(const char* name, int element, const char* value) const {
  for (const Entry* e = findEntry(head, name, element); e; e = findEntry(e->next, name, element)) {
    if (strcmp(e->value, value) == 0) return true;
  }
  return false;
}

bool R_XMLAttributes::parse(const char* text, int* position, int element) {
  assert(!head || element >= head->element);
  const char* p = text + *position;
  while (*p && !R_isLetter(byteAt(p))) ++p;
  const char* name = p;
  const char* name_end = skipNameChars(p);
  const char* value = nullptr;
  const char* value_end = nullptr;
  p = skipBlanks(name_end);
  const char* after = nullptr;
  if (name != name_end && *p == '=') after = readValue(skipBlanks(p + 1), &value, &value_end);
  *position = static_cast<int>((after ? after : p) - text);
  if (!after) return false;
  return add(name, static_cast<int>(name_end - name), value, static_cast<int>(value_end - value),
             element);
}

R_XMLAttributes::~R_XMLAttributes() {
  removeElement(-1);
  while (spare) {
    Entry* entry = spare;
    spare = entry->next;
    free(entry);
  }
}

bool R_XMLAttributes::add(const char* name, int name_length, const char* value, int value_length,
                          int element) {
  size_t bytes = sizeof(Entry) + static_cast<size_t>(name_length) + static_cast<size_t>(value_length) + 2;
  Entry* entry = nullptr;
  if (spare && spare->capacity >= bytes) {
    entry = spare;
    spare = entry->next;
  } else {
    // Room for the usual short name and value, so that the block can serve again.
    size_t capacity = bytes > kBlockBytes ? bytes : kBlockBytes;
    entry = static_cast<Entry*>(malloc(capacity));
    if (!entry) return false;
    entry->capacity = capacity;
  }
  entry->name = reinterpret_cast<char*>(entry + 1);
  memcpy(entry->name, name, static_cast<size_t>(name_length));
  entry->name[name_length] = 0;
  entry->value = entry->name + name_length + 1;
  memcpy(entry->value, value, static_cast<size_t>(value_length));
  entry->value[value_length] = 0;
  entry->element = element;
  entry->next = head;
  head = entry;
  return true;
}

void R_XMLAttributes::removeElement(int element) {
  Entry** link = &head;
  while (*link) {
    Entry* entry = *link;
    if (element >= 0 && entry->element != element) {
      // Levels never rise along the list (see parse), so nothing of this
      // level lies behind a lower one.
      if (entry->element < element) return;
      link = &entry->next;
      continue;
    }
    *link = entry->next;
    if (selected == entry) selected = nullptr;
    entry->next = spare;
    spare = entry;
  }
}
