// One record of the proband database: a proband with a name and a comment,
// and a selection flag that lives in memory only (false at creation).
// Records sort by name without regard to ASCII case; bytes above 127 count
// by their raw value, so accented letters sort behind the ASCII ones. Owns
// its proband; borrows the R_File the proband is built on. Not copyable.
#ifndef PROBAND_R_A_SIMPLEDBRECORD_H
#define PROBAND_R_A_SIMPLEDBRECORD_H

#include "core/r_string.h"
#include "xml/r_xmlrecipient.h"

class R_A_QueryText;
class R_File;
class R_InputStream;
class R_OutputStream;
class R_Proband;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_A_SimpleDBRecord : public R_XMLRecipient {
 public:
  // An empty record with an empty proband on `file`.
  explicit R_A_SimpleDBRecord(const R_File* file);
  ~R_A_SimpleDBRecord() override;

  // Text 0 is the name, text 1 the comment. Require: typ 0 or 1.
  const R_String& getText(int typ) const;
  void setText(int typ, const char* text);
  // The same with whitespace normalised, as element text enters the record.
  void setTextNormalized(int typ, const char* text);
  R_Proband* getProband() const { return proband; }
  bool isSelected() const { return selected; }
  void select() { selected = true; }
  void unselect() { selected = false; }
  // Whether the name or the comment contains `text`, ASCII case ignored.
  bool matches(const char* text) const;
  // By name, without regard to ASCII case; equal names precede neither way.
  bool operator<(const R_A_SimpleDBRecord& other) const;

  // Copies the proband (see R_Proband::copyFrom); answers whether its sex
  // is defined.
  bool copyProband(const R_Proband& other);

  // Fills the record from the content of a `p_record` element: `p_name`,
  // `p_comment` and `proband`. A `proband` element of 2 bytes or fewer
  // leaves the proband empty, which is no failure. On failure the proband
  // is cleared and "Error while processing database record." is reported.
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  // Reads a file that holds one `p_record` element; on failure reports
  // "Error while loading external file record.".
  bool loadFile(const char* path, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Writes the `p_record` element. The proband's content is written only if
  // its sex is defined; otherwise `proband` is an empty element.
  void saveXML(R_XMLTextOutput& output) const;

  // Type byte 80, name, comment, proband.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

  // The query text of a page link that carries the whole proband, into
  // `buffer` of `size` bytes, always terminated and silently cut at the end.
  // False, with an empty buffer, when the proband's sex is undefined.
  //
  // The link is laid out as the page parameters lay out theirs: with a
  // `target`, the page "/temp" and '?'; then the given typed parameters in
  // their fixed order "_p_name", "_p_dob" (when defined), "_p_sex" (M or F),
  // "_p_cmt", "_page" (= target, when given); then the free parameters: each
  // defined anamnestic value under its variable's name, and per visit "_AGE"
  // and "_DATE" (when defined) followed by its defined values. Every pair
  // is followed by '&'. Values are written with a blank as '+', the safe
  // bytes as they are, any other byte as '%' and two upper-case hex digits.
  // `file` names the variables: the proband's file, which null also means.
  // Requires: buffer != null, size > 0.
  bool makeQuery(const char* target, char* buffer, int size, const R_File* file) const;

 private:
  bool parse(const char* source, bool from_file, R_XMLErrorReporter* reporter);
  static void writeText(R_XMLTextOutput& output, const char* tag, const R_String& text);
  void addAnamnestic(R_A_QueryText& query, const R_File& file) const;
  void addVisits(R_A_QueryText& query, const R_File& file) const;

  R_Proband* proband;  // owned
  R_String texts[2];   // name, comment
  bool selected;
};

#endif
