// Opening the two kinds of files as the exporter does (R_A_FileOpener), with
// each failure told as a line to the reporter, so that a caller prints or
// collects it. A file that loads but was not read whole is refused too: a
// tool must not compute on, or write out, part of a file as if it were all.
#ifndef TOOLS_AUXTOOL_FILELOADING_H
#define TOOLS_AUXTOOL_FILELOADING_H

class R_A_SimpleDB;
class R_File;
class R_XMLErrorReporter;

// Loads `path` into `file`; false, with a line for the reporter, when the
// file is missing, is refused or was not read whole.
bool loadKnowledgeFile(R_File& file, const char* path, R_XMLErrorReporter& reporter);

// Opens the database at `path` in its own form. Null, with a line for the
// reporter, when the file is missing; a database whose load reported lines
// or that was not read whole still comes back, and the reporter's count
// tells of the refusal: a line says how many records were read, since a
// binary file cut short reports nothing of its own. `file` must outlive
// the database.
R_A_SimpleDB* openDatabase(const R_File& file, const char* path, R_XMLErrorReporter& reporter);

#endif
