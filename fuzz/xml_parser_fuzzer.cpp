// The XML reader with a recipient that records its events. The input is the
// document, optionally headed by its own tag table: a first line starting
// with '#' lists up to 12 entries separated by ','. Each capture is parsed
// again by a parser of its own, as the loaders do, three levels deep, and
// events whose text begins with 'R' are refused. The same document is read
// as a string and as a file; without NUL bytes both give the same result and
// the same events.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmlrecipient.h"

namespace {

const std::vector<std::string> kDefaultTable = {"a", "<a", ">a", "a:b", "a:b:c", "r:c", "<r:c", ">r:c", "b", "x:y:z"};
const int kNestedLevels = 3;
const size_t kMaxEntries = 12;

class FuzzRecipient : public R_XMLRecipient {
 public:
  FuzzRecipient(const std::vector<std::string>& table, int level, std::string* events)
      : tags(table), depth(level), trace(events) {}

  bool parse(R_XMLParser& parser, const char* text, const char* file) {
    setTagCount(static_cast<int>(tags.size()));
    for (size_t i = 0; i < tags.size(); ++i) setTag(static_cast<int>(i), tags[i].c_str());
    bool ok = file ? parser.parseFile(file, this) : parser.parseString(text, this);
    clearTags();
    return ok;
  }

  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override {
    FUZZ_CHECK(code >= 0 && code < static_cast<int>(tags.size()));
    *trace += std::to_string(depth) + ":" + std::to_string(code) + ":" + text + "|";
    askAttributes(parameters);
    if (*text && depth < kNestedLevels) {
      CheckingReporter reporter;
      R_XMLParser inner(R_XMLParser::captureSize, &reporter);
      FuzzRecipient nested(tags, depth + 1, trace);
      *trace += nested.parse(inner, text, nullptr) ? "+" : "-";
    }
    return text[0] == 'R' ? "refused" : nullptr;
  }

 private:
  void askAttributes(const R_XMLParameters& parameters) {
    const char* values[] = {parameters.getParameter("x"), parameters.getParameterInElement("x", "a"),
                            parameters.getParameterInElement("y", "b")};
    for (const char* value : values) *trace += value ? value : "~";
    *trace += parameters.isParameter("z") ? "z" : "";
    *trace += parameters.isParameterValue("y", "1") ? "y" : "";
    *trace += parameters.isParameterValueInElement("x", "r", "") ? "r" : "";
  }

  std::vector<std::string> tags;
  int depth;
  std::string* trace;
};

// Splits off a first line "#entry,entry,..." as the tag table.
std::vector<std::string> takeTable(std::string* document) {
  if (document->empty() || (*document)[0] != '#') return kDefaultTable;
  size_t end = document->find('\n');
  std::string line = document->substr(1, end == std::string::npos ? std::string::npos : end - 1);
  document->erase(0, end == std::string::npos ? document->size() : end + 1);
  std::vector<std::string> table;
  size_t start = 0;
  while (table.size() < kMaxEntries && start <= line.size()) {
    size_t comma = line.find(',', start);
    if (comma == std::string::npos) comma = line.size();
    if (comma > start) table.push_back(line.substr(start, comma - start));
    start = comma + 1;
  }
  return table.empty() ? kDefaultTable : table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string document(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> table = takeTable(&document);
  bool has_nul = memchr(document.data(), 0, document.size()) != nullptr;

  // One parser each: a parser remembers the name of its last capture from
  // one parse to the next, so an end tag of that name in a second parse
  // delivers the old code once more.
  CheckingReporter reporter;
  R_XMLParser string_parser(R_XMLParser::captureSize, &reporter);
  std::string string_events;
  FuzzRecipient from_string(table, 0, &string_events);
  bool string_ok = from_string.parse(string_parser, document.c_str(), nullptr);

  const char* path = writeScratchFile("document.xml", reinterpret_cast<const uint8_t*>(document.data()),
                                      document.size());
  R_XMLParser file_parser(R_XMLParser::captureSize, &reporter);
  std::string file_events;
  FuzzRecipient from_file(table, 0, &file_events);
  bool file_ok = from_file.parse(file_parser, nullptr, path);
  // A parser can be used again after any outcome.
  std::string again_events;
  FuzzRecipient again(table, 0, &again_events);
  again.parse(string_parser, document.c_str(), nullptr);
  file_parser.report("after the parse");

  if (!has_nul && !document.empty()) {
    FUZZ_CHECK(string_ok == file_ok);
    FUZZ_CHECK(string_events == file_events);
  }
  return 0;
}
