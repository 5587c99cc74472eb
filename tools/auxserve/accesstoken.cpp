#include "tools/auxserve/accesstoken.h"

#include <cstring>

#include "core/r_ascii.h"

const char* const AccessToken::kCookieName = "auxserve_token";

namespace {

int base64Digit(char ch) {
  if (ch >= 'A' && ch <= 'Z') return ch - 'A';
  if (ch >= 'a' && ch <= 'z') return ch - 'a' + 26;
  if (ch >= '0' && ch <= '9') return ch - '0' + 52;
  if (ch == '+') return 62;
  if (ch == '/') return 63;
  return -1;
}

bool decodeBase64(const std::string& text, std::string& out) {
  out.clear();
  unsigned bits = 0;
  int count = 0;
  size_t i = 0;
  for (; i < text.size() && text[i] != '='; ++i) {
    int digit = base64Digit(text[i]);
    if (digit < 0) return false;
    bits = (bits << 6) | static_cast<unsigned>(digit);
    count += 6;
    if (count >= 8) {
      count -= 8;
      out += static_cast<char>((bits >> count) & 0xFF);
    }
  }
  for (; i < text.size(); ++i)
    if (text[i] != '=') return false;
  return true;
}

}  // namespace

bool AccessToken::matches(const std::string& candidate) const {
  if (token.empty()) return true;
  // Every byte is looked at whatever the first difference.
  unsigned char difference = candidate.size() == token.size() ? 0 : 1;
  for (size_t i = 0; i < token.size(); ++i) {
    unsigned char other = i < candidate.size() ? static_cast<unsigned char>(candidate[i]) : 0;
    difference |= static_cast<unsigned char>(other ^ static_cast<unsigned char>(token[i]));
  }
  return difference == 0;
}

bool AccessToken::admits(const std::string& cookieHeader, const std::string& authorization) const {
  if (token.empty()) return true;
  std::string fromCookie = cookieValue(cookieHeader, kCookieName);
  if (!fromCookie.empty() && matches(fromCookie)) return true;
  std::string password;
  return basicPassword(authorization, password) && matches(password);
}

std::string AccessToken::makeCookie() const {
  return std::string(kCookieName) + "=" + token + "; Path=/; HttpOnly; SameSite=Strict";
}

std::string AccessToken::cookieValue(const std::string& header, const char* name) {
  size_t length = strlen(name);
  size_t at = 0;
  while (at < header.size()) {
    while (at < header.size() && (header[at] == ' ' || header[at] == ';')) ++at;
    size_t end = header.find(';', at);
    if (end == std::string::npos) end = header.size();
    if (header.compare(at, length, name) == 0 && at + length < end && header[at + length] == '=')
      return header.substr(at + length + 1, end - at - length - 1);
    at = end;
  }
  return "";
}

bool AccessToken::basicPassword(const std::string& header, std::string& password) {
  if (header.size() < 6 || R_stricmp(header.substr(0, 6).c_str(), "Basic ") != 0) return false;
  size_t start = header.find_first_not_of(' ', 6);
  if (start == std::string::npos) return false;
  std::string decoded;
  if (!decodeBase64(header.substr(start), decoded)) return false;
  size_t colon = decoded.find(':');
  if (colon == std::string::npos) return false;
  password = decoded.substr(colon + 1);
  return true;
}
