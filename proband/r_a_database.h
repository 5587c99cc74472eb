// The proband database as the page application sees it: records sorted by
// name, each with a name, a comment, a proband and a selection flag.
// Indexes are positions in that order and shift with every insertion,
// removal and renaming; callers must not keep them across such changes.
// Borrows the security policy, which must outlive the database.
#ifndef PROBAND_R_A_DATABASE_H
#define PROBAND_R_A_DATABASE_H

class R_A_Security;
class R_Proband;
class R_String;

class R_A_Database {
 public:
  // Texts of a record: type 0 is the name, type 1 the comment.
  static const int _textCount = 2;

  explicit R_A_Database(R_A_Security* security_policy) : security(security_policy) {}
  virtual ~R_A_Database();
  R_A_Database(const R_A_Database&) = delete;
  R_A_Database& operator=(const R_A_Database&) = delete;

  // Null selects all records; otherwise a record is selected exactly when
  // its name or comment contains `text` (ASCII case ignored).
  virtual void select(const char* text) = 0;
  virtual int getSelectedCount() const = 0;
  // False for an index outside the records.
  virtual bool isSelected(int index) const = 0;
  // Requires: 0 <= index < getN().
  virtual void setSelected(int index, bool value) = 0;
  virtual int getN() const = 0;
  // A new empty record with this sex (0 male, 1 female, else undefined);
  // answers its index, or -1 when it could not be added.
  virtual int addRecord(int sex) = 0;
  // For an allowed client, the security object writes the record's outside
  // identifier and its result comes back; a refused client gets an empty
  // buffer and true.
  virtual bool getRecordId(int index, int client, char* buffer) = 0;
  // The record for an outside identifier; -1 for a refused client or an
  // identifier that names no record.
  virtual int findRecord(const char* id, int client) = 0;
  // Sets text `typ` (0 or 1) of the record. A new name moves the record to
  // its place in the order and `index` follows it (-1 if it was lost). An
  // index outside the records does nothing.
  virtual void setText(int& index, int typ, const char* text) = 0;
  // The empty text for an index outside the records. Requires: typ 0 or 1.
  virtual const R_String& getText(int index, int typ) const = 0;
  // Deletes the record and saves at once; an index outside does nothing.
  virtual void removeRecord(int index) = 0;
  // Null for an index outside the records.
  virtual R_Proband* getProband(int index) const = 0;
  // Writes the whole database to its file; `index` is not used. Answers
  // whether the file was replaced.
  virtual bool save(int index) = 0;
  // The first record whose name equals `name` exactly (case counts); -1.
  virtual int findByName(const char* name) const = 0;

 protected:
  R_A_Security* security;  // borrowed
};

#endif
