// The road of one export run: KNOWLEDGEFILE DATABASEFILE RESULTFILE in, one
// result record per proband out, a few lines on standard output and an exit
// code (0, or 101 to 106) as the whole dialogue with the caller.
#ifndef EXPORTER_EXPORTERDRIVER_H
#define EXPORTER_EXPORTERDRIVER_H

enum ExporterExitCode {
  kExitOk = 0,
  kExitUsage = 101,
  kExitKnowledgeFile = 102,
  kExitKnowledgeNotUnderstood = 103,
  kExitDatabaseNotFound = 104,
  kExitDatabaseEmpty = 105,
  kExitOutputFile = 106,
};

// Runs the exporter on the program's arguments (the program name included)
// and answers the exit code.
int runExporter(int argc, const char* const* argv);

// The first byte of a file as a signed char: 0 when the file cannot be
// opened, and -1 (the byte 255) for an empty file. So a missing file and one
// that begins with NUL are the same case, and an empty file counts as binary.
signed char peekFirstByte(const char* path);

#endif
