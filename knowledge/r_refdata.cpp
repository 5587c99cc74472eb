#include "knowledge/r_refdata.h"

#include <algorithm>
#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "formula/r_linearregression.h"
#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_knowledgexml.h"
#include "knowledge/r_refdatapercentiles.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"percentiles:list", "anamnestic", "line"};
enum { codePercentiles, codeAnamnestic, codeLine };
const int kXMLCapacity = 32;
// A stored count reserves at most this much before the lines arrive, so a
// damaged count costs no more than the bytes that back it.
const int kMaxStoredCapacity = 1024;
// A percentile line needs two percentiles to bracket anything. A list of
// one item would pass the order test of the anamnestic line; it is refused
// there, and the binary form refuses a shorter list, so no percentile line
// of fewer than two numbers is ever made.
const int kMinPercentiles = 2;

// The number of the attribute `name`; undefined when it is missing or does
// not read as a defined number.
R_Number attributeNumber(const R_XMLParameters& parameters, const char* name) {
  R_Number number;
  const char* text = parameters.getParameter(name);
  if (text) number.setFromText(text);
  return number;
}

}  // namespace

R_RefData::R_RefData(int data_type)
    : percentiles(data_type == R_RefDataLine::typePercentiles ? new R_RefDataPercentiles : nullptr),
      anamnestic(nullptr), xcount(0), data(nullptr), xval(nullptr), type(data_type),
      reporter(nullptr) {
  assert(type >= R_RefDataLine::typeSD && type <= R_RefDataLine::typePercentiles);
}

R_RefData::~R_RefData() {
  for (int i = 0; i < xcount.get(); ++i) {
    delete data->get(i);
    delete xval->get(i);
  }
  delete data;
  delete xval;
  delete anamnestic;
  delete percentiles;
}

bool R_RefData::hasPercentiles() const { return percentiles && percentiles->getN() > 0; }

const R_RefDataLine& R_RefData::getAnamnesticLine() const {
  assert(anamnestic);
  return *anamnestic;
}

const R_Number& R_RefData::getX(int index) const {
  assert(index >= 0 && index < xcount.get());
  return *xval->get(index);
}

const R_RefDataLine& R_RefData::getLine(int index) const {
  assert(index >= 0 && index < xcount.get());
  return *data->get(index);
}

void R_RefData::getSD(R_Number& result, const R_Number& x, const R_Number& value) const {
  assert(isFollowed());
  result.setUndefined();
  int low, high;
  if (!value.isDefined() || !findLines(x, &low, &high)) return;
  if (low == high) {
    data->get(low)->getSD(value, result);
    return;
  }
  R_LinearRegression at(xval->get(low)->getValue(), xval->get(high)->getValue(), x.getValue());
  R_RefDataLine::getSDBetween(*data->get(low), *data->get(high), at, value, result);
}

void R_RefData::getValue(R_Number& result, const R_Number& sd, const R_Number& x) const {
  assert(isFollowed());
  result.setUndefined();
  int low, high;
  if (!sd.isDefined() || !findLines(x, &low, &high)) return;
  if (low == high) {
    data->get(low)->getValue(sd, result);
    return;
  }
  R_LinearRegression at(xval->get(low)->getValue(), xval->get(high)->getValue(), x.getValue());
  R_RefDataLine::getValueBetween(*data->get(low), *data->get(high), at, sd, result);
}

void R_RefData::getSD(R_Number& result, const R_Number& value) const {
  getAnamnesticLine().getSD(value, result);
}

void R_RefData::getValue(R_Number& result, const R_Number& sd) const {
  getAnamnesticLine().getValue(sd, result);
}

// The lines around x: `low` is the first line with the largest x not above
// x, `high` the first with the smallest x not below it, both as a walk over
// all lines in order would find them, skipping undefined x values. Found by
// binary search in the side index, whose order keeps equal x values by
// line index. False when either is missing: no extrapolation over x.
bool R_RefData::findLines(const R_Number& x, int* low, int* high) const {
  if (!x.isDefined()) return false;
  double v = x.getValue();
  if (v != v) return false;  // NaN lies between nothing
  auto below = [](const XEntry& e, double value) { return e.x < value; };
  auto above = [](double value, const XEntry& e) { return value < e.x; };
  auto first_not_below = std::lower_bound(by_x.begin(), by_x.end(), v, below);
  auto first_above = std::upper_bound(first_not_below, by_x.end(), v, above);
  if (first_not_below == by_x.end() || first_above == by_x.begin()) return false;
  *high = first_not_below->index;
  double low_x = (first_above - 1)->x;
  *low = std::lower_bound(by_x.begin(), first_above, low_x, below)->index;
  return true;
}

