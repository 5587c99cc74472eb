// What a graph block says about the growth reference behind its data: which
// sex to use, whether to draw the reference, the age to assume when choosing
// it, and the X range that a grid variant must cover. Filled from the
// attributes of a block's `refdata` element or from the binary form. Plain
// value.
#ifndef GRAPH_R_GRAPHREFDATA_H
#define GRAPH_R_GRAPHREFDATA_H

#include "core/r_integer.h"
#include "core/r_number.h"

class R_InputStream;
class R_OutputStream;
class R_XMLParameters;
class R_XMLTextOutput;

// The bits of the flags.
const int R_graphRefMale = 1;     // use the boys' reference
const int R_graphRefFemale = 2;   // use the girls' reference
const int R_graphRefShow = 4;     // draw the reference behind the data
const int R_graphRefDefined = 8;  // the element was given

class R_GraphRefData {
 public:
  int getFlags() const { return flags.get(); }
  bool isDefined() const { return flags.hasBits(R_graphRefDefined); }
  bool isShown() const { return flags.hasBits(R_graphRefShow); }
  bool isSexDefined() const { return flags.hasBits(R_graphRefMale | R_graphRefFemale); }
  // 0 for boys, 1 for girls. Requires: isSexDefined().
  int getSex() const;
  // Undefined when the proband's own data decide.
  const R_Number& getAge() const { return age; }
  bool isRangeX() const { return x_from.isDefined() && x_to.isDefined(); }
  const R_Number& getXFrom() const { return x_from; }
  const R_Number& getXTo() const { return x_to; }

  // Takes `age` (a decimal comma allowed), `sex` ("male" or "female" replace
  // the whole flags), `show` ("yes"), `x_from` and `x_to` (no comma rule),
  // then marks the data defined. Nothing is refused: the answer is true.
  bool load(const R_XMLParameters& attributes);
  // The attributes into the tag the caller has opened: `age` when defined,
  // `sex` when set, `show` always, `x_from` and `x_to` only as a pair.
  void saveXML(R_XMLTextOutput& xml) const;
  // Flags, age, x_from, x_to. A load that works marks the data defined,
  // whatever the stored flags held: the form is written for every block.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  R_Integer flags;
  R_Number age;
  R_Number x_from;
  R_Number x_to;
};

#endif
