// The variables that make a series (an X and a Y variable) or the one
// anamnestic variable that a reference or variable describes, as variable
// indices; -1 means none. A value: copying and comparing take the three
// indices only.
#ifndef KNOWLEDGE_R_XYVAR_H
#define KNOWLEDGE_R_XYVAR_H

#include "core/r_integer.h"
#include "xml/r_xmlrecipient.h"

class R_FileStatistics;
class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_XYVar : public R_XMLRecipient {
 public:
  // All three indices -1.
  R_XYVar();
  R_XYVar(int a_var, int x_var, int y_var);
  R_XYVar(const R_XYVar& other);
  R_XYVar& operator=(const R_XYVar& other);
  bool operator==(const R_XYVar& other) const {
    return avar == other.avar && yvar == other.yvar && xvar == other.xvar;
  }
  bool operator!=(const R_XYVar& other) const { return !(*this == other); }

  int getAVar() const { return avar.get(); }
  int getXVar() const { return xvar.get(); }
  int getYVar() const { return yvar.get(); }
  // A full X-Y pair, or an anamnestic variable.
  bool isDefined() const;

  // Fills the indices from the inner text of an `xyref` element: `xvar`,
  // `yvar`, `avar`, each holding a variable's name. False, with the reasons
  // reported, for an unknown name or for all three given at once.
  bool loadXML(const char* textXML, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Writes `avar`, `xvar`, `yvar`, each only when it names a variable.
  void saveXML(R_XMLTextOutput& output, const R_FileStatistics& statistics) const;

  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  const R_FileStatistics* STATS;  // borrowed during loadXML only
  R_Integer avar;
  R_Integer yvar;
  R_Integer xvar;
};

#endif
