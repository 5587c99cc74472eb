#include "tests/support/xml_fakes.h"

#include <utility>

#include "xml/r_xmlparameters.h"
#include "xml/r_xmlparser.h"

RecordingRecipient::RecordingRecipient(std::vector<std::string> tags) : tags_(std::move(tags)) {}

void RecordingRecipient::askFor(const std::string& param, const std::string& element) {
  questions_.push_back({param, element});
}

void RecordingRecipient::refuse(int code, const char* message, const char* text) {
  refusals_.push_back({code, message, text == nullptr, text ? text : ""});
}

void RecordingRecipient::setTable() {
  if (tags_.empty()) return;
  setTagCount(static_cast<int>(tags_.size()));
  for (size_t i = 0; i < tags_.size(); ++i) setTag(static_cast<int>(i), tags_[i].c_str());
}

bool RecordingRecipient::parseString(R_XMLParser& parser, const char* text) {
  setTable();
  bool ok = parser.parseString(text, this);
  if (!tags_.empty()) clearTags();
  return ok;
}

bool RecordingRecipient::parseFile(R_XMLParser& parser, const std::string& path) {
  setTable();
  bool ok = parser.parseFile(path.c_str(), this);
  if (!tags_.empty()) clearTags();
  return ok;
}

std::string RecordingRecipient::answer(const Question& question,
                                       const R_XMLParameters& parameters) const {
  const char* value =
      question.element.empty()
          ? parameters.getParameter(question.param.c_str())
          : parameters.getParameterInElement(question.param.c_str(), question.element.c_str());
  std::string label = question.element.empty() ? question.param
                                               : question.element + "/" + question.param;
  return " " + label + "=" + (value ? value : "NULL");
}

const char* RecordingRecipient::receive(int code, const char* text,
                                        const R_XMLParameters& parameters) {
  std::string event = std::to_string(code) + ":" + text;
  for (const Question& question : questions_) event += answer(question, parameters);
  events_.push_back(event);
  for (const Refusal& refusal : refusals_) {
    if ((refusal.code < 0 || refusal.code == code) && (refusal.any_text || refusal.text == text)) {
      return refusal.message;
    }
  }
  return nullptr;
}
