#include "proband/r_a_simpledb.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/r_ascii.h"
#include "core/r_fileinputstream.h"
#include "core/r_integer.h"
#include "core/r_safefile.h"
#include "core/r_typecodes.h"
#include "proband/r_a_security.h"
#include "proband/r_a_simpledbplainreader.h"
#include "proband/r_proband.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutputstream.h"

namespace {

const int kRecordBaseSize = 256;
const char* const kRecordPath = "p_database:p_record";
}  // namespace

R_A_SimpleDB::R_A_SimpleDB(R_A_Security* security_policy, const R_File* file, const char* file_path, bool binary_form,
                           R_XMLErrorReporter* error_reporter)
    : R_A_Database(security_policy),
      records(kRecordBaseSize),
      path(file_path),
      binary(binary_form),
      read_whole(false),
      F(file),
      reporter(error_reporter) {
  open();
}

R_A_SimpleDB::~R_A_SimpleDB() {}

// ---- Reading ----

void R_A_SimpleDB::open() {
  FILE* probe = path.isEmpty() ? nullptr : fopen(path.get(), "r");
  if (!probe) return;
  fclose(probe);
  read_whole = binary ? loadBinary() : parseXML(path.get(), true);
}

// Records read from a file enter the table together: a stable sort of the
// arrivals gives the order that inserting them one after the other would
// give (equal names in order of arrival), in O(n log n) for a file in any
// order, and each then lands behind the last one in O(1).
//
// A file that the database saved is in order already, which one pass
// tells, and then the sort is skipped.
bool R_A_SimpleDB::admitArrivals() {
  auto precedes = [](const R_A_SimpleDBRecord* a, const R_A_SimpleDBRecord* b) { return *a < *b; };
  if (!std::is_sorted(arrivals.begin(), arrivals.end(), precedes))
    std::stable_sort(arrivals.begin(), arrivals.end(), precedes);
  bool all_taken = true;
  for (R_A_SimpleDBRecord* item : arrivals) {
    if (records.addOrdered(item) >= 0) continue;
    delete item;
    all_taken = false;
  }
  arrivals.clear();
  return all_taken;
}

// The record in which the stream fails is kept with what it got, as an
// empty record at worst, which sorts first. Bytes after the last record
// are not read, but they make the file one that was not read whole.
bool R_A_SimpleDB::loadBinary() {
  R_FileInputStream* stream = new R_FileInputStream(path.get());
  bool ok = stream->isOK() && stream->checkType(R_TypeSimpleDB);
  R_Integer count(*stream, &ok);
  for (int i = 0; ok && i < count.get(); ++i) {
    R_A_SimpleDBRecord* item = new R_A_SimpleDBRecord(F);
    item->load(*stream, &ok);
    arrivals.push_back(item);
  }
  bool whole = ok && count.get() >= 0 && stream->readByte() < 0;
  delete stream;
  return admitArrivals() && whole;
}

// A file goes the plain road first; when that gives up, its records are gone
// and the general road reads the file from its start, with every message it
// gives.
bool R_A_SimpleDB::parseXML(const char* source, bool from_file) {
  bool all_taken = true;
  if (from_file && readPlain(source, &all_taken)) return all_taken;
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  setTagCount(1);
  setTag(0, kRecordPath);
  bool result = from_file ? parser.parseFile(source, this) : parser.parseString(source, this);
  clearTags();
  if (!admitArrivals()) result = false;
  if (!result) parser.report("Error while processing database.");
  return result;
}

bool R_A_SimpleDB::readPlain(const char* file_path, bool* all_taken) {
  R_A_SimpleDBPlainReader reader(F);
  if (!reader.read(file_path, &arrivals)) return false;
  *all_taken = admitArrivals();
  return true;
}

bool R_A_SimpleDB::loadText(const char* textXML) { return parseXML(textXML ? textXML : "", false); }

const char* R_A_SimpleDB::receive(int code, const char* text, const R_XMLParameters&) {
  if (code != 0) return "unrecognized code in database";
  R_A_SimpleDBRecord* item = new R_A_SimpleDBRecord(F);
  if (!item->loadXML(text, reporter)) {
    delete item;
    return "error while reading record";
  }
  arrivals.push_back(item);
  return nullptr;
}

// ---- Records ----

