// Where loading messages go: one line per call, innermost fault first. The
// text is borrowed for the call. Implemented by the program that loads.
#ifndef XML_R_XMLERRORREPORTER_H
#define XML_R_XMLERRORREPORTER_H

class R_XMLErrorReporter {
 public:
  virtual ~R_XMLErrorReporter() = default;
  virtual void report(const char* text) = 0;
};

#endif
