#include "xml/r_xmltextoutputstream.h"

#include "core/r_outputstream.h"

void R_XMLTextOutputStream::newLine() { stream.put('\n'); }

void R_XMLTextOutputStream::indent(int count) {
  for (int i = 0; i < count; ++i) stream.put(' ');
}

void R_XMLTextOutputStream::putRaw(char c) { stream.put(static_cast<unsigned char>(c)); }
