#include "page/r_a_pagecommands.h"

#include <string.h>

#include <algorithm>
#include <vector>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "core/r_numbertext.h"
#include "core/r_string.h"
#include "document/r_supertext.h"
#include "knowledge/r_file.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_list.h"
#include "knowledge/r_variable.h"
#include "output/r_a_htmloutput.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_pagecontext.h"
#include "page/r_a_parser.h"
#include "page/r_a_setup.h"
#include "page/r_application.h"
#include "proband/r_a_database.h"
#include "proband/r_a_simpledbrecord.h"
#include "proband/r_proband.h"

namespace {
typedef R_A_PageCommands::Level Level;
typedef R_A_PageContext C;

const char* const programVersion = "v1.5r1";
const char* const defaultDateFormat = "%d.%m.%Y";
// Buffers of the commands that write stored forms of a proband.
const int xmlSize = 8192;
const int xmlEscapedSize = 24576;
const int querySize = 8192;
const int recordIdSize = 1024;

// Twin commands of anamnestic and followed variables share a handler; the
// row's argument tells which kind it serves.
const int anamnestic = 0;
const int followed = 1;

// ---- writing -------------------------------------------------------------

void put(Level& l, const char* text) { R_A_PageCommands::write(l.sink, text); }

void putNumber(Level& l, const R_Number& number) {
  char buffer[64];
  number.toText(buffer);
  put(l, buffer);
}

// Counts and visit numbers are whole numbers, never in exponent form.
void putWhole(Level& l, int value) {
  char buffer[R_numberTextSize];
  R_formatInt(value, buffer);
  put(l, buffer);
}

void putDate(Level& l, const R_Date& date) {
  const char* format = l.ctx.dateFormat ? l.ctx.dateFormat : l.setup.getStr(R_A_Setup::strDateFormat, defaultDateFormat);
  // Every format byte makes at most two page bytes (%Y, two bytes, makes four).
  std::vector<char> buffer(strlen(format) * 2 + 8);
  date.format(buffer.data(), format);
  put(l, buffer.data());
}

void walkBody(Level& l, R_A_Parser& body) { l.app.walk(l.parameters, l.sink, body, l.setup, l.depth + 1); }

// ---- context -------------------------------------------------------------

const R_Proband& probandOrEmpty(Level& l, R_Proband& empty) { return l.ctx.current ? *l.ctx.current : empty; }

const R_Variable* variable(Level& l, int kind) {
  return kind == anamnestic ? l.ctx.getAnamnesticVariable() : l.ctx.getFollowedVariable();
}

// The current proband's value of the current variable; for a followed one,
// in the current visit. Requires: the row's mask held.
R_Number value(Level& l, int kind) {
  const R_Proband& p = *l.ctx.current;
  if (kind == anamnestic) {
    int order = l.ctx.anamnesticOrder;
    return order < p.getAnamnesticCount() ? p.getAnamnesticNumber(order) : R_Number();
  }
  int order = l.ctx.followedOrder;
  return order < p.getFollowedCount() ? p.getFollowedNumber(l.ctx.measureIndex, order) : R_Number();
}

// The variable whose list item is current: the anamnestic one first.
const R_Variable* listVariable(Level& l) {
  if (l.ctx.checkContext(C::maskAnamnesticItem)) return l.ctx.getAnamnesticVariable();
  if (l.ctx.checkContext(C::maskFollowedItem)) return l.ctx.getFollowedVariable();
  return nullptr;
}

// The record text (0 name, 1 comment) as the page shows it: the temporary
// proband's own while it is in use.
const char* recordText(Level& l, int typ) {
  if (l.ctx.temporaryInUse) return typ == 0 ? l.ctx.temporaryName.get() : l.ctx.temporaryComment.get();
  if (!l.ctx.checkContext(C::maskProband)) return nullptr;
  return l.ctx.database.getText(l.ctx.probandIndex, typ).get();
}

// ---- proband -------------------------------------------------------------

void getProbandText(Level& l, int typ) { put(l, recordText(l, typ)); }
void getProbandDob(Level& l, int) { putDate(l, l.ctx.current->getDob()); }

void getProbandId(Level& l, int) {
  char buffer[recordIdSize] = {0};
  l.ctx.database.getRecordId(l.ctx.probandIndex, l.parameters.getClient(), buffer);
  buffer[recordIdSize - 1] = '\0';
  put(l, buffer);
}

void getProbandIndex(Level& l, int) { putNumber(l, R_Number(l.ctx.probandIndex + 1.0)); }
void getVisitCount(Level& l, int) { putWhole(l, l.ctx.current->getVisitCount()); }

void getProbandXML(Level& l, int escaped) {
  std::vector<char> xml(xmlSize);
  int bytes = 0;
  if (!l.ctx.current->saveToText(xml.data(), &bytes, xmlSize)) return;
  if (!escaped) {
    put(l, xml.data());
    return;
  }
  std::vector<char> encoded(xmlEscapedSize);
  encodeCGI(xml.data(), encoded.data(), xmlEscapedSize);
  put(l, encoded.data());
}

void getProbandCGI(Level& l, int) {
  R_A_SimpleDBRecord record(&l.ctx.F);
  record.copyProband(*l.ctx.current);
  record.setText(0, recordText(l, 0));
  record.setText(1, recordText(l, 1));
  std::vector<char> query(querySize);
  record.makeQuery(nullptr, query.data(), querySize, &l.ctx.F);
  put(l, query.data());
}

// The walker puts the proband index back when the level is left; the reset
// reaches that remembered value too, so it lasts to the end of the level.
void forceProbandReset(Level& l, int) {
  l.ctx.probandIndex = -1;
  l.savedProband = -1;
}

int ifDobDefined(Level& l, int) { return l.ctx.current->getDob().isDefined(); }
int ifSex(Level& l, int sex) { return l.ctx.current->getSex() == sex; }
int ifSelected(Level& l, int) { return l.ctx.database.isSelected(l.ctx.probandIndex); }
int ifProbandDefined(Level& l, int) { return l.ctx.checkContext(C::maskProband); }

// ---- measures ------------------------------------------------------------

void getMeasureDate(Level& l, int) { putDate(l, l.ctx.current->getVisitDate(l.ctx.measureIndex)); }
void getMeasureAge(Level& l, int) { putNumber(l, l.ctx.current->getVisitAge(l.ctx.measureIndex)); }

void getMeasureAgeRounded(Level& l, int) {
  const R_Variable* age = l.ctx.F.getAgeVariable();
  if (!age) return;
  R_String text;
  age->formatValue(l.ctx.current->getVisitAge(l.ctx.measureIndex), text, true);
  put(l, text.get());
}

void getMeasureComment(Level& l, int) { put(l, l.ctx.current->getVisitComment(l.ctx.measureIndex).get()); }
void getMeasureNumber(Level& l, int offset) { putWhole(l, l.ctx.measureIndex + offset); }
int ifMeasureDateDefined(Level& l, int) { return l.ctx.current->getVisitDate(l.ctx.measureIndex).isDefined(); }
int ifAnyMeasures(Level& l, int) { return l.ctx.current->getVisitCount() > 0; }

// ---- texts ---------------------------------------------------------------

const R_SuperText& text(Level& l) { return *l.ctx.F.getText(l.ctx.textIndex); }
void getTextName(Level& l, int) { put(l, text(l).getTitle().get()); }
void getTextId(Level& l, int) { put(l, text(l).getId().get()); }
void getTextMeta(Level& l, int) { put(l, text(l).getMeta().get()); }

void getText(Level& l, int) {
  R_A_HTMLOutput output(l.setup, l.sink, l.parameters);
  output.setGraphDirs(l.ctx.graphDirectory, l.ctx.graphUrl);
  output.setImageBase(l.ctx.imageBase);
  R_Proband empty(&l.ctx.F);
  text(l).write(l.ctx.F, probandOrEmpty(l, empty), l.age, output, 0);
}

int ifTextAvailable(Level& l, int) {
  R_Proband empty(&l.ctx.F);
  return text(l).isAvailable(l.ctx.F, probandOrEmpty(l, empty), l.age);
}

// ---- variables -----------------------------------------------------------

void getVarName(Level& l, int kind) { put(l, variable(l, kind)->getName().get()); }
void getVarUnit(Level& l, int kind) { put(l, variable(l, kind)->getUnit().get()); }
void getVarHelpId(Level& l, int kind) { put(l, variable(l, kind)->getHelpId().get()); }
void getVarId(Level& l, int kind) { put(l, l.ctx.F.getStatistics().getVarName(variable(l, kind)->getIndex())); }

void getVarValue(Level& l, int kind) {
  R_String text;
  variable(l, kind)->formatValue(value(l, kind), text, false);
  put(l, text.get());
}

void getVarMin(Level& l, int kind) { putNumber(l, variable(l, kind)->getInterval().getMin()); }
void getVarMax(Level& l, int kind) { putNumber(l, variable(l, kind)->getInterval().getMax()); }
int ifVarDefined(Level& l, int kind) { return value(l, kind).isDefined(); }
int ifVarList(Level& l, int kind) { return variable(l, kind)->isList(); }
int ifVarReal(Level& l, int kind) { return variable(l, kind)->isReal(); }
int ifVarMin(Level& l, int kind) { return variable(l, kind)->getInterval().getMin().isDefined(); }
int ifVarMax(Level& l, int kind) { return variable(l, kind)->getInterval().getMax().isDefined(); }
int ifVarRelevant(Level& l, int kind) { return variable(l, kind)->isForSex(l.ctx.current->getSex()); }

int ifVarHasHelp(Level& l, int kind) {
  const R_String& help = variable(l, kind)->getHelpId();
  return !help.isEmpty() && l.ctx.F.findText(help.get()) >= 0;
}

// ---- list items ----------------------------------------------------------

void getListItemName(Level& l, int) {
  if (const R_Variable* var = listVariable(l)) put(l, var->getList().getText(l.ctx.listItem).get());
}

void getListItemValue(Level& l, int) {
  if (const R_Variable* var = listVariable(l)) putNumber(l, var->getList().getValue(l.ctx.listItem));
}

// -1 passes the whole block over: no current item, or no value to compare.
int ifListItemSelected(Level& l, int) {
  int kind;
  if (l.ctx.checkContext(C::maskAnamnesticItem | C::maskLoaded)) {
    kind = anamnestic;
  } else if (l.ctx.checkContext(C::maskFollowedItem | C::maskFollowed | C::maskMeasure | C::maskLoaded)) {
    kind = followed;
  } else {
    return -1;
  }
  R_Number own = value(l, kind);
  if (!own.isDefined()) return -1;
  const R_Number& item = variable(l, kind)->getList().getValue(l.ctx.listItem);
  return item.isDefined() && item.getValue() == own.getValue();
}

// ---- file, request and window --------------------------------------------

void getFileComment(Level& l, int) { put(l, l.ctx.F.getStatistics().getFilename().get()); }
void getFileCopyright(Level& l, int) { put(l, l.ctx.F.getStatistics().getCopyright().get()); }
int ifSearchedNotFound(Level& l, int) { return l.ctx.searchedNotFound; }
int ifAnyProbands(Level& l, int) { return l.ctx.database.getN() > 0; }
void getProbandCount(Level& l, int) { putWhole(l, l.ctx.database.getN()); }
void getProgramVersion(Level& l, int) { put(l, programVersion); }

void getSearchedText(Level& l, int) {
  if (l.parameters.isDefined(R_A_Parameters::parSearch)) put(l, l.parameters.get(R_A_Parameters::parSearch));
}

// The buffer of three bytes per byte (and the encoder's own margin) cuts
// texts with many encoded bytes short; pages depend on no more than that.
void getSearchedTextCGI(Level& l, int) {
  if (!l.parameters.isDefined(R_A_Parameters::parSearch)) return;
  const char* searched = l.parameters.get(R_A_Parameters::parSearch);
  int size = static_cast<int>(strlen(searched)) * 3 + 1;
  std::vector<char> encoded(size);
  encodeCGI(searched, encoded.data(), size);
  put(l, encoded.data());
}

void getKnowledgeBaseUrl(Level& l, int) { put(l, l.ctx.imageBase); }
void getPageBaseUrl(Level& l, int) { put(l, l.ctx.pageBase); }
void getUserCss(Level& l, int) { put(l, l.ctx.userStyle); }
void getTodayDate(Level& l, int) { putDate(l, l.parameters.getToday()); }
void getCommandOrder(Level& l, int) { putWhole(l, l.ctx.order.getValue()); }

// Window sums in 64 bits: the size is any integer a setup file gives.
long long lastTop(Level& l) { return static_cast<long long>(l.ctx.database.getN()) - l.windowSize; }

void getWindowTopPrevious(Level& l, int) {
  long long top = l.top, size = l.windowSize;
  putNumber(l, R_Number(top < size ? 0.0 : static_cast<double>(top - size)));
}

void getWindowTopNext(Level& l, int) {
  long long top = l.top, last = lastTop(l);
  putNumber(l, R_Number(static_cast<double>(top > last ? last : top + l.windowSize)));
}

int ifWindowPrevious(Level& l, int) { return l.top > 0; }
int ifWindowNext(Level& l, int) { return l.top < lastTop(l); }

// ---- loops ---------------------------------------------------------------

// Every loop counts on its own and sets the context from its count before
// each pass: a body may change the same index (a nested loop of the same
// kind ends by setting its order to -1, force-proband-reset clears the
// proband index for the rest of its level), and the loop must still end.

// Each pass starts without a visit. The proband index stays behind the last
// record until the level is left.
void forEachProband(Level& l, R_A_Parser& body, int) {
  int count = l.ctx.database.getN();
  for (int i = 0; i < count; ++i) {
    l.ctx.probandIndex = i;
    l.ctx.measureIndex = -1;
    walkBody(l, body);
  }
  l.ctx.probandIndex = count;
}

bool isSelectedProband(Level& l, int index) {
  l.ctx.probandIndex = index;
  return l.ctx.checkContext(C::maskProband) && l.ctx.database.isSelected(index);
}

void forEachSelectedProband(Level& l, R_A_Parser& body, int) {
  int count = l.ctx.database.getN();
  for (int i = 0; i < count; ++i) {
    if (!isSelectedProband(l, i)) continue;
    l.ctx.measureIndex = -1;
    walkBody(l, body);
  }
  l.ctx.probandIndex = count;
}

// The count is tested after the body, so a full window walks one proband
// more than its size: the page can tell from it that a next window exists.
void forEachSelectedProbandInWindow(Level& l, R_A_Parser& body, int) {
  int walked = 0;
  int i = l.top;
  for (; i < l.ctx.database.getN(); ++i) {
    if (!isSelectedProband(l, i)) continue;
    l.ctx.measureIndex = -1;
    walkBody(l, body);
    if (++walked > l.windowSize) break;
  }
  l.ctx.probandIndex = i;
}

void forEachText(Level& l, R_A_Parser& body, int) {
  for (int i = 0; i < l.ctx.texts.getCount(); ++i) {
    l.ctx.textIndex = l.ctx.texts.get(i);
    walkBody(l, body);
  }
}

// The loop counts the visits of the proband it started with: each level of
// the body sets the application's current proband afresh, and a body that
// resets the proband leaves none behind for the next pass.
void forEachMeasure(Level& l, R_A_Parser& body, int) {
  int count = l.ctx.current->getVisitCount();
  for (int i = 0; i < count; ++i) {
    l.ctx.measureIndex = i;
    walkBody(l, body);
  }
  l.ctx.measureIndex = count;
}

void forEachVariable(Level& l, R_A_Parser& body, int kind) {
  int& order = kind == anamnestic ? l.ctx.anamnesticOrder : l.ctx.followedOrder;
  int count = kind == anamnestic ? l.ctx.getAnamnesticCount() : l.ctx.getFollowedCount();
  for (int i = 0; i < count; ++i) {
    order = i;
    walkBody(l, body);
  }
  order = -1;
}

void forEachListItem(Level& l, R_A_Parser& body, int) {
  const R_Variable* var = l.ctx.getAnamnesticVariable();
  if (!var || !var->isList() || var->getList().getN() == 0) var = l.ctx.getFollowedVariable();
  if (!var || !var->isList()) return;
  for (int i = 0; i < var->getList().getN(); ++i) {
    l.ctx.listItem = i;
    walkBody(l, body);
  }
  l.ctx.listItem = -1;
}

// ---- the table -----------------------------------------------------------

typedef void (*WriteHandler)(Level&, int);
typedef int (*TestHandler)(Level&, int);  // 1 the body, 0 the else part, -1 neither
typedef void (*LoopHandler)(Level&, R_A_Parser&, int);

struct Command {
  const char* name;
  int mask;
  WriteHandler write;
  TestHandler test;
  LoopHandler loop;
  int arg;
};

constexpr Command W(const char* name, int mask, WriteHandler fn, int arg = 0) {
  return Command{name, mask, fn, nullptr, nullptr, arg};
}
constexpr Command T(const char* name, int mask, TestHandler fn, int arg = 0) {
  return Command{name, mask, nullptr, fn, nullptr, arg};
}
constexpr Command L(const char* name, int mask, LoopHandler fn, int arg = 0) {
  return Command{name, mask, nullptr, nullptr, fn, arg};
}

const int A = C::maskAnamnestic, F = C::maskFollowed, P = C::maskProband, M = C::maskMeasure,
          X = C::maskText, LD = C::maskLoaded;

const Command commands[] = {
    L("for-each-proband", 0, forEachProband),
    L("for-each-selected-proband", 0, forEachSelectedProband),
    L("for-each-selected-proband-in-window", 0, forEachSelectedProbandInWindow),
    L("for-each-text", 0, forEachText),
    L("for-each-measure", LD, forEachMeasure),
    L("for-each-anamnestic", 0, forEachVariable, anamnestic),
    L("for-each-followed", 0, forEachVariable, followed),
    L("for-each-list-item", 0, forEachListItem),

    // The name and comment have their own test of context: the temporary
    // proband's show whatever the context.
    W("get-proband-name", 0, getProbandText, 0),
    W("get-proband-comment", 0, getProbandText, 1),
    W("get-proband-dob", LD, getProbandDob),
    W("get-proband-id", P, getProbandId),
    W("get-proband-index", P, getProbandIndex),
    W("get-proband-measure-count", LD, getVisitCount),
    T("if-proband-dob-defined", LD, ifDobDefined),
    T("if-proband-sex-male", LD, ifSex, 0),
    T("if-proband-sex-female", LD, ifSex, 1),
    T("if-proband-is-selected", P, ifSelected),
    T("if-proband-defined", 0, ifProbandDefined),
    W("get-proband-xml", LD, getProbandXML, 0),
    W("get-proband-xml-escaped", LD, getProbandXML, 1),
    W("get-proband-cgi", LD, getProbandCGI),
    W("force-proband-reset", 0, forceProbandReset),

    W("get-measure-date", M | LD, getMeasureDate),
    W("get-measure-age", M | LD, getMeasureAge),
    W("get-measure-age-rounded", M | LD, getMeasureAgeRounded),
    W("get-measure-comment", M | LD, getMeasureComment),
    W("get-measure-id", M | LD, getMeasureNumber, 0),
    W("get-measure-order", M | LD, getMeasureNumber, 1),
    T("if-measure-date-defined", M | LD, ifMeasureDateDefined),
    W("get-measure-count", LD, getVisitCount),
    T("if-any-measures", LD, ifAnyMeasures),

    W("get-text-name", X, getTextName),
    W("get-text-id", X, getTextId),
    W("get-text-meta", X, getTextMeta),
    W("get-text", X, getText),
    T("if-text-available", X, ifTextAvailable),

    W("get-anamnestic-name", A, getVarName, anamnestic),
    W("get-anamnestic-value", A | LD, getVarValue, anamnestic),
    W("get-anamnestic-unit", A, getVarUnit, anamnestic),
    W("get-anamnestic-id", A, getVarId, anamnestic),
    W("get-anamnestic-help-id", A, getVarHelpId, anamnestic),
    T("if-anamnestic-defined", A | LD, ifVarDefined, anamnestic),
    T("if-anamnestic-list", A, ifVarList, anamnestic),
    T("if-anamnestic-real", A, ifVarReal, anamnestic),
    T("if-anamnestic-has-help", A, ifVarHasHelp, anamnestic),
    T("if-anamnestic-relevant", A | LD, ifVarRelevant, anamnestic),
    T("if-anamnestic-min", A, ifVarMin, anamnestic),
    T("if-anamnestic-max", A, ifVarMax, anamnestic),
    W("get-anamnestic-min", A, getVarMin, anamnestic),
    W("get-anamnestic-max", A, getVarMax, anamnestic),

    W("get-followed-name", F, getVarName, followed),
    W("get-followed-value", F | M | LD, getVarValue, followed),
    W("get-followed-unit", F, getVarUnit, followed),
    W("get-followed-id", F, getVarId, followed),
    W("get-followed-help-id", F, getVarHelpId, followed),
    T("if-followed-defined", F | M | LD, ifVarDefined, followed),
    T("if-followed-list", F, ifVarList, followed),
    T("if-followed-real", F, ifVarReal, followed),
    T("if-followed-has-help", F, ifVarHasHelp, followed),
    T("if-followed-relevant", F | LD, ifVarRelevant, followed),
    T("if-followed-min", F, ifVarMin, followed),
    T("if-followed-max", F, ifVarMax, followed),
    W("get-followed-min", F, getVarMin, followed),
    W("get-followed-max", F, getVarMax, followed),

    // The list item commands choose between the anamnestic and the
    // followed variable themselves.
    W("get-list-item-name", 0, getListItemName),
    W("get-list-item-value", 0, getListItemValue),
    T("if-list-item-selected", 0, ifListItemSelected),

    W("get-file-comment", 0, getFileComment),
    W("get-file-copyright", 0, getFileCopyright),
    T("if-searched-not-found", 0, ifSearchedNotFound),
    T("if-any-probands", 0, ifAnyProbands),
    W("get-proband-count", 0, getProbandCount),
    W("get-program-version", 0, getProgramVersion),
    W("get-searched-text", 0, getSearchedText),
    W("get-searched-text-cgi", 0, getSearchedTextCGI),
    W("get-knowledge-base-url", 0, getKnowledgeBaseUrl),
    W("get-page-base-url", 0, getPageBaseUrl),
    W("get-user-css", 0, getUserCss),
    W("get-today-date", 0, getTodayDate),
    W("get-command-order", 0, getCommandOrder),
    W("get-window-top-previous", 0, getWindowTopPrevious),
    W("get-window-top-next", 0, getWindowTopNext),
    T("if-window-previous", 0, ifWindowPrevious),
    T("if-window-next", 0, ifWindowNext),
};
const int commandCount = sizeof(commands) / sizeof(commands[0]);
static_assert(commandCount == 85, "every page command has one row");

// Row numbers sorted by name without regard to case, for a binary search:
// a list page runs a few commands per proband.
const std::vector<int>& sortedRows() {
  static const std::vector<int> rows = [] {
    std::vector<int> sorted(commandCount);
    for (int i = 0; i < commandCount; ++i) sorted[i] = i;
    std::sort(sorted.begin(), sorted.end(),
              [](int a, int b) { return R_stricmp(commands[a].name, commands[b].name) < 0; });
    return sorted;
  }();
  return rows;
}

const Command* find(const char* name) {
  const std::vector<int>& rows = sortedRows();
  auto found = std::lower_bound(rows.begin(), rows.end(), name,
                                [](int row, const char* key) { return R_stricmp(commands[row].name, key) < 0; });
  if (found == rows.end() || R_stricmp(commands[*found].name, name) != 0) return nullptr;
  return &commands[*found];
}

void runBlock(const Command& command, Level& l) {
  R_A_Parser body(l.parser, true);
  if (!l.ctx.checkContext(command.mask)) {
    body.skipBlock();
  } else if (command.loop) {
    command.loop(l, body, command.arg);
    body.skipBlock();
  } else {
    int outcome = command.test(l, command.arg);
    if (outcome == 1) {
      walkBody(l, body);
    } else if (outcome == 0) {
      R_A_Parser otherwise(l.parser, false);
      walkBody(l, otherwise);
    }
    body.skipBlock();
  }
}
}  // namespace

bool R_A_PageCommands::run(const char* name, Level& level) {
  const Command* command = find(name);
  if (!command) return false;
  if (command->write) {
    if (level.ctx.checkContext(command->mask)) command->write(level, command->arg);
  } else {
    runBlock(*command, level);
  }
  return true;
}

int R_A_PageCommands::getCount() { return commandCount; }

const char* R_A_PageCommands::getName(int index) { return commands[index].name; }

void R_A_PageCommands::write(R_A_PageSink& sink, const char* text) {
  if (!text) return;
  for (const char* p = text; *p; ++p) {
    char c = *p;
    if (c == '<') c = '{';
    if (c == '>') c = '}';
    sink.putChar(c);
  }
}
