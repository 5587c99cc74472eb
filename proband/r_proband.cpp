#include "proband/r_proband.h"

#include <cassert>
#include <cmath>

#include "core/r_ascii.h"
#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_file.h"
#include "knowledge/r_filestatistics.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "proband/r_probandnametable.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"
#include "xml/r_xmltextoutputbuffer.h"

namespace {

// Visits whose ages differ by less than this are one visit: just under a day.
const double kSameVisitYears = 0.0027;
const int kVisitBaseSize = 16;
const char* const kDateFormat = "%d.%m.%Y";

// The paths of one proband's XML text; the second five are the same paths
// inside a surrounding `proband` element. receive() takes code % 5.
const char* const kTags[] = {
    "info",         "data:val",         "<data:record",         ">data:record",         "data:record:val",
    "proband:info", "proband:data:val", "<proband:data:record", ">proband:data:record", "proband:data:record:val",
};
const int kTagCount = sizeof(kTags) / sizeof(kTags[0]);
const int kHandlerCount = 5;
static_assert(kTagCount == 2 * kHandlerCount, "each handler serves one path with and one without `proband`");

// An age or value that is not finite is treated as absent: nothing in the
// system computes with such numbers, and only a damaged file holds them.
bool isUsable(const R_Number& number) { return number.isDefined() && std::isfinite(number.getValue()); }

R_Number usableOrUndefined(const R_Number& number) { return isUsable(number) ? number : R_Number(); }

void writeValue(R_XMLTextOutput& output, const char* name, const R_Number& value) {
  output.openTag("val");
  output.writeAttribute("var", name);
  output.endOpenTag();
  output.writeNumber(value);
  output.closeTag("val");
}

void writeDateAttribute(R_XMLTextOutput& output, const char* name, const R_Date& date) {
  if (!date.isDefined()) return;
  char buffer[64];
  date.format(buffer, kDateFormat);
  output.writeAttribute(name, buffer);
}

}  // namespace

R_Proband::R_Proband(const R_File* file)
    : F(file),
      sex(0),
      values(nullptr),
      followed(nullptr),
      anamnestic_count(0),
      followed_count(0),
      open_record(-1) {
  if (!F || !F->isOK()) return;
  sex.set(-1);
  anamnestic_count = anamnesticVars() ? anamnesticVars()->getCount() : 0;
  followed_count = followedVars() ? followedVars()->getCount() : 0;
  if (anamnestic_count > 0) values = new R_Number[anamnestic_count];
  if (followed_count > 0) followed = new R_SortedFieldTemplate<R_ProbandRecord>(kVisitBaseSize);
}

R_Proband::~R_Proband() {
  delete followed;
  delete[] values;
}

// ---- Sex and names ----

int R_Proband::getSex() const {
  if (sex.get() == 1) return 0;
  if (sex.get() == 2) return 1;
  return 2;
}

bool R_Proband::isSexDefined() const { return sex.get() == 1 || sex.get() == 2; }

void R_Proband::setSex(int value) { sex.set(value == 0 ? 1 : value == 1 ? 2 : -1); }

const R_MeasuredVariables* R_Proband::anamnesticVars() const {
  return F && F->isOK() ? F->getAnamnesticVars() : nullptr;
}

const R_MeasuredVariables* R_Proband::followedVars() const {
  return F && F->isOK() ? F->getFollowedVars() : nullptr;
}

int R_Proband::orderOf(const R_MeasuredVariables* vars, const char* name, const R_File* file) {
  if (!vars || !name) return -1;
  int index = file->getStatistics().getVarIndex(name);
  return index < 0 ? -1 : vars->getOrderOfIndex(index);
}

int R_Proband::getAnamnesticOrder(const char* name) const {
  int order = orderOf(anamnesticVars(), name, F);
  return order < anamnestic_count ? order : -1;
}

int R_Proband::getFollowedOrder(const char* name) const {
  int order = orderOf(followedVars(), name, F);
  return order < followed_count ? order : -1;
}

bool R_Proband::isValid(const R_MeasuredVariables* vars, int order, const R_Number& value) const {
  if (!isUsable(value)) return false;
  const R_Interval& interval = F->getVariable(vars->getIndex(order))->getInterval();
  return !interval.isDefined() || interval.contains(value);
}

// ---- Values ----

