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
class R_A_PageContext;
class R_A_PageSink;
class R_A_Parameters;
class R_A_Parser;
class R_A_Setup;
class R_File;
class R_Proband;

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
  // walk of its template. Errors reach the sink as codes 1 to 4. Answers
  // whether a page was walked: false when there was no page to show or its
  // file could not be read (the sink then has had code 3).
  bool process(const R_A_Parameters& parameters, R_A_PageSink& sink, const R_A_Setup& setup);

  // Walks a template at block depth `depth` in the current context. Deeper
  // than 16 blocks, or over a block without its $end, it walks nothing and
  // tells the sink (codes 1 and 2); an unknown command is code 4, and the
  // walk goes on.
  void walk(const R_A_Parameters& parameters, R_A_PageSink& sink, R_A_Parser& parser,
            const R_A_Setup& setup, int depth);

 private:
  // The command step of a request that names no temporary proband; false
  // would show the request's error page.
  bool runCommand(const R_A_Parameters& parameters);
  void show(const R_A_Parameters& parameters);
  void remove(const R_A_Parameters& parameters);
  void create(const R_A_Parameters& parameters);
  void change(const R_A_Parameters& parameters);
  // The record index of _p_id, or -1 when it is not given or names none.
  int findProband(const R_A_Parameters& parameters);
  // Comment and name of the record from the request, made harmless.
  void setNames(const R_A_Parameters& parameters);
  // The free parameters that name variables become the current proband's
  // values; followed ones go into the current visit.
  void applyValues(const R_A_Parameters& parameters, R_Proband& proband);
  void fillTemporary(const R_A_Parameters& parameters);
  void fillTemporaryXML(const R_A_Parameters& parameters);
  void search(const R_A_Parameters& parameters);
  // The page to show; null for none.
  const char* choosePage(const R_A_Parameters& parameters, bool commandDone) const;
  bool showPage(const char* page, const R_A_Parameters& parameters, R_A_PageSink& sink, const R_A_Setup& setup);

  R_A_PageContext* context;  // owned
};
#endif
