#include "exporter/resultrecordwriter.h"

#include <climits>
#include <cmath>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_numbertext.h"
#include "core/r_string.h"
#include "core/r_textbuffer.h"
#include "proband/r_proband.h"

namespace {

struct FoldPair {
  unsigned char byte;
  char ascii;
};

// Windows-1250 letters of Czech and Slovak to their unaccented form.
const FoldPair kFoldTable[] = {
    {0xE1, 'a'}, {0xE4, 'a'}, {0xC1, 'A'}, {0xC4, 'A'}, {0xE8, 'c'}, {0xC8, 'C'}, {0xEF, 'd'}, {0xCF, 'D'},
    {0xE9, 'e'}, {0xEC, 'e'}, {0xEB, 'e'}, {0xC9, 'E'}, {0xCC, 'E'}, {0xCB, 'E'}, {0xED, 'i'}, {0xCD, 'I'},
    {0xE5, 'l'}, {0xC5, 'L'}, {0xF2, 'n'}, {0xD2, 'N'}, {0xF3, 'o'}, {0xF6, 'o'}, {0xF4, 'o'}, {0xD3, 'O'},
    {0xD6, 'O'}, {0xD4, 'O'}, {0xF8, 'r'}, {0xE0, 'r'}, {0xD8, 'R'}, {0xC0, 'R'}, {0x9A, 's'}, {0x8A, 'S'},
    {0x9D, 't'}, {0x8D, 'T'}, {0xFA, 'u'}, {0xF9, 'u'}, {0xFC, 'u'}, {0xDA, 'U'}, {0xD9, 'U'}, {0xDC, 'U'},
    {0xFD, 'y'}, {0xDD, 'Y'}, {0x9E, 'z'}, {0x8E, 'Z'},
};
static_assert(sizeof kFoldTable / sizeof kFoldTable[0] == 44, "the fold table has 44 pairs");

// Punctuation that passes the folding; every other ASCII byte that is not a
// letter or digit is dropped.
const char kKeptPunctuation[] = " !@#$%^&*()=-/+.,?;";

// What each byte folds to, 0 for a byte that is dropped; made once.
struct FoldMap {
  char to[256];
  FoldMap() {
    for (int byte = 1; byte < 256; ++byte) {
      if (R_isAlnum(byte) || (byte < 128 && strchr(kKeptPunctuation, byte)))
        to[byte] = static_cast<char>(byte);
      else
        to[byte] = byte > 127 ? foldCharacter(static_cast<unsigned char>(byte)) : 0;
    }
    to[0] = 0;
  }
};

const FoldMap& foldMap() {
  static const FoldMap map;
  return map;
}

// A buffer is handed to the file once it holds this much.
const size_t kFlushSize = 1 << 17;

// A key of the record as it is written, quotes and colon included, with its
// length.
struct Key {
  template <size_t N>
  constexpr Key(const char (&quoted)[N]) : text(quoted), length(N - 1) {}  // NOLINT: made from literals
  const char* text;
  size_t length;
};

#define AUX_KEY(suffix) Key("\"indicator-class:" suffix "\":")

// ---- Field texts, appended to a buffer ----

void appendKey(R_TextBuffer& out, const char* key) {
  out.put('"');
  out.put(key);
  out.put("\":", 2);
}

void appendKey(R_TextBuffer& out, const Key& key) { out.put(key.text, key.length); }

template <class K>
bool appendStringField(R_TextBuffer& out, const K& key, const char* text) {
  if (!text || !*text) return false;
  appendKey(out, key);
  out.put('"');
  const char* to = foldMap().to;
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p; ++p)
    if (to[*p]) out.put(to[*p]);
  out.put('"');
  return true;
}

void appendDigits(R_TextBuffer& out, int value, int width) {
  char digits[4];
  for (int i = width - 1; i >= 0; --i, value /= 10) digits[i] = static_cast<char>('0' + value % 10);
  out.put(digits, static_cast<size_t>(width));
}

// The date as YYYYMMDD, the "%Y%M%D" of R_Date::format.
template <class K>
bool appendDateField(R_TextBuffer& out, const K& key, const R_Date& date) {
  if (!date.isDefined()) return false;
  appendKey(out, key);
  out.put('"');
  appendDigits(out, date.getYear(), 4);
  appendDigits(out, date.getMonth(), 2);
  appendDigits(out, date.getDay(), 2);
  out.put('"');
  return true;
}

