// Colour names of the graph-color-* settings. A name is either "#rrggbb" or
// one of the 657 names of the X11 colour database, in lower case without
// blanks ("grey86", "darkslateblue"), with X11's values: "gray" is
// 190,190,190 and "purple" 160,32,240, not the web colours of those names.
#ifndef OUTPUT_R_A_COLORNAME_H
#define OUTPUT_R_A_COLORNAME_H

struct R_A_ColorName {
  const char* name;
  unsigned char red, green, blue;

  static const int _count = 657;
  // Entry `index`, 0 to _count - 1, of the table that
  // tools/make_color_names.py generates; names are unique.
  static const R_A_ColorName& get(int index);
};

// Resolves `name` into 0 to 255 for `r`, `g`, `b`. "#" begins a hexadecimal
// colour: at least 6 characters must follow, their first three pairs are red,
// green and blue in either case, a character that is no hexadecimal digit
// counts as 0 ("#gg0000" is black) and further characters are ignored. Any
// other name is looked up in the table without regard to case. Answers false,
// leaving `r`, `g`, `b` untouched, for an unknown name or a short "#" colour.
// Requires: all four arguments non-null.
bool resolveColorName(const char* name, int* r, int* g, int* b);

#endif
