// auxtool convert knowledge IN OUT --to xml|bin
// auxtool convert database KNOWLEDGE IN OUT --to xml|bin
// Reads IN in whichever form it has and writes OUT in the asked form with the
// engine's own writers. A read that reports anything writes nothing.
#ifndef TOOLS_AUXTOOL_CONVERTCOMMAND_H
#define TOOLS_AUXTOOL_CONVERTCOMMAND_H

int runConvertCommand(int argc, const char* const* argv);
extern const char* const kConvertUsage;

#endif