template <class K>
void appendNumberField(R_TextBuffer& out, const K& key, double value) {
  appendKey(out, key);
  char number[R_numberTextSize];
  out.put(number, static_cast<size_t>(R_formatG(value, number)));
}

template <class K>
void appendIntegerField(R_TextBuffer& out, const K& key, int value) {
  appendKey(out, key);
  char digits[R_numberTextSize];
  out.put(digits, static_cast<size_t>(R_formatInt(value, digits)));
}

void comma(R_TextBuffer& out, bool written) {
  if (written) out.put(',');
}

void writeText(FILE* file, const R_TextBuffer& out) {
  if (out.size() > 0) fwrite(out.data(), 1, out.size(), file);
}

struct FieldName {
  Key key;
  const char* variable;
};

const FieldName kAnamnesticFields[] = {
    {AUX_KEY("proband:menarche"), "MENARCHE"},
    {AUX_KEY("proband:father-headcirc"), "FATHER_HC"},
    {AUX_KEY("proband:father-height"), "FATHER_HT"},
    {AUX_KEY("proband:mother-headcirc"), "MOTHER_HC"},
    {AUX_KEY("proband:mother-height"), "MOTHER_HT"},
};

const FieldName kFollowedNumberFields[] = {
    {AUX_KEY("body-height"), "HEIGHT"},
    {AUX_KEY("bone-age"), "BONE_AGE"},
    {AUX_KEY("head-circumference"), "FOH"},
    {AUX_KEY("arm-span"), "MAC"},
    {AUX_KEY("suprailiacal-skinfold"), "SIST"},
    {AUX_KEY("subscapular-skinfold"), "SSST"},
    {AUX_KEY("tricipital-skinfold"), "TST"},
    {AUX_KEY("testicular-volume"), "TEST_VOLUME"},
    {AUX_KEY("body-weight"), "WEIGHT"},
};

const FieldName kFollowedIntegerFields[] = {
    {AUX_KEY("tanner-pubic-hair"), "TANNER_PH"},
    {AUX_KEY("tanner-mamma"), "TANNER_M"},
};

const int kAnamnesticCount = sizeof kAnamnesticFields / sizeof kAnamnesticFields[0];
const int kNumberCount = sizeof kFollowedNumberFields / sizeof kFollowedNumberFields[0];
const int kIntegerCount = sizeof kFollowedIntegerFields / sizeof kFollowedIntegerFields[0];

// The age is written only where the reader cannot work it out from the
// dates, and in its %g text: the value is printed, read back and printed
// again, which for a finite age gives the first text once more.
void appendVisitAge(R_TextBuffer& out, const R_Number& age, bool dates_written) {
  if (!age.isDefined() || dates_written) return;
  char printed_text[R_numberTextSize];
  R_formatG(age.getValue(), printed_text);
  R_Number printed;
  printed.parse(printed_text);
  if (!printed.isDefined()) return;
  appendNumberField(out, AUX_KEY("age-visit"), printed.getValue());
  out.put(',');
}

}  // namespace

// ---- The writer ----

ResultRecordWriter::ResultRecordWriter(FILE* output) : file(output) {
  slots.file = nullptr;
  slots.anamnestic_count = slots.followed_count = -1;
  text.reserve(2 * kFlushSize);
}

ResultRecordWriter::~ResultRecordWriter() { flush(); }

void ResultRecordWriter::flush() {
  writeText(file, text);
  text.clear();
}

// A proband's slots follow from its knowledge file and the counts it was
// built with; the lookups by name are those of the proband's own getters.
void ResultRecordWriter::resolve(const R_Proband& proband) {
  if (slots.file == proband.getFile() && slots.anamnestic_count == proband.getAnamnesticCount() &&
      slots.followed_count == proband.getFollowedCount())
    return;
  slots.file = proband.getFile();
  slots.anamnestic_count = proband.getAnamnesticCount();
  slots.followed_count = proband.getFollowedCount();
  for (int i = 0; i < kAnamnesticCount; ++i) slots.anamnestic[i] = proband.getAnamnesticOrder(kAnamnesticFields[i].variable);
  for (int i = 0; i < kNumberCount; ++i) {
    const char* name = kFollowedNumberFields[i].variable;
    slots.followed_numbers[i] = proband.isAnamnesticName(name) ? -1 : proband.getFollowedOrder(name);
  }
  for (int i = 0; i < kIntegerCount; ++i) slots.followed_integers[i] = proband.getFollowedOrder(kFollowedIntegerFields[i].variable);
}

