// Block bodies found by the parser against a plain scan written here: from
// every position of random templates, and of the bodies found in them.
#include "page/r_a_parser.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {
// The scan as the template language defines it: each '$' with up to ten
// letters behind it; "if" and "for" open a level, "end" at level 0 ends the
// block, the last "else" at level 0 before it divides it. Answers the two
// bodies, or false when the block has no end.
bool plainScan(const std::string& text, size_t from, std::string* yes, std::string* no) {
  int level = 0;
  size_t else_at = std::string::npos;
  for (size_t i = from; i < text.size();) {
    if (text[i] != '$') {
      ++i;
      continue;
    }
    size_t start = i++;
    std::string word;
    while (i < text.size() && word.size() < 10 && isalpha(static_cast<unsigned char>(text[i]))) word += tolower(text[i++]);
    if (word == "if" || word == "for") ++level;
    if (word == "else" && level == 0) else_at = start;
    if (word == "end" && level-- == 0) {
      *yes = text.substr(from, (else_at == std::string::npos ? start : else_at) - from);
      *no = else_at == std::string::npos ? "" : text.substr(else_at + 5, start - else_at - 5);
      return true;
    }
  }
  return false;
}

std::string rest(R_A_Parser& parser) {
  std::string bytes;
  while (parser.isMore()) bytes += parser.nextChar();
  return bytes;
}

void moveTo(R_A_Parser& parser, size_t position) {
  parser.rewind();
  for (size_t i = 0; i < position; ++i) parser.nextChar();
}

// Compares the bodies from every position of `parser`'s text, and recurses
// once into the bodies that are found.
void compareFromEveryPosition(R_A_Parser& parser, const std::string& text, int depth) {
  for (size_t p = 0; p <= text.size(); ++p) {
    std::string yes, no;
    bool found = plainScan(text, p, &yes, &no);
    for (bool condition : {true, false}) {
      moveTo(parser, p);
      R_A_Parser body(parser, condition);
      ASSERT_EQ(found, body.isValid()) << "at " << p << " of " << text;
      if (!found) continue;
      ASSERT_EQ(condition ? yes : no, rest(body)) << "at " << p << " of " << text;
      if (depth == 0) compareFromEveryPosition(body, condition ? yes : no, 1);
    }
  }
}
}  // namespace

TEST(ParserTest, BlocksFoundAsAPlainScanFindsThem) {
  const char* pieces[] = {"$if-a ", "$For-b ", "$else ", "$END ", "$$end", "$endx", "x", "$(if-c)", "$elsewhere",
                          "$ifififififif "};
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    std::string text;
    int count = 1 + static_cast<int>(random() % 14);
    for (int i = 0; i < count; ++i) text += pieces[random() % (sizeof pieces / sizeof pieces[0])];
    R_A_Parser parser(text.data(), static_cast<int>(text.size()));
    compareFromEveryPosition(parser, text, 0);
  }
}
