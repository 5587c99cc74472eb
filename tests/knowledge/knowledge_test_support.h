// Helpers of the knowledge suites: stored forms as hex text, loading every
// cut-off prefix, XML written into a buffer, and statistics made from names.
#ifndef TESTS_KNOWLEDGE_KNOWLEDGE_TEST_SUPPORT_H
#define TESTS_KNOWLEDGE_KNOWLEDGE_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "tests/support/stored_bytes.h"
#include "knowledge/r_filestatistics.h"
#include "xml/r_xmltextoutputbuffer.h"

// Runs `load(stream, &ok)` on every proper prefix of `bytes`, each time into
// a fresh object that `load` makes itself, and expects ok to come back false.
template <class Load>
void expectEveryTruncationFails(const Bytes& bytes, Load load) {
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    SCOPED_TRACE("cut after " + std::to_string(cut) + " of " + std::to_string(bytes.size()) + " bytes");
    R_BufferInputStream stream(bytes.data(), static_cast<int>(cut));
    bool ok = true;
    load(stream, &ok);
    EXPECT_FALSE(ok);
  }
}

// The XML that `save(output)` writes, all on one line.
template <class Save>
std::string xmlWrittenBy(Save save) {
  std::vector<char> buffer(1 << 16);
  R_XMLTextOutputBuffer output(buffer.data(), static_cast<int>(buffer.size()));
  save(output);
  EXPECT_TRUE(output.isOK());
  return std::string(buffer.data());
}

// Statistics holding `names` as identifiers, in this order.
class NamedStatistics : public R_FileStatistics {
 public:
  NamedStatistics(std::initializer_list<const char*> names) {
    for (const char* name : names) EXPECT_TRUE(addVar(name)) << name;
  }
};

#endif