R_Proband* R_A_SimpleDB::getProband(int index) const {
  R_A_SimpleDBRecord* item = record(index);
  return item ? item->getProband() : nullptr;
}

const R_String& R_A_SimpleDB::getText(int index, int typ) const {
  assert(typ == 0 || typ == 1);
  R_A_SimpleDBRecord* item = record(index);
  return item ? item->getText(typ) : empty_text;
}

void R_A_SimpleDB::setText(int& index, int typ, const char* text) {
  if (index < 0 || index >= getN()) return;
  if (typ != 0) {
    record(index)->setText(typ, text);
    return;
  }
  R_A_SimpleDBRecord* moved = records.detach(index);
  moved->setText(0, text);
  index = records.addOrdered(moved);
  if (index < 0) delete moved;
}

int R_A_SimpleDB::addRecord(int sex) {
  R_A_SimpleDBRecord* item = new R_A_SimpleDBRecord(F);
  item->getProband()->setSex(sex);
  int index = records.addOrdered(item);
  if (index < 0) delete item;
  return index;
}

void R_A_SimpleDB::removeRecord(int index) {
  if (index < 0 || index >= getN()) return;
  records.remove(index);
  save(index);
}

void R_A_SimpleDB::removeBySelection(bool selected) {
  for (int i = getN() - 1; i >= 0; --i)
    if (record(i)->isSelected() == selected) records.remove(i);
}

// The records whose names equal `name` without regard to case form one run
// of the order; the exact match is searched in that run only.
int R_A_SimpleDB::findByName(const char* name) const {
  if (!name) name = "";
  int low = 0, high = getN();
  while (low < high) {
    int mid = low + (high - low) / 2;
    if (R_stricmp(record(mid)->getText(0).get(), name) < 0)
      low = mid + 1;
    else
      high = mid;
  }
  for (int i = low; i < getN() && R_stricmp(record(i)->getText(0).get(), name) == 0; ++i)
    if (strcmp(record(i)->getText(0).get(), name) == 0) return i;
  return -1;
}

// ---- Selection ----

void R_A_SimpleDB::select(const char* text) {
  for (int i = 0; i < getN(); ++i) {
    if (!text || record(i)->matches(text))
      record(i)->select();
    else
      record(i)->unselect();
  }
}

int R_A_SimpleDB::getSelectedCount() const {
  int count = 0;
  for (int i = 0; i < getN(); ++i)
    if (record(i)->isSelected()) ++count;
  return count;
}

bool R_A_SimpleDB::isSelected(int index) const {
  R_A_SimpleDBRecord* item = record(index);
  return item && item->isSelected();
}

void R_A_SimpleDB::setSelected(int index, bool value) {
  assert(index >= 0 && index < getN());
  if (value)
    record(index)->select();
  else
    record(index)->unselect();
}

// ---- Outside identifiers ----

bool R_A_SimpleDB::getRecordId(int index, int client, char* buffer) {
  if (!security || !security->isClientAllowed(client)) {
    buffer[0] = 0;
    return true;
  }
  return security->writeRecordId(index, buffer);
}

int R_A_SimpleDB::findRecord(const char* id, int client) {
  if (!security || !security->isClientAllowed(client)) return -1;
  int index = security->findRecordIndex(id);
  return index >= 0 && index < getN() ? index : -1;
}

// ---- Writing ----

bool R_A_SimpleDB::save(int) { return saveAs(path.get(), binary); }

bool R_A_SimpleDB::saveAs(const char* target, bool as_binary) const {
  if (!target || !*target) return false;
  R_SafeFile file(target);
  if (!file.isOK()) return false;
  saveTo(file, as_binary);
  return file.commit();
}

int R_A_SimpleDB::saveTo(R_OutputStream& stream, bool as_binary) const {
  if (as_binary) {
    stream.put(R_TypeSimpleDB);
    R_Integer(getN()).save(stream);
    for (int i = 0; i < getN(); ++i) record(i)->save(stream);
    return 0;
  }
  R_XMLTextOutputStream output(stream);
  output.writeDirective('?', "xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"");
  output.writeDirective('!', "DOCTYPE p_database SYSTEM \"proband.dtd\"");
  output.openTag("p_database");
  output.endOpenTag();
  for (int i = 0; i < getN(); ++i) record(i)->saveXML(output);
  output.closeTag("p_database");
  return output.getRoundedCount();
}
