// An auxogram in a report text: a chart of SD scores whose columns are the
// proband's visits and whose lines (rows) are SD-valued quantities, each
// cell a wedge from the column's zero line to the score. Lines with nothing
// to show for a proband vanish; a proband for whom nothing is left, or whose
// columns do not fit the image, gets no picture at all.
//
// Loaded from the `auxogram` element's content (a `caption` and one or more
// `auxogramline` elements) or from the binary form; an auxogram without
// lines or without a caption is not ok, and so is one holding a line that
// is not ok. Such lines stay in the auxogram. Owns its lines. Not copyable.
#ifndef GRAPH_R_TEXTAUXOGRAM_H
#define GRAPH_R_TEXTAUXOGRAM_H

#include "core/r_fieldtemplate.h"
#include "core/r_integer.h"
#include "core/r_string.h"
#include "document/r_text.h"
#include "xml/r_xmlrecipient.h"

class R_AuxogramLine;

class R_TextAuxogram : public R_Text, public R_XMLRecipient {
 public:
  // Ok from the start, until a load says otherwise.
  R_TextAuxogram();
  ~R_TextAuxogram() override;

  const R_String& getCaption() const { return caption; }
  int getLineCount() const { return line_count.get(); }
  // Requires: 0 <= index < getLineCount().
  const R_AuxogramLine& getLine(int index) const;

  // Ok when the content parses without a fault and holds a line and a
  // caption; each missing one is reported. Requires: a fresh auxogram.
  void loadText(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) override;
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Caption, line count, the lines. A count of 0 or below, or a line cut
  // short or not ok, fails. Requires: a fresh auxogram.
  void load(R_InputStream& stream, bool* ok) override;
  void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  void save(R_OutputStream& stream) const override;

  int getOutputKind() const override { return 4; }
  int getBinaryCode() const override { return '9'; }
  const char* getTag() const override { return "auxogram"; }
  bool isEmptyTag() const override { return false; }
  // Works out the lines for the proband and, when anything is left and it
  // fits, paints the chart on `output`. Always true.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;

 private:
  // Answers false, deleting `line`, when the list cannot grow.
  bool append(R_AuxogramLine* line);
  void makeList(int room);

  const R_FileStatistics* statistics;       // during the XML load only
  R_Integer line_count;
  R_FieldTemplate<R_AuxogramLine>* lines;   // owned with its lines; null until loaded
  R_String caption;
};

#endif
