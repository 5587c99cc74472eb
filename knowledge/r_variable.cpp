#include "knowledge/r_variable.h"

#include <cstring>
#include <string>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_filestatistics.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

// Element codes, in the order of the tag table.
enum Code {
  codeProperties,
  codeUnit,
  codePrecision,
  codeName,
  codeId,
  codeInterval,
  codeMethod,
  codeList,
  codeXYRef,
  codeHelpId
};

const char* const kTags[] = {"properties", "unit",        "precision", "name",  "id",
                             "values:interval", "method", "values:list", "xyref", "helpid"};
const int kTagCount = sizeof kTags / sizeof kTags[0];

// Per code: the refusal of a second element of the kind (null where a second
// one overwrites) and the message of a failed load.
struct ElementMessages {
  const char* second;
  const char* failed;
};
const ElementMessages kMessages[] = {
    {nullptr, nullptr},  // properties has messages of its own
    {"double defined unit", "unit load error"},
    {"double defined precision", "precision load error"},
    {"double defined name", "variable name load error"},
    {nullptr, "variable code is not recognized"},
    {"double defined interval", "variable values load error"},
    {"double defined methods", "variable method load error"},
    {"double defined list", "list of values load error"},
    {"double defined xyref", "x-y definition load error"},
    {"double defined help id", "variable help-id load error"},
};
static_assert(sizeof kMessages / sizeof kMessages[0] == kTagCount, "one entry per element");

// The words of the `properties` attributes and their bits.
struct Choice {
  const char* word;
  int bit;
};
const Choice kTypes[] = {{"measured", R_Variable::bitMeasured},
                         {"calculated", R_Variable::bitCalculated},
                         {"index", R_Variable::bitIndex},
                         {"age", R_Variable::bitAge}};
const Choice kScopes[] = {{"anamnestic", R_Variable::bitAnamnestic}, {"followed", R_Variable::bitFollowed}};
const Choice kData[] = {{"list", R_Variable::bitList}, {"real", R_Variable::bitReal}};

// The bit of `word`; 0 for a null or unknown word.
template <int N>
int findChoice(const Choice (&choices)[N], const char* word) {
  if (!word) return 0;
  for (const Choice& choice : choices) {
    if (strcmp(choice.word, word) == 0) return choice.bit;
  }
  return 0;
}

// The word of the first choice whose bit is set; null if none is.
template <int N>
const char* choiceWord(const Choice (&choices)[N], int properties) {
  for (const Choice& choice : choices) {
    if (properties & choice.bit) return choice.word;
  }
  return nullptr;
}

// One sex named applies to that sex alone; anything else applies to both.
int sexBits(const char* sex) {
  if (sex && strcmp(sex, "male") == 0) return R_Variable::bitMale;
  if (sex && strcmp(sex, "female") == 0) return R_Variable::bitFemale;
  return R_Variable::bitMale | R_Variable::bitFemale;
}

void writeAttributeIf(R_XMLTextOutput& output, const char* name, const char* value) {
  if (value) output.writeAttribute(name, value);
}

}  // namespace

R_Variable::R_Variable() : properties(0), var_index(-1), statistics(nullptr), reporter(nullptr), seen(0) {}

R_Variable::~R_Variable() {}

bool R_Variable::isForSex(int sex) const {
  if (sex == 0) return isMale();
  if (sex == 1) return isFemale();
  return true;
}

bool R_Variable::isOwnX() const { return isFollowed() && xyref.getXVar() == var_index; }

bool R_Variable::isOwnY() const { return isFollowed() && xyref.getYVar() == var_index; }

bool R_Variable::formatValue(const R_Number& value, R_String& buffer, bool with_unit) const {
  buffer.clear();
  if (!value.isDefined() || !interval.contains(value)) return false;
  if (isList()) {
    buffer = items.getText(value, false);
    return !buffer.isEmpty();
  }
  char text[64];
  R_Number copy(value);
  // A precision that is not above 0, which only a damaged file can hold,
  // counts as none.
  if (precision.isDefined() && precision.getValue() > 0)
    copy.formatToPrecision(precision.getValue(), text);
  else
    copy.toText(text);
  std::string shown(text);
  if (with_unit && !unit.isEmpty()) shown.append(" ").append(unit.get());
  buffer = shown.c_str();
  return !buffer.isEmpty();
}

bool R_Variable::loadXML(const char* textXML, const R_FileStatistics& file_statistics,
                         R_XMLErrorReporter* load_reporter) {
  statistics = &file_statistics;
  reporter = load_reporter;
  seen = 0;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  if (ok) ok = checkLoaded(parser);
  if (!ok) parser.report("Error while processing variable.");
  if (ok && isList()) interval.setFromList(items);
  statistics = nullptr;
  reporter = nullptr;
  return ok;
}

// Every test runs and reports, so that one load names all of a variable's faults.
bool R_Variable::checkLoaded(R_XMLParser& parser) const {
  int stored = equation.getMethodCount();
  const struct {
    bool fails;
    const char* message;
  } checks[] = {
      {properties.get() == 0 || name.isEmpty(), "No properties/name defined."},
      {isList() && items.getN() < 2, "No list items."},
      {!isList() && items.getN() > 0, "List items in real variable definition."},
      {isCalculated() && stored < 2, "No compute methods."},
      {!isCalculated() && stored > 0, "Compute methods in followed variable."},
      {var_index < 0, "Variable identification does notch match pre-scan."},
  };
  bool ok = true;
  for (const auto& check : checks) {
    if (!check.fails) continue;
    parser.report(check.message);
    ok = false;
  }
  return ok;
}

