#include "xml/r_xmlparser.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "xml/r_xmlbuffer.h"
#include "xml/r_xmlerrorreporter.h"
#include "xml/r_xmlinputfile.h"
#include "xml/r_xmlinputstring.h"
#include "xml/r_xmlrecipient.h"

namespace {

// Entry lengths below this are kept as bits of R_XMLParser::entry_lengths.
const size_t kLengthBits = 64;

// Replaces the owned text `*target` by a copy of `source`.
void replaceCopy(char** target, const char* source) {
  size_t length = strlen(source);
  char* copy = static_cast<char*>(realloc(*target, length + 1));
  if (!copy) return;
  memcpy(copy, source, length + 1);
  *target = copy;
}

}  // namespace

R_XMLParser::R_XMLParser(int capacity, R_XMLErrorReporter* error_reporter)
    : reporter(error_reporter),
      buffer(new R_XMLBuffer(capacity)),
      block_name(nullptr),
      block_code(0),
      failed(false),
      line(0),
      longest_entry(0),
      entry_lengths(0) {
  element[0] = 0;
}

R_XMLParser::~R_XMLParser() {
  delete buffer;
  free(block_name);
}

bool R_XMLParser::parseFile(const char* file, R_XMLRecipient* recipient) {
  start(*recipient);
  R_XMLInputFile input(file);
  readAll(input, *recipient);
  return !failed;
}

bool R_XMLParser::parseString(const char* text, R_XMLRecipient* recipient) {
  start(*recipient);
  R_XMLInputString input(text);
  readAll(input, *recipient);
  return !failed;
}

void R_XMLParser::start(const R_XMLRecipient& recipient) {
  failed = false;
  line = 0;
  // A path longer than every entry cannot match one, so lookups of deeper
  // paths skip building the path at all.
  longest_entry = 0;
  entry_lengths = 0;
  table_lengths.clear();
  for (int i = 0; i < recipient.getTagCount(); ++i) {
    const char* entry = recipient.getTag(i);
    // An entry never set matches nothing, as in findTag.
    size_t length = entry ? strlen(entry) : 0;
    table_lengths.push_back(entry ? length : static_cast<size_t>(-1));
    if (length > longest_entry) longest_entry = length;
    if (length < kLengthBits) entry_lengths |= uint64_t(1) << length;
  }
}

namespace {

// The first '<', '>' or NUL in [p, end), or end. Most runs are a line
// break and some indentation, so the test goes sixteen bytes at a time
// where the processor has SSE2, else eight bytes at a time in a word; the
// bytes after the last full block go one by one.
#ifdef __SSE2__
inline const unsigned char* findMarkup(const unsigned char* p, const unsigned char* end) {
  const __m128i opens = _mm_set1_epi8('<'), closes = _mm_set1_epi8('>'), zeros = _mm_setzero_si128();
  for (; end - p >= 16; p += 16) {
    __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    __m128i hits = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(x, opens), _mm_cmpeq_epi8(x, closes)),
                                _mm_cmpeq_epi8(x, zeros));
    int mask = _mm_movemask_epi8(hits);
    if (mask) return p + __builtin_ctz(static_cast<unsigned>(mask));
  }
  while (p < end && *p != '<' && *p != '>' && *p != 0) ++p;
  return p;
}
#else
// In the word read as little-endian, the lowest flagged byte is the first
// match (a borrow can flag only bytes above a true match).
inline const unsigned char* findMarkup(const unsigned char* p, const unsigned char* end) {
  const uint64_t ones = 0x0101010101010101ULL, highs = 0x8080808080808080ULL;
  const uint64_t opens = ones * '<', closes = ones * '>';
  for (; end - p >= 8; p += 8) {
    uint64_t x;
    memcpy(&x, p, sizeof x);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    x = __builtin_bswap64(x);
#endif
    uint64_t a = x ^ opens, b = x ^ closes;
    uint64_t found = (((a - ones) & ~a) | ((b - ones) & ~b) | ((x - ones) & ~x)) & highs;
    if (found) return p + __builtin_ctzll(found) / 8;
  }
  while (p < end && *p != '<' && *p != '>' && *p != 0) ++p;
  return p;
}
#endif

}  // namespace

