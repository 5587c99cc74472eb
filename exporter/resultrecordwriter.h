// Writes one proband as one record of the result file: a JSON-like object
// with fixed `indicator-class:` keys, only what is known about the proband,
// text folded to a restricted ASCII alphabet, closed by the mark "]}|||"
// instead of a line end. The writer has no failures: what a record lacks is
// left out, and output errors are ignored.
#ifndef EXPORTER_RESULTRECORDWRITER_H
#define EXPORTER_RESULTRECORDWRITER_H

#include <cstdio>

class R_Date;
class R_Number;
class R_Proband;

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
