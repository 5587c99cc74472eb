#include "page/r_a_errorreporter.h"

#include <string.h>

void R_A_ErrorReporter::report(const char* message) {
  if (!message) message = "";
  if (text.size() + strlen(message) >= static_cast<size_t>(maxText)) return;
  text += message;
  text += '\n';
}
