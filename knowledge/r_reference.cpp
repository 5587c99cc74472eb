#include "knowledge/r_reference.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "core/r_inputstream.h"
#include "core/r_number.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"name", "sex", "xyref", "age:interval", "data", "granularity:variant"};
enum { codeName, codeSex, codeXYRef, codeAge, codeData, codeVariant };
const int kXMLVariantCapacity = 10;
// A stored count reserves at most this much before the variants arrive.
const int kMaxStoredVariantCapacity = 64;

struct SexName {
  const char* text;
  int bit;
};
const SexName kSexes[] = {{"male", R_Reference::propMale}, {"female", R_Reference::propFemale}};

// The data types by their attribute text and property bit. The binary
// reader takes the first type whose bit is set, in this order.
struct DataKind {
  const char* text;
  int type;
  int bit;
};
const DataKind kDataKinds[] = {
    {"sd", R_RefDataLine::typeSD, R_Reference::propSD},
    {"logsd", R_RefDataLine::typeLogSD, R_Reference::propLogSD},
    {"percentiles", R_RefDataLine::typePercentiles, R_Reference::propPercentiles},
};

const DataKind* kindOfText(const char* text) {
  for (const DataKind& kind : kDataKinds) {
    if (text && strcmp(kind.text, text) == 0) return &kind;
  }
  return nullptr;
}

const DataKind* kindOfProperties(const R_Integer& properties) {
  for (const DataKind& kind : kDataKinds) {
    if (properties.hasBits(kind.bit)) return &kind;
  }
  return nullptr;
}

const DataKind& kindOfType(int type) {
  for (const DataKind& kind : kDataKinds) {
    if (kind.type == type) return kind;
  }
  assert(false);
  return kDataKinds[0];
}

}  // namespace

R_Reference::R_Reference()
    : properties(0), data(nullptr), granularity(nullptr), gran_count(0), statistics(nullptr),
      reporter(nullptr) {}

R_Reference::~R_Reference() {
  for (int i = 0; i < gran_count.get(); ++i) delete granularity->get(i);
  delete granularity;
  delete data;
}

// The cheap tests first: a search tries every reference of the file.
bool R_Reference::fits(int sex, const R_Number& at_age, const R_XYVar& pair) const {
  if (pair != xyref || !isForSex(sex)) return false;
  return !age.isDefined() || age.contains(at_age);
}

bool R_Reference::fits(int sex, const R_Interval& interval, const R_XYVar& pair) const {
  return pair == xyref && isForSex(sex) && age.contains(interval);
}

const R_Granularity& R_Reference::getGranularity(int index) const {
  assert(index >= 0 && index < gran_count.get());
  return *granularity->get(index);
}

int R_Reference::findGranularityX(double from, double to) const {
  for (int i = 0; i < gran_count.get(); ++i) {
    if (granularity->get(i)->coversX(from, to)) return i;
  }
  return -1;
}

int R_Reference::findGranularityY(double from, double to) const {
  for (int i = 0; i < gran_count.get(); ++i) {
    if (granularity->get(i)->coversY(from, to)) return i;
  }
  return -1;
}

int R_Reference::getDefaultGranularity() const {
  for (int i = 0; i < gran_count.get(); ++i) {
    if (granularity->get(i)->isDefault()) return i;
  }
  return gran_count.get() > 0 ? 0 : -1;
}

bool R_Reference::loadXML(const char* textXML, const R_FileStatistics& statistics_in,
                          R_XMLErrorReporter* reporter_in) {
  statistics = &statistics_in;
  reporter = reporter_in;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  if (ok) ok = checkLoaded(parser);
  if (!ok) parser.report("Error while processing reference");
  statistics = nullptr;
  reporter = nullptr;
  return ok;
}

bool R_Reference::checkLoaded(R_XMLParser& parser) const {
  bool ok = true;
  if (!data) {
    parser.report("No data defined");
    ok = false;
  }
  if (name.isEmpty()) {
    parser.report("Name not defined");
    ok = false;
  }
  return ok;
}

const char* R_Reference::receive(int code, const char* text, const R_XMLParameters& parameters) {
  switch (code) {
    case codeName:
      return receiveName(text);
    case codeSex:
      return receiveSex(parameters);
    case codeXYRef:
      return xyref.loadXML(text, *statistics, reporter) ? nullptr : "x-y definition load error";
    case codeAge:
      return age.loadXML(text, reporter) ? nullptr : "age load error";
    case codeData:
      return receiveData(text, parameters);
    case codeVariant:
      return receiveVariant(text, parameters);
  }
  return "unrecognized code in ref";
}

const char* R_Reference::receiveName(const char* text) {
  return name.setNormalized(text, false) ? nullptr : "reference name not defined";
}

// The same sex twice is no fault; the other sex beside it is.
const char* R_Reference::receiveSex(const R_XMLParameters& parameters) {
  const char* text = parameters.getParameter("sex");
  for (const SexName& sex : kSexes) {
    if (!text || strcmp(sex.text, text) != 0) continue;
    if (properties.hasBits((propMale | propFemale) & ~sex.bit)) return "duplicate sex definition";
    properties |= sex.bit;
    return nullptr;
  }
  return "unrecognized sex";
}