void ResultRecordWriter::write(const R_Proband& proband, const char* name, const char* comment) {
  resolve(proband);
  text.put('{');
  int sex = proband.getSex();
  if (sex == 0 || sex == 1) comma(text, appendStringField(text, AUX_KEY("proband:sex"), sex == 0 ? "m" : "f"));
  comma(text, appendStringField(text, AUX_KEY("proband:id"), proband.getId().get()));
  comma(text, appendStringField(text, AUX_KEY("proband:name"), name));
  comma(text, appendStringField(text, AUX_KEY("proband:comment"), comment));
  bool dob_written = appendDateField(text, AUX_KEY("proband:dob"), proband.getDob());
  comma(text, dob_written);
  for (int i = 0; i < kAnamnesticCount; ++i) {
    if (slots.anamnestic[i] < 0) continue;
    const R_Number& value = proband.getAnamnesticNumber(slots.anamnestic[i]);
    if (!value.isDefined()) continue;
    appendNumberField(text, kAnamnesticFields[i].key, value.getValue());
    text.put(',');
  }
  text.put("\"visit\":[", 9);
  for (int visit = 0; visit < proband.getVisitCount(); ++visit) {
    if (visit > 0) text.put(',');
    writeVisit(proband, visit, dob_written);
  }
  text.put("]}|||", 5);
  if (text.size() >= kFlushSize) flush();
}

void ResultRecordWriter::writeVisit(const R_Proband& proband, int visit, bool dob_written) {
  text.put('{');
  bool date_written = appendDateField(text, AUX_KEY("date"), proband.getVisitDate(visit));
  comma(text, date_written);
  appendVisitAge(text, proband.getVisitAge(visit), dob_written && date_written);
  for (int i = 0; i < kNumberCount; ++i) {
    if (slots.followed_numbers[i] < 0) continue;
    const R_Number& value = proband.getFollowedNumber(visit, slots.followed_numbers[i]);
    if (!value.isDefined()) continue;
    appendNumberField(text, kFollowedNumberFields[i].key, value.getValue());
    text.put(',');
  }
  for (int i = 0; i < kIntegerCount; ++i) {
    if (slots.followed_integers[i] < 0) continue;
    const R_Number& value = proband.getFollowedNumber(visit, slots.followed_integers[i]);
    if (!value.isDefined()) continue;
    appendIntegerField(text, kFollowedIntegerFields[i].key, value.getInt());
    text.put(',');
  }
  const R_String& visit_comment = proband.getVisitComment(visit);
  appendStringField(text, AUX_KEY("comment"), visit_comment.isEmpty() ? "n/a" : visit_comment.get());
  text.put('}');
}

// ---- Single records and fields ----

void writeResultRecord(const R_Proband& proband, FILE* file, const char* name, const char* comment) {
  ResultRecordWriter writer(file);
  writer.write(proband, name, comment);
}

char foldCharacter(unsigned char byte) {
  for (const FoldPair& pair : kFoldTable) {
    if (pair.byte == byte) return pair.ascii;
  }
  return '-';
}

bool writeStringField(FILE* file, const char* field_key, const char* text) {
  R_TextBuffer out;
  bool written = appendStringField(out, field_key, text);
  writeText(file, out);
  return written;
}

bool writeDateField(FILE* file, const char* field_key, const R_Date& date) {
  R_TextBuffer out;
  bool written = appendDateField(out, field_key, date);
  writeText(file, out);
  return written;
}

void writeNumberField(FILE* file, const char* field_key, const R_Number& value) {
  R_TextBuffer out;
  appendNumberField(out, field_key, value.getValue());
  writeText(file, out);
}

void writeIntegerField(FILE* file, const char* field_key, int value) {
  R_TextBuffer out;
  appendIntegerField(out, field_key, value);
  writeText(file, out);
}
