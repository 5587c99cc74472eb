#include "document/r_textparagraph.h"

#include <cstring>
#include <string>

#include "document/r_texttranslator.h"
#include "formula/r_calcvalue.h"
#include "formula/r_calcvalueproband.h"
#include "knowledge/r_file.h"
#include "knowledge/r_variable.h"
#include "output/r_outputinterface.h"
#include "xml/r_xmltextoutput.h"

namespace {

// setFont codes and the font states of writeChar.
enum Font { boldOn = 0, plainOn = 1, italicsOn = 2, boldOff = 3, plainOff = 4, italicsOff = 5 };
enum State { statePlain = 0, stateBold = 1, stateItalics = 2 };

// One switch of font: the code that ends the present font, the one that
// starts the next, and the state that follows.
struct FontSwitch {
  char code;
  int off;
  int on;
  int state;
};
const FontSwitch kSwitches[] = {{'b', plainOff, boldOn, stateBold},
                                {'c', boldOff, plainOn, statePlain},
                                {'i', plainOff, italicsOn, stateItalics},
                                {'j', italicsOff, plainOn, statePlain}};
// The code that closes each state at the end, in state order.
const int kClose[] = {plainOff, boldOff, italicsOff};

// The stored codes and their tags for the XML form.
struct TagOf {
  char code;
  const char* tag;
};
const TagOf kMarkTags[] = {{'b', "<b>"}, {'c', "</b>"}, {'i', "<i>"}, {'j', "</i>"}};
const TagOf kNamedTags[] = {{'L', "<link target=\""}, {'E', "<external target=\""}, {'V', "<value var=\""}};

template <int N>
const char* tagOf(const TagOf (&table)[N], char code) {
  for (const TagOf& entry : table) {
    if (entry.code == code) return entry.tag;
  }
  return nullptr;
}

// The name after a named code: up to the next backslash or the end. `*p`
// moves past the closing backslash.
std::string readName(const char** p) {
  const char* end = strchr(*p, '\\');
  if (!end) end = *p + strlen(*p);
  std::string name(*p, end);
  *p = *end ? end + 1 : end;
  return name;
}

// The text of a variable's value: nothing (false) when it cannot be loaded.
bool valueText(const R_File& file, const R_Proband& proband, const R_Number& age, const char* name,
               R_String& text) {
  int index = file.getStatistics().getVarIndex(name);
  if (index < 0) return false;
  R_CalcValue value;
  if (!R_CalcValueProband::load(value, file, proband, age, index, 0)) return false;
  const R_Variable& variable = *file.getVariable(index);
  if (value.isScalar()) {
    variable.formatValue(value.getScalar(), text, true);
  } else if (value.isPoint()) {
    variable.formatValue(value.getPoint(value.getPointIndex()).getY(), text, true);
  } else {
    text = "?";
  }
  return true;
}

}  // namespace

void R_TextParagraph::loadText(const char* text, const R_FileStatistics& statistics,
                               R_XMLErrorReporter* reporter) {
  R_String normalised;
  if (!normalised.setNormalized(text, false)) return;
  R_TextTranslator translator(normalised.get(), statistics, reporter);
  if (!translator.isOK()) return;
  translator.getResult(stored);
  setOK(true);
}

void R_TextParagraph::load(R_InputStream& stream, bool* ok) {
  stored.load(stream, ok);
  setOK(*ok);
}

void R_TextParagraph::save(R_OutputStream& stream) const { stored.save(stream); }

// Plain text goes out as it is; the tags are escaped like any text.
void R_TextParagraph::writeContent(R_XMLTextOutput& xml, const R_FileStatistics&) const {
  std::string plain;
  for (const char* p = stored.get(); *p;) {
    if (*p != '\\') {
      plain += *p++;
      continue;
    }
    xml.writeRaw(plain.c_str());
    plain.clear();
    char code = p[1];
    p += code ? 2 : 1;
    if (const char* tag = tagOf(kMarkTags, code)) {
      xml.writeText(tag);
    } else if (const char* named = tagOf(kNamedTags, code)) {
      xml.writeText(named);
      xml.writeRaw(readName(&p).c_str());
      xml.writeText("\" />");
    }
  }
  xml.writeRaw(plain.c_str());
}

bool R_TextParagraph::write(const R_File& file, const R_Proband& proband, const R_Number& age,
                            R_OutputInterface& output) const {
  if (stored.isEmpty()) return true;
  output.beginParagraph();
  output.setFont(plainOn);
  int state = statePlain;
  for (const char* p = stored.get(); *p;) {
    if (*p != '\\') {
      output.writeChar(state, *p++);
      continue;
    }
    char code = p[1];
    p += code ? 2 : 1;
    for (const FontSwitch& change : kSwitches) {
      if (change.code != code) continue;
      output.setFont(change.off);
      output.setFont(change.on);
      state = change.state;
    }
    if (code == 'L' || code == 'E') {
      output.writeAnchor(readName(&p).c_str(), code == 'L');
    } else if (code == 'V') {
      R_String text;
      if (valueText(file, proband, age, readName(&p).c_str(), text)) output.writeResult(text.get());
    }
  }
  output.setFont(kClose[state]);
  output.endParagraph();
  return true;
}
