#include "page/r_a_parser.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <climits>
#include <unordered_map>
#include <vector>

#include "core/r_ascii.h"

namespace {
const int pieceSize = 4096;

bool isNameByte(char c) { return R_isLetter(static_cast<unsigned char>(c)) || c == '-'; }

// The scanner's words: what a '$' and up to 10 letters behind it mean.
enum BlockWord { wordNone, wordOpen, wordElse, wordEnd };

BlockWord classify(const char* word) {
  if (R_stricmp(word, "if") == 0 || R_stricmp(word, "for") == 0) return wordOpen;
  if (R_stricmp(word, "else") == 0) return wordElse;
  if (R_stricmp(word, "end") == 0) return wordEnd;
  return wordNone;
}

// Reads the whole file into a malloc'ed buffer; null on failure.
char* readWholeFile(const char* path, int* size) {
  *size = 0;
  FILE* file = path ? fopen(path, "rb") : nullptr;
  if (!file) return nullptr;
  char* data = nullptr;
  size_t used = 0, room = 0;
  bool ok = true;
  for (;;) {
    if (room - used < pieceSize) {
      if (room > static_cast<size_t>(INT_MAX) - pieceSize * 2) { ok = false; break; }
      size_t wanted = room ? room * 2 : pieceSize * 4;
      if (wanted > static_cast<size_t>(INT_MAX)) wanted = static_cast<size_t>(INT_MAX);
      char* grown = static_cast<char*>(realloc(data, wanted));
      if (!grown) { ok = false; break; }
      data = grown;
      room = wanted;
    }
    size_t got = fread(data + used, 1, pieceSize, file);
    used += got;
    if (got < static_cast<size_t>(pieceSize)) {
      ok = !ferror(file);
      break;
    }
  }
  fclose(file);
  if (!ok) {
    free(data);
    return nullptr;
  }
  *size = static_cast<int>(used);
  return data;
}
}  // namespace

R_A_Parser::R_A_Parser(const char* path)
    : text(nullptr), borrowed(false), valid(false), position(0), length(0), parent(nullptr), endPosition(-1), index(nullptr) {
  int size = 0;
  char* data = readWholeFile(path, &size);
  if (!data) return;
  text = data;
  length = size;
  valid = true;
}

R_A_Parser::R_A_Parser(const char* source, int size)
    : text(source), borrowed(true), valid(source != nullptr && size >= 0), position(0),
      length(valid ? size : 0), parent(nullptr), endPosition(-1), index(nullptr) {}

R_A_Parser::R_A_Parser(R_A_Parser& block_parent, bool condition)
    : text(block_parent.text), borrowed(true), valid(false), position(0), length(0), parent(&block_parent),
      endPosition(-1), index(nullptr) {
  int elsePos = -1;
  scanBlock(block_parent, &elsePos, &endPosition);
  if (endPosition < 0) return;
  valid = true;
  int begin = block_parent.position, end = endPosition;
  if (condition) {
    if (elsePos >= 0) end = elsePos;
  } else {
    begin = elsePos >= 0 ? elsePos + 5 : end;
  }
  text = block_parent.text + begin;
  length = end - begin;
}

// Every "$" of the text with the block word behind it, and the nesting level
// in front of each: a scan from any position p meets its block's $end at the
// first "end" behind p whose level equals the level at p (the level never
// falls below it before), and its $else at the last such "else" before that.
struct R_A_Parser::BlockIndex {
  std::vector<int> positions;  // of every '$' that starts a block word
  std::vector<int> levels;     // opened minus closed levels in front of it
  int finalLevel = 0;
  std::unordered_map<int, std::vector<int>> ends, elses;  // by level, in order

  BlockIndex(const char* text, int length) {
    int level = 0;
    for (int i = 0; i < length;) {
      if (text[i] != '$') {
        ++i;
        continue;
      }
      int start = i++;
      char word[11];
      int n = 0;
      while (i < length && n < 10 && R_isLetter(static_cast<unsigned char>(text[i]))) word[n++] = text[i++];
      word[n] = '\0';
      BlockWord kind = classify(word);
      if (kind == wordNone) continue;
      positions.push_back(start);
      levels.push_back(level);
      if (kind == wordOpen) ++level;
      if (kind == wordElse) elses[level].push_back(start);
      if (kind == wordEnd) ends[level--].push_back(start);
    }
    finalLevel = level;
  }

  int levelAt(int position) const {
    size_t k = std::lower_bound(positions.begin(), positions.end(), position) - positions.begin();
    return k < positions.size() ? levels[k] : finalLevel;
  }

  // The first entry of `list` at or behind `from` and before `limit`; -1 when none.
  static int firstIn(const std::vector<int>* list, int from, int limit) {
    if (!list) return -1;
    auto it = std::lower_bound(list->begin(), list->end(), from);
    return it != list->end() && *it < limit ? *it : -1;
  }

  // The last entry of `list` at or behind `from` and before `limit`; -1 when none.
  static int lastIn(const std::vector<int>* list, int from, int limit) {
    if (!list) return -1;
    auto it = std::lower_bound(list->begin(), list->end(), limit);
    return it != list->begin() && *(it - 1) >= from ? *(it - 1) : -1;
  }

  static const std::vector<int>* find(const std::unordered_map<int, std::vector<int>>& by_level, int level) {
    auto it = by_level.find(level);
    return it == by_level.end() ? nullptr : &it->second;
  }
};

const R_A_Parser::BlockIndex& R_A_Parser::blockIndex() const {
  if (parent) return parent->blockIndex();
  if (!index) index = new BlockIndex(text, length);
  return *index;
}

R_A_Parser::~R_A_Parser() {
  if (!borrowed) free(const_cast<char*>(text));
  delete index;
}

void R_A_Parser::scanBlock(const R_A_Parser& from, int* elsePos, int* endPos) const {
  const BlockIndex& blocks = from.blockIndex();
  const R_A_Parser* top = &from;
  while (top->parent) top = top->parent;
  // Positions in the index count from the top parser's text.
  const int offset = static_cast<int>(from.text - top->text);
  const int begin = offset + from.position, limit = offset + from.length;
  const int level = blocks.levelAt(begin);
  int end = BlockIndex::firstIn(BlockIndex::find(blocks.ends, level), begin, limit);
  int last_else = BlockIndex::lastIn(BlockIndex::find(blocks.elses, level), begin, end >= 0 ? end : limit);
  if (last_else >= 0) *elsePos = last_else - offset;
  if (end >= 0) *endPos = end - offset;
}

void R_A_Parser::readToken(char* buffer) {
  int n = 0;
  if (position < length && text[position] == '$') {
    buffer[n++] = text[position++];
  } else if (position < length && text[position] == '(') {
    ++position;
    while (position < length && n < maxNameLength && text[position] != ')') buffer[n++] = text[position++];
    if (position < length && text[position] == ')') ++position;
  } else {
    while (position < length && n < maxNameLength && isNameByte(text[position])) buffer[n++] = text[position++];
  }
  buffer[n] = '\0';
}

void R_A_Parser::skipBlock() {
  if (parent && endPosition >= 0) parent->position = endPosition + 4;
}
