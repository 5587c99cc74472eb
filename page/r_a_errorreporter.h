// Collects the messages of a load as lines of one text, for a front end to
// show at once. The text stays below 2048 bytes: a message that would reach
// that size is dropped whole, and so are all after it that do not fit.
#ifndef PAGE_R_A_ERRORREPORTER_H
#define PAGE_R_A_ERRORREPORTER_H

#include <string>

#include "xml/r_xmlerrorreporter.h"

class R_A_ErrorReporter : public R_XMLErrorReporter {
 public:
  static const int maxText = 2048;

  // Appends `text` and a newline when the present length plus the text's
  // length is below maxText; a null text counts as empty.
  void report(const char* text) override;
  const char* getText() const { return text.c_str(); }
  void clear() { text.clear(); }

 private:
  std::string text;
};

#endif
