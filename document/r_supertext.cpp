#include "document/r_supertext.h"

bool R_SuperText::loadXML(const char*, const R_FileStatistics&, R_XMLErrorReporter*) { return false; }

const char* R_SuperText::receive(int, const char*, const R_XMLParameters&) { return "unrecognized code in text"; }

void R_SuperText::saveXML(R_XMLTextOutput&, const R_FileStatistics&) const {}

void R_SuperText::load(R_InputStream&, bool* ok) { *ok = false; }

void R_SuperText::save(R_OutputStream&) const {}
