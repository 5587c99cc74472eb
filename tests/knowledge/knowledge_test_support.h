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
#include "core/r_bufferoutputstream.h"
#include "knowledge/r_filestatistics.h"
#include "xml/r_xmltextoutputbuffer.h"

typedef std::vector<unsigned char> Bytes;

// "03 01 F0" for the bytes 3, 1, 240.
inline std::string hexOf(const Bytes& bytes) {
  std::string text;
  char pair[4];
  for (unsigned char b : bytes) {
    snprintf(pair, sizeof pair, "%02X", b);
    if (!text.empty()) text += ' ';
    text += pair;
  }
  return text;
}

// The inverse of hexOf; blanks between the pairs are optional.
inline Bytes bytesOfHex(const std::string& hex) {
  Bytes bytes;
  std::string digits;
  for (char c : hex) {
    if (c != ' ') digits += c;
  }
  for (size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(strtol(digits.substr(i, 2).c_str(), nullptr, 16)));
  return bytes;
}

// What `save(stream)` writes, measured first through an empty buffer.
template <class Save>
Bytes bytesSavedBy(Save save) {
  R_BufferOutputStream measure(nullptr, 0);
  save(measure);
  Bytes bytes(static_cast<size_t>(measure.getCount()));
  R_BufferOutputStream out(bytes.data(), measure.getCount());
  save(out);
  return bytes;
}

template <class T>
Bytes savedBytes(const T& value) {
  return bytesSavedBy([&](R_OutputStream& stream) { value.save(stream); });
}

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
