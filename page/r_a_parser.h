// A cursor over page template text. A parser either owns the text it read
// from a file, or borrows a part of another parser's text: the body of a
// block, so that blocks are walked in place with no copy and no second
// parse.
//
// Blocks. A block command ($if-..., $for-each-...) runs to its matching
// $end, with an optional $else at its own level. The scan that finds them
// looks at each '$', takes the run of ASCII letters behind it (at most 10)
// and compares it with "if", "for", "else" and "end" without regard to
// case, then goes on behind those letters: so $if-any-measures counts as
// "if", a block command written $(...) is not counted, and "$$end" reads as
// an "end". "if" and "for" open a level, "end" closes one; an "else" or
// "end" at the block's own level is the block's. Of several such "else"s
// the last counts. A block without its "end" is not found.
//
// Not copyable. A borrowed parser must not outlive its parent.
#ifndef PAGE_R_A_PARSER_H
#define PAGE_R_A_PARSER_H

class R_A_Parser {
 public:
  // The longest command name a token keeps.
  static const int maxNameLength = 40;
  // The size of a token buffer: a name and its terminator.
  static const int tokenSize = maxNameLength + 1;

  // Reads the whole file at `path` in binary mode; not valid when it cannot
  // be opened or read, or is beyond 2 GB.
  explicit R_A_Parser(const char* path);
  // Walks `length` bytes of `text`, which the caller keeps alive.
  R_A_Parser(const char* text, int length);
  // The body of the block whose command the parent has just read, found by
  // scanning from the parent's position. With `condition` true the body runs
  // up to the block's $else, or up to its $end when it has none; with
  // `condition` false it runs from behind the $else to the $end, and is
  // empty when there is no $else. Not valid when the block has no $end.
  R_A_Parser(R_A_Parser& parent, bool condition);
  ~R_A_Parser();
  R_A_Parser(const R_A_Parser&) = delete;
  R_A_Parser& operator=(const R_A_Parser&) = delete;

  bool isValid() const { return valid; }
  bool isMore() const { return position < length; }
  // The byte at the position, which moves on. Requires: isMore().
  char nextChar() { return text[position++]; }
  void rewind() { position = 0; }
  int getPosition() const { return position; }
  int getLength() const { return length; }

  // Reads the command behind a '$' just taken by nextChar into `buffer` (at
  // least tokenSize bytes), terminated:
  //   '$'                  the token "$", for a literal dollar;
  //   '(' name ')'         any bytes up to ')', at most 40; the ')' is
  //                        taken when it follows them;
  //   otherwise            the longest run of ASCII letters and '-', at most
  //                        40 bytes; the byte behind it stays.
  // The name may be empty.
  void readToken(char* buffer);

  // Moves the parent's position behind the block's $end; nothing when the
  // block was not found or this parser is no block body.
  void skipBlock();

 private:
  // Finds the block's else (-1 when none) and end (-1 when not found)
  // positions in the parent's text, scanning from its position.
  void scanBlock(const R_A_Parser& parent, int* elsePos, int* endPos) const;

  const char* text;
  bool borrowed;  // false: `text` is ours and freed with the parser
  bool valid;
  int position;
  int length;
  R_A_Parser* parent;  // for a block body; null otherwise
  int endPosition;     // of the block's $end in the parent's text; -1 none
};

#endif
