// The page application: one object per loaded knowledge file and database,
// fed one request at a time by a front end. A request may change the
// database (new, del and set, guarded by the order token), may fill the
// temporary proband that is never stored (/temp and /xml), selects probands
// by a search text, and then walks a page template into the sink.
//
// Not thread-safe: the front end serialises requests. The texts given to
// the setters are borrowed and must outlive the application.
#ifndef PAGE_R_APPLICATION_H
#define PAGE_R_APPLICATION_H
class R_A_Database;
class R_A_PageSink;
class R_A_Parameters;
class R_A_Parser;
class R_A_Setup;
class R_File;

class R_Application {
 public:
  // Requires: `file` is loaded; both outlive the application.
  R_Application(R_A_Database& database, const R_File& file);
  ~R_Application();
  R_Application(const R_Application&) = delete;
  R_Application& operator=(const R_Application&) = delete;

  void setDateFormat(const char* format);
  // The page shown when a request names no safe page; null shows nothing.
  void setDefaultPage(const char* name);
  void setImageBase(const char* url);
  // Page files are read from directory + name + extension.
  void setPages(const char* baseUrl, const char* directory, const char* extension);
  // Graph files are written into `directory` and linked under `url`.
  void setGraphs(const char* directory, const char* url);
  void setUserStyle(const char* text);

  // One request: the command step, the search, the choice of page and the
  // walk of its template. Errors reach the sink as codes 1 to 4.
  bool process(const R_A_Parameters& parameters, R_A_PageSink& sink, const R_A_Setup& setup);

  // Walks a template at block depth `depth` in the current context.
  void walk(const R_A_Parameters& parameters, R_A_PageSink& sink, R_A_Parser& parser,
            const R_A_Setup& setup, int depth);

 private:
  struct State;
  State* state;  // owned; the context, the temporary proband, the token
};
#endif
