#include "xml/r_xmlinputstring.h"

#include <cstring>

// canRead and getChar stay inline in the header: the reader calls them once
// per byte.
R_XMLInputString::R_XMLInputString(const char* text)
    : string(text ? text : ""), position(0), length(strlen(string)) {}
