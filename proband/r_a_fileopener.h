// How the programs open their two kinds of file, so that the exporter and
// the tools take a file for the same form and load it by the same road. The
// first byte decides: '<' is XML, anything else binary (an empty file too);
// a file that cannot be opened and one that begins with NUL are missing.
// Only the first byte counts, so a byte-order mark or a blank in front
// makes an XML file binary, which then fails to load.
#ifndef PROBAND_R_A_FILEOPENER_H
#define PROBAND_R_A_FILEOPENER_H

class R_A_Security;
class R_A_SimpleDB;
class R_File;
class R_XMLErrorReporter;

class R_A_FileOpener {
 public:
  enum Form { formMissing, formXML, formBinary };

  // The first byte as a signed char: 0 when the file cannot be opened, -1
  // (the byte 255) for an empty file.
  static signed char firstByte(const char* path);
  static Form formOf(const char* path);

  // Loads the knowledge file in its form, which must not be missing; the XML
  // road reports to `reporter` (may be null), the binary road reports
  // nothing. Answers file.isOK().
  static bool loadKnowledge(R_File& file, const char* path, Form form, R_XMLErrorReporter* reporter);
  // The database in its form, which must not be missing, on `file` and
  // `security`, both of which must outlive it. Owned by the caller.
  static R_A_SimpleDB* openDatabase(R_A_Security& security, const R_File& file, const char* path, Form form,
                                    R_XMLErrorReporter* reporter);
};

#endif
