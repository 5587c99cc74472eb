#include "exporter/exporterdriver.h"

#include <cstdio>
#include <memory>

#include "exporter/myreporter.h"
#include "exporter/mysecurity.h"
#include "exporter/resultrecordwriter.h"
#include "knowledge/r_file.h"
#include "proband/r_a_fileopener.h"
#include "proband/r_a_simpledb.h"

namespace {

// Loads the knowledge file in the form its first byte tells; answers 0 or the
// exit code of the failure, after printing its message.
int loadKnowledge(R_File& file, MyReporter& reporter, const char* path) {
  R_A_FileOpener::Form form = R_A_FileOpener::formOf(path);
  if (form == R_A_FileOpener::formMissing) {
    printf("File %s not found\n", path);
    return kExitKnowledgeFile;
  }
  if (!R_A_FileOpener::loadKnowledge(file, path, form, &reporter)) {
    if (form == R_A_FileOpener::formXML)
      printf("Error reading knowledge file %s as XML\n%s\n", path, reporter.getText());
    else
      printf("Error reading knowledge file %s as BIN\n", path);
    return kExitKnowledgeFile;
  }
  if (!file.isOK()) {
    printf("Error understanding knowledge file\n%s\n", reporter.getText());
    return kExitKnowledgeNotUnderstood;
  }
  // The wording is the same after an XML load.
  printf("* Successfully opened knowledge file %s in binary mode\n", path);
  return kExitOk;
}

int writeRecords(const R_A_SimpleDB& database, const char* path) {
  FILE* output = fopen(path, "wt");
  if (!output) {
    printf("Can not open output file %s\n", path);
    return kExitOutputFile;
  }
  printf("* Created output file %s\n", path);
  {
    ResultRecordWriter writer(output);
    for (int index = 0; index < database.getN(); ++index)
      writer.write(*database.getProband(index), database.getText(index, 0).get(), database.getText(index, 1).get());
  }
  fclose(output);
  return kExitOk;
}

int exportDatabase(R_File& file, MyReporter& reporter, MySecurity& security, const char* path,
                   const char* result_path) {
  R_A_FileOpener::Form form = R_A_FileOpener::formOf(path);
  if (form == R_A_FileOpener::formMissing) {
    printf("File %s not found\n", path);
    return kExitDatabaseNotFound;
  }
  bool binary = form == R_A_FileOpener::formBinary;
  std::unique_ptr<R_A_SimpleDB> opened(R_A_FileOpener::openDatabase(security, file, path, form, &reporter));
  const R_A_SimpleDB& database = *opened;
  if (database.getN() <= 0) {
    printf("Database file %s contains no records\n%s\n", path, reporter.getText());
    return kExitDatabaseEmpty;
  }
  printf("* Opened database file %s in %s mode, got %d results\n", path, binary ? "BIN" : "XML", database.getN());
  return writeRecords(database, result_path);
}

}  // namespace

signed char peekFirstByte(const char* path) { return R_A_FileOpener::firstByte(path); }

int runExporter(int argc, const char* const* argv) {
  if (argc != 4) {
    printf("There must be 3 arguments to this program: KNOWLEDGEFILE DATABASEFILE RESULTFILE\nCurrently there are %d\n",
           argc);
    return kExitUsage;
  }
  // The database and its probands point into the knowledge file, so the file
  // is made first and goes last.
  R_File file;
  MyReporter reporter;
  MySecurity security;
  int code = loadKnowledge(file, reporter, argv[1]);
  if (code != kExitOk) return code;
  return exportDatabase(file, reporter, security, argv[2], argv[3]);
}