void R_RefData::buildIndex() {
  by_x.clear();
  for (int i = 0; i < xcount.get(); ++i) {
    const R_Number& x = *xval->get(i);
    if (x.isDefined() && x.getValue() == x.getValue()) by_x.push_back(XEntry{x.getValue(), i});
  }
  std::sort(by_x.begin(), by_x.end(), [](const XEntry& a, const XEntry& b) {
    return a.x < b.x || (a.x == b.x && a.index < b.index);
  });
}

int R_RefData::getLineCount(const R_GraphRefLinesFormat& OVERRIDE) const {
  return hasPercentiles() ? percentiles->getN() : OVERRIDE.getLineCount();
}

const R_String& R_RefData::getLineText(int index_line, const R_GraphRefLinesFormat& OVERRIDE) const {
  return hasPercentiles() ? percentiles->getText(index_line) : OVERRIDE.getLineText(index_line);
}

int R_RefData::getLineClass(int index_line, const R_GraphRefLinesFormat& OVERRIDE) const {
  return R_GraphRefLinesFormat::getLineClass(index_line, getLineCount(OVERRIDE));
}

void R_RefData::getLineValue(int index_line, const R_GraphRefLinesFormat& OVERRIDE,
                             R_Number& result) const {
  lineValue(getAnamnesticLine(), index_line, OVERRIDE, result);
}

void R_RefData::getLineValue(int index_x, int index_line, const R_GraphRefLinesFormat& OVERRIDE,
                             R_Number& result) const {
  lineValue(getLine(index_x), index_line, OVERRIDE, result);
}

void R_RefData::lineValue(const R_RefDataLine& line, int index_line,
                          const R_GraphRefLinesFormat& OVERRIDE, R_Number& result) const {
  if (hasPercentiles()) {
    result = line.getPercentileValue(index_line);
    return;
  }
  line.getValue(R_Number(OVERRIDE.getLineSD(index_line)), result);
}

bool R_RefData::loadXML(const char* textXML, R_XMLErrorReporter* reporter_in) {
  reporter = reporter_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  if (ok && anamnestic && xcount.get() > 0) {
    parser.report("Both anamnestic and followed reference");
    ok = false;
  }
  // Data without any line could not be stored: the binary form reads the
  // anamnestic line whenever there are no followed lines.
  if (ok && !anamnestic && xcount.get() == 0) {
    parser.report("No reference values defined");
    ok = false;
  }
  if (!ok) parser.report("Error while processing reference data");
  reporter = nullptr;
  buildIndex();
  return ok;
}

const char* R_RefData::receive(int code, const char* text, const R_XMLParameters& parameters) {
  if (code == codePercentiles) return receivePercentiles(text);
  if (code == codeAnamnestic) return receiveAnamnestic(text);
  if (code == codeLine) return receiveLine(text, parameters);
  return "unexpected code in ref";
}

// A list can be read only once, and the lines read after it have as many
// numbers as it has items: a second list is refused whether or not the
// first one loaded.
const char* R_RefData::receivePercentiles(const char* text) {
  if (!percentiles) return "percentile list unexpected";
  if (percentiles->isLoaded()) return "duplicate percentile list";
  if (!percentiles->loadXML(text, reporter)) return "percentile list load error";
  percentiles->buildSDTable();
  return nullptr;
}

const char* R_RefData::receiveAnamnestic(const char* text) {
  if (anamnestic) return "double anamnestic data";
  if (xcount.get() > 0) return "anamnestic and followed data defined";
  if (percentiles && percentiles->getN() < 1)
    return "percentile definition must precede anamnestic values";
  if (percentiles && percentiles->getN() < kMinPercentiles)
    return "percentile list too short for anamnestic values";
  anamnestic = newLine();
  if (!anamnestic->loadXML(text, reporter)) return "anamnestic data load error";
  return nullptr;
}

// The x and the line are kept even when they fail, so that the data owns
// everything it made; the load fails anyway.
const char* R_RefData::receiveLine(const char* text, const R_XMLParameters& parameters) {
  if (anamnestic) return "data and anamnestic data defined";
  if (percentiles && percentiles->getN() < kMinPercentiles)
    return "Percentile definition must precede data";
  R_Number x = readLineX(parameters);
  R_RefDataLine* line = newLine();
  if (!appendLine(x, line)) {
    delete line;
    return "data line load error";
  }
  if (!x.isDefined() || !line->loadXML(text, reporter)) return "data line load error";
  return nullptr;
}

