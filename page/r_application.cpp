#include "page/r_application.h"

#include <string>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "core/r_number.h"
#include "knowledge/r_file.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_pagecommands.h"
#include "page/r_a_pagecontext.h"
#include "page/r_a_parameters.h"
#include "page/r_a_parser.h"
#include "page/r_a_setup.h"
#include "proband/r_a_database.h"
#include "proband/r_proband.h"

namespace {
typedef R_A_Parameters Par;

const int maxBlockDepth = 16;
const int defaultWindowSize = 50;
// Names and comments from a form are cut to this many bytes.
const int maxFormText = 2048;

// A page name that cannot leave the page directory: at least one byte, and
// only ASCII letters, digits, '_', '-' and '.'. ".." passes, but with no
// '/' it names no other directory.
bool isSafePageName(const char* name) {
  if (!name || !*name) return false;
  for (const char* p = name; *p; ++p) {
    unsigned char c = static_cast<unsigned char>(*p);
    if (!R_isAlnum(c) && c != '_' && c != '-' && c != '.') return false;
  }
  return true;
}

// 0 male, 1 female, 2 undefined, from the first byte of _p_sex.
int readSex(const R_A_Parameters& parameters) {
  if (!parameters.isDefined(Par::parProbandSex)) return 2;
  char first = R_toUpper(parameters.get(Par::parProbandSex)[0]);
  return first == 'M' ? 0 : first == 'F' ? 1 : 2;
}

R_Number readNumber(const R_A_Parameters& parameters, int index) {
  R_Number number;
  if (parameters.isDefined(index)) number.parse(parameters.get(index));
  return number;
}

R_Date readDate(const R_A_Parameters& parameters, int index) {
  R_Date date;
  if (parameters.isDefined(index)) date.parse(parameters.get(index));
  return date;
}
}  // namespace

R_Application::R_Application(R_A_Database& database, const R_File& file)
    : context(new R_A_PageContext(database, file)) {}

R_Application::~R_Application() { delete context; }

void R_Application::setDateFormat(const char* format) { context->dateFormat = format; }
void R_Application::setDefaultPage(const char* name) { context->defaultPage = name; }
void R_Application::setImageBase(const char* url) { context->imageBase = url; }

void R_Application::setPages(const char* baseUrl, const char* directory, const char* extension) {
  context->pageBase = baseUrl;
  context->pageDirectory = directory;
  context->pageExtension = extension;
}

void R_Application::setGraphs(const char* directory, const char* url) {
  context->graphDirectory = directory;
  context->graphUrl = url;
}

void R_Application::setUserStyle(const char* text) { context->userStyle = text; }

// ---- the walker ------------------------------------------------------------

void R_Application::walk(const R_A_Parameters& parameters, R_A_PageSink& sink, R_A_Parser& parser,
                         const R_A_Setup& setup, int depth) {
  if (depth > maxBlockDepth) {
    sink.error(1, nullptr);
    return;
  }
  if (!parser.isValid()) {
    sink.error(2, nullptr);
    return;
  }
  R_A_PageContext& ctx = *context;
  R_A_PageCommands::Level level{*this, ctx, parameters, sink, parser, setup, depth, R_Number(), 0, 0,
                                ctx.probandIndex, ctx.measureIndex, ctx.textIndex};

  if (ctx.checkContext(R_A_PageContext::maskProband)) {
    ctx.current = ctx.database.getProband(ctx.probandIndex);
  } else {
    ctx.current = ctx.temporaryInUse ? &ctx.temporary : nullptr;
  }
  R_Date today = parameters.getToday();
  if (ctx.current && ctx.current->getDob().isDefined() && today.isDefined()) {
    today.getAgeFrom(level.age, ctx.current->getDob());
  }

  int count = ctx.database.getN();
  level.windowSize = setup.getInt(R_A_Setup::intProbandsPerPage, defaultWindowSize);
  if (parameters.isDefined(Par::parTop)) {
    level.top = parameters.getInt(Par::parTop);
    if (level.top < 0) level.top = 0;
    // May go below zero when the database is smaller than a window; the
    // window loop passes over the negative indices. A size below zero
    // leaves the top alone rather than overflow.
    long long last = static_cast<long long>(count) - level.windowSize;
    if (level.top > last) level.top = static_cast<int>(last);
  }

  char token[R_A_Parser::tokenSize];
  parser.rewind();
  while (parser.isMore()) {
    char c = parser.nextChar();
    if (c != '$') {
      sink.putChar(c);
      continue;
    }
    parser.readToken(token);
    if (token[0] == '$') {
      sink.putChar('$');
    } else if (!R_A_PageCommands::run(token, level)) {
      sink.error(4, token);
    }
  }

  ctx.probandIndex = level.savedProband;
  ctx.measureIndex = level.savedMeasure;
  ctx.textIndex = level.savedText;
}

// ---- a request ---------------------------------------------------------------

