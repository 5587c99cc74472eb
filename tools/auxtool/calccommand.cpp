#include "tools/auxtool/calccommand.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "formula/r_calcequation.h"
#include "formula/r_equation.h"
#include "formula/r_equationtranslator.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"
#include "tools/auxtool/csvline.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"
#include "tools/auxtool/systemclock.h"

const char* const kCalcUsage =
    "usage: auxtool calc KNOWLEDGE DATABASE FORMULA... [--today D.M.YYYY] [--sep C]\n"
    "  Evaluates each formula (e.g. HEIGHT:SD, BMI:P, HEIGHT:LAST_DEFINED:SD) for each\n"
    "  proband with its age today and prints CSV: name,visit,age, then one column per\n"
    "  formula. A proband for whom a formula gives a series has one line per visit;\n"
    "  any other (only scalars, or nothing defined) one line with empty visit and age.\n"
    "  Undefined and non-finite results are empty. --today sets the date of today\n"
    "  (default: the system clock), --sep the separator character (default ',', 'tab'\n"
    "  for a tab; not a digit, '.', '-', '\"' or a line end).\n";

namespace {

struct CalcOptions {
  const char* knowledge = nullptr;
  const char* database = nullptr;
  std::vector<const char*> formulas;
  R_Date today;
  char separator = ',';
};

// A separator that can stand in a number or a name's quoting would make
// the lines ambiguous: a digit, '.', '-', '"' or a line end.
bool parseSeparator(const char* text, char* separator) {
  if (strcmp(text, "tab") == 0) {
    *separator = '\t';
    return true;
  }
  if (strlen(text) != 1 || R_isDigit(static_cast<unsigned char>(text[0])) || strchr(".-\"\r\n", text[0]))
    return false;
  *separator = text[0];
  return true;
}

// False on wrong usage; `error` then says what is wrong in one line, or is
// empty when the usage text says it best.
bool parseOptions(int argc, const char* const* argv, CalcOptions* options, std::string* error) {
  std::vector<const char*> positional;
  options->today = systemToday();
  for (int i = 0; i < argc; ++i) {
    if (strcmp(argv[i], "--today") == 0) {
      if (++i >= argc || !options->today.parse(argv[i])) {
        *error = std::string("--today takes a date D.M.YYYY from 1.1.1900 to 31.12.2100, not ") +
                 (i < argc ? "\"" + std::string(argv[i]) + "\"" : "nothing");
        return false;
      }
    } else if (strcmp(argv[i], "--sep") == 0) {
      if (++i >= argc || !parseSeparator(argv[i], &options->separator)) {
        *error = std::string("--sep takes \"tab\" or one character other than a digit, '.', '-', '\"' or a "
                             "line end, not ") +
                 (i < argc ? "\"" + std::string(argv[i]) + "\"" : "nothing");
        return false;
      }
    } else {
      positional.push_back(argv[i]);
    }
  }
  if (positional.size() < 3) return false;
  options->knowledge = positional[0];
  options->database = positional[1];
  options->formulas.assign(positional.begin() + 2, positional.end());
  return true;
}

// The translated formulas; false, naming the first that does not translate.
bool translateFormulas(const CalcOptions& options, const R_File& file, std::vector<std::unique_ptr<R_Equation>>* out) {
  for (const char* formula : options.formulas) {
    std::unique_ptr<R_Equation> equation(new R_Equation);
    if (!equation->loadExpression(formula, file.getStatistics())) {
      R_EquationTranslator translator;
      translator.translate(formula, file.getStatistics());
      fprintf(stderr, "Formula %s does not translate: %s\n", formula,
              translator.getFailure().empty() ? "it is no valid expression" : translator.getFailure().c_str());
      return false;
    }
    out->push_back(std::move(equation));
  }
  return true;
}

void addResult(CsvLine& line, const R_CalcValue& value, int visit) {
  if (value.isScalar()) {
    line.addNumber(value.getScalar());
  } else if (value.isXY() && visit >= 0 && visit < value.getN() && value.getPoint(visit).isValid()) {
    line.addNumber(value.getPoint(visit).getY());
  } else {
    line.addEmpty();
  }
}

class Calculator {
 public:
  Calculator(const R_File& knowledge, const CalcOptions& calc_options,
             const std::vector<std::unique_ptr<R_Equation>>& translated)
      : file(knowledge), options(calc_options), formulas(translated), results(translated.size()),
        line(calc_options.separator) {}

  void writeHead() {
    line.addText("name");
    line.addText("visit");
    line.addText("age");
    for (const char* formula : options.formulas) line.addText(formula);
    emit();
  }

  // Writes what is still buffered; false when any write to the output
  // failed.
  bool finish() { return line.flush(stdout) && written && fflush(stdout) == 0 && !ferror(stdout); }

  void writeProband(const R_Proband& proband, const char* name) {
    R_Number age;
    options.today.getAgeFrom(age, proband.getDob());
    bool has_series = false;
    for (size_t k = 0; k < formulas.size(); ++k) {
      R_CalcEquation equation(*formulas[k]);
      if (equation.evaluate(file, &proband, age, -1, 0))
        results[k] = equation.getResult();
      else
        results[k].setUndefined();
      has_series = has_series || results[k].isXY();
    }
    if (!has_series) {
      writeLine(name, -1, R_Number());
      return;
    }
    for (int visit = 0; visit < proband.getVisitCount(); ++visit) writeLine(name, visit, proband.getVisitAge(visit));
  }

 private:
  void writeLine(const char* name, int visit, const R_Number& visit_age) {
    line.addText(name);
    if (visit >= 0) {
      line.addInteger(visit);
      line.addNumber(visit_age);
    } else {
      line.addEmpty();
      line.addEmpty();
    }
    for (const R_CalcValue& result : results) addResult(line, result, visit);
    emit();
  }

  // Lines go to the output in blocks of about this many bytes.
  static constexpr size_t kFlushSize = 1 << 16;

  void emit() {
    line.endLine();
    if (line.size() >= kFlushSize && !line.flush(stdout)) written = false;
  }

  const R_File& file;
  const CalcOptions& options;
  const std::vector<std::unique_ptr<R_Equation>>& formulas;
  std::vector<R_CalcValue> results;
  CsvLine line;  // the lines not yet written
  bool written = true;  // every block so far reached the output
};

}  // namespace

int runCalcCommand(int argc, const char* const* argv) {
  CalcOptions options;
  std::string error;
  if (!parseOptions(argc, argv, &options, &error)) {
    if (error.empty())
      fputs(kCalcUsage, stderr);
    else
      fprintf(stderr, "auxtool calc: %s\n", error.c_str());
    return kExitUsageError;
  }
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, options.knowledge, reporter)) return kExitRefused;
  std::vector<std::unique_ptr<R_Equation>> formulas;
  if (!translateFormulas(options, file, &formulas)) return kExitRefused;
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, options.database, reporter));
  if (!database || reporter.getCount() > 0) return kExitRefused;
  Calculator calculator(file, options, formulas);
  calculator.writeHead();
  for (int i = 0; i < database->getN(); ++i)
    calculator.writeProband(*database->getProband(i), database->getText(i, 0).get());
  if (!calculator.finish()) {
    fputs("auxtool calc: can not write the output\n", stderr);
    return kExitRefused;
  }
  return kExitSuccess;
}
