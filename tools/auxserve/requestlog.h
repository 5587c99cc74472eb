// The one line that the server writes to standard error for each request:
//   METHOD PATH STATUS MILLISECONDS ms
// PATH is the request target with the values of its query left out, only
// the names kept ("/?_page&_p_id"): values hold names, birth dates and
// measurements of children, which have no place in a log. Bytes that are
// no printable ASCII are written as '?', and the target is cut at 200 bytes.
#ifndef TOOLS_AUXSERVE_REQUESTLOG_H
#define TOOLS_AUXSERVE_REQUESTLOG_H

#include <string>

// The target as the log shows it.
std::string loggedTarget(const std::string& target);

// The whole line, with its newline; `milliseconds` below 0 prints "-".
std::string logLine(const std::string& method, const std::string& target, int status, double milliseconds);

#endif
