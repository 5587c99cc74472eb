#include "fuzz/knowledge_checks.h"

#include <memory>
#include <string>

#include "document/r_supertext.h"
#include "formula/r_calcvalue.h"
#include "formula/r_calcvalueproband.h"
#include "fuzz/fuzz_support.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/support/recording_output.h"

void checkKnowledgeRoundTrips(const R_File& file) {
  // The XML form may leave out the lines, which the binary form requires.
  if (!file.getGraphRefLines().isComplete()) return;
  const char* first = scratchPath("knowledge-1.bin");
  FUZZ_CHECK(file.saveBinary(first));
  R_File reread;
  FUZZ_CHECK(reread.loadBinary(first));
  const char* second = scratchPath("knowledge-2.bin");
  FUZZ_CHECK(reread.saveBinary(second));
  // A binary load gives every graph block reference data, which a block
  // analysed "sd" may lack in XML; from the second save on, bytes are stable.
  R_File again;
  FUZZ_CHECK(again.loadBinary(second));
  const char* third = scratchPath("knowledge-3.bin");
  FUZZ_CHECK(again.saveBinary(third));
  FUZZ_CHECK(readWholeFile(second) == readWholeFile(third));

  const char* xml = scratchPath("knowledge.xml");
  FUZZ_CHECK(file.saveXML(xml));
  R_File from_xml;
  CheckingReporter reporter;
  from_xml.loadXML(xml, &reporter);
}

// The page output's default measures, so that graphs and auxograms are wide
// enough to be laid out and painted rather than given up as too narrow.
void useReportMeasures(RecordingOutput& output) {
  const int widths[] = {512, 10, 8, 16, 3, 6};
  const int heights[] = {8, 2, 6, 3};
  for (int which = 0; which < 6; ++which) output.setWidthMetric(which, widths[which]);
  for (int which = 0; which < 4; ++which) output.setHeightMetric(which, heights[which]);
}

void computeEveryVariable(const R_File& file) {
  std::unique_ptr<R_Proband> proband(makeProband(file));
  R_Number age_today(8.5);
  for (int index = 0; index < file.getVarCount(); ++index) {
    R_CalcValue value;
    R_CalcValueProband::load(value, file, *proband, age_today, index, 0);
  }
  for (int index = 0; index < file.getTextCount(); ++index) {
    RecordingOutput output;
    useReportMeasures(output);
    const R_SuperText& text = *file.getText(index);
    text.isAvailable(file, *proband, age_today);
    text.write(file, *proband, age_today, output, 0);
    FUZZ_CHECK(output.calls().size() >= 2 && output.calls().front() == "beginDocument" &&
               output.calls().back() == "endDocument");
  }
}
