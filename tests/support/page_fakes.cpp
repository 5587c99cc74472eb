#include "tests/support/page_fakes.h"

#include <string.h>

int FakeSetup::getInt(int code, int defaultValue) const {
  auto found = ints.find(code);
  return found == ints.end() ? defaultValue : found->second;
}

const char* FakeSetup::getStr(int code, const char* defaultText) const {
  auto found = strs.find(code);
  return found == strs.end() ? defaultText : found->second.c_str();
}

void FakeParameters::addVar(const std::string& name, const std::string& value) {
  names.push_back(name);
  values.push_back(value);
}

void FakeParameters::copyValue(int index, char* buffer, int size) const {
  std::string value = isDefined(index) ? typed.at(index).substr(0, size) : "";
  for (char& c : value) {
    if (c == '"' || c == '\'') c = '~';
    if (c == '<') c = '(';
    if (c == '>') c = ')';
    if (c == '&') c = '^';
  }
  memcpy(buffer, value.c_str(), value.size() + 1);
}

void FakeParameters::encodeURL(const char* target, char* buffer, int size) const {
  urlSize = size;
  std::string url = (urlPrefix + (target ? target : "")).substr(0, size - 1);
  memcpy(buffer, url.c_str(), url.size() + 1);
}

void CollectingPageSink::error(int code, const char* text) {
  // Codes 1 and 2 come without a text.
  events_.push_back("error " + std::to_string(code) + (text ? std::string(" ") + text : std::string()));
}

void CollectingPageSink::graphDone(const char* path, const char* url) {
  events_.push_back(std::string("graph ") + path + " " + url);
}
