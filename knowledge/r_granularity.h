// One grid on which a graph may draw a reference: for each axis a range
// (from, to), the step of the major grid and, optionally, the step of the
// minor grid ("small"). An axis may be left out altogether; its numbers are
// then undefined and the variant answers no question about that axis. The
// default flag marks the variant a graph takes when it has no range of its
// own. Owned by its R_Reference, immutable after load, not copyable.
#ifndef KNOWLEDGE_R_GRANULARITY_H
#define KNOWLEDGE_R_GRANULARITY_H

#include "core/r_number.h"
#include "xml/r_xmlrecipient.h"

class R_InputStream;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLParser;
class R_XMLTextOutput;

class R_Granularity : public R_XMLRecipient {
 public:
  // The eight numbers, in the order of the stored forms.
  enum Field { xFrom, xTo, yFrom, yTo, xStep, xSmall, yStep, ySmall, _granCount };

  // All eight numbers undefined.
  explicit R_Granularity(bool is_default = false);

  // X from, X to and X step are all defined.
  bool isXDefined() const;
  bool isYDefined() const;
  // Both axes are defined.
  bool isDefined() const { return isXDefined() && isYDefined(); }
  bool isDefault() const { return default_flag; }
  // The X axis is defined and its range holds `from` to `to`.
  bool coversX(double from, double to) const;
  bool coversY(double from, double to) const;

  const R_Number& getXFrom() const { return number[xFrom]; }
  const R_Number& getXTo() const { return number[xTo]; }
  const R_Number& getXStep() const { return number[xStep]; }
  const R_Number& getXSmall() const { return number[xSmall]; }
  const R_Number& getYFrom() const { return number[yFrom]; }
  const R_Number& getYTo() const { return number[yTo]; }
  const R_Number& getYStep() const { return number[yStep]; }
  const R_Number& getYSmall() const { return number[ySmall]; }

  // Fills the numbers from the inner text of a `variant` element: empty
  // elements `xaxe` and `yaxe` with attributes `from`, `to`, `step` and the
  // optional `small`. False, with the reasons reported, for an axis with a
  // missing or unreadable number, an empty range (from >= to), a zero step,
  // or no axis at all. A negative step is accepted. The default flag stays
  // as constructed.
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Writes `xaxe` and `yaxe`, each when its `from` is defined.
  void saveXML(R_XMLTextOutput& output) const;

  // Type byte 20 and the eight numbers; the default flag is stored by the
  // owning reference. A stream that ends early clears *ok.
  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  // The fields of one axis and its messages.
  struct Axis {
    Field from, to, step, small;
    const char* read_error;
    const char* incomplete;
    const char* wrong;
  };
  static const Axis axes[2];

  bool isAxisDefined(const Axis& axis) const;
  bool covers(const Axis& axis, double from, double to) const;
  const char* receiveAxis(const Axis& axis, const R_XMLParameters& parameters);
  bool isAxisIncomplete(const Axis& axis) const;
  bool isAxisWrong(const Axis& axis) const;
  bool checkLoaded(R_XMLParser& parser, bool parsed) const;
  void saveAxis(R_XMLTextOutput& output, const char* tag, const Axis& axis) const;

  R_Number number[_granCount];
  bool default_flag;
};

#endif
