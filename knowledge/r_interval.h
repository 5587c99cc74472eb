// A range of real values whose ends are each optional: an undefined end means
// no bound on that side. Each defined end is closed or open. The interval is
// defined when at least one end is; an undefined interval contains every
// number. Copyable as a value (the copy takes the ends and their flags).
#ifndef KNOWLEDGE_R_INTERVAL_H
#define KNOWLEDGE_R_INTERVAL_H

#include "core/r_integer.h"
#include "core/r_number.h"
#include "xml/r_xmlrecipient.h"

class R_InputStream;
class R_List;
class R_OutputStream;
class R_XMLErrorReporter;
class R_XMLTextOutput;

class R_Interval : public R_XMLRecipient {
 public:
  // Bit values of the flags: which defined end is closed.
  enum { minClosed = 1, maxClosed = 16 };

  // Both ends undefined, flags 0.
  R_Interval();
  // Both ends closed.
  R_Interval(const R_Number& min_value, const R_Number& max_value);
  R_Interval(const R_Interval& other);
  R_Interval& operator=(const R_Interval& other);

  bool isDefined() const { return min.isDefined() || max.isDefined(); }
  const R_Number& getMin() const { return min; }
  const R_Number& getMax() const { return max; }
  int getFlags() const { return flags.get(); }
  bool contains(double value) const {
    if (min.isDefined() && (flags.hasBits(minClosed) ? min.getValue() > value : min.getValue() >= value)) return false;
    if (!max.isDefined()) return true;
    return flags.hasBits(maxClosed) ? value <= max.getValue() : value < max.getValue();
  }
  // False for an undefined number.
  bool contains(const R_Number& value) const { return value.isDefined() && contains(value.getValue()); }
  // Both ends of `other` must be contained; an undefined end is not.
  bool contains(const R_Interval& other) const;

  // Closed on both sides, from the smallest to the largest item value of
  // `list`; undefined when the list has no item.
  void setFromList(const R_List& list);

  // Fills the interval from the inner text of an `interval` element. False,
  // with the reasons reported, for a broken element, for min >= max, and
  // (without a message) when neither end is given.
  bool loadXML(const char* textXML, R_XMLErrorReporter* reporter);
  const char* receive(int code, const char* text, const R_XMLParameters& parameters) override;
  // Writes `min` and `max` (each if defined) with their `boundary`.
  void saveXML(R_XMLTextOutput& output) const;

  void load(R_InputStream& stream, bool* ok);
  void save(R_OutputStream& stream) const;

 private:
  void setClosed(int bit, bool closed);

  R_Number min;
  R_Number max;
  R_Integer flags;
};

#endif