const char* R_Reference::receiveData(const char* text, const R_XMLParameters& parameters) {
  if (data) return "duplicate data";
  const DataKind* kind = kindOfText(parameters.getParameter("type"));
  if (!kind) return "unknown reference data type";
  properties |= kind->bit;
  data = new R_RefData(kind->type);
  return data->loadXML(text, reporter) ? nullptr : "data load error";
}

// A variant is kept whether or not it loaded; the reference then fails.
const char* R_Reference::receiveVariant(const char* text, const R_XMLParameters& parameters) {
  bool is_default = parameters.isParameterValueInElement("type", "variant", "default");
  R_Granularity* variant = new R_Granularity(is_default);
  bool loaded = variant->loadXML(text, reporter);
  if (!granularity) granularity = new R_FieldTemplate<R_Granularity>(kXMLVariantCapacity);
  if (!appendVariant(variant)) loaded = false;
  return loaded ? nullptr : "granularity load error";
}

// Takes `variant` in any case: it is kept, or deleted when it can't be.
bool R_Reference::appendVariant(R_Granularity* variant) {
  if (!granularity->put(gran_count.get(), variant)) {
    delete variant;
    return false;
  }
  gran_count += 1;
  return true;
}

void R_Reference::saveXML(R_XMLTextOutput& output, const R_FileStatistics& names) const {
  assert(data);
  R_writeTextElement(output, kTags[codeName], name.get());
  saveSex(output);
  saveXYVar(output, names);
  saveAge(output);
  output.openTag("data");
  output.writeAttribute("type", kindOfType(data->getType()).text);
  output.endOpenTag();
  data->saveXML(output);
  output.closeTag("data");
  saveGranularity(output);
}

// An empty element would not load back: the variables and the age are
// written only when there is something in them.
void R_Reference::saveXYVar(R_XMLTextOutput& output, const R_FileStatistics& names) const {
  if (xyref.getAVar() < 0 && xyref.getXVar() < 0 && xyref.getYVar() < 0) return;
  R_openElement(output, "xyref");
  xyref.saveXML(output, names);
  output.closeTag("xyref");
}

void R_Reference::saveAge(R_XMLTextOutput& output) const {
  if (!age.isDefined()) return;
  R_openElement(output, "age");
  R_openElement(output, "interval");
  age.saveXML(output);
  output.closeTag("interval");
  output.closeTag("age");
}

// An XML reference holds one sex at most; of a binary one with both, the
// first is written.
void R_Reference::saveSex(R_XMLTextOutput& output) const {
  for (const SexName& sex : kSexes) {
    if (!properties.hasBits(sex.bit)) continue;
    output.openTag("sex");
    output.writeAttribute("sex", sex.text);
    output.endEmptyTag();
    return;
  }
}

void R_Reference::saveGranularity(R_XMLTextOutput& output) const {
  if (gran_count.get() <= 0) return;
  R_openElement(output, "granularity");
  for (int i = 0; i < gran_count.get(); ++i) {
    const R_Granularity& variant = *granularity->get(i);
    output.openTag("variant");
    if (variant.isDefault()) output.writeAttribute("type", "default");
    output.endOpenTag();
    variant.saveXML(output);
    output.closeTag("variant");
  }
  output.closeTag("granularity");
}

void R_Reference::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeReference)) {
    *ok = false;
    return;
  }
  name.load(stream, ok);
  properties.load(stream, ok);
  const DataKind* kind = kindOfProperties(properties);
  if (*ok && !kind) *ok = false;
  if (*ok) {
    data = new R_RefData(kind->type);
    data->load(stream, ok);
  }
  age.load(stream, ok);
  xyref.load(stream, ok);
  loadVariants(stream, ok);
}

// The stored count is checked against the variants read; gran_count counts
// only what is held, so that a failed load leaves nothing unowned.
void R_Reference::loadVariants(R_InputStream& stream, bool* ok) {
  R_Integer declared(stream, ok);
  if (!*ok || declared.get() < 0) {
    *ok = false;
    return;
  }
  if (declared.get() == 0) return;
  granularity = new R_FieldTemplate<R_Granularity>(std::min(declared.get(), kMaxStoredVariantCapacity));
  while (*ok && gran_count.get() < declared.get()) {
    R_Integer is_default(stream, ok);
    R_Granularity* variant = new R_Granularity(is_default.get() != 0);
    variant->load(stream, ok);
    if (!*ok) {
      delete variant;
      return;
    }
    if (!appendVariant(variant)) *ok = false;
  }
}

void R_Reference::save(R_OutputStream& stream) const {
  assert(data);
  stream.put(R_TypeReference);
  name.save(stream);
  properties.save(stream);
  data->save(stream);
  age.save(stream);
  xyref.save(stream);
  gran_count.save(stream);
  for (int i = 0; i < gran_count.get(); ++i) {
    R_Integer(granularity->get(i)->isDefault() ? 1 : 0).save(stream);
    granularity->get(i)->save(stream);
  }
}
