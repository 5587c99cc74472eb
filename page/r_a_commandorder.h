// The order token of the page application: a number that a page prints into
// each form, so that the application can tell the first submission of a form
// from a repeated one (a reload, a second click). It is a 16-bit stamp, made
// from the local clock when the token is made, and a 10-bit counter that
// goes up with every accepted submission:
//   value = stamp * 4096 + counter
// A value is accepted when its stamp part and its low 10 bits match. After
// a restart of the application the stamp differs, so every old form is
// stale. Plain value, copyable.
#ifndef PAGE_R_A_COMMANDORDER_H
#define PAGE_R_A_COMMANDORDER_H

#include "page/r_a_clock.h"

class R_A_CommandOrder {
 public:
  // The stamp from R_A_now, the counter 0.
  R_A_CommandOrder();
  // The stamp from the given time, the counter 0.
  explicit R_A_CommandOrder(const R_A_LocalTime& now);

  int getStamp() const { return stamp; }
  int getCounter() const { return counter; }
  int getValue() const { return stamp * 4096 + counter; }
  // Whether `value` carries this stamp (value shifted right by 12) and this
  // counter (its low 10 bits).
  bool check(int value) const;
  // The counter goes round from 1023 to 0.
  void advance() { counter = (counter + 1) % 1024; }

  // The checksum of the time's bytes, each the low byte of its field, in
  // the order hour, day, minute, month, second, year; cut to 16 bits.
  static int makeStamp(const R_A_LocalTime& now);

 private:
  int stamp;    // 0 to 65535
  int counter;  // 0 to 1023
};

#endif
