// auxtool synth KNOWLEDGE N OUT [--seed S] [--to xml|bin]
// Writes a database of N plausible synthetic probands for a knowledge file:
// names, sexes, dates of birth, 1 to 20 dated visits, followed values that
// track a reference curve with noise where the file has references (else a
// plausible value inside the variable's interval), anamnestic values and a
// few comments with accented Windows-1250 text. The same seed gives the same
// file.
#ifndef TOOLS_AUXTOOL_SYNTHCOMMAND_H
#define TOOLS_AUXTOOL_SYNTHCOMMAND_H

int runSynthCommand(int argc, const char* const* argv);
extern const char* const kSynthUsage;

#endif
