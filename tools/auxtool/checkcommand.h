// auxtool check KNOWLEDGE [DATABASE]: loads the files, prints every line the
// loaders report and a summary. Exit 0 when everything loaded, 1 when
// something was refused, 2 on wrong usage.
#ifndef TOOLS_AUXTOOL_CHECKCOMMAND_H
#define TOOLS_AUXTOOL_CHECKCOMMAND_H

int runCheckCommand(int argc, const char* const* argv);
extern const char* const kCheckUsage;

#endif
