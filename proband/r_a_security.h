// The policy of what outside callers see of a database record: whether a
// client may use record identifiers at all, and how a record index turns
// into the identifier that a page carries and back. The program that builds
// the database chooses the implementation and keeps it alive as long as the
// database; the database only borrows it.
#ifndef PROBAND_R_A_SECURITY_H
#define PROBAND_R_A_SECURITY_H

class R_A_Security {
 public:
  R_A_Security() = default;
  virtual ~R_A_Security();
  R_A_Security(const R_A_Security&) = delete;
  R_A_Security& operator=(const R_A_Security&) = delete;

  // Whether the client number may use record identifiers.
  virtual bool isClientAllowed(int client) = 0;
  // Writes the outside identifier of record `index` into `buffer`, whose
  // size the implementation defines; answers success.
  virtual bool writeRecordId(int index, char* buffer) = 0;
  // The record index for an outside identifier; any number outside the
  // records means none.
  virtual int findRecordIndex(const char* id) = 0;
};

#endif
