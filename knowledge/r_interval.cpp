#include "knowledge/r_interval.h"

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_knowledgexml.h"
#include "knowledge/r_list.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"min", "max"};

// An end is open only when its `boundary` says so; anything else is closed.
bool isClosed(const R_XMLParameters& parameters) {
  return !parameters.isParameterValue("boundary", "open");
}

void saveEnd(R_XMLTextOutput& output, const char* tag, const R_Number& end, bool closed) {
  if (!end.isDefined()) return;
  output.openTag(tag);
  output.writeAttribute("boundary", closed ? "closed" : "open");
  output.endOpenTag();
  output.writeNumber(end);
  output.closeTag(tag);
}

}  // namespace

R_Interval::R_Interval() : flags(0) {}

R_Interval::R_Interval(const R_Number& min_value, const R_Number& max_value)
    : min(min_value), max(max_value), flags(minClosed | maxClosed) {}

R_Interval::R_Interval(const R_Interval& other)
    : R_XMLRecipient(), min(other.min), max(other.max), flags(other.flags) {}

R_Interval& R_Interval::operator=(const R_Interval& other) {
  min = other.min;
  max = other.max;
  flags = other.flags;
  return *this;
}

bool R_Interval::contains(const R_Interval& other) const {
  return contains(other.min) && contains(other.max);
}

void R_Interval::setFromList(const R_List& list) {
  min.setUndefined();
  max.setUndefined();
  flags = minClosed | maxClosed;
  for (int i = 0; i < list.getN(); ++i) {
    const R_Number& item = list.getValue(i);
    if (!item.isDefined()) continue;
    if (!min.isDefined() || item.getValue() < min.getValue()) min = item;
    if (!max.isDefined() || item.getValue() > max.getValue()) max = item;
  }
}

bool R_Interval::loadXML(const char* textXML, R_XMLErrorReporter* reporter) {
  min.setUndefined();
  max.setUndefined();
  flags = 0;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  // Equal ends are refused too: an interval must hold more than one point.
  if (ok && min.isDefined() && max.isDefined() && min.getValue() >= max.getValue()) {
    parser.report("Invalid interval definition (min > max).");
    ok = false;
  }
  if (!ok) parser.report("Error while processing interval.");
  return ok && isDefined();
}

const char* R_Interval::receive(int code, const char* text, const R_XMLParameters& parameters) {
  if (code == 0) {
    if (!min.setFromText(text)) return "minimum value load error";
    setClosed(minClosed, isClosed(parameters));
    return nullptr;
  }
  if (code == 1) {
    if (!max.setFromText(text)) return "maximum value load error";
    setClosed(maxClosed, isClosed(parameters));
    return nullptr;
  }
  return "unrecognized code in interval";
}

void R_Interval::setClosed(int bit, bool closed) {
  flags.set(closed ? (flags.get() | bit) : (flags.get() & ~bit));
}

void R_Interval::saveXML(R_XMLTextOutput& output) const {
  saveEnd(output, "min", min, flags.hasBits(minClosed));
  saveEnd(output, "max", max, flags.hasBits(maxClosed));
}

void R_Interval::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeInterval)) {
    *ok = false;
    return;
  }
  min.load(stream, ok);
  max.load(stream, ok);
  flags.load(stream, ok);
}

void R_Interval::save(R_OutputStream& stream) const {
  stream.put(R_TypeInterval);
  min.save(stream);
  max.save(stream);
  flags.save(stream);
}
