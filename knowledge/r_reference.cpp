#include "knowledge/r_reference.h"

bool R_Reference::fits(int, const R_Number&, const R_XYVar&) const { return false; }

bool R_Reference::fits(int, const R_Interval&, const R_XYVar&) const { return false; }

bool R_Reference::loadXML(const char*, const R_FileStatistics&, R_XMLErrorReporter*) { return false; }

const char* R_Reference::receive(int, const char*, const R_XMLParameters&) { return "unrecognized code in ref"; }

void R_Reference::saveXML(R_XMLTextOutput&, const R_FileStatistics&) const {}

void R_Reference::load(R_InputStream&, bool* ok) { *ok = false; }

void R_Reference::save(R_OutputStream&) const {}
