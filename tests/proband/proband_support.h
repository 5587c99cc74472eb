// Fixtures shared by the proband tests: the knowledge files under
// tests/data/proband, a reporter that collects its lines, a security policy
// with fixed answers, and whole-output helpers for probands.
#ifndef TESTS_PROBAND_PROBAND_SUPPORT_H
#define TESTS_PROBAND_PROBAND_SUPPORT_H

#include <memory>
#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "proband/r_a_security.h"
#include "proband/r_proband.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmlerrorreporter.h"

// Loads tests/data/proband/<name>; fails the test when it does not load.
std::unique_ptr<R_File> loadKnowledge(const std::string& name);

// Admits the clients it is told to; identifiers are "R" and the index.
class FixedSecurity : public R_A_Security {
 public:
  explicit FixedSecurity(bool allow) : allowed(allow) {}
  bool isClientAllowed(int) override { return allowed; }
  bool writeRecordId(int index, char* buffer) override;
  int findRecordIndex(const char* id) override;

 private:
  bool allowed;
};

// The proband's XML form on one line (saveToText); "" if refused.
std::string textOf(const R_Proband& proband);
// The binary form through save(), also for a proband that saveToBuffer
// would refuse.
std::string bytesOf(const R_Proband& proband);
// loadXML of `text`, asserting nothing.
bool loadText(R_Proband& proband, const std::string& text);
bool loadBytes(R_Proband& proband, const std::string& bytes);

#endif
