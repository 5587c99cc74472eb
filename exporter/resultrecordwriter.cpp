#include "exporter/resultrecordwriter.h"

#include <cstring>
#include <string>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_string.h"
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

std::string foldText(const char* text) {
  std::string folded;
  folded.reserve(strlen(text));
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p; ++p) {
    if (R_isAlnum(*p))
      folded += static_cast<char>(*p);
    else if (*p > 127)
      folded += foldCharacter(*p);
    else if (strchr(kKeptPunctuation, *p))
      folded += static_cast<char>(*p);
  }
  return folded;
}

const char* const kKeyPrefix = "indicator-class:";

std::string key(const char* suffix) { return std::string(kKeyPrefix) + suffix; }

void comma(FILE* file, bool written) {
  if (written) fputc(',', file);
}

bool writeAnamnesticNumber(FILE* file, const R_Proband& proband, const char* suffix, const char* name) {
  if (!proband.isAnamnesticName(name)) return false;
  R_Number value;
  proband.getAnamnesticValue(value, name);
  if (!value.isDefined()) return false;
  writeNumberField(file, key(suffix).c_str(), value);
  return true;
}

bool writeFollowedNumber(FILE* file, const R_Proband& proband, int visit, const char* suffix, const char* name) {
  if (proband.isAnamnesticName(name)) return false;
  R_Number value;
  proband.getFollowedValue(visit, name, value);
  if (!value.isDefined()) return false;
  writeNumberField(file, key(suffix).c_str(), value);
  return true;
}

bool writeFollowedInteger(FILE* file, const R_Proband& proband, int visit, const char* suffix, const char* name) {
  R_Number value;
  proband.getFollowedValue(visit, name, value);
  if (!value.isDefined()) return false;
  writeIntegerField(file, key(suffix).c_str(), value.getInt());
  return true;
}

struct FieldName {
  const char* key_suffix;
  const char* variable;
};

const FieldName kAnamnesticFields[] = {
    {"proband:menarche", "MENARCHE"},       {"proband:father-headcirc", "FATHER_HC"},
    {"proband:father-height", "FATHER_HT"}, {"proband:mother-headcirc", "MOTHER_HC"},
    {"proband:mother-height", "MOTHER_HT"},
};

const FieldName kFollowedNumberFields[] = {
    {"body-height", "HEIGHT"},
    {"bone-age", "BONE_AGE"},
    {"head-circumference", "FOH"},
    {"arm-span", "MAC"},
    {"suprailiacal-skinfold", "SIST"},
    {"subscapular-skinfold", "SSST"},
    {"tricipital-skinfold", "TST"},
    {"testicular-volume", "TEST_VOLUME"},
    {"body-weight", "WEIGHT"},
};

const FieldName kFollowedIntegerFields[] = {
    {"tanner-pubic-hair", "TANNER_PH"},
    {"tanner-mamma", "TANNER_M"},
};

// The age is written only where the reader cannot work it out from the
// dates, and in its %g text.
void writeVisitAge(FILE* file, const R_Number& age, bool dates_written) {
  if (!age.isDefined() || dates_written) return;
  char text[64];
  snprintf(text, sizeof text, "%g", age.getValue());
  R_Number printed;
  printed.parse(text);
  if (!printed.isDefined()) return;
  writeNumberField(file, key("age-visit").c_str(), printed);
  fputc(',', file);
}

void writeVisit(FILE* file, const R_Proband& proband, int visit, bool dob_written) {
  fputc('{', file);
  bool date_written = writeDateField(file, key("date").c_str(), proband.getVisitDate(visit));
  comma(file, date_written);
  writeVisitAge(file, proband.getVisitAge(visit), dob_written && date_written);
  for (const FieldName& field : kFollowedNumberFields)
    comma(file, writeFollowedNumber(file, proband, visit, field.key_suffix, field.variable));
  for (const FieldName& field : kFollowedIntegerFields)
    comma(file, writeFollowedInteger(file, proband, visit, field.key_suffix, field.variable));
  const R_String& visit_comment = proband.getVisitComment(visit);
  writeStringField(file, key("comment").c_str(), visit_comment.isEmpty() ? "n/a" : visit_comment.get());
  fputc('}', file);
}

}  // namespace

char foldCharacter(unsigned char byte) {
  for (const FoldPair& pair : kFoldTable) {
    if (pair.byte == byte) return pair.ascii;
  }
  return '-';
}

bool writeStringField(FILE* file, const char* field_key, const char* text) {
  if (!text || !*text) return false;
  fprintf(file, "\"%s\":\"%s\"", field_key, foldText(text).c_str());
  return true;
}

bool writeDateField(FILE* file, const char* field_key, const R_Date& date) {
  char text[64];
  date.format(text, "%Y%M%D");
  return writeStringField(file, field_key, text);
}

void writeNumberField(FILE* file, const char* field_key, const R_Number& value) {
  fprintf(file, "\"%s\":%g", field_key, value.getValue());
}

void writeIntegerField(FILE* file, const char* field_key, int value) { fprintf(file, "\"%s\":%d", field_key, value); }

void writeResultRecord(const R_Proband& proband, FILE* file, const char* name, const char* comment) {
  fputc('{', file);
  int sex = proband.getSex();
  if (sex == 0 || sex == 1) comma(file, writeStringField(file, key("proband:sex").c_str(), sex == 0 ? "m" : "f"));
  comma(file, writeStringField(file, key("proband:id").c_str(), proband.getId().get()));
  comma(file, writeStringField(file, key("proband:name").c_str(), name));
  comma(file, writeStringField(file, key("proband:comment").c_str(), comment));
  bool dob_written = writeDateField(file, key("proband:dob").c_str(), proband.getDob());
  comma(file, dob_written);
  for (const FieldName& field : kAnamnesticFields)
    comma(file, writeAnamnesticNumber(file, proband, field.key_suffix, field.variable));
  fputs("\"visit\":[", file);
  for (int visit = 0; visit < proband.getVisitCount(); ++visit) {
    if (visit > 0) fputc(',', file);
    writeVisit(file, proband, visit, dob_written);
  }
  fputs("]}|||", file);
}
