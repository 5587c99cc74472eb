// A reporter that prints every load message at once, one line each, and
// counts them: a load that produced a line refused something.
#ifndef TOOLS_AUXTOOL_PRINTREPORTER_H
#define TOOLS_AUXTOOL_PRINTREPORTER_H

#include <cstdio>

#include "xml/r_xmlerrorreporter.h"

class PrintReporter : public R_XMLErrorReporter {
 public:
  explicit PrintReporter(FILE* sink) : output(sink), count(0) {}
  void report(const char* text) override {
    fprintf(output, "%s\n", text ? text : "");
    ++count;
  }
  int getCount() const { return count; }

 private:
  FILE* output;
  int count;
};

#endif
