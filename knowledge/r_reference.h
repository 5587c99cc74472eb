// One growth reference of the knowledge file. This version refuses every
// load until the real class arrives.
#ifndef KNOWLEDGE_R_REFERENCE_H
#define KNOWLEDGE_R_REFERENCE_H

#include "xml/r_xmlrecipient.h"

class R_FileStatistics;
class R_InputStream;
class R_Interval;
class R_Number;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;
class R_XYVar;

class R_Reference : public R_XMLRecipient {
 public:
  R_Reference() {}

  bool fits(int sex, const R_Number& age, const R_XYVar& xyref) const;
  bool fits(int sex, const R_Interval& age, const R_XYVar& xyref) const;

  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;
};

#endif
