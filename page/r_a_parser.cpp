#include "page/r_a_parser.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <climits>

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
    : text(nullptr), borrowed(false), valid(false), position(0), length(0), parent(nullptr), endPosition(-1) {
  int size = 0;
  char* data = readWholeFile(path, &size);
  if (!data) return;
  text = data;
  length = size;
  valid = true;
}

R_A_Parser::R_A_Parser(const char* source, int size)
    : text(source), borrowed(true), valid(source != nullptr && size >= 0), position(0),
      length(valid ? size : 0), parent(nullptr), endPosition(-1) {}

R_A_Parser::R_A_Parser(R_A_Parser& block_parent, bool condition)
    : text(block_parent.text), borrowed(true), valid(false), position(0), length(0), parent(&block_parent),
      endPosition(-1) {
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

R_A_Parser::~R_A_Parser() {
  if (!borrowed) free(const_cast<char*>(text));
}

void R_A_Parser::scanBlock(const R_A_Parser& from, int* elsePos, int* endPos) const {
  int level = 0;
  int i = from.position;
  while (i < from.length) {
    if (from.text[i] != '$') {
      ++i;
      continue;
    }
    int start = i++;
    char word[11];
    int n = 0;
    while (i < from.length && n < 10 && R_isLetter(static_cast<unsigned char>(from.text[i]))) {
      word[n++] = from.text[i++];
    }
    word[n] = '\0';
    switch (classify(word)) {
      case wordOpen: ++level; break;
      case wordElse: if (level == 0) *elsePos = start; break;
      case wordEnd:
        if (level == 0) {
          *endPos = start;
          return;
        }
        --level;
        break;
      case wordNone: break;
    }
  }
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
