#include "xml/r_xmlinputstring.h"

// canRead and getChar stay inline in the header: the reader calls them once
// per byte.
R_XMLInputString::R_XMLInputString(const char* text) : string(text ? text : ""), position(0) {}
