// A small URL template with numbered places: "$0" to "$4" stand for the
// parameters, "$$" for '$', and '$' before any other byte is dropped while
// that byte stays. The template and the result keep at most maxText bytes
// and each parameter maxParam bytes; longer texts are cut. Not copyable.
#ifndef PAGE_R_A_ENCODEURL_H
#define PAGE_R_A_ENCODEURL_H

const int R_A_EncodeURLParamCount = 5;

class R_A_EncodeURL {
 public:
  static const int maxText = 1024;
  static const int maxParam = 64;

  // Keeps the template and expands it with every parameter empty; a null
  // template is taken as "".
  explicit R_A_EncodeURL(const char* text);
  R_A_EncodeURL(const R_A_EncodeURL&) = delete;
  R_A_EncodeURL& operator=(const R_A_EncodeURL&) = delete;

  // Whether the template holds '$' followed by the digit of `index`; "$$0"
  // counts. Requires: 0 <= index < R_A_EncodeURLParamCount.
  bool isUsed(int index) const;
  // Expands the template again with the present parameters.
  const char* getResult();

  // A null text is taken as "". Requires: index in range.
  void setParam(int index, const char* text);

 private:
  void expand();
  void put(const char* text);

  int resultLength;
  char pattern[maxText + 1];
  char result[maxText + 1];
  char params[R_A_EncodeURLParamCount][maxParam + 1];
};

#endif
