// auxtool report KNOWLEDGE DATABASE PROBAND TEXT [--out FILE] [--setup FILE] [--today D.M.YYYY]
// Writes one report text of the knowledge file for one proband as one HTML
// page, through the page application's HTML output with the setup's
// templates (all defaults without --setup), to FILE or standard output.
// PROBAND is the record's name exactly as stored; TEXT a text block's id.
// auxtool report --list KNOWLEDGE prints each text block's id and title.
// Exit 0 done, 1 a file, proband or text missing or refused, 2 wrong usage.
#ifndef TOOLS_AUXTOOL_REPORTCOMMAND_H
#define TOOLS_AUXTOOL_REPORTCOMMAND_H

int runReportCommand(int argc, const char* const* argv);
extern const char* const kReportUsage;

#endif
