#include "page/r_a_czconvert.h"

#include <cassert>

#include "core/r_ascii.h"
#include "core/r_string.h"

namespace {

const int kEncodingCount = R_A_CZConvert::_enc_Count;

// Each letter's byte in Windows-1250, ISO 8859-2, code page 852 and
// Kamenicky. Lower-case letters first: where two letters share a byte in
// the source page, the later row decides.
const unsigned char kLetters[][kEncodingCount] = {
    // á ä č ď ě ë é í ĺ ľ ň ó ô ö ŕ ř š ť ú ů ü ý ž
    {0xE1, 0xE1, 0xA0, 0xA0}, {0xE4, 0xE4, 0x84, 0x84}, {0xE8, 0xE8, 0x9F, 0x87}, {0xEF, 0xEF, 0xD4, 0x83},
    {0xEC, 0xEC, 0xD8, 0x88}, {0xEB, 0xEB, 0xEB, 0xEB}, {0xE9, 0xE9, 0x82, 0x82}, {0xED, 0xED, 0xA1, 0xA1},
    {0xE5, 0xE5, 0x92, 0x8D}, {0xBE, 0xB5, 0x96, 0x8C}, {0xF2, 0xF2, 0xE5, 0xA4}, {0xF3, 0xF3, 0xA2, 0xA2},
    {0xF4, 0xF4, 0x93, 0x93}, {0xF6, 0xF6, 0x94, 0x94}, {0xE0, 0xE0, 0xEA, 0xAA}, {0xF8, 0xF8, 0xFD, 0xA9},
    {0x9A, 0xB9, 0xE7, 0xA8}, {0x9D, 0xBB, 0x9C, 0x9F}, {0xFA, 0xFA, 0xA3, 0xA3}, {0xF9, 0xF9, 0x85, 0x96},
    {0xFC, 0xFC, 0x81, 0x81}, {0xFD, 0xFD, 0xEC, 0x98}, {0x9E, 0xBE, 0xA7, 0x91},
    // Á Ä Č Ď Ě Ë É Í Ĺ Ľ Ň Ó Ô Ö Ŕ Ř Š Ť Ú Ů Ü Ý Ž
    {0xC1, 0xC1, 0xB5, 0x8F}, {0xC4, 0xC4, 0x8E, 0x8E}, {0xC8, 0xC8, 0xAC, 0x80}, {0xCF, 0xCF, 0xD2, 0x85},
    {0xCC, 0xCC, 0xB7, 0x89}, {0xCB, 0xCB, 0xCB, 0xCB}, {0xC9, 0xC9, 0x90, 0x90}, {0xCD, 0xCD, 0xD6, 0x8B},
    {0xC5, 0xC5, 0x91, 0x8A}, {0xBC, 0xA5, 0x95, 0x9C}, {0xD2, 0xD2, 0xD5, 0xA5}, {0xD3, 0xD3, 0xE0, 0x95},
    {0xD4, 0xD4, 0xE2, 0xA7}, {0xD6, 0xD6, 0x99, 0x99}, {0xC0, 0xC0, 0xE8, 0xAB}, {0xD8, 0xD8, 0xFC, 0x9E},
    {0x8A, 0xA9, 0xE6, 0x9B}, {0x8D, 0xAB, 0x9B, 0x86}, {0xDA, 0xDA, 0xE9, 0x97}, {0xD9, 0xD9, 0xDE, 0xA6},
    {0xDC, 0xDC, 0x9A, 0x9A}, {0xDD, 0xDD, 0xED, 0x9D}, {0x8E, 0xAE, 0xA6, 0x92},
};
static_assert(sizeof(kLetters) / sizeof(kLetters[0]) == 46, "23 lower-case and 23 upper-case letters");

struct EncodingName {
  const char* name;
  int encoding;
};
const EncodingName kEncodingNames[] = {
    {"Windows", 0},     {"cp1250", 0},    {"cp 1250", 0},    {"cp-1250", 0},      {"1250", 0},
    {"Windows-1250", 0}, {"win", 0},       {"iso", 1},        {"linux", 1},        {"iso8859-2", 1},
    {"iso 8859-2", 1},  {"iso-8859-2", 1}, {"8859-2", 1},     {"dos", 2},          {"msdos", 2},
    {"cp 852", 2},      {"cp-852", 2},    {"cp852", 2},      {"852", 2},          {"kam", 3},
    {"kamenicky", 3},
};

const unsigned char kSourceLetter = 1;
const unsigned char kOtherLetter = 255;

}  // namespace

R_A_CZConvert::R_A_CZConvert(const char* source_name, const char* target_name) {
  build(findEncoding(source_name), findEncoding(target_name));
}

R_A_CZConvert::R_A_CZConvert(int source, int target) { build(source, target); }

int R_A_CZConvert::findEncoding(const char* name) {
  if (!name) return 0;
  for (const EncodingName& known : kEncodingNames) {
    if (R_stricmp(name, known.name) == 0) return known.encoding;
  }
  return 0;
}

void R_A_CZConvert::build(int source, int target) {
  assert(source >= 0 && source < _enc_Count && target >= 0 && target < _enc_Count);
  bytes_seen = source_letters = other_letters = 0;
  for (int i = 0; i < 256; i++) {
    translation[i] = static_cast<unsigned char>(i);
    letter_class[i] = 0;
  }
  if (source == target) return;
  for (const auto& letter : kLetters) {
    if (letter[source] >= 128) translation[letter[source]] = letter[target];
  }
  for (const auto& letter : kLetters) {
    for (int column = 0; column < _enc_Count; column++) {
      if (column != source && letter[column] >= 128) letter_class[letter[column]] = kOtherLetter;
    }
  }
  for (const auto& letter : kLetters) {
    if (letter[source] >= 128) letter_class[letter[source]] = kSourceLetter;
  }
}

void R_A_CZConvert::convert(R_String& text) const {
  for (int i = 0; i < text.getLength(); i++) {
    text.setChar(i, static_cast<char>(convert(static_cast<unsigned char>(text.charAt(i)))));
  }
}

void R_A_CZConvert::convert(char* text) const {
  if (!text) return;
  for (; *text; text++) *text = static_cast<char>(convert(static_cast<unsigned char>(*text)));
}

void R_A_CZConvert::analyse(const char* text, bool reset) {
  if (reset) bytes_seen = source_letters = other_letters = 0;
  if (!text) return;
  for (; *text; text++) {
    bytes_seen++;
    unsigned char kind = letter_class[static_cast<unsigned char>(*text)];
    if (kind == kSourceLetter) source_letters++;
    else if (kind == kOtherLetter) other_letters++;
  }
}

double R_A_CZConvert::getScore() const {
  if (bytes_seen == 0) return -1.0;
  return static_cast<double>(source_letters - 4 * other_letters) / bytes_seen;
}
