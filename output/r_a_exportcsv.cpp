#include "output/r_a_exportcsv.h"

#include <cassert>
#include <cstring>

#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_numbertext.h"
#include "knowledge/r_file.h"
#include "knowledge/r_measuredvariables.h"
#include "proband/r_a_database.h"
#include "proband/r_proband.h"

namespace {

const char* const kDefaultNames[] = {
    "PROBAND_INDEX", "NAME", "SEX", "DOB", "COMMENT", "MEASURE_INDEX", "DATE", "MEASURE_COMMENT",
    "\n", "\"", ",", "%m/%d/%Y", "", "", ".",
};
static_assert(sizeof(kDefaultNames) / sizeof(kDefaultNames[0]) == R_A_ExportCSV::_nameTypeCount,
              "one default for each name");

int countOf(const R_MeasuredVariables* vars) { return vars ? vars->getCount() : 0; }

}  // namespace

R_A_ExportCSV::R_A_ExportCSV(const char* path) : file(path), first_field(true), success(false) {
  for (int i = 0; i < _nameTypeCount; i++) setName(i, kDefaultNames[i]);
}

void R_A_ExportCSV::setName(int which, const char* text) {
  assert(which >= 0 && which < _nameTypeCount);
  size_t length = text ? strnlen(text, maxNameLength) : 0;
  memcpy(names[which], text ? text : "", length);
  names[which][length] = '\0';
}

bool R_A_ExportCSV::write(const R_A_Database& database, const R_File& F) {
  success = false;
  if (!file.isOK()) return false;
  writeHead(F);
  for (int i = 0; i < database.getN(); i++) {
    const R_Proband* proband = database.getProband(i);
    if (proband && database.isSelected(i)) writeProband(database, i, *proband);
  }
  success = file.commit();
  return true;
}

void R_A_ExportCSV::writeHead(const R_File& F) {
  const R_MeasuredVariables* anamnestic = F.isOK() ? F.getAnamnesticVars() : nullptr;
  const R_MeasuredVariables* followed = F.isOK() ? F.getFollowedVars() : nullptr;
  for (int i = nameProbandIndex; i <= nameComment; i++) addField(names[i]);
  for (int i = 0; i < countOf(anamnestic); i++) addField(anamnestic->getName(i));
  for (int i = nameMeasureIndex; i <= nameMeasureComment; i++) addField(names[i]);
  for (int i = 0; i < countOf(followed); i++) addField(followed->getName(i));
  endLine();
}

void R_A_ExportCSV::writeProband(const R_A_Database& database, int index, const R_Proband& proband) {
  int visits = proband.getVisitCount();
  int lines = visits > 0 ? visits : 1;
  char number[R_numberTextSize];
  for (int k = 0; k < lines; k++) {
    if (k == 0) {
      R_formatInt(index + 1, number);
      addField(number);
      addText(database.getText(index, 0));
      addField(proband.getSex() == 0 ? "M" : "F");
      addDate(proband.getDob());
      addText(database.getText(index, 1));
      for (int a = 0; a < proband.getAnamnesticCount(); a++) addNumber(proband.getAnamnesticNumber(a));
    } else {
      addEmptyFields(5 + proband.getAnamnesticCount());
    }
    if (k < visits) {
      R_formatInt(k + 1, number);
      addField(number);
      addDate(proband.getVisitDate(k));
      addText(proband.getVisitComment(k));
      for (int f = 0; f < proband.getFollowedCount(); f++) addNumber(proband.getFollowedNumber(k, f));
    } else {
      addEmptyFields(3 + proband.getFollowedCount());
    }
    endLine();
  }
}

void R_A_ExportCSV::addField(const char* text) {
  if (!first_field) line += names[nameSeparator];
  first_field = false;
  line += text;
}

void R_A_ExportCSV::addEmptyFields(int count) {
  for (int i = 0; i < count; i++) addField(names[nameEmptyField]);
}

// Control bytes would break the line, and a byte of the separator or the
// quote would split or close the field: both are replaced, since readers
// of these files differ in how they take escapes.
void R_A_ExportCSV::addText(const char* text) {
  std::string field = names[nameQuote];
  for (; *text; text++) {
    unsigned char c = static_cast<unsigned char>(*text);
    if (c < 33) c = ' ';
    else if (strchr(names[nameSeparator], c) || strchr(names[nameQuote], c)) c = '_';
    field += static_cast<char>(c);
  }
  field += names[nameQuote];
  addField(field.c_str());
}

// The decimal point is not guarded against the separator: with ',' for
// both, 1.5 comes out as 1,5 and splits the field, as files already made
// this way have it. An empty decimal point ends the number at its point.
void R_A_ExportCSV::addNumber(const R_Number& number) {
  if (!number.isDefined()) {
    addField(names[nameUndefinedNumber]);
    return;
  }
  char text[64];
  number.toText(text);
  for (char* p = text; *p; p++) {
    if (*p == '.') *p = names[nameDecimalPoint][0];
  }
  addField(text);
}

void R_A_ExportCSV::addDate(const R_Date& date) {
  char text[4 * maxNameLength + 1];
  date.format(text, names[nameDateFormat]);
  addField(text);
}

void R_A_ExportCSV::endLine() {
  line += names[nameLineEnd];
  file.writeBytes(reinterpret_cast<const unsigned char*>(line.data()), static_cast<int>(line.size()));
  line.clear();
  first_field = true;
}
