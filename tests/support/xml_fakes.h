// Fakes for the XML layer's interfaces, for every suite that loads or
// parses XML.
#ifndef TESTS_SUPPORT_XML_FAKES_H
#define TESTS_SUPPORT_XML_FAKES_H

#include <string>
#include <vector>

#include "xml/r_xmlerrorreporter.h"
#include "xml/r_xmlrecipient.h"

class R_XMLParser;

// Keeps every reported line, in order.
class CollectingReporter : public R_XMLErrorReporter {
 public:
  void report(const char* text) override { lines_.push_back(text); }
  const std::vector<std::string>& lines() const { return lines_; }
  void clear() { lines_.clear(); }

 private:
  std::vector<std::string> lines_;
};

// A recipient with a fixed tag table that records each event as one text:
// "code:text", then for each attribute it was told to ask for " x=value"
// (asked with getParameter) or " elem/x=value" (getParameterInElement),
// with "NULL" for an absent one. It accepts everything unless told to
// refuse.
class RecordingRecipient : public R_XMLRecipient {
 public:
  explicit RecordingRecipient(std::vector<std::string> tags);

  void askFor(const std::string& param, const std::string& element = "");
  // Refuses the events of `code` (any code when -1) whose text is `text`
  // (any text when null) with `message`.
  void refuse(int code, const char* message, const char* text = nullptr);

  // Sets the tag table, parses, clears the table: the bracket loaders use.
  bool parseString(R_XMLParser& parser, const char* text);
  bool parseFile(R_XMLParser& parser, const std::string& path);

  const std::vector<std::string>& events() const { return events_; }
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;

 private:
  struct Question {
    std::string param;
    std::string element;
  };
  struct Refusal {
    int code;
    const char* message;
    bool any_text;
    std::string text;
  };

  void setTable();
  std::string answer(const Question& question, const R_XMLParameters& parameters) const;

  std::vector<std::string> tags_;
  std::vector<Question> questions_;
  std::vector<Refusal> refusals_;
  std::vector<std::string> events_;
};

#endif
