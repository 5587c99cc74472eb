#include "proband/r_importfromtarn2.h"

#include "proband/r_importlist.h"
#include "proband/r_proband.h"
#include "xml/r_xmlparser.h"

R_ImportFromTarn2::R_ImportFromTarn2(const R_File* F, R_ImportList* list)
    : proband(new R_Proband(F)), target(list) {}

R_ImportFromTarn2::~R_ImportFromTarn2() { delete proband; }

namespace {
const char* const kTagPaths[] = {
    "import_list:import_info",
    "<import_list:import_proband",
    "import_list:import_proband:name",
    "import_list:import_proband:diagnosis",
    "import_list:import_proband:address",
    "import_list:import_proband:comment",
    "import_list:import_proband:proband",
};
const int kTagCount = sizeof(kTagPaths) / sizeof(kTagPaths[0]);
static_assert(kTagCount == 7, "receive() has one case for each tag");
}  // namespace

bool R_ImportFromTarn2::load(const char* filename, R_XMLErrorReporter* reporter) {
  R_XMLParser parser(R_XMLParser::captureSize, reporter);
  setTagCount(kTagCount);
  for (int i = 0; i < kTagCount; i++) setTag(i, kTagPaths[i]);
  bool result = filename != nullptr && parser.parseFile(filename, this);
  clearTags();
  return result;
}

const char* R_ImportFromTarn2::receive(int code, const char* text, const R_XMLParameters&) {
  switch (code) {
    case 0: return receiveInfo(text);
    case 1: return receiveEntryStart(text);
    case 2: return receiveName(text);
    case 3: return receiveDiagnosis(text);
    case 4: return receiveAddress(text);
    case 5: return receiveComment(text);
    case 6: return receiveProband(text);
    default: return "unrecognized code in import_list";
  }
}

const char* R_ImportFromTarn2::receiveInfo(const char* text) {
  R_String normalized;
  normalized.setNormalized(text);
  if (!normalized.isEmpty()) target->setInfo(normalized.get());
  return nullptr;
}

// The texts of the entry before must not leak into one that lacks them.
const char* R_ImportFromTarn2::receiveEntryStart(const char*) {
  name.clear();
  diagnosis.clear();
  address.clear();
  comment.clear();
  return nullptr;
}

const char* R_ImportFromTarn2::receiveName(const char* text) {
  name.setNormalized(text);
  return nullptr;
}

const char* R_ImportFromTarn2::receiveDiagnosis(const char* text) {
  diagnosis.setNormalized(text);
  return nullptr;
}

const char* R_ImportFromTarn2::receiveAddress(const char* text) {
  address.setNormalized(text);
  return nullptr;
}

const char* R_ImportFromTarn2::receiveComment(const char* text) {
  comment.setNormalized(text);
  return nullptr;
}

// A damaged proband costs its entry only: the rest of the list is still
// worth offering.
const char* R_ImportFromTarn2::receiveProband(const char* text) {
  proband->clear();
  if (proband->loadXML(text)) target->add(*proband, name.get(), diagnosis.get(), address.get(), comment.get());
  return nullptr;
}
