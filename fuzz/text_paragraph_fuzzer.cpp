// The paragraph mark-up: the input is a paragraph's content, translated
// against the sample knowledge file. A translation that works must give a
// stored form of known codes only, load as a paragraph, write a paragraph
// whose fonts open and close in turn, and write XML that, read back as a
// paragraph, stores exactly that XML as plain text (the reader knows no
// entities, so the mark-up comes back as text) when it holds no '<'. The
// input is also taken as a stored form itself, as a damaged binary
// knowledge file can hand any bytes to the writer.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"
#include "core/r_string.h"
#include "document/r_textparagraph.h"
#include "document/r_texttranslator.h"
#include "fuzz/fuzz_support.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/support/recording_output.h"
#include "xml/r_xmltextoutputbuffer.h"

namespace {

const R_Proband& proband() {
  static R_Proband* made = makeProband(sampleKnowledge());
  return *made;
}

// Every backslash opens one of the seven codes, and a named code's name
// ends with a backslash.
void checkStoredForm(const std::string& stored) {
  for (size_t i = 0; i < stored.size(); ++i) {
    if (stored[i] != '\\') continue;
    FUZZ_CHECK(i + 1 < stored.size());
    char code = stored[++i];
    if (code == 'L' || code == 'E' || code == 'V') {
      i = stored.find('\\', i + 1);
      FUZZ_CHECK(i != std::string::npos);
    } else {
      FUZZ_CHECK(code == 'b' || code == 'c' || code == 'i' || code == 'j');
    }
  }
}

// Each setFont that switches on follows one that switches off, and the
// paragraph ends with a font switched off.
void checkFonts(const std::vector<std::string>& calls) {
  bool on = false;
  for (const std::string& call : calls) {
    if (call.compare(0, 8, "setFont ") != 0) continue;
    bool switches_on = call[8] == '0' || call[8] == '1' || call[8] == '2';
    FUZZ_CHECK(switches_on != on);
    on = switches_on;
  }
  FUZZ_CHECK(!on || calls.empty());
}

void write(const R_TextParagraph& paragraph, RecordingOutput& output) {
  paragraph.write(sampleKnowledge(), proband(), R_Number(8.5), output);
}

std::string xmlOf(const R_TextParagraph& paragraph) {
  std::vector<char> buffer(1 << 18);
  R_XMLTextOutputBuffer xml(buffer.data(), static_cast<int>(buffer.size()));
  paragraph.writeContent(xml, sampleKnowledge().getStatistics());
  FUZZ_CHECK(xml.isOK());
  return buffer.data();
}

void checkTranslated(const std::string& text) {
  const R_FileStatistics& statistics = sampleKnowledge().getStatistics();
  CheckingReporter reporter;
  R_TextTranslator translator(text.c_str(), statistics, &reporter);
  FUZZ_CHECK(translator.isOK() == (reporter.getCount() == 0));
  if (!translator.isOK()) return;
  R_String stored;
  translator.getResult(stored);
  checkStoredForm(stored.get());
  R_TextParagraph paragraph;
  paragraph.loadText(text.c_str(), statistics, nullptr);
  FUZZ_CHECK(paragraph.isOK() == !stored.isEmpty());
  if (!paragraph.isOK()) return;
  FUZZ_CHECK(paragraph.getStored() == stored);
  RecordingOutput output;
  write(paragraph, output);
  checkFonts(output.calls());
  std::string xml = xmlOf(paragraph);
  // Names go out as they are; one with a '<', which no tag of a file can
  // hold, is not read back.
  if (xml.find('<') != std::string::npos) return;
  R_TextParagraph again;
  again.loadText(xml.c_str(), statistics, nullptr);
  FUZZ_CHECK(again.isOK());
  FUZZ_CHECK(std::string(again.getStored().get()) == xml);
}

void checkStored(const std::string& text) {
  R_String stored(text.c_str());
  std::vector<unsigned char> bytes(static_cast<size_t>(stored.getLength()) + 8);
  R_BufferOutputStream out(bytes.data(), static_cast<int>(bytes.size()));
  stored.save(out);
  R_BufferInputStream in(bytes.data(), out.getCount());
  bool ok = true;
  R_TextParagraph paragraph;
  paragraph.load(in, &ok);
  FUZZ_CHECK(ok && paragraph.isOK());
  RecordingOutput output;
  write(paragraph, output);
  checkFonts(output.calls());
  xmlOf(paragraph);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text = inputText(data, size);
  checkTranslated(text);
  checkStored(text);
  return 0;
}
