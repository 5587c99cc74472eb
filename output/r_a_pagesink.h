// Where a page leaves the system. The front end supplies it and keeps it
// alive for one request; the application writes the page byte by byte and
// tells it about errors and about each graph file it has written.
#ifndef OUTPUT_R_A_PAGESINK_H
#define OUTPUT_R_A_PAGESINK_H

class R_A_PageSink {
 public:
  R_A_PageSink() = default;
  virtual ~R_A_PageSink();
  R_A_PageSink(const R_A_PageSink&) = delete;
  R_A_PageSink& operator=(const R_A_PageSink&) = delete;

  // A request failed; the codes belong to the page template engine.
  virtual void error(int code, const char* text) = 0;
  virtual void beginPage() = 0;
  virtual void putChar(char ch) = 0;
  virtual void endPage() = 0;
  // A graph file has been written at `path`, reachable by `url`.
  virtual void graphDone(const char* path, const char* url) = 0;
};

#endif
