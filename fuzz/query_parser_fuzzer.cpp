// Query strings: any text parsed as a request. The request written back
// as a query parses into the same request; written into buffers of every
// small size it stays inside them and terminated; copyValue stays inside
// its buffer and leaves nothing unsafe; each value encoded with encodeCGI
// decodes back to itself. The text is also taken as a URL template with
// the request's values as parameters.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/fuzz_support.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_encodeurl.h"

namespace {

std::string dump(const R_A_CGIParameters& p) {
  std::string text = std::string(p.getPage()) + "\n";
  for (int i = 0; i < R_A_Parameters::_parTypeCount; i++) {
    text += p.isDefined(i) ? std::string("+") + p.get(i) + "\n" : "-\n";
  }
  for (int i = 0; i < p.getVarCount(); i++) text += std::string(p.getVarName(i)) + "=" + p.getVarValue(i) + "\n";
  return text;
}

// The whole written query, in a buffer that leaves it uncut.
std::string writeBack(const R_A_CGIParameters& p) {
  size_t room = strlen(p.getPage()) + 8;
  for (int i = 0; i < R_A_Parameters::_parTypeCount; i++) {
    if (p.isDefined(i)) room += 16 + 3 * strlen(p.get(i));
  }
  for (int i = 0; i < p.getVarCount(); i++) room += strlen(p.getVarName(i)) + 3 * strlen(p.getVarValue(i)) + 2;
  std::unique_ptr<char[]> buffer(new char[room]);
  p.encodeURL(nullptr, buffer.get(), static_cast<int>(room));
  FUZZ_CHECK(strlen(buffer.get()) < room - 1);
  return buffer.get();
}

void checkSmallBuffers(const R_A_CGIParameters& p) {
  char sentinel = '#';
  p.encodeURL("7", &sentinel, 0);
  FUZZ_CHECK(sentinel == '#');
  for (int size = 1; size <= 40; size++) {
    std::unique_ptr<char[]> buffer(new char[size]);
    p.encodeURL(size % 2 ? "t" : nullptr, buffer.get(), size);
    FUZZ_CHECK(memchr(buffer.get(), 0, static_cast<size_t>(size)) != nullptr);
  }
}

void checkCopyValue(const R_A_CGIParameters& p) {
  for (int index = -1; index <= R_A_Parameters::_parTypeCount; index++) {
    for (int size : {0, 1, 7, 300}) {
      std::unique_ptr<char[]> buffer(new char[size + 1]);
      p.copyValue(index, buffer.get(), size);
      FUZZ_CHECK(strpbrk(buffer.get(), "\"'<>&") == nullptr);
    }
  }
}

void checkEncodeCGI(const char* value) {
  size_t room = 3 * strlen(value) + 8;
  std::unique_ptr<char[]> encoded(new char[room]);
  memcpy(encoded.get(), "v=", 2);
  encodeCGI(value, encoded.get() + 2, static_cast<int>(room - 2));
  R_A_CGIParameters again;
  again.parse(encoded.get(), 0);
  FUZZ_CHECK(again.getVarCount() == 1 && strcmp(again.getVarValue(0), value) == 0);
}

void checkTemplate(const std::string& text, const R_A_CGIParameters& p) {
  R_A_EncodeURL url(text.c_str());
  for (int i = 0; i < R_A_EncodeURLParamCount && i < p.getVarCount(); i++) url.setParam(i, p.getVarValue(i));
  for (int i = 0; i < R_A_EncodeURLParamCount; i++) url.isUsed(i);
  FUZZ_CHECK(strlen(url.getResult()) <= static_cast<size_t>(R_A_EncodeURL::maxText));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text = inputText(data, size);
  R_A_CGIParameters parameters;
  parameters.parse(text.c_str(), 1);
  FUZZ_CHECK(parameters.getVarCount() <= R_A_CGIParameters::maxVarCount);
  std::string query = writeBack(parameters);
  R_A_CGIParameters again;
  again.parse(query.c_str(), 1);
  FUZZ_CHECK(dump(again) == dump(parameters));
  checkSmallBuffers(parameters);
  checkCopyValue(parameters);
  for (int i = 0; i < parameters.getVarCount() && i < 8; i++) checkEncodeCGI(parameters.getVarValue(i));
  for (int i = 0; i < R_A_Parameters::_parTypeCount; i++) {
    if (parameters.isDefined(i)) checkEncodeCGI(parameters.get(i));
  }
  checkTemplate(text, parameters);
  return 0;
}
