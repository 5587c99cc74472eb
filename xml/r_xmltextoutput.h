// Writes the system's XML dialect from open, attribute, text and close
// calls. Each tag starts a line indented by one blank per open element;
// text after a tag goes on a line of its own one place deeper than the
// element's content; a line breaks before the first blank (bytes 1 to 32)
// at or after column 61, so a text without blanks is never broken. The
// first line is not preceded by a line break. Tags fold by the same rule, so
// a long tag breaks before an attribute, and a blank inside a long value can
// become a line break that the reader passes on in the value. Names, values, directive text
// and content are escaped alike: '&', '<' and '>' become "&amp;", "&lt;" and
// "&gt;"; double quotes stay as they are, also in attribute values. Nothing
// reports an error; kinds that can fail offer isOK().
//
// This base writes to standard output with neither line breaks nor
// indentation; the kinds override where the bytes go.
#ifndef XML_R_XMLTEXTOUTPUT_H
#define XML_R_XMLTEXTOUTPUT_H

class R_Integer;
class R_Number;
class R_String;

class R_XMLTextOutput {
 public:
  R_XMLTextOutput() : level(0), column(0), fresh(true), first(true), rounded(0) {}
  virtual ~R_XMLTextOutput() = default;
  R_XMLTextOutput(const R_XMLTextOutput&) = delete;
  R_XMLTextOutput& operator=(const R_XMLTextOutput&) = delete;

  // An element with content: openTag, any writeAttribute, endOpenTag, the
  // content, closeTag. One without: openTag, any writeAttribute, endEmptyTag.
  void openTag(const char* tag);
  // Writes  param="value" . Requires: param, value != null.
  void writeAttribute(const char* param, const char* value);
  void writeAttribute(const char* param, const R_Integer& value);
  // The undefined number writes as "?".
  void writeAttribute(const char* param, const R_Number& value);
  void endOpenTag();
  // Writes " />" and closes the element.
  void endEmptyTag();
  // A close at level 0 leaves the level at 0.
  void closeTag(const char* tag);
  // Writes <?inside?> or <!inside> on a line of its own at indentation 0.
  // Requires: type is '?' or '!'.
  void writeDirective(char type, const char* inside);

  void writeText(const char* text);
  // Content that already is text of this dialect, put as it is: no escaping,
  // folded like any other text. Requires: text != null.
  void writeRaw(const char* text);
  void writeString(const R_String& string);
  void writeInteger(const R_Integer& integer);
  // "%g", or "?" for the undefined number.
  void writeNumber(const R_Number& number);

  // How many numbers written so far read back as another value: what the
  // XML form loses, and all it may lose, of a file written in it.
  int getRoundedCount() const { return rounded; }

 protected:
  virtual void newLine() {}
  virtual void indent(int count) { (void)count; }
  virtual void putRaw(char c);

 private:
  void startLine(int indentation);
  void put(char c);
  void putPlain(const char* text);
  void putEscaped(const char* text);
  void numberText(const R_Number& number, char* text);

  int level;   // open elements
  int column;  // characters put on the current line after its indentation
  bool fresh;  // the last thing written ended a tag
  bool first;  // no line has been started yet
  int rounded;  // numbers whose text reads back as another value
};

#endif
