// The exporter's sink of load messages: a fixed buffer of 10000 characters
// that collects one line per message, so that a failed run can print them.
// When the buffer is full, later lines are dropped whole: a run with very
// many messages still prints the first ones.
#ifndef EXPORTER_MYREPORTER_H
#define EXPORTER_MYREPORTER_H

#include "xml/r_xmlerrorreporter.h"

class MyReporter : public R_XMLErrorReporter {
 public:
  MyReporter();
  ~MyReporter() override {}

  // Appends the message (cut at 9900 characters) and a newline, if both fit.
  void report(const char* message) override;
  const char* getText() const { return text; }

  static const int kCapacity = 10000;
  static const int kPieceLimit = 9900;

 private:
  char text[kCapacity];
  int length;
};

#endif
