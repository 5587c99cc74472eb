// A growth graph in a report text: a caption and a stack of blocks (panels)
// that share one X axis. Each block shows one variable of the proband as
// plots, with a growth reference behind them and target values beside
// them; blocks whose condition fails for a proband are left out, and the
// others are placed by priority.
//
// Loaded from the `graph` element's content (a `caption` and one or more
// `block` elements) or from the binary form; a graph without blocks or
// without a caption is not ok. Blocks that failed their load stay in the
// graph. Owns its blocks. Not copyable.
#ifndef GRAPH_R_TEXTGRAPH_H
#define GRAPH_R_TEXTGRAPH_H

#include <vector>

#include "core/r_string.h"
#include "document/r_text.h"
#include "xml/r_xmlrecipient.h"

class R_GraphBlockData;

class R_TextGraph : public R_Text, public R_XMLRecipient {
 public:
  R_TextGraph() : R_Text(typeGraph), statistics(nullptr), reporter(nullptr) {}
  ~R_TextGraph() override;

  const R_String& getCaption() const { return caption; }
  int getBlockCount() const { return static_cast<int>(blocks.size()); }
  // Requires: 0 <= index < getBlockCount().
  const R_GraphBlockData& getBlock(int index) const;
  // True for a block without condition; otherwise whether the condition
  // evaluates, for the proband as a whole, to true. A condition that fails
  // to evaluate drops the block.
  bool isBlockAvailable(const R_File& file, const R_Proband& proband, const R_Number& age,
                        const R_GraphBlockData& block) const;

  // Ok when the content parses without a fault, holds a block and a
  // caption. Requires: a fresh graph.
  void loadText(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter) override;
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Caption, block count, then per block var, analysed and priority and the
  // block's own fields. A count of 0 or below, or a block cut short, fails.
  // Requires: a fresh graph.
  void load(R_InputStream& stream, bool* ok) override;
  void writeContent(R_XMLTextOutput& xml, const R_FileStatistics& statistics) const override;
  void save(R_OutputStream& stream) const override;

  int getOutputKind() const override { return 4; }
  int getBinaryCode() const override { return '6'; }
  const char* getTag() const override { return "graph"; }
  bool isEmptyTag() const override { return false; }
  // Draws the graph for the proband on `output`, between beginGraph and
  // endGraph: the blocks that apply, ranked; their plots and targets worked
  // out; references and scales chosen; the pixel geometry; the painting.
  // A graph that cannot be made for the proband (no block applies, no
  // scale, too little room) is no failure and puts nothing at all on
  // `output` but questions: the answer is always true.
  bool write(const R_File& file, const R_Proband& proband, const R_Number& age,
             R_OutputInterface& output) const override;

 private:
  const char* receiveBlock(const char* text, const R_XMLParameters& parameters);

  std::vector<R_GraphBlockData*> blocks;  // owned
  const R_FileStatistics* statistics;     // during the XML load only
  R_String caption;
  R_XMLErrorReporter* reporter;           // during the XML load only
};

#endif
