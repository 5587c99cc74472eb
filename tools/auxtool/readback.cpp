#include "tools/auxtool/readback.h"

#include <functional>
#include <memory>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "core/r_outputstream.h"
#include "core/r_safefile.h"
#include "document/r_supertext.h"
#include "knowledge/r_file.h"
#include "knowledge/r_knowledgexml.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_a_simpledbrecord.h"
#include "tools/auxtool/fileloading.h"
#include "xml/r_xmlerrorreporter.h"
#include "xml/r_xmltextoutputstream.h"

namespace {

class ByteString : public R_OutputStream {
 public:
  void put(int byte) override { bytes.push_back(static_cast<char>(byte)); }
  std::string bytes;
};

class LineCollector : public R_XMLErrorReporter {
 public:
  void report(const char* text) override {
    lines += text ? text : "";
    lines += '\n';
  }
  std::string lines;
};

// An object's two stored forms, and how many numbers its XML form rounded.
struct Forms {
  std::string binary, xml;
  int rounded = 0;
};

template <class Object, class SaveXML>
Forms formsOf(const Object& object, SaveXML saveXML) {
  Forms forms;
  ByteString bytes, text;
  object.save(bytes);
  R_XMLTextOutputStream output(text);
  saveXML(object, output);
  forms.binary = bytes.bytes;
  forms.xml = text.bytes;
  forms.rounded = output.getRoundedCount();
  return forms;
}

// Whether `back`, read from the target form, holds what `original` held.
// The file information's bytes carry a date that has no XML form.
bool sameForms(const Forms& original, const Forms& back, bool to_binary, bool date_inside) {
  if (to_binary) return original.binary == back.binary;
  return original.xml == back.xml && (original.binary == back.binary || original.rounded > 0 || date_inside);
}

// One object of a file: its name for the messages, its forms, and how to
// read one stored form back into a new object of its kind (null when it
// cannot be read alone), giving that object's forms.
struct Piece {
  using Reload = std::function<bool(const std::string& stored, bool binary, Forms* back, R_XMLErrorReporter*)>;
  std::string label;
  Forms forms;
  Reload reload;
  bool date_inside = false;
};

R_BufferInputStream inputOf(const std::string& bytes) {
  return R_BufferInputStream(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

// A reload for the objects that R_File owns: `loadBinary` and `loadXML`
// fill a new object, `saveXML` writes one.
template <class Object, class LoadBinary, class LoadXML, class SaveXML>
Piece::Reload reloadOf(LoadBinary loadBinary, LoadXML loadXML, SaveXML saveXML) {
  return [=](const std::string& stored, bool binary, Forms* back, R_XMLErrorReporter* reporter) {
    std::unique_ptr<Object> copy(new Object());
    bool ok = true;
    if (binary) {
      R_BufferInputStream input = inputOf(stored);
      loadBinary(*copy, input, &ok);
    } else {
      ok = loadXML(*copy, stored.c_str(), reporter);
    }
    if (ok) *back = formsOf(*copy, saveXML);
    return ok;
  };
}

// The file information with every identifier as the XML form spells them:
// what the first pass of an XML load reads.
void saveNamesXML(const R_FileStatistics& names, R_XMLTextOutput& output) {
  R_openElement(output, "quorl");
  names.saveXML(output);
  for (int i = 0; i < names.getVarCount(); ++i) {
    R_openElement(output, "var");
    R_writeTextElement(output, "id", names.getVarName(i));
    output.closeTag("var");
  }
  output.closeTag("quorl");
}

// The pieces of a knowledge file, in file order. Their reloads borrow the
// file's names: they may be called while the file lives.
std::vector<Piece> knowledgePieces(const R_File& file) {
  const R_FileStatistics& names = file.getStatistics();
  auto saveWithNames = [&names](const auto& object, R_XMLTextOutput& output) { object.saveXML(output, names); };
  auto loadWithNames = [&names](auto& object, const char* text, R_XMLErrorReporter* reporter) {
    return object.loadXML(text, names, reporter);
  };
  auto loadStream = [](auto& object, R_InputStream& stream, bool* ok) { object.load(stream, ok); };
  auto saveAlone = [](const auto& object, R_XMLTextOutput& output) { object.saveXML(output); };
  std::vector<Piece> pieces;
  auto loadNames = [](R_FileStatistics& copy, const char* text, R_XMLErrorReporter* reporter) {
    return copy.prescanText(text, reporter);
  };
  pieces.push_back({"the file information or a variable identifier", formsOf(names, saveNamesXML),
                    reloadOf<R_FileStatistics>(loadStream, loadNames, saveNamesXML), true});
  if (file.getGraphRefLines().isComplete()) {
    auto loadLines = [](R_GraphRefLines& lines, const char* text, R_XMLErrorReporter* reporter) {
      return lines.loadXML(text, reporter);
    };
    pieces.push_back({"the line definitions", formsOf(file.getGraphRefLines(), saveAlone),
                      reloadOf<R_GraphRefLines>(loadStream, loadLines, saveAlone)});
  }
  for (int i = 0; i < file.getVarCount(); ++i) {
    auto loadVariable = [i](R_Variable& variable, R_InputStream& stream, bool* ok) { variable.load(i, stream, ok); };
    pieces.push_back({std::string("variable ") + names.getVarName(i), formsOf(*file.getVariable(i), saveWithNames),
                      reloadOf<R_Variable>(loadVariable, loadWithNames, saveWithNames)});
  }
  for (int i = 0; i < file.getRefCount(); ++i)
    pieces.push_back({"reference " + std::to_string(i + 1) + " (" + file.getReference(i)->getName().get() + ")",
                      formsOf(*file.getReference(i), saveWithNames),
                      reloadOf<R_Reference>(loadStream, loadWithNames, saveWithNames)});
  for (int i = 0; i < file.getTextCount(); ++i)
    pieces.push_back({std::string("text ") + file.getText(i)->getId().get(), formsOf(*file.getText(i), saveWithNames),
                      reloadOf<R_SuperText>(loadStream, loadWithNames, saveWithNames)});
  return pieces;
}

void saveRecordXML(const R_A_SimpleDBRecord& record, R_XMLTextOutput& output) { record.saveXML(output); }

std::vector<Piece> databasePieces(const R_A_SimpleDB& database, const R_File& knowledge) {
  const R_File* file = &knowledge;
  Piece::Reload reload = [file](const std::string& stored, bool binary, Forms* back, R_XMLErrorReporter* reporter) {
    if (binary) {
      R_A_SimpleDBRecord copy(file);
      bool ok = true;
      R_BufferInputStream input = inputOf(stored);
      copy.load(input, &ok);
      if (ok) *back = formsOf(copy, saveRecordXML);
      return ok;
    }
    R_A_SimpleDB scratch(nullptr, file, "", false, reporter);
    if (!scratch.loadText(("<p_database>" + stored + "</p_database>").c_str()) || scratch.getN() != 1) return false;
    *back = formsOf(*scratch.getRecord(0), saveRecordXML);
    return true;
  };
  std::vector<Piece> pieces;
  for (int i = 0; i < database.getN(); ++i)
    pieces.push_back({"record " + std::to_string(i + 1) + " (" + database.getText(i, 0).get() + ")",
                      formsOf(*database.getRecord(i), saveRecordXML), reload});
  return pieces;
}

const char* formName(bool to_binary) { return to_binary ? "the binary form" : "XML"; }

ReadBack stop(ReadBack::Outcome outcome, const std::string& reason) {
  ReadBack result;
  result.outcome = outcome;
  result.reason = reason;
  return result;
}

// Each piece written alone and read back alone.
ReadBack checkPieces(const std::vector<Piece>& pieces, bool to_binary) {
  for (const Piece& piece : pieces) {
    if (!piece.reload) continue;
    LineCollector lines;
    Forms back;
    const std::string& stored = to_binary ? piece.forms.binary : piece.forms.xml;
    if (!piece.reload(stored, to_binary, &back, &lines))
      return stop(ReadBack::refused, piece.label + " cannot be written in " + formName(to_binary) +
                                         ": it does not read back\n" + lines.lines);
    if (!sameForms(piece.forms, back, to_binary, piece.date_inside))
      return stop(ReadBack::refused,
                  piece.label + " cannot be written in " + formName(to_binary) + ": it reads back different\n");
  }
  return ReadBack();
}

ReadBack comparePieces(const std::vector<Piece>& original, const std::vector<Piece>& back, bool to_binary) {
  for (size_t i = 0; i < original.size() && i < back.size(); ++i) {
    if (!sameForms(original[i].forms, back[i].forms, to_binary, original[i].date_inside))
      return stop(ReadBack::differs, original[i].label + " reads back different from " + formName(to_binary) + "\n");
  }
  if (original.size() != back.size())
    return stop(ReadBack::differs, "the file reads back with " + std::to_string(back.size()) + " objects instead of " +
                                       std::to_string(original.size()) + "\n");
  return ReadBack();
}

// Writes with `save` (which answers the numbers rounded), reads the file
// back with `reread` (which gives its pieces, or a reason in `lines`), and
// puts it in place when the pieces are the same.
template <class Save, class Reread>
ReadBack writeChecked(const std::vector<Piece>& pieces, const char* out, bool to_binary, Save save, Reread reread) {
  ReadBack result = checkPieces(pieces, to_binary);
  if (result.outcome != ReadBack::same) return result;
  R_SafeFile file(out);
  int rounded = save(file);
  if (!file.finish()) return stop(ReadBack::writeFailed, "");
  LineCollector lines;
  std::vector<Piece> back;
  if (!reread(file.getTemporaryPath().c_str(), &back, &lines))
    return stop(ReadBack::differs, std::string("the file written in ") + formName(to_binary) +
                                       " does not read back\n" + lines.lines);
  result = comparePieces(pieces, back, to_binary);
  if (result.outcome != ReadBack::same) return result;
  if (!file.commit()) return stop(ReadBack::writeFailed, "");
  result.rounded = rounded;
  return result;
}

}  // namespace

ReadBack writeKnowledgeChecked(const R_File& file, const char* out, bool to_binary) {
  auto save = [&](R_SafeFile& target) {
    if (!to_binary) return file.saveXML(target);
    file.saveBinary(target);
    return 0;
  };
  auto reread = [](const char* path, std::vector<Piece>* pieces, LineCollector* lines) {
    R_File copy;
    if (!loadKnowledgeFile(copy, path, *lines)) return false;
    *pieces = knowledgePieces(copy);
    return true;
  };
  if (to_binary && !file.getGraphRefLines().isComplete())
    return stop(ReadBack::refused,
                "the line definitions (graphlines) cannot be written in the binary form: the file has none, "
                "and the binary form cannot go without them\n");
  return writeChecked(knowledgePieces(file), out, to_binary, save, reread);
}

ReadBack writeDatabaseChecked(const R_A_SimpleDB& database, const R_File& knowledge, const char* out,
                              bool to_binary) {
  auto save = [&](R_SafeFile& target) { return database.saveTo(target, to_binary); };
  auto reread = [&](const char* path, std::vector<Piece>* pieces, LineCollector* lines) {
    std::unique_ptr<R_A_SimpleDB> copy(openDatabase(knowledge, path, *lines));
    if (!copy || !lines->lines.empty()) return false;
    *pieces = databasePieces(*copy, knowledge);
    return true;
  };
  return writeChecked(databasePieces(database, knowledge), out, to_binary, save, reread);
}
