// The commands of page templates: one table of about ninety rows, each a
// name, the context it needs (R_A_PageContext masks), its kind and a small
// handler. Names match without regard to ASCII case.
//
//   get-...      writes text; nothing when its context does not hold.
//   if-...       a block: its body when the test holds, its $else part when
//                not; the whole block is passed over when the context does
//                not hold (and by if-list-item-selected for an undefined
//                value).
//   for-each-... a block walked once per pass; $else ends its body.
//
// All text a command writes passes one filter: '<' becomes '{' and '>'
// becomes '}', so that no value can open a tag. Report texts (get-text) are
// HTML of their own and are written by the HTML output directly.
#ifndef PAGE_R_A_PAGECOMMANDS_H
#define PAGE_R_A_PAGECOMMANDS_H

#include "core/r_number.h"

class R_A_PageContext;
class R_A_PageSink;
class R_A_Parameters;
class R_A_Parser;
class R_A_Setup;
class R_Application;

class R_A_PageCommands {
 public:
  // One level of a walk: what the walker hands to a command.
  struct Level {
    R_Application& app;
    R_A_PageContext& ctx;
    const R_A_Parameters& parameters;
    R_A_PageSink& sink;
    R_A_Parser& parser;  // positioned behind the command's token
    const R_A_Setup& setup;
    int depth;
    R_Number age;     // of the current proband today; undefined without one
    int windowSize;   // probands-per-page
    int top;          // the window's first proband index; may be negative
    int savedProband;  // the indices the walker puts back on leaving
    int savedMeasure;
    int savedText;
  };

  // Runs the command `name` at `level`; false, doing nothing, when no
  // command has that name.
  static bool run(const char* name, Level& level);

  static int getCount();
  // Requires: 0 <= index < getCount().
  static const char* getName(int index);

  // `text` through the page filter; null writes nothing.
  static void write(R_A_PageSink& sink, const char* text);
};

#endif
