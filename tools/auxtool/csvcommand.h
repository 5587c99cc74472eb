// auxtool csv KNOWLEDGE DATABASE OUT [--search TEXT]: writes the probands of
// the database, or those whose name or comment contains TEXT, to OUT as the
// engine's CSV export does. OUT appears only when it is complete. Exit 0
// when OUT was written, 1 when a file was missing or refused (OUT then is
// left as it was), 2 on wrong usage.
#ifndef TOOLS_AUXTOOL_CSVCOMMAND_H
#define TOOLS_AUXTOOL_CSVCOMMAND_H

int runCsvCommand(int argc, const char* const* argv);
extern const char* const kCsvUsage;

#endif
