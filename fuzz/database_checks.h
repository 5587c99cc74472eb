// What the database targets do with a database that loaded: every record
// through the exporter's writer, a few formulas, the blob and query forms,
// and the binary form written and read back.
#ifndef FUZZ_DATABASE_CHECKS_H
#define FUZZ_DATABASE_CHECKS_H

class R_A_SimpleDB;

// Everything a reader of the database may ask of each record.
void exerciseRecords(const R_A_SimpleDB& database);
// Writes the binary form and reads it back twice: every record comes back,
// and the second reading gives the same names, sexes and numbers of visits
// as the first. Then writes the XML form and reads it back without
// comparing, since a rewritten record may no longer fit the capture.
void checkDatabaseRoundTrips(const R_A_SimpleDB& database);

#endif
