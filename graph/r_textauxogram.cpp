#include "graph/r_textauxogram.h"

#include <algorithm>
#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "graph/r_auxogramdata.h"
#include "graph/r_auxogramdraw.h"
#include "graph/r_auxogramlayout.h"
#include "graph/r_auxogramline.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

enum Code { codeLine, codeCaption };
const char* const kTags[] = {"auxogramline", "caption"};

// Room of the list when read from XML; it grows as lines arrive.
const int kXMLRoom = 16;
// Lines are created as they are read, so a damaged count costs nothing.
const int kMaxPrealloc = 64;

}  // namespace

R_TextAuxogram::R_TextAuxogram() : R_Text(typeAuxogram), statistics(nullptr), lines(nullptr) { setOK(true); }

R_TextAuxogram::~R_TextAuxogram() {
  if (!lines) return;
  for (int i = 0; i < getLineCount(); ++i) delete lines->get(i);
  delete lines;
}

const R_AuxogramLine& R_TextAuxogram::getLine(int index) const {
  assert(lines && index >= 0 && index < getLineCount());
  return *lines->get(index);
}

void R_TextAuxogram::makeList(int room) {
  assert(!lines);
  lines = new R_FieldTemplate<R_AuxogramLine>(room);
  line_count.set(0);
}

bool R_TextAuxogram::append(R_AuxogramLine* line) {
  if (!lines->put(getLineCount(), line)) {
    delete line;
    return false;
  }
  line_count += 1;
  return true;
}

void R_TextAuxogram::loadText(const char* text, const R_FileStatistics& statistics_in,
                              R_XMLErrorReporter* reporter) {
  assert(text);
  makeList(kXMLRoom);
  statistics = &statistics_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool parsed = R_parseTagged(parser, *this, kTags, text);
  if (parsed && getLineCount() == 0) parser.report("no auxogram lines defined");
  if (parsed && caption.isEmpty()) parser.report("no auxogram caption defined");
  setOK(parsed && getLineCount() > 0 && !caption.isEmpty());
  statistics = nullptr;
}

const char* R_TextAuxogram::receive(int code, const char* text, const R_XMLParameters& parameters) {
  switch (code) {
    case codeLine: {
      R_AuxogramLine* line = new R_AuxogramLine();
      bool line_ok = line->loadXML(parameters, *statistics);
      // A line that cannot be kept is no better than a wrong one.
      return append(line) && line_ok ? nullptr : "wrong auxogram line definition";
    }
    case codeCaption: return caption.setNormalized(text, false) ? nullptr : "auxogram caption undefined";
  }
  return "unknown code in auxogram";
}

void R_TextAuxogram::writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics_in) const {
  R_writeTextElement(xml, "caption", caption.get());
  for (int i = 0; i < getLineCount(); ++i) getLine(i).saveXML(xml, statistics_in);
}

void R_TextAuxogram::load(R_InputStream& stream, bool* ok) {
  if (!*ok) {
    setOK(false);
    return;
  }
  caption.load(stream, ok);
  R_Integer count(stream, ok);
  if (count.get() <= 0) *ok = false;
  makeList(std::min(std::max(count.get(), 1), kMaxPrealloc));
  bool lines_ok = true;
  while (*ok && getLineCount() < count.get()) {
    R_AuxogramLine* line = new R_AuxogramLine();
    line->load(stream, ok);
    lines_ok = lines_ok && line->ok();
    if (!append(line)) *ok = false;
  }
  if (!lines_ok) *ok = false;
  setOK(*ok && getLineCount() == count.get());
}

void R_TextAuxogram::save(R_OutputStream& stream) const {
  caption.save(stream);
  line_count.save(stream);
  for (int i = 0; i < getLineCount(); ++i) getLine(i).save(stream);
}

bool R_TextAuxogram::write(const R_File& file, const R_Proband& proband, const R_Number& age,
                           R_OutputInterface& output) const {
  R_AuxogramData values(getLineCount());
  for (int i = 0; i < getLineCount(); ++i) {
    if (getLine(i).ok()) values.addLine(getLine(i), file, proband, age);
  }
  if (!values.prepare(proband) || values.getColumnCount() < 1) return true;
  R_AuxogramLayout layout(values, output, file, proband);
  if (!layout.ok()) return true;
  R_AuxogramDraw(layout, values, output).draw(file, proband, caption.get());
  return true;
}