const R_Number& R_Proband::getAnamnesticNumber(int index) const {
  assert(index >= 0 && index < anamnestic_count);
  return values[index];
}

void R_Proband::getAnamnesticValue(R_Number& result, const char* name) const {
  int order = getAnamnesticOrder(name);
  result = order >= 0 ? values[order] : R_Number();
}

void R_Proband::setAnamnesticNumber(int index, const R_Number& value) {
  assert(index >= 0 && index < anamnestic_count);
  values[index] = isValid(anamnesticVars(), index, value) ? value : R_Number();
}

void R_Proband::setAnamnesticValue(const char* name, const R_Number& value) {
  int order = getAnamnesticOrder(name);
  if (order >= 0) setAnamnesticNumber(order, value);
}

R_ProbandRecord* R_Proband::visit(int index) const {
  assert(followed && index >= 0 && index < followed->getCount());
  return followed->get(index);
}

R_Number R_Proband::getFollowedNumber(int rec_index, int var_index) const {
  return visit(rec_index)->getValue(var_index);
}

void R_Proband::getFollowedValue(int rec_index, const char* name, R_Number& result) const {
  int order = getFollowedOrder(name);
  result = order >= 0 ? getFollowedNumber(rec_index, order) : R_Number();
}

void R_Proband::setFollowedNumber(int rec_index, int var_index, const R_Number& value) {
  R_ProbandRecord* record = visit(rec_index);
  if (isValid(followedVars(), var_index, value))
    record->setValue(var_index, value);
  else
    record->clearValue(var_index);
}

void R_Proband::setFollowedValue(int rec_index, const char* name, const R_Number& value) {
  int order = getFollowedOrder(name);
  if (order >= 0) setFollowedNumber(rec_index, order, value);
}

// ---- Visits ----

int R_Proband::getVisitCount() const { return followed ? followed->getCount() : 0; }

const R_Number& R_Proband::getVisitAge(int index) const { return visit(index)->getAge(); }

const R_Date& R_Proband::getVisitDate(int index) const { return visit(index)->getDate(); }

const R_String& R_Proband::getVisitComment(int index) const { return visit(index)->getComment(); }

void R_Proband::setVisitComment(int rec_index, const char* text) {
  if (rec_index >= 0 && rec_index < getVisitCount()) visit(rec_index)->setComment(text);
}

void R_Proband::setVisitCommentNormalized(int rec_index, const char* text) {
  R_String normalized;
  normalized.setNormalized(text);
  setVisitComment(rec_index, normalized.get());
}

int R_Proband::findNearVisit(const R_Number& age) const {
  if (!age.isDefined()) return -1;
  for (int i = 0; i < getVisitCount(); ++i) {
    const R_Number& other = visit(i)->getAge();
    if (other.isDefined() && std::fabs(other.getValue() - age.getValue()) < kSameVisitYears) return i;
  }
  return -1;
}

int R_Proband::addVisit(const R_Number& age, const R_Date& date) {
  return addVisit(age, date, R_ProbandRecord::usualRoom);
}

int R_Proband::addVisit(const R_Number& age, const R_Date& date, int expected_values) {
  if (!followed) return -1;
  R_ProbandRecord* record = R_ProbandRecord::create(followed_count, expected_values > 0 ? expected_values : 1);
  record->setAgeDate(usableOrUndefined(age), date, dob);
  int near = findNearVisit(record->getAge());
  if (near >= 0 || getVisitCount() >= maxVisits) {
    delete record;
    return near;
  }
  int index = followed->add(record);
  if (index < 0) delete record;
  return index;
}

int R_Proband::setVisitAgeDate(int rec_index, const R_Number& age, const R_Date& date) {
  assert(rec_index >= 0 && rec_index < getVisitCount());
  R_ProbandRecord* record = followed->detach(rec_index);
  record->setAgeDate(usableOrUndefined(age), date, dob);
  int index = followed->add(record);
  if (index < 0) delete record;
  return index;
}

void R_Proband::removeVisit(int index) {
  assert(index >= 0 && index < getVisitCount());
  followed->remove(index);
}

void R_Proband::updateAges() {
  for (int i = 0; i < getVisitCount(); ++i) visit(i)->updateAge(dob);
}

// ---- Whole proband ----

