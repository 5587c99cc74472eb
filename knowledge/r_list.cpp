#include "knowledge/r_list.h"

#include <cassert>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_knowledgexml.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

const char* const kTags[] = {"item"};
const int kXMLCapacity = 32;
// A stored count reserves at most this much before the items arrive, so a
// damaged count costs no more than the bytes that back it.
const int kMaxStoredCapacity = 1024;

const R_String& emptyText() {
  static const R_String empty;
  return empty;
}

}  // namespace

R_List::R_List() : text(nullptr), value(nullptr), count(0) {}

R_List::~R_List() {
  for (int i = 0; i < count.get(); ++i) {
    delete text->get(i);
    delete value->get(i);
  }
  delete text;
  delete value;
}

const R_String& R_List::getText(int index) const {
  assert(index >= 0 && index < count.get());
  return *text->get(index);
}

const R_Number& R_List::getValue(int index) const {
  assert(index >= 0 && index < count.get());
  return *value->get(index);
}

const R_String& R_List::getText(const R_Number& item_value, bool best_fit) const {
  if (!item_value.isDefined()) return emptyText();
  return getText(item_value.getValue(), best_fit);
}

const R_String& R_List::getText(double item_value, bool best_fit) const {
  int best = -1;
  double best_distance = 0.0;
  for (int i = 0; i < count.get(); ++i) {
    double item = value->get(i)->getValue();
    if (item == item_value) return *text->get(i);
    double distance = (item_value - item) * (item_value - item);
    // Only a strictly nearer item replaces the kept one: ties go to the earlier.
    if (best < 0 || distance < best_distance) {
      best = i;
      best_distance = distance;
    }
  }
  return (best_fit && best >= 0) ? *text->get(best) : emptyText();
}

void R_List::createTemplates(int capacity) {
  assert(!isLoaded());
  text = new R_FieldTemplate<R_String>(capacity);
  value = new R_FieldTemplate<R_Number>(capacity);
}

bool R_List::hasValue(double item_value) const {
  for (int i = 0; i < count.get(); ++i) {
    if (value->get(i)->getValue() == item_value) return true;
  }
  return false;
}

bool R_List::append(const R_String& item_text, const R_Number& item_value) {
  R_String* new_text = new R_String(item_text);
  R_Number* new_value = new R_Number(item_value);
  int at = count.get();
  if (!text->put(at, new_text) || !value->put(at, new_value)) {
    delete new_text;
    delete new_value;
    return false;
  }
  count += 1;
  return true;
}

bool R_List::loadXML(const char* textXML, R_XMLErrorReporter* reporter) {
  createTemplates(kXMLCapacity);
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  bool ok = R_parseTagged(parser, *this, kTags, textXML);
  if (ok && count.get() == 0) {
    parser.report("List items missing.");
    ok = false;
  }
  if (!ok) parser.report("Error while processing list.");
  return ok;
}

const char* R_List::receive(int code, const char* item_text, const R_XMLParameters& parameters) {
  if (code != 0) return "undefined code in list";
  R_Number item_value;
  item_value.setFromText(parameters.getParameter("value"));
  if (!item_value.isDefined() || hasValue(item_value.getValue())) return "wrong or duplicate list item";
  R_String normalized;
  normalized.setNormalized(item_text);
  if (!append(normalized, item_value)) return "wrong or duplicate list item";
  return nullptr;
}

void R_List::saveXML(R_XMLTextOutput& output) const {
  for (int i = 0; i < count.get(); ++i) {
    output.openTag("item");
    output.writeAttribute("value", *value->get(i));
    output.endOpenTag();
    output.writeString(*text->get(i));
    output.closeTag("item");
  }
}

void R_List::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeList)) {
    *ok = false;
    return;
  }
  R_Integer declared(stream, ok);
  if (!*ok || declared.get() < 0) {
    *ok = false;
    return;
  }
  int capacity = declared.get();
  if (capacity < 1) capacity = 1;
  if (capacity > kMaxStoredCapacity) capacity = kMaxStoredCapacity;
  createTemplates(capacity);
  while (*ok && count.get() < declared.get()) loadItem(stream, ok);
}

void R_List::loadItem(R_InputStream& stream, bool* ok) {
  R_String item_text(stream, ok);
  R_Number item_value(stream, ok);
  // An item's value ends the item, so a stream cut inside it shows only here.
  if (!stream.isOK() || !item_value.isDefined()) *ok = false;
  if (*ok && !append(item_text, item_value)) *ok = false;
}

void R_List::save(R_OutputStream& stream) const {
  stream.put(R_TypeList);
  count.save(stream);
  for (int i = 0; i < count.get(); ++i) {
    text->get(i)->save(stream);
    value->get(i)->save(stream);
  }
}