// Instantiated for each input kind, so that the calls made for every byte
// bind statically and inline. `capturing` mirrors buffer->isReading(),
// which only the processing of a tag can change.
//
// The bytes between markup do nothing but go to the capture and, inside a
// tag, to the tag; they are taken as whole runs, as far as the input has
// them buffered and the tag has room. Markup, NUL bytes, the byte that
// finds a tag full and whatever lies beyond the buffered bytes go one by
// one as the rules read.
template <class Input>
void R_XMLParser::readAll(Input& input, R_XMLRecipient& recipient) {
  buffer->clear();
  parameters.clear();
  if (!input.canRead()) {
    fail("no input data");
    return;
  }
  char tag[longestTag + 1];
  int length = 0;
  bool in_tag = false;
  bool tag_has_nul = false;  // a NUL byte went into the tag, which then ends there as a text
  bool capturing = false;
  while (input.canRead()) {
    const unsigned char* run = input.runBegin();
    const unsigned char* stop = findMarkup(run, input.runEnd());
    if (in_tag && stop - run > longestTag - length) stop = run + (longestTag - length);
    if (stop != run) {
      int count = static_cast<int>(stop - run);
      if (capturing) buffer->putRun(run, count);
      if (in_tag) {
        memcpy(tag + length, run, static_cast<size_t>(count));
        length += count;
      }
      input.takeRun(stop);
      continue;
    }
    line = input.getLine();
    int c = input.getChar();
    // Every byte goes to the capture, tags too: that is how a captured
    // element keeps its nested tags.
    if (capturing) buffer->put(c);
    if (in_tag) {
      if (length >= longestTag) return fail("too long tag");
      tag[length++] = static_cast<char>(c);
      tag_has_nul = tag_has_nul || c == 0;
    }
    if (c == '<') {
      if (in_tag) return fail("unexpected opening char");
      tag[0] = '<';
      length = 1;
      in_tag = true;
      tag_has_nul = false;
    } else if (c == '>') {
      if (!in_tag) return fail("unexpected closing char");
      tag[length] = 0;
      in_tag = false;
      R_XMLParameters::TagKind kind = tag_has_nul ? R_XMLParameters::checkTag(tag)
                                                  : R_XMLParameters::checkTag(tag, static_cast<size_t>(length));
      if (!processTag(tag, kind, recipient)) return;
      capturing = buffer->isReading();
    }
  }
  if (in_tag) return fail("unfinished tag");
  if (parameters.hasOpenElements()) fail("unfinished structure (missing end tags)");
}

bool R_XMLParser::processTag(const char* tag, R_XMLParameters::TagKind kind, R_XMLRecipient& recipient) {
  switch (kind) {
    case R_XMLParameters::elementBegin:
      beginTag(tag, recipient);
      return true;
    case R_XMLParameters::elementEnd:
      return endTag(tag, recipient);
    case R_XMLParameters::elementStandalone:
      standaloneTag(tag, recipient);
      return true;
    case R_XMLParameters::elementSkipped:
      return true;
    case R_XMLParameters::elementUnknown:
      break;
  }
  failed = true;
  reportFormatted("wrong tag type [%s]%s", tag, "");
  return false;
}

void R_XMLParser::beginTag(const char* tag, R_XMLRecipient& recipient) {
  parameters.beginElement(tag, element);
  // Start tags nested in a capture are part of its text, not events.
  if (buffer->isReading()) return;
  int code = lookup(recipient, '<');
  if (code >= 0) deliver(recipient, code, "", "data error opening block <%s...>: %s");
  code = lookup(recipient, 0);
  if (code < 0) return;
  buffer->startReading();
  block_code = code;
  replaceCopy(&block_name, element);
}

bool R_XMLParser::endTag(const char* tag, R_XMLRecipient& recipient) {
  int code = lookup(recipient, '>');
  bool struct_ok = false;
  parameters.endElement(tag, element, &struct_ok, false);
  if (!struct_ok) {
    failed = true;
    reportFormatted("wrong structure: %s%s", element, "");
    return false;
  }
  if (block_name && block_name[0] == element[0] && strcmp(block_name, element) == 0) {
    deliverCapture(recipient);
  }
  if (code >= 0) deliver(recipient, code, "", "data error processing block <%s>: %s");
  parameters.popElement();
  return true;
}

void R_XMLParser::standaloneTag(const char* tag, R_XMLRecipient& recipient) {
  parameters.standaloneElement(tag, element);
  int code = lookup(recipient, 0);
  if (code >= 0) deliver(recipient, code, "", "data error processing standalone tag <%s../>: %s");
  parameters.popElement();
}

// Only an entry of the path's own length can match, so most paths are
// turned away before they are built.
int R_XMLParser::lookup(const R_XMLRecipient& recipient, char prefix) {
  size_t length = parameters.getPathLength() + (prefix ? 1 : 0);
  if (length > longest_entry) return -1;
  if (length < kLengthBits && !(entry_lengths & (uint64_t(1) << length))) return -1;
  const char* path = parameters.getPath(':', prefix);
  if (!path[0]) return -1;  // the path could not be built
  for (size_t i = 0; i < table_lengths.size(); ++i) {
    if (table_lengths[i] == length && memcmp(recipient.getTag(static_cast<int>(i)), path, length) == 0)
      return static_cast<int>(i);
  }
  return -1;
}

void R_XMLParser::deliverCapture(R_XMLRecipient& recipient) {
  buffer->stopReading();
  deliver(recipient, block_code, buffer->getText(), "data error closing block </%s>: %s");
  buffer->clear();
}

void R_XMLParser::deliver(R_XMLRecipient& recipient, int code, const char* text,
                          const char* format) {
  const char* refusal = recipient.receive(code, text, parameters);
  if (!refusal) return;
  failed = true;
  reportFormatted(format, element, refusal);
}

void R_XMLParser::fail(const char* message) {
  failed = true;
  report(message);
}

void R_XMLParser::report(const char* message) {
  if (!reporter) return;
  char text[longestMessage + 1];
  int prefix = line >= 2 ? snprintf(text, sizeof text, "(%d) ", line) : 0;
  // The message is cut to what is left of the line.
  size_t length = strnlen(message, static_cast<size_t>(longestMessage - prefix));
  memcpy(text + prefix, message, length);
  text[prefix + length] = 0;
  reporter->report(text);
}

void R_XMLParser::reportFormatted(const char* format, const char* first, const char* second) {
  char text[longestMessage + 1];
  // A longer text is cut at the end of the buffer; only a broken format
  // gives nothing.
  if (snprintf(text, sizeof text, format, first, second) < 0) text[0] = 0;
  report(text);
}
