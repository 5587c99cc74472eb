#include "page/r_a_setup.h"

#include "core/r_ascii.h"

namespace {

// The key names in code order; the enumerations in the header follow them.
const char* const intNames[] = {"graph-in-sd", "knowledge-file-binary", "port-number", "graph-optimal-width", "graph-target-width", "graph-x-indent", "graph-axis-tick", "proband-file-binary", "graph-bitmap-text-double", "graph-cell-height", "graph-cell-width", "graph-y-indent", "allow-local-only", "graph-small-mark-width", "graph-mark-width", "startup-flags", "auxogram-spacer-height", "auxogram-spacer-width", "table-inverted-column-count", "log-level", "probands-per-page", "graph-arrow-width", "internet-exchange-type", "vector-big-font-height", "vector-small-font-height", "version"};
const char* const strNames[] = {"knowledge-file-name", "temp-dir", "graph-extension", "html-document-start", "html-document-end", "html-block-begin", "html-block-end", "html-paragraph-begin", "html-paragraph-end", "html-font-bold-on", "html-font-bold-off", "html-font-normal-on", "html-font-normal-off", "html-font-italics-on", "html-font-italics-off", "html-anchor", "html-numeric-result", "html-header", "html-subheader", "html-hrule", "html-table-begin", "html-table-end", "html-table-header-row-begin", "html-table-row-begin", "html-table-header-row-end", "html-table-row-end", "html-table-header-cell-begin", "html-table-cell-begin", "html-table-header-cell-end", "html-table-cell-end", "html-table-header-separator", "html-table-separator", "html-table-data", "html-image", "graph-color-background", "graph-color-axis", "graph-color-refdata-main", "graph-color-refdata-other", "graph-color-raster-small", "graph-color-raster-big", "graph-color-unused...", "graph-color-refdata-background", "graph-color-data-primary", "graph-color-data-secondary", "graph-color-target", "graph-color-data-background", "graph-color-analysis-background", "graph-color-data-names", "html-graph", "page-default", "date-format", "page-directory", "page-extension", "proband-data-file", "image-directory", "image-url-base", "graph-directory", "graph-url-base", "image-extension", "html-table-inverted-begin", "html-table-inverted-end", "html-table-data-empty", "html-anchor-external", "win-shutdown-title", "html-table-inverted-between", "html-table-inverted-headercolumn-end", "html-table-inverted-headercolumn-begin", "html-table-inverted-separator", "registry-key", "knowledge-base-dir", "ie-print-template", "ie-style-list", "home-page-url", "window-title", "internet-exchange-url", "internet-exchange-name", "internet-exchange-page", "vector-font-name", "temp-proband-page", "temp-proband-error-page", "temp-proband-text", "html-upper-index", "graph-sd-append"};

static_assert(sizeof(intNames) / sizeof(intNames[0]) == R_A_Setup::_intCodeCount,
              "one name per integer key");
static_assert(sizeof(strNames) / sizeof(strNames[0]) == R_A_Setup::_strCodeCount,
              "one name per text key");

int findName(const char* const* names, int count, const char* name) {
  for (int code = 0; code < count; code++) {
    if (R_stricmp(names[code], name) == 0) return code;
  }
  return -1;
}

}  // namespace

R_A_Setup::~R_A_Setup() {}

const char* R_A_Setup::getIntName(int code) { return intNames[code]; }
const char* R_A_Setup::getStrName(int code) { return strNames[code]; }
int R_A_Setup::findInt(const char* name) { return findName(intNames, _intCodeCount, name); }
int R_A_Setup::findStr(const char* name) { return findName(strNames, _strCodeCount, name); }
