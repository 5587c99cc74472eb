#include "fuzz/fuzz_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "knowledge/r_file.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"
#include "xml/r_xmlparser.h"

namespace {

// Scratch files live as long as the process; libFuzzer ends it with exit(),
// which runs this.
struct ScratchFiles {
  std::map<std::string, std::string> paths;
  ~ScratchFiles() {
    for (const auto& entry : paths) unlink(entry.second.c_str());
  }
};

ScratchFiles& scratchFiles() {
  static ScratchFiles files;
  return files;
}

std::string scratchDirectory() {
  if (access("/dev/shm", W_OK) == 0) return "/dev/shm";
  const char* tmp = getenv("TMPDIR");
  return tmp && *tmp ? tmp : "/tmp";
}

// A value inside the variable's interval when it has one, so that the
// proband's values survive the range check and reach the computations.
R_Number valueFor(const R_Variable& variable, int visit) {
  const R_Interval& interval = variable.getInterval();
  double low = interval.getMin().isDefined() ? interval.getMin().getValue() : 1.0;
  double high = interval.getMax().isDefined() ? interval.getMax().getValue() : low + 10.0;
  if (!interval.getMin().isDefined() && interval.getMax().isDefined()) low = high - 10.0;
  return R_Number(low + (high - low) * (visit + 1) / 6.0);
}

}  // namespace

void fuzzFailure(const char* file, int line, const char* condition) {
  fprintf(stderr, "%s:%d: fuzz check failed: %s\n", file, line, condition);
  abort();
}

const char* scratchPath(const char* name) {
  std::string& path = scratchFiles().paths[name];
  if (path.empty()) {
    path = scratchDirectory() + "/auxfuzz-" + std::to_string(getpid()) + "-" + name;
  }
  return path.c_str();
}

const char* writeScratchFile(const char* name, const uint8_t* data, size_t size) {
  const char* path = scratchPath(name);
  FILE* file = fopen(path, "wb");
  FUZZ_CHECK(file != nullptr);
  FUZZ_CHECK(size == 0 || fwrite(data, 1, size, file) == size);
  FUZZ_CHECK(fclose(file) == 0);
  return path;
}

std::string readWholeFile(const char* path) {
  std::string bytes;
  FILE* file = fopen(path, "rb");
  if (!file) return bytes;
  char block[65536];
  size_t count;
  while ((count = fread(block, 1, sizeof block, file)) > 0) bytes.append(block, count);
  fclose(file);
  return bytes;
}

std::string inputText(const uint8_t* data, size_t size) {
  const void* nul = memchr(data, 0, size);
  size_t length = nul ? static_cast<size_t>(static_cast<const uint8_t*>(nul) - data) : size;
  return std::string(reinterpret_cast<const char*>(data), length);
}

void CheckingReporter::report(const char* text) {
  FUZZ_CHECK(text != nullptr);
  FUZZ_CHECK(strlen(text) <= static_cast<size_t>(R_XMLParser::longestMessage));
  ++count;
}

const R_File& sampleKnowledge() {
  static R_File* file = [] {
    R_File* loaded = new R_File;
    CheckingReporter reporter;
    FUZZ_CHECK(loaded->loadXML(AUX_FUZZ_SAMPLES_DIR "/knowledge.xml", &reporter));
    return loaded;
  }();
  return *file;
}

R_Proband* makeProband(const R_File& file) {
  R_Proband* proband = new R_Proband(&file);
  proband->setSex(1);
  proband->setId("fuzz");
  proband->setDobText("1.1.2010");
  const R_MeasuredVariables* anamnestic = file.getAnamnesticVars();
  for (int order = 0; order < anamnestic->getCount() && order < 2; ++order) {
    proband->setAnamnesticNumber(order, valueFor(*file.getVariable(anamnestic->getIndex(order)), 2));
  }
  const R_MeasuredVariables* followed = file.getFollowedVars();
  const char* dates[] = {"1.2.2010", "1.1.2011", "15.6.2013", "1.1.2016"};
  for (int visit = 0; visit < 4; ++visit) {
    int index = proband->addVisit(R_Number(), R_Date(dates[visit]));
    if (index < 0) continue;
    for (int order = 0; order < followed->getCount(); ++order) {
      proband->setFollowedNumber(index, order, valueFor(*file.getVariable(followed->getIndex(order)), visit));
    }
  }
  return proband;
}
