#include "tools/auxtool/fileloading.h"

#include <string>

#include "knowledge/r_file.h"
#include "proband/r_a_fileopener.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "xml/r_xmlerrorreporter.h"

namespace {

// The tools hand out no record identifiers; one policy serves every database.
R_A_OpenSecurity open_security;

void reportLine(R_XMLErrorReporter& reporter, const std::string& line) { reporter.report(line.c_str()); }

}  // namespace

bool loadKnowledgeFile(R_File& file, const char* path, R_XMLErrorReporter& reporter) {
  R_A_FileOpener::Form form = R_A_FileOpener::formOf(path);
  if (form == R_A_FileOpener::formMissing) {
    reportLine(reporter, std::string("File ") + path + " not found");
    return false;
  }
  if (!R_A_FileOpener::loadKnowledge(file, path, form, &reporter)) {
    bool binary = form == R_A_FileOpener::formBinary;
    reportLine(reporter, std::string("Error reading knowledge file ") + path + (binary ? " as BIN" : " as XML"));
    return false;
  }
  if (!file.isReadWhole()) {
    reportLine(reporter, std::string("Knowledge file ") + path + " was not read whole: bytes follow its end");
    return false;
  }
  return true;
}

R_A_SimpleDB* openDatabase(const R_File& file, const char* path, R_XMLErrorReporter& reporter) {
  R_A_FileOpener::Form form = R_A_FileOpener::formOf(path);
  if (form == R_A_FileOpener::formMissing) {
    reportLine(reporter, std::string("File ") + path + " not found");
    return nullptr;
  }
  R_A_SimpleDB* database = R_A_FileOpener::openDatabase(open_security, file, path, form, &reporter);
  if (!database->isReadWhole())
    reportLine(reporter, std::string("Database file ") + path + " was not read whole; records read: " +
                             std::to_string(database->getN()));
  return database;
}
