// What a conversion checks before it puts a file in place. The engine's
// forms do not hold the same things: the XML reader knows no entities and
// normalises blanks, a stored formula goes to XML as its source, a proband
// without sex has no XML form, numbers keep six significant digits in XML,
// and the binary form cannot go without line definitions. So each object is
// first written alone in the target form and read back alone (a difference
// is content that cannot be written in that form, and the conversion is
// refused naming the object); then the whole file, as written, is read back
// with the engine's loaders and compared object by object with what was
// read (a difference there is a fault of the writers).
//
// Compared are the stored forms of the objects: for the binary target their
// bytes; for the XML target their XML text, and their bytes too unless the
// XML form rounded a number of that object.
#ifndef TOOLS_AUXTOOL_READBACK_H
#define TOOLS_AUXTOOL_READBACK_H

#include <string>

class R_A_SimpleDB;
class R_File;

struct ReadBack {
  enum Outcome {
    same,         // written, read back the same; `rounded` numbers rounded
    refused,      // an object cannot be written in the target form
    differs,      // the written file does not read back as it was read
    writeFailed,  // the file could not be written; nothing replaced
  };
  Outcome outcome = same;
  // Which object, and why, for refused and differs: one line, then the
  // loader's lines, if any, each ending in a line feed.
  std::string reason;
  int rounded = 0;
};

// Writes `file` to `out` in the target form through R_SafeFile and puts it
// in place only when it reads back the same.
ReadBack writeKnowledgeChecked(const R_File& file, const char* out, bool to_binary);
// The same for a database over its knowledge file.
ReadBack writeDatabaseChecked(const R_A_SimpleDB& database, const R_File& knowledge, const char* out,
                              bool to_binary);

#endif
