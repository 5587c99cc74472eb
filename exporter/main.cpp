#include <cstdio>

#include "exporter/exporterdriver.h"

int main(int argc, char** argv) {
  int code = runExporter(argc, argv);
  fflush(stdout);
  return code;
}
