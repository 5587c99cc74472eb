#include "tools/auxtool/importcommand.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "core/r_date.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_importlist.h"
#include "proband/r_proband.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"

const char* const kImportUsage =
    "usage: auxtool import KNOWLEDGE LIST DATABASE [--select N,N,...|--all]\n"
    "  Prints the entries of the import list LIST, one a line, numbered from 1:\n"
    "  number, name, sex (M, F or ?), date of birth (D.M.YYYY) and diagnosis,\n"
    "  separated by tabs. --select takes the numbered entries, --all every entry,\n"
    "  into DATABASE as new records and saves it; a refused list or database\n"
    "  changes nothing. Exit 0 on success, 1 when a file was missing or refused,\n"
    "  2 on wrong usage or a number outside the list.\n";

namespace {

struct ImportOptions {
  const char* knowledge = nullptr;
  const char* list = nullptr;
  const char* database = nullptr;
  const char* select = nullptr;  // the text after --select
  bool all = false;
};

bool parseOptions(int argc, const char* const* argv, ImportOptions* options) {
  const char** positional[] = {&options->knowledge, &options->list, &options->database};
  int count = 0;
  for (int i = 0; i < argc; i++) {
    if (strcmp(argv[i], "--select") == 0) {
      if (i + 1 >= argc || options->select) return false;
      options->select = argv[++i];
    } else if (strcmp(argv[i], "--all") == 0) {
      options->all = true;
    } else if (count < 3) {
      *positional[count++] = argv[i];
    } else {
      return false;
    }
  }
  return count == 3 && !(options->all && options->select);
}

// Numbers from 1 to `count`, separated by commas; false for anything else.
bool parseSelection(const char* text, int count, std::vector<int>* chosen) {
  while (true) {
    char* end = nullptr;
    long number = strtol(text, &end, 10);
    if (end == text || *text < '0' || *text > '9' || number < 1 || number > count) return false;
    chosen->push_back(static_cast<int>(number) - 1);
    if (*end == '\0') return true;
    if (*end != ',') return false;
    text = end + 1;
  }
}

void printEntries(const R_ImportList& list, const R_File& file) {
  static const char* const kSexNames[] = {"M", "F", "?"};
  for (int i = 0; i < list.getCount(); i++) {
    int sex = 2;
    R_Date dob;
    list.getSummary(&file, i, &sex, &dob);
    char date[32];
    dob.format(date, "%d.%m.%Y");
    printf("%d\t%s\t%s\t%s\t%s\n", i + 1, list.getText(i, R_ImportProband::textName), kSexNames[sex], date,
           list.getText(i, R_ImportProband::textDiagnosis));
  }
}

// Adds the chosen entries as records; false, leaving the file untouched,
// when one of them does not unpack or cannot be added.
bool addEntries(const R_ImportList& list, const std::vector<int>& chosen, const R_File& file,
                R_A_SimpleDB& database) {
  for (int index : chosen) {
    R_Proband proband(&file);
    if (!list.getProband(proband, index)) return false;
    int record = database.addRecord(proband.getSex());
    if (record < 0) return false;
    database.getProband(record)->copyFrom(proband);
    database.setText(record, 0, list.getText(index, R_ImportProband::textName));
    database.setText(record, 1, list.getText(index, R_ImportProband::textComment));
  }
  return true;
}

}  // namespace

int runImportCommand(int argc, const char* const* argv) {
  ImportOptions options;
  if (!parseOptions(argc, argv, &options)) {
    fputs(kImportUsage, stderr);
    return kExitUsageError;
  }
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, options.knowledge, reporter)) return kExitRefused;
  R_ImportList list;
  if (!list.load(&file, options.list, &reporter, 0) || reporter.getCount() > 0) {
    fprintf(stderr, "Import list %s refused\n", options.list);
    return kExitRefused;
  }
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, options.database, reporter));
  if (!database || reporter.getCount() > 0) return kExitRefused;
  std::vector<int> chosen;
  if (options.all) {
    for (int i = 0; i < list.getCount(); i++) chosen.push_back(i);
  } else if (options.select && !parseSelection(options.select, list.getCount(), &chosen)) {
    fprintf(stderr, "Selection %s names no entries 1 to %d\n", options.select, list.getCount());
    return kExitUsageError;
  }
  if (list.getInfo()[0]) printf("info\t%s\n", list.getInfo());
  printEntries(list, file);
  if (!options.all && !options.select) return kExitSuccess;
  if (!addEntries(list, chosen, file, *database) || !database->save(0)) {
    fprintf(stderr, "Database %s not changed\n", options.database);
    return kExitRefused;
  }
  printf("imported %d of %d entries into %s\n", static_cast<int>(chosen.size()), list.getCount(),
         options.database);
  return kExitSuccess;
}
