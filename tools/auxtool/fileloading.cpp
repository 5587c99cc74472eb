#include "tools/auxtool/fileloading.h"

#include <string>

#include "exporter/exporterdriver.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "xml/r_xmlerrorreporter.h"

namespace {

void reportLine(R_XMLErrorReporter& reporter, const std::string& line) { reporter.report(line.c_str()); }

}  // namespace

bool isBinaryFile(const char* path, bool* exists) {
  signed char first = peekFirstByte(path);
  *exists = first != 0;
  return first != '<';
}

bool loadKnowledgeFile(R_File& file, const char* path, R_XMLErrorReporter& reporter) {
  bool exists = false;
  bool binary = isBinaryFile(path, &exists);
  if (!exists) {
    reportLine(reporter, std::string("File ") + path + " not found");
    return false;
  }
  bool loaded = binary ? file.loadBinary(path) : file.loadXML(path, &reporter);
  if (!loaded || !file.isOK()) {
    reportLine(reporter, std::string("Error reading knowledge file ") + path + (binary ? " as BIN" : " as XML"));
    return false;
  }
  if (!file.isReadWhole()) {
    reportLine(reporter, std::string("Knowledge file ") + path + " was not read whole: bytes follow its end");
    return false;
  }
  return true;
}

R_A_SimpleDB* openDatabase(R_File& file, R_A_Security& security, const char* path, R_XMLErrorReporter& reporter) {
  bool exists = false;
  bool binary = isBinaryFile(path, &exists);
  if (!exists) {
    reportLine(reporter, std::string("File ") + path + " not found");
    return nullptr;
  }
  R_A_SimpleDB* database = new R_A_SimpleDB(&security, &file, path, binary, &reporter);
  if (!database->isReadWhole())
    reportLine(reporter, std::string("Database file ") + path + " was not read whole; records read: " +
                             std::to_string(database->getN()));
  return database;
}
