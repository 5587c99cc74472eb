// Helpers of the knowledge suites: stored forms loaded back, XML written
// into a buffer, and statistics made from names.
#ifndef TESTS_KNOWLEDGE_KNOWLEDGE_TEST_SUPPORT_H
#define TESTS_KNOWLEDGE_KNOWLEDGE_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "knowledge/r_filestatistics.h"
#include "tests/support/stored_bytes.h"
#include "xml/r_xmltextoutputbuffer.h"

// Loads a fresh T from `stream`; answers what it saves then, or nothing
// when the load failed.
template <class T>
Bytes reloaded(R_InputStream& stream, bool* ok) {
  T value;
  value.load(stream, ok);
  return *ok ? savedBytes(value) : Bytes();
}

// Runs `reload` (see reloaded) over exactly the bytes of `hex`; answers ok.
template <class Reload>
bool reloads(const std::string& hex, Reload reload) {
  Bytes bytes = bytesOf(hex);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  reload(stream, &ok);
  return ok;
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