// The x of a line: `x`, else the middle of `x_from` and `x_to`; then times
// `mul` and divided by `div` where they read as numbers (a `div` of 0 is
// passed over without a word). An x that an earlier line has already is
// refused by making it undefined.
R_Number R_RefData::readLineX(const R_XMLParameters& parameters) const {
  R_Number x = attributeNumber(parameters, "x");
  if (!parameters.getParameter("x")) {
    R_Number from = attributeNumber(parameters, "x_from");
    R_Number to = attributeNumber(parameters, "x_to");
    if (from.isDefined() && to.isDefined()) x.set((from.getValue() + to.getValue()) / 2);
  }
  R_Number mul = attributeNumber(parameters, "mul");
  if (x.isDefined() && mul.isDefined()) x.set(x.getValue() * mul.getValue());
  R_Number div = attributeNumber(parameters, "div");
  if (x.isDefined() && div.isDefined() && div.getValue() != 0) x.set(x.getValue() / div.getValue());
  if (x.isDefined() && hasX(x.getValue())) x.setUndefined();
  return x;
}

bool R_RefData::hasX(double x) const {
  for (int i = 0; i < xcount.get(); ++i) {
    if (xval->get(i)->isEqual(x)) return true;
  }
  return false;
}

R_RefDataLine* R_RefData::newLine() const { return new R_RefDataLine(type, percentiles); }

void R_RefData::createLines(int capacity) {
  data = new R_FieldTemplate<R_RefDataLine>(capacity);
  xval = new R_FieldTemplate<R_Number>(capacity);
}

// Takes `line` on success only.
bool R_RefData::appendLine(const R_Number& x, R_RefDataLine* line) {
  if (!data) createLines(kXMLCapacity);
  int at = xcount.get();
  R_Number* stored_x = new R_Number(x);
  if (!xval->put(at, stored_x) || !data->put(at, line)) {
    delete stored_x;
    return false;
  }
  xcount += 1;
  return true;
}

void R_RefData::saveXML(R_XMLTextOutput& output) const {
  if (hasPercentiles()) {
    R_openElement(output, "percentiles");
    R_openElement(output, "list");
    percentiles->saveXML(output);
    output.closeTag("list");
    output.closeTag("percentiles");
  }
  if (anamnestic) {
    R_openElement(output, "anamnestic");
    anamnestic->saveXML(output);
    output.closeTag("anamnestic");
    return;
  }
  for (int i = 0; i < xcount.get(); ++i) {
    output.openTag("line");
    output.writeAttribute("x", *xval->get(i));
    output.endOpenTag();
    data->get(i)->saveXML(output);
    output.closeTag("line");
  }
}

void R_RefData::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeRefData)) {
    *ok = false;
    return;
  }
  R_Integer declared(stream, ok);
  if (declared.get() < 0) *ok = false;
  loadPercentiles(stream, ok);
  if (*ok && declared.get() >= 1) {
    createLines(std::min(declared.get(), kMaxStoredCapacity));
    while (*ok && xcount.get() < declared.get()) loadLine(stream, ok);
  } else if (*ok) {
    anamnestic = newLine();
    anamnestic->load(stream, ok);
  }
  buildIndex();
}

void R_RefData::loadPercentiles(R_InputStream& stream, bool* ok) {
  if (!percentiles || !*ok) return;
  percentiles->load(stream, ok);
  if (*ok && percentiles->getN() < kMinPercentiles) *ok = false;
  if (*ok) percentiles->buildSDTable();
}

void R_RefData::loadLine(R_InputStream& stream, bool* ok) {
  R_Number x(stream, ok);
  R_RefDataLine* line = newLine();
  line->load(stream, ok);
  if (!*ok || !appendLine(x, line)) {
    delete line;
    *ok = false;
  }
}

void R_RefData::save(R_OutputStream& stream) const {
  stream.put(R_TypeRefData);
  xcount.save(stream);
  if (percentiles) percentiles->save(stream);
  if (xcount.get() >= 1) {
    for (int i = 0; i < xcount.get(); ++i) {
      xval->get(i)->save(stream);
      data->get(i)->save(stream);
    }
  } else if (anamnestic) {
    anamnestic->save(stream);
  }
}
