// The access token of a server that listens beyond the loopback address.
// A request shows it either in the cookie "auxserve_token", which the login
// page sets, or as the password of HTTP basic authentication (any user
// name), so that scripts need no cookie. Tokens are compared in time that
// does not depend on where they differ. An empty token admits everybody:
// that is the server on 127.0.0.1.
#ifndef TOOLS_AUXSERVE_ACCESSTOKEN_H
#define TOOLS_AUXSERVE_ACCESSTOKEN_H

#include <string>

class AccessToken {
 public:
  static const char* const kCookieName;  // "auxserve_token"

  explicit AccessToken(const std::string& secret) : token(secret) {}

  bool isRequired() const { return !token.empty(); }
  // Whether a request with these header values (empty when absent) may pass.
  bool admits(const std::string& cookieHeader, const std::string& authorization) const;
  // Whether a token typed into the login form is the right one.
  bool matches(const std::string& candidate) const;
  // The Set-Cookie value that admits the browser from now on.
  std::string makeCookie() const;

  // The value of cookie `name` in a Cookie header; empty when absent.
  static std::string cookieValue(const std::string& header, const char* name);
  // The password of a "Basic" Authorization header; false when the header
  // is no basic authentication or does not decode.
  static bool basicPassword(const std::string& header, std::string& password);

 private:
  std::string token;
};

#endif
