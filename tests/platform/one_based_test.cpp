// Arrays and rows that count from 1: every position there is, and none beside it.
#include "platform/one_based.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillon {
namespace {

constexpr long kBeyond32Bits = 4'294'967'297;  // would be position 1 if it were cut to 32 bits

TEST(OneBased, HoldsAValueAtEachPositionFrom1ToItsSize) {
  Rows<int, 10> rows;
  for (int position = 1; position <= 10; ++position) rows[position] = position * 11;
  for (int position = 1; position <= 10; ++position) EXPECT_EQ(position * 11, rows[position]);
}

TEST(OneBased, PositionOutsideRaisesIndexFailure) {
  Slots<std::string> slots;
  const Slots<std::string>& readOnly = slots;
  for (const long position : {0L, 21L, -1L, 32767L, -32768L, kBeyond32Bits}) {
    EXPECT_THROW(slots[position] = "x", IndexFailure) << "position " << position;
    EXPECT_THROW(static_cast<void>(readOnly[position]), IndexFailure) << "position " << position;
  }
  for (const std::string& text : slots) EXPECT_EQ("", text);
}

TEST(OneBased, FailureTellsThePositionAndTheRange) {
  Slots<int> slots;
  try {
    slots[21] = 1;
    FAIL() << "position 21 was taken";
  } catch (const IndexFailure& failure) {
    const std::string text = failure.what();
    EXPECT_NE(std::string::npos, text.find("21")) << text;
    EXPECT_NE(std::string::npos, text.find("1 to 20")) << text;
  }
}

TEST(OneBased, StartsWithEmptyTextsAndZeros) {
  for (const std::string& text : Rows<std::string, 10>()) EXPECT_EQ("", text);
  for (const int number : Slots<int>()) EXPECT_EQ(0, number);
}

TEST(OneBased, WalksFromTheFirstPositionToTheLast) {
  OneBased<int, 3> numbers;
  numbers[1] = 7;
  numbers[2] = 8;
  numbers[3] = 9;
  const OneBased<int, 3>& readOnly = numbers;
  EXPECT_EQ((std::vector<int>{7, 8, 9}), std::vector<int>(numbers.begin(), numbers.end()));
  EXPECT_EQ((std::vector<int>{7, 8, 9}), std::vector<int>(readOnly.begin(), readOnly.end()));
}

TEST(OneBased, FillSetsEveryPosition) {
  OneBased<std::string, 100> words;
  words.Fill("n/a");
  for (int number = 1; number <= 100; ++number) EXPECT_EQ("n/a", words[number]) << number;
}

TEST(OneBased, TellsItsSize) {
  EXPECT_EQ(20, Slots<int>::kSize);
  EXPECT_EQ(10, (Rows<int, 10>::kSize));
  EXPECT_EQ(1, (OneBased<int, 1>::kSize));
}

TEST(TableRows, AreTheTenEmptyOnesOfAPage) {
  const TableRows<std::string> rows;
  EXPECT_EQ(std::vector<std::string>(10), std::vector<std::string>(rows.begin(), rows.end()));
  EXPECT_EQ(10, rows.size());
}

TEST(TableRows, RowsThatStayKeepTheirValuesAndNewOnesAreEmpty) {
  TableRows<int> rows;
  for (int position = 1; position <= rows.size(); ++position) rows[position] = position * 11;
  rows.SetSize(2);
  rows.SetSize(4);
  EXPECT_EQ((std::vector<int>{11, 22, 0, 0}), std::vector<int>(rows.begin(), rows.end()));
}

TEST(TableRows, PositionOutsideRaisesIndexFailure) {
  for (const int size : {10, 1000, 1, 0}) {
    TableRows<int> rows;
    rows.SetSize(size);
    const TableRows<int>& readOnly = rows;
    for (const long position : {0L, size + 1L, -1L, kBeyond32Bits}) {
      EXPECT_THROW(rows[position] = 1, IndexFailure) << position << " of " << size;
      EXPECT_THROW(static_cast<void>(readOnly[position]), IndexFailure) << position;
    }
  }
}

}  // namespace
}  // namespace quillon
