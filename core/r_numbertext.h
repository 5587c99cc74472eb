// Conversions between doubles and their C-locale texts that give exactly
// the bytes of the C library's "%g" and the values of its atof, only faster
// on the short decimals that measurements have. Every other text or value
// (exponents, hexadecimal, inf, nan, near ties at the last digit, more than
// 9 digits, magnitudes outside 1e-4 to 1e15) is handed to the C library itself, so the two
// always agree; the fast roads exist because reading and exporting large
// databases spend much of their time here.
#ifndef CORE_R_NUMBERTEXT_H
#define CORE_R_NUMBERTEXT_H

// Writes the "%g" text of `value` and its terminator into `buffer`, which
// holds at least R_numberTextSize bytes. Answers the length of the text.
int R_formatG(double value, char* buffer);
// The same for "%.*g" with `precision` significant digits.
// Requires: 1 <= precision <= 17.
int R_formatG(double value, int precision, char* buffer);
const int R_numberTextSize = 40;
// The "%d" text of `value` and its terminator; the same buffer size.
// Answers the length of the text.
int R_formatInt(int value, char* buffer);

// The value that atof gives for `text`. Requires: text != null.
double R_atof(const char* text);

#endif