void R_Proband::clear() {
  if (followed) followed->clear();
  for (int i = 0; i < anamnestic_count; ++i) values[i].setUndefined();
  sex.set(-1);
  dob.setUndefined();
  id.clear();
}

void R_Proband::setId(const char* text) { id.set(text); }

void R_Proband::setDob(const R_Date& date) {
  dob = date;
  updateAges();
}

void R_Proband::setDobText(const char* text) {
  dob.setFromText(text);
  updateAges();
}

bool R_Proband::copyFrom(const R_Proband& other) {
  if (&other == this) return isSexDefined();
  clear();
  setSex(other.getSex());
  id = other.id;
  dob = other.dob;
  copyAnamnestic(other);
  copyVisits(other);
  return isSexDefined();
}

void R_Proband::copyAnamnestic(const R_Proband& other) {
  const R_MeasuredVariables* other_vars = other.anamnesticVars();
  for (int i = 0; i < other.anamnestic_count; ++i)
    if (other.values[i].isDefined()) setAnamnesticValue(other_vars->getName(i), other.values[i]);
}

// Only defined values are carried, so visits that merge here combine.
void R_Proband::copyVisits(const R_Proband& other) {
  const R_MeasuredVariables* other_vars = other.followedVars();
  int* orders = new int[other.followed_count > 0 ? other.followed_count : 1];
  for (int j = 0; j < other.followed_count; ++j) orders[j] = getFollowedOrder(other_vars->getName(j));
  for (int i = 0; i < other.getVisitCount(); ++i) {
    const R_ProbandRecord* source = other.visit(i);
    int index = addVisit(source->getAge(), source->getDate());
    setVisitComment(index, source->getComment().get());
    for (int j = 0; index >= 0 && j < other.followed_count; ++j)
      if (orders[j] >= 0 && source->getValue(j).isDefined()) setFollowedNumber(index, orders[j], source->getValue(j));
  }
  delete[] orders;
}

// ---- XML form ----

bool R_Proband::loadXML(const char* text) {
  clear();
  if (!text || !*text) return false;
  R_XMLParser parser(R_XMLParser::captureSize, nullptr);
  setTagCount(kTagCount);
  for (int i = 0; i < kTagCount; ++i) setTag(i, kTags[i]);
  open_record = -1;
  bool result = parser.parseString(text, this);
  clearTags();
  if (open_record >= 0) {
    parser.report("unfinished record");
    result = false;
  }
  if (!isSexDefined()) {
    parser.report("sex not defined");
    result = false;
  }
  open_record = -1;
  if (!result) clear();
  return result;
}

const char* R_Proband::receive(int code, const char* text, const R_XMLParameters& parameters) {
  typedef const char* (R_Proband::*Handler)(const char*, const R_XMLParameters&);
  static const Handler kHandlers[kHandlerCount] = {
      &R_Proband::receiveInfo,      &R_Proband::receiveValue,       &R_Proband::receiveRecordBegin,
      &R_Proband::receiveRecordEnd, &R_Proband::receiveRecordValue,
  };
  if (code < 0 || code >= kTagCount) return "unexpected code in proband data";
  return (this->*kHandlers[code % kHandlerCount])(text, parameters);
}

// A sex given twice counts as female when either says so.
const char* R_Proband::receiveInfo(const char*, const R_XMLParameters& parameters) {
  setInfoTexts(parameters.getParameterInElement("id", "info"), parameters.getParameterInElement("dob", "info"));
  if (parameters.isParameterValueInElement("sex", "info", "male")) sex.set(1);
  if (parameters.isParameterValueInElement("sex", "info", "female")) sex.set(2);
  return nullptr;
}

// Only the text of the date is taken: visits read before a late `info`
// keep the ages they got.
void R_Proband::setInfoTexts(const char* id_text, const char* dob_text) {
  if (dob_text) dob.setFromText(dob_text);
  if (id_text) id.setNormalized(id_text);
}

// The variable's name comes back as the attribute holds it when it has no
// whitespace to normalise, which is the rule; else normalised in `spill`.
// Null when there is no value to read.
const char* R_Proband::readValue(const char* text, const R_XMLParameters& parameters, const char* element,
                                 R_Number* value, R_String* spill) {
  const char* var = parameters.getParameterInElement("var", element);
  if (!text || !*text || !var) return nullptr;
  value->setFromText(text);
  for (const char* p = var; *p; ++p) {
    if (R_isBlank(static_cast<unsigned char>(*p))) {
      spill->setNormalized(var);
      return spill->get();
    }
  }
  return var;
}