const char* R_Variable::receive(int code, const char* text, const R_XMLParameters& parameters) {
  if (code < 0 || code >= kTagCount) return "unrecognized code in variable";
  if (code == codeProperties) return receiveProperties(parameters);
  const ElementMessages& messages = kMessages[code];
  int bit = 1 << code;
  if (messages.second && (seen & bit)) return messages.second;
  seen |= bit;
  return loadMember(code, text) ? nullptr : messages.failed;
}

const char* R_Variable::receiveProperties(const R_XMLParameters& parameters) {
  int type = findChoice(kTypes, parameters.getParameter("type"));
  if (!type) return "wrong variable type";
  int scope = findChoice(kScopes, parameters.getParameter("scope"));
  if (!scope) return "wrong variable scope";
  int data_type = findChoice(kData, parameters.getParameter("data"));
  if (!data_type) return "wrong variable data type";
  properties = type | scope | data_type | sexBits(parameters.getParameter("sex"));
  return nullptr;
}

bool R_Variable::loadMember(int code, const char* text) {
  switch (code) {
    case codeUnit: return unit.setNormalized(text);  // an empty unit is a unit
    case codePrecision: return precision.setFromText(text);
    case codeName: return name.setNormalized(text, false);
    case codeId: return loadId(text);
    case codeInterval: return interval.loadXML(text, reporter);
    case codeMethod: return equation.loadXML(text, *statistics, reporter);
    case codeList: return items.loadXML(text, reporter);
    case codeXYRef: return xyref.loadXML(text, *statistics, reporter);
    case codeHelpId: return helpid.setNormalized(text, false);
  }
  return false;
}

// An unknown identifier is no fault here: the index stays -1, which the
// checks after the parse report.
bool R_Variable::loadId(const char* text) {
  R_String id;
  if (!id.setNormalized(text, false)) return false;
  var_index = statistics->getVarIndex(id.get());
  return true;
}

void R_Variable::saveXML(R_XMLTextOutput& output, const R_FileStatistics& file_statistics) const {
  if (var_index >= 0 && var_index < file_statistics.getVarCount())
    R_writeTextElement(output, "id", file_statistics.getVarName(var_index));
  savePropertiesXML(output);
  R_writeTextElement(output, "name", name);
  if (isCalculated()) {
    R_openElement(output, "method");
    equation.saveXML(output, file_statistics);
    output.closeTag("method");
  }
  saveValuesXML(output);
  if (!isAge() && xyref.isDefined()) {
    R_openElement(output, "xyref");
    xyref.saveXML(output, file_statistics);
    output.closeTag("xyref");
  }
}

void R_Variable::savePropertiesXML(R_XMLTextOutput& output) const {
  int bits = properties.get();
  output.openTag("properties");
  writeAttributeIf(output, "type", choiceWord(kTypes, bits));
  writeAttributeIf(output, "scope", choiceWord(kScopes, bits));
  writeAttributeIf(output, "data", choiceWord(kData, bits));
  if (isMale() != isFemale()) output.writeAttribute("sex", isMale() ? "male" : "female");
  output.endEmptyTag();
}

void R_Variable::saveValuesXML(R_XMLTextOutput& output) const {
  if (isList()) {
    R_openElement(output, "values");
    R_openElement(output, "list");
    items.saveXML(output);
    output.closeTag("list");
    output.closeTag("values");
  }
  if (!hasRealValues()) return;
  if (interval.isDefined()) {
    R_openElement(output, "values");
    R_openElement(output, "interval");
    interval.saveXML(output);
    output.closeTag("interval");
    output.closeTag("values");
  }
  if (!unit.isEmpty()) R_writeTextElement(output, "unit", unit);
  if (precision.isDefined()) R_writeNumberElement(output, "precision", precision);
}

void R_Variable::load(int own_index, R_InputStream& stream, bool* ok) {
  var_index = own_index;
  if (!*ok) return;
  if (!stream.checkType(R_TypeVariable)) {
    *ok = false;
    return;
  }
  properties.load(stream, ok);
  name.load(stream, ok);
  helpid.load(stream, ok);
  if (isCalculated()) {
    equation.load(stream, ok);
    if (!equation.isValid()) *ok = false;
  }
  if (isList()) items.load(stream, ok);
  if (hasRealValues()) {
    unit.load(stream, ok);
    precision.load(stream, ok);
    interval.load(stream, ok);
  }
  xyref.load(stream, ok);
  // A list variable's range is not stored: it follows from the items.
  if (*ok && isList()) interval.setFromList(items);
}

void R_Variable::save(R_OutputStream& stream) const {
  stream.put(R_TypeVariable);
  properties.save(stream);
  name.save(stream);
  helpid.save(stream);
  if (isCalculated()) equation.save(stream);
  if (isList()) items.save(stream);
  if (hasRealValues()) {
    unit.save(stream);
    precision.save(stream);
    interval.save(stream);
  }
  xyref.save(stream);
}
