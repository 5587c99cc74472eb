// Writes the selected probands of a database to a text file for
// spreadsheets: one line a visit, the proband's own fields on its first line
// only, and as many fields on every line as the head line has. Column heads,
// line end, quote, separator, date format, the texts of empty fields and of
// undefined numbers, and the decimal point can be changed with setName.
//
// The file is written under a temporary name and takes its own name only
// when write() has finished, so a reader never sees half a file and a file
// that is never written leaves nothing behind. One object writes one file:
// write() answers false once the file is closed. Not copyable.
#ifndef OUTPUT_R_A_EXPORTCSV_H
#define OUTPUT_R_A_EXPORTCSV_H

#include <string>

#include "core/r_safefile.h"

class R_A_Database;
class R_Date;
class R_File;
class R_Number;
class R_Proband;

class R_A_ExportCSV {
 public:
  enum NameType {
    nameProbandIndex,
    nameName,
    nameSex,
    nameDob,
    nameComment,
    nameMeasureIndex,
    nameDate,
    nameMeasureComment,
    nameLineEnd,
    nameQuote,
    nameSeparator,
    nameDateFormat,
    nameEmptyField,
    nameUndefinedNumber,
    nameDecimalPoint,
    _nameTypeCount
  };
  static const int maxNameLength = 32;

  // Creates the temporary file beside `path` and sets the defaults.
  // Requires: path != null.
  explicit R_A_ExportCSV(const char* path);
  // Drops a file that was never written.
  ~R_A_ExportCSV() = default;
  R_A_ExportCSV(const R_A_ExportCSV&) = delete;
  R_A_ExportCSV& operator=(const R_A_ExportCSV&) = delete;

  // Sets text `which` to the first maxNameLength bytes of `text` (null is
  // the empty text). Requires: 0 <= which < _nameTypeCount.
  void setName(int which, const char* text);
  const char* getName(int which) const { return names[which]; }

  // Writes the head line and the lines of every selected proband, then puts
  // the file in place. False at once when the file is not open; otherwise
  // true (a failure of the disk is not looked for beyond the final rename).
  bool write(const R_A_Database& database, const R_File& F);
  // Whether the last write() put the whole file in place.
  bool isOK() const { return success; }

 private:
  void writeHead(const R_File& F);
  void writeProband(const R_A_Database& database, int index, const R_Proband& proband);
  void addField(const char* text);
  void addEmptyFields(int count);
  void addText(const char* text);
  void addNumber(const R_Number& number);
  void addDate(const R_Date& date);
  void endLine();

  R_SafeFile file;
  char names[_nameTypeCount][maxNameLength + 1];
  std::string line;    // the line being built
  bool first_field;    // no separator before the next field
  bool success;
};

#endif
