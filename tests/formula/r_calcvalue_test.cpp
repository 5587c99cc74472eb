#include "formula/r_calcvalue.h"

#include <gtest/gtest.h>

#include "tests/formula/calcvalue_text.h"

TEST(CalcValueTest, SetTextMakesScalarsOrTheUndefinedValue) {
  const struct { const char* text; const char* expected; } rows[] = {
      {"12.5", "12.5"},   {"12abc", "12"},     {"1E2", "100"},        {"1.2.3", "1.2"},
      {"?", "undefined"}, {"", "undefined"},   {"abc", "undefined"},  {"+1", "undefined"},
  };
  for (const auto& row : rows) {
    R_CalcValue value;
    value.setText(row.text);
    EXPECT_EQ(row.expected, valueText(value)) << row.text;
  }
}
