// auxtool calc KNOWLEDGE DATABASE FORMULA... [--today D.M.YYYY] [--sep C]
// Evaluates each formula for each proband, in database order, with the
// proband's age today, and prints CSV: a head line "name,visit,age," and one
// column per formula as written. A series gives one line per visit; a
// scalar one line with empty visit and age columns, repeated on each visit
// line where the proband also has a series.
#ifndef TOOLS_AUXTOOL_CALCCOMMAND_H
#define TOOLS_AUXTOOL_CALCCOMMAND_H

int runCalcCommand(int argc, const char* const* argv);
extern const char* const kCalcUsage;

#endif
