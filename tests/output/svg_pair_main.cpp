// Paints the test picture once as BMP and once as SVG into the folder
// given, for the browser test that compares the two, and prints one line
// "EXTENSION PATH" for each file.
#include <cstdio>
#include <string>

#include "output/r_a_htmloutput.h"
#include "tests/output/svg_test_picture.h"
#include "tests/support/page_fakes.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: svg_pair DIRECTORY\n");
    return 2;
  }
  const std::string directory = std::string(argv[1]) + "/";
  for (const char* extension : {"bmp", "svg"}) {
    FakeSetup setup;
    FakeParameters parameters;
    CollectingPageSink sink;
    setup.setStr(R_A_Setup::strGraphExtension, extension);
    R_A_HTMLOutput output(setup, sink, parameters);
    output.setGraphDirs(directory.c_str(), "");
    paintTestPicture(output);
    // "graph PATH URL"
    const std::string& event = sink.events().back();
    printf("%s %s\n", extension, event.substr(6, event.find(' ', 6) - 6).c_str());
  }
  return 0;
}