bool R_Application::process(const R_A_Parameters& parameters, R_A_PageSink& sink, const R_A_Setup& setup) {
  R_A_PageContext& ctx = *context;
  ctx.resetIndices();
  ctx.current = nullptr;
  bool errorPage = parameters.isDefined(Par::parErrorPage) && isSafePageName(parameters.get(Par::parErrorPage));

  bool commandDone = true;
  if (parameters.isPage("/temp")) {
    ctx.temporaryInUse = true;
    fillTemporary(parameters);
  } else if (parameters.isPage("/xml")) {
    ctx.temporaryInUse = true;
    fillTemporaryXML(parameters);
  } else {
    ctx.temporaryInUse = false;
    commandDone = runCommand(parameters);
  }

  if (parameters.isDefined(Par::parTextId)) ctx.textIndex = ctx.F.findText(parameters.get(Par::parTextId));
  search(parameters);
  const char* page = choosePage(parameters, commandDone || !errorPage);
  if (!page) return false;
  return showPage(page, parameters, sink, setup);
}

void R_Application::search(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  ctx.searchedNotFound = false;
  if (!parameters.isDefined(Par::parSearch)) {
    ctx.database.select(nullptr);
    return;
  }
  ctx.database.select(parameters.get(Par::parSearch));
  if (ctx.database.getSelectedCount() == 0) {
    // A search that finds nobody shows everybody, and the page may say so.
    ctx.database.select(nullptr);
    ctx.searchedNotFound = true;
  }
}

const char* R_Application::choosePage(const R_A_Parameters& parameters, bool commandDone) const {
  if (!commandDone) return parameters.get(Par::parErrorPage);
  if (parameters.isDefined(Par::parPage) && isSafePageName(parameters.get(Par::parPage))) {
    return parameters.get(Par::parPage);
  }
  return context->defaultPage;
}

bool R_Application::showPage(const char* page, const R_A_Parameters& parameters, R_A_PageSink& sink,
                             const R_A_Setup& setup) {
  const R_A_PageContext& ctx = *context;
  std::string path = ctx.pageDirectory ? ctx.pageDirectory : "";
  path += page;
  if (ctx.pageExtension) path += ctx.pageExtension;
  R_A_Parser parser(path.c_str());
  if (!parser.isValid()) {
    sink.error(3, page);
    return false;
  }
  sink.beginPage();
  walk(parameters, sink, parser, setup, 0);
  sink.endPage();
  return true;
}

// ---- the command step ----------------------------------------------------------

bool R_Application::runCommand(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  // Any request with the right token moves it on, whatever its command, so
  // a form sent twice finds it moved and falls to show.
  bool valid = parameters.isInt(Par::parOrder) && ctx.order.check(parameters.getInt(Par::parOrder));
  if (valid) ctx.order.advance();
  if (valid && parameters.isCommand("new")) {
    create(parameters);
  } else if (valid && parameters.isCommand("del")) {
    remove(parameters);
  } else if (valid && parameters.isCommand("set")) {
    change(parameters);
  } else {
    show(parameters);
  }
  return true;
}

int R_Application::findProband(const R_A_Parameters& parameters) {
  if (!parameters.isDefined(Par::parProbandId)) return -1;
  return context->database.findRecord(parameters.get(Par::parProbandId), parameters.getClient());
}

void R_Application::show(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  ctx.probandIndex = findProband(parameters);
  if (ctx.probandIndex >= 0 && parameters.isDefined(Par::parVisitId)) {
    ctx.measureIndex = parameters.getInt(Par::parVisitId);
  }
}

void R_Application::remove(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  if (!parameters.isDefined(Par::parProbandId)) return;
  ctx.probandIndex = findProband(parameters);
  if (parameters.isInt(Par::parVisitId)) {
    R_Proband* proband = ctx.database.getProband(ctx.probandIndex);
    int visit = parameters.getInt(Par::parVisitId);
    if (proband && visit >= 0 && visit < proband->getVisitCount()) {
      proband->removeVisit(visit);
      ctx.database.save(ctx.probandIndex);
    }
    ctx.measureIndex = -1;
    return;
  }
  if (ctx.probandIndex >= 0 && ctx.probandIndex < ctx.database.getN()) ctx.database.removeRecord(ctx.probandIndex);
  ctx.probandIndex = -1;
  ctx.measureIndex = -1;
}

// Both texts are written whether the request gives them or not (a missing
// one empties the record's text): a form that changes a record carries its
// name and comment along.
void R_Application::setNames(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  char text[maxFormText + 1];
  parameters.copyValue(Par::parProbandComment, text, maxFormText);
  ctx.database.setText(ctx.probandIndex, 1, text);
  parameters.copyValue(Par::parProbandName, text, maxFormText);
  // A new name moves the record, and the index follows it.
  ctx.database.setText(ctx.probandIndex, 0, text);
}