const char* R_Proband::receiveValue(const char* text, const R_XMLParameters& parameters) {
  R_Number value;
  R_String spill;
  const char* name = readValue(text, parameters, "val", &value, &spill);
  if (name) setAnamnesticValue(name, value);
  return nullptr;
}

const char* R_Proband::receiveRecordBegin(const char*, const R_XMLParameters& parameters) {
  if (open_record >= 0) return "unfinished reading record";
  if (!addVisitFromTexts(parameters.getParameterInElement("age", "record"),
                         parameters.getParameterInElement("date", "record"),
                         parameters.getParameterInElement("comment", "record"), R_ProbandRecord::usualRoom,
                         &open_record))
    return "record must have age or date";
  return nullptr;
}

bool R_Proband::addVisitFromTexts(const char* age_text, const char* date_text, const char* comment,
                                  int expected_values, int* index) {
  R_Number age;
  R_Date date;
  if (age_text) age.parse(age_text);
  if (date_text) date.setFromText(date_text);
  if (!age.isDefined() && !date.isDefined()) return false;
  *index = addVisit(age, date, expected_values);
  setVisitCommentNormalized(*index, comment);
  return true;
}

const char* R_Proband::receiveRecordEnd(const char*, const R_XMLParameters&) {
  open_record = -1;
  return nullptr;
}

const char* R_Proband::receiveRecordValue(const char* text, const R_XMLParameters& parameters) {
  if (open_record < 0) return nullptr;
  R_Number value;
  R_String spill;
  const char* name = readValue(text, parameters, "val", &value, &spill);
  if (name) setFollowedValue(open_record, name, value);
  return nullptr;
}

void R_Proband::saveXML(R_XMLTextOutput& output) const {
  saveXMLInfo(output);
  output.openTag("data");
  output.endOpenTag();
  const R_MeasuredVariables* vars = anamnesticVars();
  for (int i = 0; i < anamnestic_count; ++i)
    if (values[i].isDefined()) writeValue(output, vars->getName(i), values[i]);
  for (int i = 0; i < getVisitCount(); ++i) saveXMLVisit(output, *visit(i));
  output.closeTag("data");
}

void R_Proband::saveXMLInfo(R_XMLTextOutput& output) const {
  output.openTag("info");
  if (!id.isEmpty()) output.writeAttribute("id", id.get());
  writeDateAttribute(output, "dob", dob);
  if (isSexDefined()) output.writeAttribute("sex", sex.get() == 1 ? "male" : "female");
  output.endEmptyTag();
}

// A visit is written with an end tag even when it holds no value: the
// reader opens visits at the start tag, and a standalone `record` would be
// lost.
void R_Proband::saveXMLVisit(R_XMLTextOutput& output, const R_ProbandRecord& record) const {
  output.openTag("record");
  writeDateAttribute(output, "date", record.getDate());
  if (record.getAge().isDefined()) output.writeAttribute("age", record.getAge());
  if (!record.getComment().isEmpty()) output.writeAttribute("comment", record.getComment().get());
  output.endOpenTag();
  const R_MeasuredVariables* vars = followedVars();
  for (int j = 0; j < followed_count; ++j)
    if (record.getValue(j).isDefined()) writeValue(output, vars->getName(j), record.getValue(j));
  output.closeTag("record");
}

// ---- Binary form ----

void R_Proband::load(R_InputStream& stream, bool* ok) {
  clear();
  if (!*ok) return;
  if (!stream.checkType(R_TypeProband)) {
    *ok = false;
    return;
  }
  id.load(stream, ok);
  dob.load(stream, ok);
  sex.load(stream, ok);
  if (!isSexDefined()) sex.set(-1);
  loadAnamnestic(stream, ok);
  loadVisits(stream, ok);
  // A number cut short inside its eight bytes shows only in the stream.
  if (!stream.isOK()) *ok = false;
}

// The slot order of this file for each stored name, -1 where it has none.
void R_Proband::resolveNames(const R_ProbandNameTable& names, const R_MeasuredVariables* vars,
                             SlotOrders& orders) const {
  orders.resize(names.getCount());
  for (int i = 0; i < names.getCount(); ++i) orders[i] = orderOf(vars, names.getName(i), F);
}

