// Collects one page in memory while the engine runs, so that the whole page
// exists before the server answers and no byte is sent while the engine is
// busy. Template errors (codes 1, 2 and 4) are kept in the page as HTML
// comments where they happened, for the template's author; a page that
// could not be read (code 3) is remembered for the status. Graph files
// written are counted. One sink per request.
#ifndef TOOLS_AUXSERVE_STRINGPAGESINK_H
#define TOOLS_AUXSERVE_STRINGPAGESINK_H

#include <string>

#include "output/r_a_pagesink.h"

class StringPageSink : public R_A_PageSink {
 public:
  void error(int code, const char* text) override;
  void beginPage() override { begun = true; }
  void putChar(char ch) override { page += ch; }
  void endPage() override {}
  void graphDone(const char* path, const char* url) override;

  // A page was walked; false when the page file was missing or no page
  // was chosen at all.
  bool hasPage() const { return begun; }
  bool isPageMissing() const { return pageMissing; }
  // The name of the page that could not be read, as the request named it.
  const std::string& getMissingPage() const { return missingName; }
  const std::string& getPage() const { return page; }
  std::string& takePage() { return page; }
  int getGraphCount() const { return graphs; }
  int getErrorCount() const { return errors; }

 private:
  std::string page;
  std::string missingName;
  bool begun = false;
  bool pageMissing = false;
  int graphs = 0;
  int errors = 0;
};

#endif
