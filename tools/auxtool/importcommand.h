// auxtool import KNOWLEDGE LIST DATABASE [--select N,N,...|--all]: reads an
// import list of the predecessor product and prints its entries, numbered
// from 1: number, name, sex, date of birth and diagnosis, separated by tabs.
// With --select or --all it then takes the chosen entries into the
// database as new records (name and comment from the entry) and saves the
// database the way the database saves itself. A list, database or
// selection that is refused changes nothing. Exit 0 on success, 1 when a
// file was missing or refused or the save failed, 2 on wrong usage
// (a number outside the list included).
#ifndef TOOLS_AUXTOOL_IMPORTCOMMAND_H
#define TOOLS_AUXTOOL_IMPORTCOMMAND_H

int runImportCommand(int argc, const char* const* argv);
extern const char* const kImportUsage;

#endif
