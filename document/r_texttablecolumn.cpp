#include "document/r_texttablecolumn.h"

#include <cstring>

#include "core/r_date.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "formula/r_calcvalue.h"
#include "knowledge/r_file.h"
#include "knowledge/r_list.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_probability.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutput.h"

namespace {

const int kTypeMask = 15;
const char* const kTypeNames[] = {"date", "separator", "values", "list"};
// Formats of 1 to kLongestFormat bytes are taken.
const int kLongestFormat = 31;
const char* const kDefaultDateFormat = "%d. %m. %Y";

// Which attributes a type needs (1), must not have (0) or ignores (-1).
struct Rule {
  int method;
  int precision;
  int format;
};
const Rule kRules[] = {{0, 0, 1}, {-1, -1, -1}, {1, 1, 0}, {1, 0, 1}};
static_assert(sizeof kRules / sizeof kRules[0] == sizeof kTypeNames / sizeof kTypeNames[0],
              "a rule for each column type");

bool keeps(int rule, bool present) { return rule < 0 || (rule == 1) == present; }

}  // namespace

int R_TextTableColumn::getKind() const {
  switch (flags.get() & kTypeMask) {
    case typeDate: return kindDate;
    case typeValues: return kindValues;
    case typeList: return kindList;
  }
  return kindSeparator;
}

bool R_TextTableColumn::loadAttributes(const R_XMLParameters& attributes, const R_FileStatistics& statistics) {
  int type = 0;
  for (int i = 0; i < 4; ++i) {
    if (attributes.isParameterValue("type", kTypeNames[i])) type = i + 1;
  }
  flags = type;
  header.setNormalized(attributes.getParameter("header"));
  bool method = hasMethod(attributes, statistics);
  bool has_precision = hasPrecision(attributes);
  bool has_format = hasFormat(attributes);
  if (type == 0) return false;
  const Rule& rule = kRules[type - 1];
  return keeps(rule.method, method) && keeps(rule.precision, has_precision) && keeps(rule.format, has_format);
}

bool R_TextTableColumn::hasMethod(const R_XMLParameters& attributes, const R_FileStatistics& statistics) {
  const char* text = attributes.getParameter("method");
  return text && loadExpression(text, statistics);
}

// "sd" and "percentiles" choose the scale; a number is a rounding step.
bool R_TextTableColumn::hasPrecision(const R_XMLParameters& attributes) {
  const char* text = attributes.getParameter("precision");
  if (!text) return false;
  if (strcmp(text, "sd") == 0) {
    flags |= flagSD;
    return true;
  }
  if (strcmp(text, "percentiles") == 0) {
    flags |= flagPercentiles;
    return true;
  }
  precision.setFromText(text);
  if (precision.isDefined() && precision.getValue() >= 0.000001 && precision.getValue() < 10) return true;
  precision.setUndefined();
  return false;
}

bool R_TextTableColumn::hasFormat(const R_XMLParameters& attributes) {
  format.setNormalized(attributes.getParameter("format"));
  return format.getLength() >= 1 && format.getLength() <= kLongestFormat;
}

void R_TextTableColumn::saveXML(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const {
  xml.openTag("column");
  int type = flags.get() & kTypeMask;
  if (type >= 1 && type <= 4) xml.writeAttribute("type", kTypeNames[type - 1]);
  R_String method;
  int kind = getKind();
  if (kind == kindValues || kind == kindList) {
    getText(method, statistics);
    xml.writeAttribute("method", method.get());
  }
  if (kind == kindValues) {
    if (flags.hasBits(flagPercentiles)) {
      xml.writeAttribute("precision", "percentiles");
    } else if (flags.hasBits(flagSD)) {
      xml.writeAttribute("precision", "sd");
    } else {
      xml.writeAttribute("precision", precision);
    }
  }
  if (kind == kindList || kind == kindDate) xml.writeAttribute("format", format.get());
  if (!header.isEmpty()) xml.writeAttribute("header", header.get());
  xml.endEmptyTag();
}

void R_TextTableColumn::loadColumn(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeTextElement)) {
    *ok = false;
    return;
  }
  flags.load(stream, ok);
  int type = flags.get() & kTypeMask;
  if (*ok && (type < 1 || type > 4)) *ok = false;
  if (type == typeSeparator) return;
  header.load(stream, ok);
  if (type == typeDate) format.load(stream, ok);
  if (type == typeValues || type == typeList) load(stream, ok);
  if (type == typeValues) precision.load(stream, ok);
  if (type == typeList) format.load(stream, ok);
}

void R_TextTableColumn::saveColumn(R_OutputStream& stream) const {
  stream.put(R_TypeTextElement);
  flags.save(stream);
  int type = flags.get() & kTypeMask;
  if (type == typeSeparator) return;
  header.save(stream);
  if (type == typeDate) format.save(stream);
  if (type == typeValues || type == typeList) save(stream);
  if (type == typeValues) precision.save(stream);
  if (type == typeList) format.save(stream);
}

std::string R_TextTableColumn::cellText(const R_File& file, const R_Proband& proband, const R_CalcValue& result,
                                        int visit) const {
  switch (getKind()) {
    case kindDate: {
      char text[256];
      proband.getVisitDate(visit).format(text, format.isEmpty() ? kDefaultDateFormat : format.get());
      return text;
    }
    case kindValues: return valueText(result, visit);
    case kindList: return listText(file, result, visit);
  }
  return "";
}

std::string R_TextTableColumn::valueText(const R_CalcValue& result, int visit) const {
  if (!result.isXY() || visit >= result.getN() || !result.getPoint(visit).getY().isDefined()) return "";
  R_Number y = result.getPoint(visit).getY();
  char text[64];
  if (flags.hasBits(flagPercentiles)) {
    R_Probability::formatPercentile(text, y);
  } else if (flags.hasBits(flagSD)) {
    R_Probability::formatSD(text, y);
  } else if (precision.isDefined() && precision.getValue() > 0) {
    y.formatToPrecision(precision.getValue(), text);
  } else {
    y.toText(text);
  }
  return text;
}

std::string R_TextTableColumn::listText(const R_File& file, const R_CalcValue& result, int visit) const {
  if (!result.isXY() || visit >= result.getN() || !result.getPoint(visit).getX().isDefined()) return "";
  int index = file.getFollowedVars()->getIndexOf(format.get());
  if (index < 0 || !file.getVariable(index)->isList()) return "";
  return file.getVariable(index)->getList().getText(result.getPoint(visit).getX(), true).get();
}
