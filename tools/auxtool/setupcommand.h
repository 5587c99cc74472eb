// auxtool setup FILE: lists every key of the page application's settings
// with the value the file gives it, or the default its readers use, and
// warns of each name in the file that is no key: a misspelt name is
// otherwise passed over without a word. Exit 0 when the file was read, 1
// when it cannot be opened, 2 on wrong usage.
#ifndef TOOLS_AUXTOOL_SETUPCOMMAND_H
#define TOOLS_AUXTOOL_SETUPCOMMAND_H

int runSetupCommand(int argc, const char* const* argv);
extern const char* const kSetupUsage;

#endif
