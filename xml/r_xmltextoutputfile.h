// XML text written to a file, with line feeds and indentation. The file is
// created (mode "w") on construction and closed with the object. A name
// that is empty or does not open gives an output that writes nothing and is
// not OK.
#ifndef XML_R_XMLTEXTOUTPUTFILE_H
#define XML_R_XMLTEXTOUTPUTFILE_H

#include <cstdio>

#include "xml/r_xmltextoutput.h"

class R_XMLTextOutputFile : public R_XMLTextOutput {
 public:
  // Requires: name != null.
  explicit R_XMLTextOutputFile(const char* name);
  ~R_XMLTextOutputFile() override;

  // The file is open and no write has failed so far.
  bool isOK() const;

 protected:
  void newLine() override;
  void indent(int count) override;
  void putRaw(char c) override;

 private:
  FILE* file;  // owned; null when nothing opened
};

#endif
