// Helpers of the knowledge suites: one check that pins a stored form, XML
// written into a buffer, and statistics made from names.
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

// Pins a stored form three ways: `saved` is `hex`; `reload` (see reloaded)
// takes exactly the bytes of `hex` and saves them again; it fails on every
// proper prefix and when the type byte in front is another.
template <class Reload>
void expectPinnedForm(const std::string& hex, const Bytes& saved, Reload reload) {
  Bytes bytes = bytesOf(hex);
  EXPECT_EQ(hexOf(bytes), hexOf(saved));
  for (size_t cut = 0; cut <= bytes.size(); ++cut) {
    SCOPED_TRACE("cut after " + std::to_string(cut) + " of " + std::to_string(bytes.size()) + " bytes");
    R_BufferInputStream stream(bytes.data(), static_cast<int>(cut));
    bool ok = true;
    Bytes again = reload(stream, &ok);
    EXPECT_EQ(cut == bytes.size(), ok);
    if (ok) {
      EXPECT_EQ(hexOf(bytes), hexOf(again));
      EXPECT_EQ(-1, stream.readByte()) << "bytes left behind the value";
    }
  }
  bytes[0] ^= 0x40;
  EXPECT_FALSE(reloads(hexOf(bytes), reload)) << "another type byte";
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
