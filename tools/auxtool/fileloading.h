// Opening the two kinds of files the way the exporter does: the first byte
// decides the form ('<' is XML, anything else binary). Each failure is told
// as a line to the reporter, so a caller prints or collects it.
#ifndef TOOLS_AUXTOOL_FILELOADING_H
#define TOOLS_AUXTOOL_FILELOADING_H

class R_A_Database;
class R_A_Security;
class R_A_SimpleDB;
class R_File;
class R_XMLErrorReporter;

// Loads `path` into `file`; false, with a line for the reporter, when the
// file is missing, is refused or was not read whole.
bool loadKnowledgeFile(R_File& file, const char* path, R_XMLErrorReporter& reporter);

// Whether the file at `path` is in the binary form; `exists` tells whether
// it could be opened (a first byte NUL counts as missing, as for the
// exporter).
bool isBinaryFile(const char* path, bool* exists);

// Opens the database at `path` in its own form. Null, with a line for the
// reporter, when the file is missing; a database whose load reported lines
// or that was not read whole still comes back, and the reporter's count
// tells of the refusal: a line says how many records were read, since a
// binary file cut short reports nothing of its own.
R_A_SimpleDB* openDatabase(R_File& file, R_A_Security& security, const char* path, R_XMLErrorReporter& reporter);

#endif
