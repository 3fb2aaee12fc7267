// What is told of a file or table that is wrong.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/failure.h"
#include "quillondb/csv/findings.h"

namespace quillon {
namespace {

std::string Told(const Findings& findings, const char* headline = "Not loaded:") {
  try {
    findings.Refuse(headline);
  } catch (const ConversionFailure& failure) {
    return failure.what();
  }
  return "nothing";
}

// So many findings, one a line.
Findings Some(std::size_t count) {
  Findings findings("ports.csv");
  for (std::size_t line = 1; line <= count; ++line) {
    findings.Add("line " + std::to_string(line), "wrong");
  }
  return findings;
}

TEST(CsvFindings, WithoutAnyNothingIsRefused) {
  EXPECT_TRUE(Some(0).empty());
  EXPECT_EQ(Told(Some(0)), "nothing");
}

TEST(CsvFindings, EachIsALineWithItsPlace) {
  EXPECT_EQ(Told(Some(2)), "Not loaded:\nports.csv, line 1: wrong\nports.csv, line 2: wrong");
}

TEST(CsvFindings, TwentyAreToldAndThenThatThereAreMore) {
  const std::string twenty = Told(Some(20));
  EXPECT_EQ(std::count(twenty.begin(), twenty.end(), '\n'), 20);
  EXPECT_TRUE(twenty.ends_with("line 20: wrong"));
  EXPECT_FALSE(Some(20).isFull());
  EXPECT_EQ(Told(Some(21)), twenty + "\n... and more");
  EXPECT_TRUE(Some(21).isFull());
  EXPECT_EQ(Told(Some(40)), Told(Some(21)));
}

TEST(CsvFindings, NamesReachTheTerminalSafely) {
  Findings findings("\x1B[2J.csv");
  findings.Add("line 1", "a\nb");
  EXPECT_EQ(Told(findings), "Not loaded:\n?[2J.csv, line 1: a?b");
  EXPECT_EQ(Told(findings, "a\nb"), "a?b\n?[2J.csv, line 1: a?b");
}

}  // namespace
}  // namespace quillon
