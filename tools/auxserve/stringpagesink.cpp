#include "tools/auxserve/stringpagesink.h"

#include "core/r_ascii.h"

namespace {

const char* const kErrorTexts[] = {
    "",
    "blocks nested too deep",
    "block without $end",
    "page not found",
    "unknown command",
};

// A comment must not end early nor hold markup: only letters, digits and
// single dashes of the text pass.
void appendCommentText(std::string& out, const char* text) {
  char last = 0;
  for (const char* p = text; p && *p; ++p) {
    char ch = *p;
    bool plain = R_isAlnum(static_cast<unsigned char>(ch)) || ch == '_' || ch == '.' || ch == '(' || ch == ')';
    if (ch == '-' && last != '-') plain = true;
    out += plain ? ch : '?';
    last = ch;
  }
}

}  // namespace

void StringPageSink::error(int code, const char* text) {
  ++errors;
  if (code == 3) {
    pageMissing = true;
    missingName = text ? text : "";
    return;
  }
  page += "<!-- template error ";
  page += static_cast<char>('0' + (code >= 0 && code <= 9 ? code : 0));
  if (code >= 1 && code <= 4) {
    page += ", ";
    page += kErrorTexts[code];
  }
  if (text && *text) {
    page += ": ";
    appendCommentText(page, text);
  }
  page += " -->";
}

void StringPageSink::graphDone(const char*, const char*) { ++graphs; }
