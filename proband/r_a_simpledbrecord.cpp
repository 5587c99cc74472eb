#include "proband/r_a_simpledbrecord.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"
#include "knowledge/r_file.h"
#include "knowledge/r_measuredvariables.h"
#include "proband/r_a_querytext.h"
#include "proband/r_proband.h"
#include "xml/r_xmlparser.h"
#include "xml/r_xmltextoutput.h"

namespace {

// The paths of a record's content, and of a record file, which has the
// `p_record` element around it. The codes are the same in both.
const char* const kRecordTags[] = {"p_name", "p_comment", "proband"};
const char* const kFileTags[] = {"p_record:p_name", "p_record:p_comment", "p_record:proband"};
const int kTagCount = sizeof(kRecordTags) / sizeof(kRecordTags[0]);
static_assert(kTagCount == sizeof(kFileTags) / sizeof(kFileTags[0]), "both tables carry the same codes");

// A `proband` element this short holds no proband: it is empty or a line
// break.
const int kLongestEmptyProband = 2;

}  // namespace

R_A_SimpleDBRecord::R_A_SimpleDBRecord(const R_File* file) : proband(new R_Proband(file)), selected(false) {}

R_A_SimpleDBRecord::~R_A_SimpleDBRecord() { delete proband; }

const R_String& R_A_SimpleDBRecord::getText(int typ) const {
  assert(typ == 0 || typ == 1);
  return texts[typ];
}

void R_A_SimpleDBRecord::setText(int typ, const char* text) {
  assert(typ == 0 || typ == 1);
  texts[typ].set(text);
}

void R_A_SimpleDBRecord::setTextNormalized(int typ, const char* text) {
  assert(typ == 0 || typ == 1);
  texts[typ].setNormalized(text);
}

bool R_A_SimpleDBRecord::matches(const char* text) const {
  return texts[0].contains(text) || texts[1].contains(text);
}

bool R_A_SimpleDBRecord::operator<(const R_A_SimpleDBRecord& other) const {
  return R_stricmp(texts[0].get(), other.texts[0].get()) < 0;
}

bool R_A_SimpleDBRecord::copyProband(const R_Proband& other) { return proband->copyFrom(other); }

// ---- XML form ----

bool R_A_SimpleDBRecord::parse(const char* source, bool from_file, R_XMLErrorReporter* reporter) {
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  const char* const* tags = from_file ? kFileTags : kRecordTags;
  setTagCount(kTagCount);
  for (int i = 0; i < kTagCount; ++i) setTag(i, tags[i]);
  bool result = from_file ? parser.parseFile(source, this) : parser.parseString(source, this);
  clearTags();
  if (!result && !from_file) proband->clear();
  if (!result)
    parser.report(from_file ? "Error while loading external file record." : "Error while processing database record.");
  return result;
}

bool R_A_SimpleDBRecord::loadXML(const char* textXML, R_XMLErrorReporter* reporter) {
  return parse(textXML ? textXML : "", false, reporter);
}

bool R_A_SimpleDBRecord::loadFile(const char* path, R_XMLErrorReporter* reporter) {
  return parse(path ? path : "", true, reporter);
}

const char* R_A_SimpleDBRecord::receive(int code, const char* text, const R_XMLParameters&) {
  if (code == 0 || code == 1) {
    setTextNormalized(code, text);
    return nullptr;
  }
  if (code != 2) return "unrecognized code in DB proband record";
  if (!text || strlen(text) <= static_cast<size_t>(kLongestEmptyProband)) {
    proband->clear();
    return nullptr;
  }
  return proband->loadXML(text) ? nullptr : "wrong proband data";
}

void R_A_SimpleDBRecord::writeText(R_XMLTextOutput& output, const char* tag, const R_String& text) {
  output.openTag(tag);
  if (text.isEmpty()) {
    output.endEmptyTag();
    return;
  }
  output.endOpenTag();
  output.writeString(text);
  output.closeTag(tag);
}

void R_A_SimpleDBRecord::saveXML(R_XMLTextOutput& output) const {
  output.openTag("p_record");
  output.endOpenTag();
  writeText(output, "p_name", texts[0]);
  writeText(output, "p_comment", texts[1]);
  output.openTag("proband");
  if (proband->isSexDefined()) {
    output.endOpenTag();
    proband->saveXML(output);
    output.closeTag("proband");
  } else {
    // Without content, so that it reads back as an empty proband.
    output.endEmptyTag();
  }
  output.closeTag("p_record");
}

// ---- Binary form ----

void R_A_SimpleDBRecord::load(R_InputStream& stream, bool* ok) {
  if (!*ok) return;
  if (!stream.checkType(R_TypeSimpleDBRecord)) {
    *ok = false;
    return;
  }
  texts[0].load(stream, ok);
  texts[1].load(stream, ok);
  proband->load(stream, ok);
}

void R_A_SimpleDBRecord::save(R_OutputStream& stream) const {
  stream.put(R_TypeSimpleDBRecord);
  texts[0].save(stream);
  texts[1].save(stream);
  proband->save(stream);
}

// ---- Query ----

namespace {

// Slots of a subset that both the file and the proband have.
int sharedCount(const R_MeasuredVariables* vars, int proband_count) {
  if (!vars) return 0;
  return vars->getCount() < proband_count ? vars->getCount() : proband_count;
}

}  // namespace

void R_A_SimpleDBRecord::addAnamnestic(R_A_QueryText& query, const R_File& file) const {
  const R_MeasuredVariables* vars = file.getAnamnesticVars();
  int count = sharedCount(vars, proband->getAnamnesticCount());
  for (int i = 0; i < count; ++i)
    if (proband->getAnamnesticNumber(i).isDefined()) query.addNumber(vars->getName(i), proband->getAnamnesticNumber(i));
}

void R_A_SimpleDBRecord::addVisits(R_A_QueryText& query, const R_File& file) const {
  const R_MeasuredVariables* vars = file.getFollowedVars();
  int count = sharedCount(vars, proband->getFollowedCount());
  for (int v = 0; v < proband->getVisitCount(); ++v) {
    if (proband->getVisitAge(v).isDefined()) query.addNumber("_AGE", proband->getVisitAge(v));
    if (proband->getVisitDate(v).isDefined()) query.addDate("_DATE", proband->getVisitDate(v));
    for (int j = 0; j < count; ++j)
      if (proband->getFollowedNumber(v, j).isDefined()) query.addNumber(vars->getName(j), proband->getFollowedNumber(v, j));
  }
}

bool R_A_SimpleDBRecord::makeQuery(const char* target, char* buffer, int size, const R_File* file) const {
  R_A_QueryText query(buffer, size);
  if (!proband->isSexDefined()) return false;
  if (target) query.setPage("/temp");
  query.add("_p_name", texts[0].get());
  if (proband->getDob().isDefined()) query.addDate("_p_dob", proband->getDob());
  query.add("_p_sex", proband->getSex() == 0 ? "M" : "F");
  query.add("_p_cmt", texts[1].get());
  if (target) query.add("_page", target);
  if (!file) file = proband->getFile();
  if (file && file->isOK()) {
    addAnamnestic(query, *file);
    addVisits(query, *file);
  }
  return true;
}