void R_Application::create(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  ctx.probandIndex = findProband(parameters);
  int sex = readSex(parameters);
  if (ctx.probandIndex < 0 && sex != 2) ctx.probandIndex = ctx.database.addRecord(sex);
  if (ctx.probandIndex < 0) return;
  setNames(parameters);
  R_Proband* proband = ctx.database.getProband(ctx.probandIndex);
  if (!proband) return;
  if (parameters.isDefined(Par::parProbandDob)) proband->setDobText(parameters.get(Par::parProbandDob));
  R_Date date = readDate(parameters, Par::parVisitDate);
  R_Number age = readNumber(parameters, Par::parVisitAge);
  if (!parameters.isDefined(Par::parVisitId) && (date.isDefined() || age.isDefined())) {
    ctx.measureIndex = proband->addVisit(age, date);
  }
  if (ctx.measureIndex >= 0 && parameters.isDefined(Par::parVisitComment)) {
    char comment[maxFormText + 1];
    parameters.copyValue(Par::parVisitComment, comment, maxFormText);
    proband->setVisitComment(ctx.measureIndex, comment);
  }
  applyValues(parameters, *proband);
  ctx.database.save(ctx.probandIndex);
}

void R_Application::change(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  ctx.probandIndex = findProband(parameters);
  if (ctx.probandIndex < 0) return;
  setNames(parameters);
  R_Proband* proband = ctx.database.getProband(ctx.probandIndex);
  if (!proband) return;
  int sex = readSex(parameters);
  if (sex != 2) proband->setSex(sex);
  if (parameters.isDefined(Par::parProbandDob)) proband->setDobText(parameters.get(Par::parProbandDob));
  if (parameters.isDefined(Par::parVisitId)) {
    int visit = parameters.getInt(Par::parVisitId);
    // A visit that is not there is taken as no visit.
    ctx.measureIndex = visit < proband->getVisitCount() ? visit : -1;
  }
  if (ctx.measureIndex >= 0) {
    int visit = ctx.measureIndex;
    if (parameters.isDefined(Par::parVisitComment)) {
      proband->setVisitComment(visit, parameters.get(Par::parVisitComment));
    }
    R_Number age = proband->getVisitAge(visit);
    R_Date date = proband->getVisitDate(visit);
    if (parameters.isDefined(Par::parVisitDate)) date = readDate(parameters, Par::parVisitDate);
    if (parameters.isDefined(Par::parVisitAge)) age = readNumber(parameters, Par::parVisitAge);
    if (age.isDefined() || date.isDefined()) ctx.measureIndex = proband->setVisitAgeDate(visit, age, date);
  }
  applyValues(parameters, *proband);
  ctx.database.save(ctx.probandIndex);
}

void R_Application::applyValues(const R_A_Parameters& parameters, R_Proband& proband) {
  int visit = context->measureIndex;
  for (int i = 0; i < parameters.getVarCount(); ++i) {
    const char* name = parameters.getVarName(i);
    R_Number number(parameters.getVarValue(i));
    if (proband.isAnamnesticName(name)) {
      proband.setAnamnesticValue(name, number);
    } else if (visit >= 0 && visit < proband.getVisitCount() && proband.isFollowedName(name)) {
      proband.setFollowedValue(visit, name, number);
    }
  }
}

// ---- the temporary proband -----------------------------------------------------

void R_Application::fillTemporary(const R_A_Parameters& parameters) {
  R_A_PageContext& ctx = *context;
  R_Proband& proband = ctx.temporary;
  proband.clear();
  ctx.temporaryName = parameters.isDefined(Par::parProbandName) ? parameters.get(Par::parProbandName) : "";
  ctx.temporaryComment = parameters.isDefined(Par::parProbandComment) ? parameters.get(Par::parProbandComment) : "";
  int sex = readSex(parameters);
  if (sex == 2) return;
  proband.setSex(sex);
  if (parameters.isDefined(Par::parProbandDob)) proband.setDobText(parameters.get(Par::parProbandDob));

  // A followed value opens a visit with the _AGE and _DATE before it; the
  // values after it belong to that visit until the next _AGE or _DATE.
  R_Number age;
  R_Date date;
  int visit = -1;
  for (int i = 0; i < parameters.getVarCount(); ++i) {
    const char* name = parameters.getVarName(i);
    const char* text = parameters.getVarValue(i);
    if (R_stricmp(name, "_DATE") == 0) {
      visit = -1;
      date.setUndefined();
      date.parse(text);
    } else if (R_stricmp(name, "_AGE") == 0) {
      visit = -1;
      age.setUndefined();
      age.parse(text);
    } else if (proband.isAnamnesticName(name)) {
      proband.setAnamnesticValue(name, R_Number(text));
    } else if (proband.isFollowedName(name)) {
      if (visit < 0 && ((date.isDefined() && proband.getDob().isDefined()) || age.isDefined())) {
        visit = proband.addVisit(age, date);
        age.setUndefined();
        date.setUndefined();
      }
      if (visit >= 0) proband.setFollowedValue(visit, name, R_Number(text));
    }
  }
}

void R_Application::fillTemporaryXML(const R_A_Parameters& parameters) {
  R_Proband& proband = context->temporary;
  proband.clear();
  for (int i = 0; i < parameters.getVarCount(); ++i) {
    if (R_stricmp(parameters.getVarName(i), "_XML") == 0 && proband.loadXML(parameters.getVarValue(i))) return;
  }
}
