// Writes probands as records of the result file: JSON-like objects with
// fixed `indicator-class:` keys, only what is known about the proband, text
// folded to a restricted ASCII alphabet, each closed by the mark "]}|||"
// instead of a line end. The writer has no failures: what a record lacks is
// left out, and output errors are ignored.
#ifndef EXPORTER_RESULTRECORDWRITER_H
#define EXPORTER_RESULTRECORDWRITER_H

#include <cstdio>

#include "core/r_textbuffer.h"

class R_Date;
class R_File;
class R_Number;
class R_Proband;

// Writes records one after the other to an open file, as writeResultRecord
// does, for a whole database: it finds the slots of the fixed variables once
// per knowledge file instead of by name in every visit, builds the text in a
// buffer of its own and hands the file large blocks. Borrows the file, which
// must stay open until the writer is gone; flushes when destroyed. Not
// copyable.
class ResultRecordWriter {
 public:
  explicit ResultRecordWriter(FILE* file);
  ~ResultRecordWriter();
  ResultRecordWriter(const ResultRecordWriter&) = delete;
  ResultRecordWriter& operator=(const ResultRecordWriter&) = delete;

  // The whole record of `proband`, with the database's name and comment.
  void write(const R_Proband& proband, const char* name, const char* comment);
  // Hands what is buffered to the file.
  void flush();

 private:
  // Slots of the fixed variables in the probands of one knowledge file; -1
  // where a name is not the kind of variable its field reads.
  struct Slots {
    const R_File* file;
    int anamnestic_count;
    int followed_count;
    int anamnestic[5];
    int followed_numbers[9];
    int followed_integers[2];
  };

  void resolve(const R_Proband& proband);
  void writeVisit(const R_Proband& proband, int visit, bool dob_written);

  FILE* file;
  R_TextBuffer text;  // the bytes not yet handed to the file
  Slots slots;
};

// The whole record of `proband`, with the database's name and comment.
void writeResultRecord(const R_Proband& proband, FILE* file, const char* name, const char* comment);

// "key":"folded text". False, and nothing written, for a null or empty text.
bool writeStringField(FILE* file, const char* key, const char* text);
// A string field with the date as YYYYMMDD; false for an undefined date.
bool writeDateField(FILE* file, const char* key, const R_Date& date);
// "key":%g. Requires: value is defined.
void writeNumberField(FILE* file, const char* key, const R_Number& value);
// "key":%d
void writeIntegerField(FILE* file, const char* key, int value);

// The ASCII byte for a Windows-1250 byte above 127; '-' for one outside the
// table of Czech and Slovak letters.
char foldCharacter(unsigned char byte);

#endif
