// The proband database kept in one file, XML or binary, read whole when it
// is constructed and written whole by save(). Records stay sorted by name
// without regard to ASCII case; records of equal name keep their order of
// arrival. Selection flags live in memory only.
//
// A file that cannot be opened gives an empty database without a message.
// A load that breaks in the middle keeps the records read so far; the XML
// road tells the reporter why, the binary road tells nobody. save() writes
// through R_SafeFile, so a failed save leaves the old file as it was.
//
// Owns its records; borrows the security object, the R_File (which must
// outlive the database, since every proband holds it) and the reporter.
#ifndef PROBAND_R_A_SIMPLEDB_H
#define PROBAND_R_A_SIMPLEDB_H

#include <vector>

#include "core/r_sortedfieldtemplate.h"
#include "core/r_string.h"
#include "proband/r_a_database.h"
#include "proband/r_a_simpledbrecord.h"
#include "xml/r_xmlrecipient.h"

class R_File;
class R_OutputStream;
class R_XMLErrorReporter;

class R_A_SimpleDB : public R_A_Database, public R_XMLRecipient {
 public:
  // Opens `path` in the given form and reads it. `binary` is also the form
  // in which save() writes. `reporter` may be null.
  R_A_SimpleDB(R_A_Security* security_policy, const R_File* file, const char* path, bool binary,
               R_XMLErrorReporter* reporter);
  ~R_A_SimpleDB() override;

  void select(const char* text) override;
  int getSelectedCount() const override;
  bool isSelected(int index) const override;
  void setSelected(int index, bool value) override;
  int getN() const override { return records.getCount(); }
  int addRecord(int sex) override;
  bool getRecordId(int index, int client, char* buffer) override;
  int findRecord(const char* id, int client) override;
  void setText(int& index, int typ, const char* text) override;
  const R_String& getText(int index, int typ) const override;
  void removeRecord(int index) override;
  R_Proband* getProband(int index) const override;
  // The record at `index`, null for a bad index.
  const R_A_SimpleDBRecord* getRecord(int index) const { return record(index); }
  bool save(int index) override;
  // Writes the whole database to `target` in the binary or the XML form,
  // through R_SafeFile: a failed save leaves `target` as it was.
  bool saveAs(const char* target, bool as_binary) const;
  // The whole database in either form into a stream; the XML form answers
  // how many numbers it rounded.
  int saveTo(R_OutputStream& stream, bool as_binary) const;
  int findByName(const char* name) const override;

  // Deletes every record whose selection flag equals `selected`. No save.
  void removeBySelection(bool selected);
  // Adds the records of an XML text holding a `p_database` element, as the
  // file is read; keeps what it has. Answers whether the text was read
  // without fault.
  bool loadText(const char* textXML);
  const char* getPath() const { return path.get(); }
  // Whether the file was read whole when the database was opened: it opened,
  // every record it holds was read and taken, every byte accounted for, and
  // nothing was refused. The loads keep their rule of going on with what they
  // got; this is how a caller that is about to write learns that the rest of
  // the file would be lost. Records added or removed since do not change it.
  bool isReadWhole() const { return read_whole; }
  bool isBinary() const { return binary; }

  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;

 private:
  void open();
  // Both answer whether the file was read whole.
  bool loadBinary();
  bool parseXML(const char* source, bool from_file);
  // Reads a file in the layout the database writes in one pass (see
  // R_A_SimpleDBPlainReader); false, with nothing added, for any other file.
  // `all_taken` tells whether every record read entered the table.
  bool readPlain(const char* file_path, bool* all_taken);
  // False when a record could not be taken.
  bool admitArrivals();
  R_A_SimpleDBRecord* record(int index) const { return records.get(index); }


  R_SortedFieldTemplate<R_A_SimpleDBRecord> records;
  // Records read during a load; they enter `records` together at its end.
  std::vector<R_A_SimpleDBRecord*> arrivals;
  R_String empty_text;  // what getText answers for a bad index
  R_String path;
  bool binary;
  bool read_whole;
  const R_File* F;                 // borrowed
  R_XMLErrorReporter* reporter;    // borrowed, may be null
};

#endif
