// The record policy of the server. A record's outside identifier is "p"
// and a serial number handed out the first time the record is shown; it
// names the record itself, not its place, so a link made before other
// records were added, renamed or removed still leads to the same proband,
// and a link to a removed record leads nowhere. Identifiers live as long as
// the server runs.
//
// The database tells its policy nothing of changes, so identity is the
// record object: a record keeps its address while it lives, renames
// included. After a request that removed records the caller calls
// forgetRemoved(), before a new record can take a freed address.
//
// Only requests that passed the access check reach the engine; they carry
// the client number kClient, and every other number is refused.
#ifndef TOOLS_AUXSERVE_RECORDSECURITY_H
#define TOOLS_AUXSERVE_RECORDSECURITY_H

#include <unordered_map>

#include "proband/r_a_security.h"

class R_A_SimpleDB;

class RecordSecurity : public R_A_Security {
 public:
  static const int kClient = 1;
  // Enough for "p" and ten digits: the size the engine's buffers must have.
  static const int kIdSize = 12;

  // The database whose records are named; borrowed, may be set after
  // construction since the database needs its policy first.
  void attach(const R_A_SimpleDB* db) { database = db; }

  bool isClientAllowed(int client) override { return client == kClient; }
  // False, with an empty buffer, for an index outside the records.
  bool writeRecordId(int index, char* buffer) override;
  // -1 for an identifier that names no living record.
  int findRecordIndex(const char* id) override;

  // Drops the identifiers of records that are gone.
  void forgetRemoved();
  int getKnownCount() const { return static_cast<int>(serialOf.size()); }

 private:
  const R_A_SimpleDB* database = nullptr;
  std::unordered_map<const void*, unsigned> serialOf;
  std::unordered_map<unsigned, const void*> recordOf;
  unsigned nextSerial = 1;
};

#endif
