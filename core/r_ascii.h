// Byte-level text helpers. All text in the system is Windows-1250 bytes;
// classification and case folding touch ASCII letters and digits only, so
// results never depend on the C locale.
#ifndef CORE_R_ASCII_H
#define CORE_R_ASCII_H

inline bool R_isLetter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool R_isDigit(int c) { return c >= '0' && c <= '9'; }
inline bool R_isAlnum(int c) { return R_isLetter(c) || R_isDigit(c); }
// Bytes 1 to 32: the separators of normalisation and word splitting.
inline bool R_isBlank(int c) { return c >= 1 && c <= 32; }
inline char R_toUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }
inline char R_toLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

// Compares without regard to the case of ASCII letters; other bytes compare by
// their unsigned value, so accented letters sort behind all ASCII ones.
// Answers <0, 0 or >0 like strcmp.
int R_stricmp(const char* a, const char* b);

// Normalises whitespace in place: every run of bytes 1 to 32 becomes one blank,
// a run at the start disappears and a blank left at the end is removed.
// Answers the new length.
int R_normalizeWhitespace(char* text);

#endif
