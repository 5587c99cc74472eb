#include "tests/proband/proband_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "core/r_bufferoutputstream.h"
#include "tests/support/test_files.h"

std::unique_ptr<R_File> loadKnowledge(const std::string& name) {
  std::unique_ptr<R_File> file(new R_File());
  CollectingReporter reporter;
  bool loaded = file->loadXML(testData("proband/" + name).c_str(), &reporter);
  EXPECT_TRUE(loaded) << name << ": " << (reporter.lines().empty() ? "" : reporter.lines()[0]);
  return file;
}

bool FixedSecurity::writeRecordId(int index, char* buffer) {
  snprintf(buffer, 16, "R%d", index);
  return true;
}

int FixedSecurity::findRecordIndex(const char* id) { return id[0] == 'R' ? atoi(id + 1) : -1; }

std::string textOf(const R_Proband& proband) {
  std::vector<char> buffer(65536);
  int bytes = -1;
  if (!proband.saveToText(buffer.data(), &bytes, static_cast<int>(buffer.size()))) return "";
  EXPECT_EQ(std::string(buffer.data()).size(), static_cast<size_t>(bytes));
  return std::string(buffer.data());
}

std::string bytesOf(const R_Proband& proband) {
  std::vector<unsigned char> buffer(65536);
  R_BufferOutputStream stream(buffer.data(), static_cast<int>(buffer.size()));
  proband.save(stream);
  EXPECT_TRUE(stream.isOK());
  return std::string(reinterpret_cast<const char*>(buffer.data()), static_cast<size_t>(stream.getCount()));
}

bool loadText(R_Proband& proband, const std::string& text) { return proband.loadXML(text.c_str()); }

bool loadBytes(R_Proband& proband, const std::string& bytes) {
  return proband.loadFromBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}
