// A one-pass reader of a proband database file in the plain layout that the
// database writes itself. It reads the file in blocks and builds each record
// through the public setters of the record and its proband, with the
// conversions that the general XML road applies to the same texts, so that
// the records come out the same as that road makes them, at a fraction of
// the cost: the general road parses each record three times over.
//
// The plain layout, with any run of blanks (space, tab, CR, LF) between
// tags and nothing else there:
//   <?...> and <!...> tags, then <p_database>, any number of records, and
//   </p_database> followed by blanks up to the end of the file;
//   a record is <p_record> with <p_name>, <p_comment> and <proband> in this
//   order, each element once, the texts as <x>text</x> or <x/>;
//   a proband is <proband/>, <proband> with at most two blanks, or
//   <proband> with a standalone <info> (id, dob, and sex "male" or
//   "female") and <data>; data holds anamnestic <val var="..."> and visits
//   <record> (date, age, comment; an age or a date) holding <val>s, whose
//   names have no blanks.
// Attributes only where named, each at most once, in double quotes, one
// blank or more before each; standalone tags end in "/>"; end tags are
// exactly </name>; no '<', '>' or NUL in texts and values; a record spans
// at most longestRecord bytes, a tag at most longestTag.
//
// Anything else makes it give up: read() then answers false, and the caller
// reads the file by the general road from its start, which also gives the
// messages that this reader never gives. A true answer therefore means that
// the general road would have made the same records and reported nothing.
//
// A variable's slots are asked of the proband once per name and reader, as
// they depend on the knowledge file alone. Borrows the R_File, on which
// every record is built; the records belong to the caller. Not copyable.
#ifndef PROBAND_R_A_SIMPLEDBPLAINREADER_H
#define PROBAND_R_A_SIMPLEDBPLAINREADER_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

class R_A_SimpleDBRecord;
class R_File;
class R_Number;
class R_Proband;

class R_A_SimpleDBPlainReader {
 public:
  // The longest record taken, from its start tag to the end of its end tag.
  // The general road delivers a record's text only when it fits a capture of
  // 16384 bytes, and a record near that size goes there to be judged.
  static constexpr size_t longestRecord = 15360;
  // The longest tag taken, both angle brackets included; the general road
  // refuses tags over 8192 bytes.
  static constexpr size_t longestTag = 4096;

  explicit R_A_SimpleDBPlainReader(const R_File* file);
  ~R_A_SimpleDBPlainReader();
  R_A_SimpleDBPlainReader(const R_A_SimpleDBPlainReader&) = delete;
  R_A_SimpleDBPlainReader& operator=(const R_A_SimpleDBPlainReader&) = delete;

  // Reads the database file at `path` and appends its records to `records`
  // in the order of the file. Answers true when the whole file is in the
  // plain layout; otherwise deletes the records it appended, leaving
  // `records` as it was, and answers false. Requires: path, records != null.
  bool read(const char* path, std::vector<R_A_SimpleDBRecord*>* records);

 private:
  struct Tag;
  // A name met in `val` elements, with its slots among the anamnestic and
  // the followed variables, -1 where it is none of them.
  struct Variable {
    bool used;  // the table's entry holds a name
    uint32_t hash;
    int anamnestic;
    int followed;
    std::string name;
  };

  bool open(const char* path);
  void close();
  bool refill();
  bool ensure(size_t bytes);
  bool skipBlanksAcrossBlocks();
  void skipBlanks();
  // `bound`, or `bytes` past the next byte when that comes first.
  // Requires: next <= bound.
  const char* ahead(size_t bytes, const char* bound) const;

  bool readDatabase(std::vector<R_A_SimpleDBRecord*>* records);
  bool readPrologue();
  bool readRecord(R_A_SimpleDBRecord* record);
  bool readRecordText(R_A_SimpleDBRecord* record, int element);
  bool readProband(R_Proband* proband);
  bool readInfo(R_Proband* proband);
  bool readData(R_Proband* proband);
  bool readAnamnestic(R_Proband* proband, const Tag& tag);
  bool readVisit(R_Proband* proband, const Tag& tag);
  int valuesAhead() const;
  bool readValue(const R_Proband& proband, const Tag& tag, const Variable** variable, const char** number);
  static R_Number numberOf(const char* text);
  const Variable& variableNamed(const R_Proband& proband, const char* name);
  void growVariables();

  bool readTag(Tag* tag);
  bool readAttribute(char** cursor, const char* stop, Tag* tag) const;
  bool expect(int element, Tag* tag);
  bool readContent(int element, char** text, char** text_end);
  bool readEndTag(int element);
  bool closeElement(int element);

  const R_File* F;     // borrowed
  FILE* file;          // owned while reading
  char* block;         // owned while reading; the bytes read ahead
  char* next;          // the first byte not yet taken
  char* end;           // one past the last byte read into the block
  // Where the element in hand must end: the end of its record, or of the
  // block for what lies outside records.
  const char* limit;
  bool ended;          // a read came back empty
  // The names met so far, open-addressed by hash; the size is 0 or a power
  // of two, and at most half of the entries are used.
  std::vector<Variable> variables;
  size_t variable_count;
};

#endif
