// Heights of bars, for figures and axis tops that no report comes to in an ordinary night.
#include "queries/chart_panel.h"

#include <gtest/gtest.h>

#include "platform/failure.h"

namespace quillon {
namespace {

TEST(BarHeight, IsTheWholePercentOfTheAxisTop) {
  struct Row {
    const char* figure;
    const char* top;
    const char* height;
  };
  const Row rows[] = {
      {"50", "100", "50"},   {"1", "8", "12"},    {"3", "8", "38"},     // 12.5 and 37.5, to even
      {"130", "100", "130"}, {"0.004", "2", "1"}, {"0.011", "2", "1"},  // 0.2 and 0.55
      {"0.03", "2", "2"},    {"0", "2", "1"},     {"-1", "2", "-50"},  {"-0.001", "2", "1"},
      {"-", "2", "1"},       {"", "2", "1"},      {"12 G", "2", "1"},  {" 1 ", "2", "50"},
      {"1e2", "200", "50"},  {"5", "13 G", "38"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(BarHeight(row.figure, row.top), row.height) << row.figure << " of " << row.top;
  }
}

TEST(BarHeight, AxisTopOf0IsAFailureForNumbersAlone) {
  EXPECT_THROW(BarHeight("5", "0"), OverflowFailure);
  EXPECT_THROW(BarHeight("0", "0"), OverflowFailure);
  EXPECT_EQ(BarHeight("-", "0"), "1");
}

TEST(BarHeight, IsNeverInfinite) {
  EXPECT_THROW(BarHeight("-1e308", "2"), OverflowFailure);
}

}  // namespace
}  // namespace quillon
