#include "knowledge/r_granularity.h"

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

// The element codes are the indices of this table and of `axes`.
const char* const kTags[] = {"xaxe", "yaxe"};

// Reads one attribute into `target`: undefined when the attribute is missing
// or unreadable. Answers whether a defined number came out.
bool readAttribute(const R_XMLParameters& parameters, const char* name, R_Number& target) {
  const char* value = parameters.getParameter(name);
  target.setUndefined();
  if (value) target.setFromText(value);
  return target.isDefined();
}

void writeIfDefined(R_XMLTextOutput& output, const char* name, const R_Number& value) {
  if (value.isDefined()) output.writeAttribute(name, value);
}

}  // namespace

const R_Granularity::Axis R_Granularity::axes[2] = {
    {xFrom, xTo, xStep, xSmall, "granularity x error", "Missing some X granularity values.",
     "Wrong X granularity values."},
    {yFrom, yTo, yStep, ySmall, "granularity y error", "Missing some Y granularity values.",
     "Wrong Y granularity values."},
};

R_Granularity::R_Granularity(bool is_default) : default_flag(is_default) {}

bool R_Granularity::isXDefined() const { return isAxisDefined(axes[0]); }

bool R_Granularity::isYDefined() const { return isAxisDefined(axes[1]); }

bool R_Granularity::coversX(double from, double to) const { return covers(axes[0], from, to); }

bool R_Granularity::coversY(double from, double to) const { return covers(axes[1], from, to); }

bool R_Granularity::isAxisDefined(const Axis& axis) const {
  return number[axis.from].isDefined() && number[axis.to].isDefined() &&
         number[axis.step].isDefined();
}

bool R_Granularity::covers(const Axis& axis, double from, double to) const {
  return isAxisDefined(axis) && from >= number[axis.from].getValue() &&
         number[axis.to].getValue() >= to;
}

bool R_Granularity::loadXML(const char* textXML, R_XMLErrorReporter* reporter) {
  for (R_Number& n : number) n.setUndefined();
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = checkLoaded(parser, R_parseTagged(parser, *this, kTags, textXML));
  if (!ok) parser.report("Error while processing granularity variant.");
  return ok;
}

const char* R_Granularity::receive(int code, const char*, const R_XMLParameters& parameters) {
  if (code < 0 || code > 1) return "wrong code in granularity";
  return receiveAxis(axes[code], parameters);
}

// All three of from, to and step are read, each on its own, so that a
// variant with one bad number still tells which of the others are missing.
const char* R_Granularity::receiveAxis(const Axis& axis, const R_XMLParameters& parameters) {
  bool ok = readAttribute(parameters, "from", number[axis.from]);
  ok = readAttribute(parameters, "to", number[axis.to]) && ok;
  ok = readAttribute(parameters, "step", number[axis.step]) && ok;
  readAttribute(parameters, "small", number[axis.small]);
  return ok ? nullptr : axis.read_error;
}

bool R_Granularity::isAxisIncomplete(const Axis& axis) const {
  return number[axis.from].isDefined() &&
         (!number[axis.to].isDefined() || !number[axis.step].isDefined());
}

// A negative step is no fault: only a step of 0 could not be drawn.
bool R_Granularity::isAxisWrong(const Axis& axis) const {
  const R_Number& small = number[axis.small];
  return number[axis.from].getValue() >= number[axis.to].getValue() ||
         number[axis.step].getValue() == 0 || (small.isDefined() && small.getValue() == 0);
}

// The checks after the parse. Incomplete axes are told also after a
// refused element; the range tests run only when nothing failed, on axes
// that are complete, so they never read an undefined number.
bool R_Granularity::checkLoaded(R_XMLParser& parser, bool parsed) const {
  bool ok = parsed;
  for (const Axis& axis : axes) {
    if (!isAxisIncomplete(axis)) continue;
    parser.report(axis.incomplete);
    ok = false;
  }
  if (!ok) return false;
  for (const Axis& axis : axes) {
    if (!number[axis.from].isDefined() || !isAxisWrong(axis)) continue;
    parser.report(axis.wrong);
    ok = false;
  }
  if (!number[xFrom].isDefined() && !number[yFrom].isDefined()) {
    parser.report("Missing at least some granularity values.");
    ok = false;
  }
  return ok;
}

void R_Granularity::saveXML(R_XMLTextOutput& output) const {
  for (int i = 0; i < 2; ++i) {
    if (number[axes[i].from].isDefined()) saveAxis(output, kTags[i], axes[i]);
  }
}

void R_Granularity::saveAxis(R_XMLTextOutput& output, const char* tag, const Axis& axis) const {
  output.openTag(tag);
  output.writeAttribute("from", number[axis.from]);
  output.writeAttribute("to", number[axis.to]);
  output.writeAttribute("step", number[axis.step]);
  writeIfDefined(output, "small", number[axis.small]);
  output.endEmptyTag();
}

void R_Granularity::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeGranularity)) {
    *ok = false;
    return;
  }
  for (R_Number& n : number) n.load(stream, ok);
  // The last number may end inside its value without clearing *ok.
  if (!stream.isOK()) *ok = false;
}

void R_Granularity::save(R_OutputStream& stream) const {
  stream.put(R_TypeGranularity);
  for (const R_Number& n : number) n.save(stream);
}
