#include "tools/auxserve/recordsecurity.h"

#include <cstdio>
#include <cstdlib>
#include <unordered_set>

#include "proband/r_a_simpledb.h"

bool RecordSecurity::writeRecordId(int index, char* buffer) {
  buffer[0] = 0;
  const void* record = database ? database->getRecord(index) : nullptr;
  if (!record) return false;
  auto known = serialOf.find(record);
  unsigned serial;
  if (known != serialOf.end()) {
    serial = known->second;
  } else {
    serial = nextSerial++;
    serialOf[record] = serial;
    recordOf[serial] = record;
  }
  snprintf(buffer, kIdSize, "p%u", serial);
  return true;
}

int RecordSecurity::findRecordIndex(const char* id) {
  if (!database || !id || id[0] != 'p' || id[1] < '0' || id[1] > '9') return -1;
  char* end = nullptr;
  unsigned long serial = strtoul(id + 1, &end, 10);
  if (*end != 0) return -1;
  auto known = recordOf.find(static_cast<unsigned>(serial));
  if (known == recordOf.end()) return -1;
  // Positions shift with every change; the record is looked for afresh.
  for (int i = 0; i < database->getN(); ++i)
    if (database->getRecord(i) == known->second) return i;
  return -1;
}

void RecordSecurity::forgetRemoved() {
  std::unordered_set<const void*> living;
  if (database)
    for (int i = 0; i < database->getN(); ++i) living.insert(database->getRecord(i));
  for (auto it = serialOf.begin(); it != serialOf.end();) {
    if (living.count(it->first)) {
      ++it;
    } else {
      recordOf.erase(it->second);
      it = serialOf.erase(it);
    }
  }
}
