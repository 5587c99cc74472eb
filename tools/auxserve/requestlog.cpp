#include "tools/auxserve/requestlog.h"

#include <cstdio>

namespace {

const size_t kMaxTarget = 200;

void appendPrintable(std::string& out, char ch) {
  unsigned char byte = static_cast<unsigned char>(ch);
  out += byte > 32 && byte < 127 ? ch : '?';
}

}  // namespace

std::string loggedTarget(const std::string& target) {
  std::string out;
  size_t question = target.find('?');
  for (size_t i = 0; i < target.size() && i < question; ++i) appendPrintable(out, target[i]);
  if (question != std::string::npos) {
    out += '?';
    bool inValue = false;
    for (size_t i = question + 1; i < target.size(); ++i) {
      char ch = target[i];
      if (ch == '&') {
        inValue = false;
        out += '&';
      } else if (ch == '=') {
        inValue = true;
      } else if (!inValue) {
        appendPrintable(out, ch);
      }
      if (out.size() > kMaxTarget) break;
    }
  }
  if (out.size() > kMaxTarget) out.resize(kMaxTarget);
  return out;
}

std::string logLine(const std::string& method, const std::string& target, int status, double milliseconds) {
  std::string line;
  for (char ch : method.substr(0, 16)) appendPrintable(line, ch);
  line += ' ';
  line += loggedTarget(target);
  char tail[64];
  if (milliseconds < 0)
    snprintf(tail, sizeof tail, " %d - ms\n", status);
  else
    snprintf(tail, sizeof tail, " %d %.1f ms\n", status, milliseconds);
  return line + tail;
}