// An undefined stored value is passed over, as an absent `val` is in the XML
// form: when two stored visits merge, the later one adds to the earlier one.
void R_Proband::loadAnamnestic(R_InputStream& stream, bool* ok) {
  R_ProbandNameTable names(stream, ok);
  SlotOrders orders;
  resolveNames(names, anamnesticVars(), orders);
  for (int i = 0; *ok && i < names.getCount(); ++i) {
    R_Number value(stream, ok);
    if (*ok && stream.isOK() && orders[i] >= 0 && orders[i] < anamnestic_count && value.isDefined())
      setAnamnesticNumber(orders[i], value);
  }
}

void R_Proband::loadVisits(R_InputStream& stream, bool* ok) {
  R_Integer count(stream, ok);
  R_ProbandNameTable names(stream, ok);
  SlotOrders orders;
  resolveNames(names, followedVars(), orders);
  StoredValues read;
  read.resize(orders.size());
  for (int i = 0; *ok && i < count.get(); ++i) loadVisit(stream, ok, orders, read);
}

// The values are read before the visit is made, so that its block gets
// room for just the defined ones. A value that could not be read is
// undefined, and the visit is made as far as it was read.
void R_Proband::loadVisit(R_InputStream& stream, bool* ok, const SlotOrders& orders, StoredValues& read) {
  R_Number age(stream, ok);
  R_Date date(stream, ok);
  R_String comment(stream, ok);
  if (!*ok || !stream.isOK()) return;
  int count = 0, defined = 0;
  for (; *ok && count < read.size(); ++count) {
    read[count].load(stream, ok);
    if (read[count].isDefined()) ++defined;
  }
  int index = addVisit(age, date, defined);
  setVisitComment(index, comment.get());
  for (int j = 0; index >= 0 && j < count; ++j)
    if (orders[j] >= 0 && orders[j] < followed_count && read[j].isDefined()) setFollowedNumber(index, orders[j], read[j]);
}

void R_Proband::saveNames(R_OutputStream& stream, const R_MeasuredVariables* vars, int count) {
  R_Integer(count).save(stream);
  for (int i = 0; i < count; ++i) R_String(vars->getName(i)).save(stream);
}

void R_Proband::save(R_OutputStream& stream) const {
  stream.put(R_TypeProband);
  id.save(stream);
  dob.save(stream);
  sex.save(stream);
  saveNames(stream, anamnesticVars(), anamnestic_count);
  for (int i = 0; i < anamnestic_count; ++i) values[i].save(stream);
  R_Integer(getVisitCount()).save(stream);
  saveNames(stream, followedVars(), followed_count);
  for (int i = 0; i < getVisitCount(); ++i) {
    const R_ProbandRecord* record = visit(i);
    record->getAge().save(stream);
    record->getDate().save(stream);
    record->getComment().save(stream);
    for (int j = 0; j < followed_count; ++j) record->getValue(j).save(stream);
  }
}

// ---- Blob forms ----

bool R_Proband::canSave() const {
  if (!isSexDefined()) return false;
  const R_MeasuredVariables* anamnestic = anamnesticVars();
  const R_MeasuredVariables* followed_vars = followedVars();
  if (!values && anamnestic && anamnestic->getCount() > 0) return false;
  return followed || !followed_vars || followed_vars->getCount() == 0;
}

bool R_Proband::saveToBuffer(unsigned char* begin, int* bytes, int maxsize) const {
  *bytes = 0;
  if (!canSave()) return false;
  R_BufferOutputStream stream(begin, maxsize);
  save(stream);
  if (!stream.isOK()) return false;
  *bytes = stream.getCount();
  return true;
}

bool R_Proband::saveToText(char* begin, int* bytes, int maxsize) const {
  assert(maxsize > 0);
  *bytes = 0;
  begin[0] = 0;
  if (!canSave()) return false;
  R_XMLTextOutputBuffer output(begin, maxsize);
  output.openTag("proband");
  output.endOpenTag();
  saveXML(output);
  output.closeTag("proband");
  *bytes = output.getCount();
  return output.isOK();
}

bool R_Proband::loadFromBuffer(const unsigned char* begin, int size) {
  R_BufferInputStream stream(begin, size);
  bool ok = true;
  load(stream, &ok);
  if (!ok) clear();
  return ok;
}
