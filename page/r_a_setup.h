// The settings of the page application: a fixed table of integer keys and
// one of text keys, each known by its code (its position in the table). A
// setting that is absent takes the default given by the caller at the place
// of use, so an empty setup is a valid one. A code outside the tables is a
// fault of the caller.
#ifndef PAGE_R_A_SETUP_H
#define PAGE_R_A_SETUP_H

class R_A_Setup {
 public:
  enum IntCode {
    intGraphInSd = 0,  // graph-in-sd
    intKnowledgeFileBinary = 1,  // knowledge-file-binary
    intPortNumber = 2,  // port-number
    intGraphOptimalWidth = 3,  // graph-optimal-width
    intGraphTargetWidth = 4,  // graph-target-width
    intGraphXIndent = 5,  // graph-x-indent
    intGraphAxisTick = 6,  // graph-axis-tick
    intProbandFileBinary = 7,  // proband-file-binary
    intGraphBitmapTextDouble = 8,  // graph-bitmap-text-double
    intGraphCellHeight = 9,  // graph-cell-height
    intGraphCellWidth = 10,  // graph-cell-width
    intGraphYIndent = 11,  // graph-y-indent
    intAllowLocalOnly = 12,  // allow-local-only
    intGraphSmallMarkWidth = 13,  // graph-small-mark-width
    intGraphMarkWidth = 14,  // graph-mark-width
    intStartupFlags = 15,  // startup-flags
    intAuxogramSpacerHeight = 16,  // auxogram-spacer-height
    intAuxogramSpacerWidth = 17,  // auxogram-spacer-width
    intTableInvertedColumnCount = 18,  // table-inverted-column-count
    intLogLevel = 19,  // log-level
    intProbandsPerPage = 20,  // probands-per-page
    intGraphArrowWidth = 21,  // graph-arrow-width
    intInternetExchangeType = 22,  // internet-exchange-type
    intVectorBigFontHeight = 23,  // vector-big-font-height
    intVectorSmallFontHeight = 24,  // vector-small-font-height
    intVersion = 25,  // version
    _intCodeCount = 26
  };
  enum StrCode {
    strKnowledgeFileName = 0,  // knowledge-file-name
    strTempDir = 1,  // temp-dir
    strGraphExtension = 2,  // graph-extension
    strHtmlDocumentStart = 3,  // html-document-start
    strHtmlDocumentEnd = 4,  // html-document-end
    strHtmlBlockBegin = 5,  // html-block-begin
    strHtmlBlockEnd = 6,  // html-block-end
    strHtmlParagraphBegin = 7,  // html-paragraph-begin
    strHtmlParagraphEnd = 8,  // html-paragraph-end
    strHtmlFontBoldOn = 9,  // html-font-bold-on
    strHtmlFontBoldOff = 10,  // html-font-bold-off
    strHtmlFontNormalOn = 11,  // html-font-normal-on
    strHtmlFontNormalOff = 12,  // html-font-normal-off
    strHtmlFontItalicsOn = 13,  // html-font-italics-on
    strHtmlFontItalicsOff = 14,  // html-font-italics-off
    strHtmlAnchor = 15,  // html-anchor
    strHtmlNumericResult = 16,  // html-numeric-result
    strHtmlHeader = 17,  // html-header
    strHtmlSubheader = 18,  // html-subheader
    strHtmlHrule = 19,  // html-hrule
    strHtmlTableBegin = 20,  // html-table-begin
    strHtmlTableEnd = 21,  // html-table-end
    strHtmlTableHeaderRowBegin = 22,  // html-table-header-row-begin
    strHtmlTableRowBegin = 23,  // html-table-row-begin
    strHtmlTableHeaderRowEnd = 24,  // html-table-header-row-end
    strHtmlTableRowEnd = 25,  // html-table-row-end
    strHtmlTableHeaderCellBegin = 26,  // html-table-header-cell-begin
    strHtmlTableCellBegin = 27,  // html-table-cell-begin
    strHtmlTableHeaderCellEnd = 28,  // html-table-header-cell-end
    strHtmlTableCellEnd = 29,  // html-table-cell-end
    strHtmlTableHeaderSeparator = 30,  // html-table-header-separator
    strHtmlTableSeparator = 31,  // html-table-separator
    strHtmlTableData = 32,  // html-table-data
    strHtmlImage = 33,  // html-image
    strGraphColorBackground = 34,  // graph-color-background
    strGraphColorAxis = 35,  // graph-color-axis
    strGraphColorRefdataMain = 36,  // graph-color-refdata-main
    strGraphColorRefdataOther = 37,  // graph-color-refdata-other
    strGraphColorRasterSmall = 38,  // graph-color-raster-small
    strGraphColorRasterBig = 39,  // graph-color-raster-big
    strGraphColorUnused = 40,  // graph-color-unused...
    strGraphColorRefdataBackground = 41,  // graph-color-refdata-background
    strGraphColorDataPrimary = 42,  // graph-color-data-primary
    strGraphColorDataSecondary = 43,  // graph-color-data-secondary
    strGraphColorTarget = 44,  // graph-color-target
    strGraphColorDataBackground = 45,  // graph-color-data-background
    strGraphColorAnalysisBackground = 46,  // graph-color-analysis-background
    strGraphColorDataNames = 47,  // graph-color-data-names
    strHtmlGraph = 48,  // html-graph
    strPageDefault = 49,  // page-default
    strDateFormat = 50,  // date-format
    strPageDirectory = 51,  // page-directory
    strPageExtension = 52,  // page-extension
    strProbandDataFile = 53,  // proband-data-file
    strImageDirectory = 54,  // image-directory
    strImageUrlBase = 55,  // image-url-base
    strGraphDirectory = 56,  // graph-directory
    strGraphUrlBase = 57,  // graph-url-base
    strImageExtension = 58,  // image-extension
    strHtmlTableInvertedBegin = 59,  // html-table-inverted-begin
    strHtmlTableInvertedEnd = 60,  // html-table-inverted-end
    strHtmlTableDataEmpty = 61,  // html-table-data-empty
    strHtmlAnchorExternal = 62,  // html-anchor-external
    strWinShutdownTitle = 63,  // win-shutdown-title
    strHtmlTableInvertedBetween = 64,  // html-table-inverted-between
    strHtmlTableInvertedHeadercolumnEnd = 65,  // html-table-inverted-headercolumn-end
    strHtmlTableInvertedHeadercolumnBegin = 66,  // html-table-inverted-headercolumn-begin
    strHtmlTableInvertedSeparator = 67,  // html-table-inverted-separator
    strRegistryKey = 68,  // registry-key
    strKnowledgeBaseDir = 69,  // knowledge-base-dir
    strIePrintTemplate = 70,  // ie-print-template
    strIeStyleList = 71,  // ie-style-list
    strHomePageUrl = 72,  // home-page-url
    strWindowTitle = 73,  // window-title
    strInternetExchangeUrl = 74,  // internet-exchange-url
    strInternetExchangeName = 75,  // internet-exchange-name
    strInternetExchangePage = 76,  // internet-exchange-page
    strVectorFontName = 77,  // vector-font-name
    strTempProbandPage = 78,  // temp-proband-page
    strTempProbandErrorPage = 79,  // temp-proband-error-page
    strTempProbandText = 80,  // temp-proband-text
    strHtmlUpperIndex = 81,  // html-upper-index
    strGraphSdAppend = 82,  // graph-sd-append
    _strCodeCount = 83
  };

  R_A_Setup() = default;
  virtual ~R_A_Setup();
  R_A_Setup(const R_A_Setup&) = delete;
  R_A_Setup& operator=(const R_A_Setup&) = delete;

  // The integer setting `code`, or `defaultValue` when it is not set.
  // Requires: 0 <= code < _intCodeCount.
  virtual int getInt(int code, int defaultValue) const = 0;
  // The text setting `code`, or `defaultText` when it is not set; a text set
  // to the empty value counts as set. Requires: 0 <= code < _strCodeCount.
  virtual const char* getStr(int code, const char* defaultText) const = 0;

  // The key names as a setup file spells them. Requires: code in range.
  static const char* getIntName(int code);
  static const char* getStrName(int code);
  // The code of a key name, without regard to ASCII case; -1 when none.
  static int findInt(const char* name);
  static int findStr(const char* name);
};

#endif
