#include "document/r_text.h"

#include "core/r_string.h"

R_Text::~R_Text() = default;

bool R_Text::setCondition(const char* text, const R_FileStatistics& statistics) {
  if (!text || !*text) return true;
  return condition.loadExpression(text, statistics);
}

void R_Text::loadCondition(R_InputStream& stream, bool* ok) { condition.load(stream, ok); }

void R_Text::saveCondition(R_OutputStream& stream) const { condition.save(stream); }

bool R_Text::getConditionText(R_String& buffer, const R_FileStatistics& statistics) const {
  buffer.clear();
  return condition.isValid() && condition.getText(buffer, statistics);
}

void R_Text::loadText(const char*, const R_FileStatistics&, R_XMLErrorReporter*) {}

void R_Text::load(R_InputStream&, bool*) {}

void R_Text::loadAttributes(const R_XMLParameters&, const R_FileStatistics&) {}

void R_Text::writeContent(R_XMLTextOutput&, const R_FileStatistics&) const {}

void R_Text::save(R_OutputStream&) const {}

void R_Text::writeAttributes(R_XMLTextOutput&, const R_FileStatistics&) const {}
