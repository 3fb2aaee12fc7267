// Volumes and axis tops as short texts. Every length of a digit text has its rows, since
// the length chooses the unit.
#include "render/value_scaling.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/number_text.h"
#include "support/house.h"

namespace quillon {
namespace {

constexpr bool kLongForm = true;
constexpr bool kShortForm = false;

class ValueScaling : public testing::Test {
 protected:
  std::string Volume(std::string value, bool longForm) {
    ConvHCBytes(house_.diagnostics, value, longForm);
    return value;
  }

  std::string AxisTop(std::string value) {
    RoundUpYaxisMax(house_.diagnostics, value);
    return value;
  }

  double Stepped(const std::string& value, double& ceiling, bool roundUp = true) {
    return RoundToValue(house_.diagnostics, value, ceiling, roundUp);
  }

  // The two labels of an axis, "13 G, 6.5 G".
  std::string VolumeLabels(std::string max) {
    std::string half = "left from before";
    FormatYaxisVol(house_.diagnostics, max, half);
    return max + ", " + half;
  }

  std::string PacketLabels(std::string max) {
    std::string half = "left from before";
    FormatYaxisPkts(house_.diagnostics, max, half);
    return max + ", " + half;
  }

  // Expects as many failures of one procedure and no other event.
  void ExpectFailures(const std::string& procedure, std::size_t count) {
    const std::vector<std::string> events = house_.Events();
    EXPECT_EQ(count, events.size());
    const std::string start = "1\tmodQuillonWeb_" + procedure + "\t";
    for (const std::string& event : events) {
      EXPECT_EQ(start, event.substr(0, start.size()));
      EXPECT_LT(start.size(), event.size()) << "no description";
    }
  }

  House house_;
};

struct VolumeRow {
  std::string value;
  std::string shortForm;
  std::string longForm;
};

struct TextRow {
  std::string value;
  std::string result;
};

struct StepRow {
  std::string value;
  double result;
  double ceiling;
};

TEST_F(ValueScaling, VolumeOfUpToFourDigits) {
  const VolumeRow rows[] = {
      {"1", "1 M", "1 M"},         {"12", "12 M", "12 M"},      {"999", "999 M", "999 M"},
      {"1000", "1 G", "1 000 M"},  {"1234", "1 G", "1 234 M"},  {"1499", "1 G", "1 499 M"},
      {"1500", "2 G", "1 500 M"},  {"1534", "2 G", "1 534 M"},  {"9499", "9 G", "9 499 M"},
      {"9500", "10 G", "9 500 M"}, {"9999", "10 G", "9 999 M"},
  };
  for (const VolumeRow& row : rows) {
    EXPECT_EQ(row.shortForm, Volume(row.value, kShortForm)) << row.value;
    EXPECT_EQ(row.longForm, Volume(row.value, kLongForm)) << row.value;
  }
}

TEST_F(ValueScaling, VolumeOfFiveDigitsAndMoreIsTheSameInBothForms) {
  const TextRow rows[] = {
      {"10000", "10 G"},
      {"12499", "12 G"},
      {"12500", "13 G"},
      {"99500", "100 G"},
      {"123499", "123 G"},
      {"123500", "124 G"},
      {"999500", "1 000 G"},
      {"1234499", "1 234 G"},
      {"1234500", "1 235 G"},
      {"9999500", "10 000 G"},
      {"12344678", "13 T"},
      {"12344478", "12 T"},
      {"99000500", "100 T"},
      {"123000500", "124 T"},
      {"999000500", "1 000 T"},
      {"1234567890", "1 235 T"},
      {"9999000500", "10 000 T"},
      {"12000000500", "13 P"},
      {"123456789012", "123 P"},
      {"123000000500", "124 P"},
      {"1234000000500", "1 235 P"},
      {"9999000000500", "10 000 P"},
  };
  for (const TextRow& row : rows) {
    EXPECT_EQ(row.result, Volume(row.value, kShortForm)) << row.value;
    EXPECT_EQ(row.result, Volume(row.value, kLongForm)) << row.value;
  }
}

// Looks wrong and is wanted: from 8 digits on the third digit from the end decides, however
// far it stands behind the digits that are kept.
TEST_F(ValueScaling, VolumeIsRoundedByItsThirdDigitFromTheEnd) {
  const TextRow rows[] = {
      {"12999499", "12 T"},         {"12000500", "13 T"},    {"123999499", "123 T"},
      {"1234999499", "1 234 T"},    {"12999999499", "12 P"}, {"123999999499", "123 P"},
      {"1234999999499", "1 234 P"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, Volume(row.value, kLongForm)) << row.value;
}

TEST_F(ValueScaling, VolumeOfFourteenDigitsAndMoreIsCutWithoutRounding) {
  const TextRow rows[] = {
      {"12345678901234", "12 345 P"},
      {"99999999999999", "99 999 P"},
      {"123456999999999", "123 456 P"},
      {"1234567890123456", "1234 567 P"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, Volume(row.value, kLongForm)) << row.value;
}

TEST_F(ValueScaling, VolumeWithoutAFigureIsADashOrZero) {
  const TextRow rows[] = {{"-1", "-"}, {"0", "0"},  {"", "0"},    {"-2", "0"},
                          {"-9", "0"}, {"-0", "0"}, {"-99", "0"}, {"0.4", "0"}};
  for (const TextRow& row : rows) {
    EXPECT_EQ(row.result, Volume(row.value, kShortForm)) << row.value;
    EXPECT_EQ(row.result, Volume(row.value, kLongForm)) << row.value;
  }
}

TEST_F(ValueScaling, VolumeIsFirstTheNearestWholeNumberWithHalvesAwayFromZero) {
  const TextRow rows[] = {
      {"0.5", "1 M"},       {"1.5", "2 M"},      {"2.5", "3 M"},      {"2.49", "2 M"},
      {"-0.5", "-"},        {"-1.4", "-"},       {"-1.5", "0"},       {"999.4", "999 M"},
      {"999.5", "1 000 M"}, {"12499.5", "13 G"}, {"12499.4", "12 G"}, {"1e3", "1 000 M"},
      {" 12 ", "12 M"},     {"0012", "12 M"},    {"+7", "7 M"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, Volume(row.value, kLongForm)) << row.value;
}

TEST_F(ValueScaling, VolumeOfAShortTextThatIsNoNumberIsZero) {
  for (const std::string value : {"-", "?", "n/a", "abc"}) {
    EXPECT_EQ("0", Volume(value, kShortForm)) << value;
    EXPECT_EQ("0", Volume(value, kLongForm)) << value;
  }
  ExpectFailures("ConvHCBytes", 0);
}

TEST_F(ValueScaling, VolumeOfALongTextThatIsNoNumberStaysAndIsReported) {
  const std::string values[] = {"none", "1,000", "12a5", "not available",
                                "no figure was gathered here"};
  for (const std::string& value : values) {
    EXPECT_EQ(value, Volume(value, kShortForm)) << value;
    EXPECT_EQ(value, Volume(value, kLongForm)) << value;
  }
  ExpectFailures("ConvHCBytes", 10);
}

TEST_F(ValueScaling, AxisTopKeepsItsLeadingDigits) {
  const TextRow rows[] = {
      {"2", "2"},
      {"15", "15"},
      {"150", "150"},
      {"1300", "1000"},
      {"1499", "1000"},
      {"1500", "2000"},
      {"1700", "2000"},
      {"9500", "10000"},
      {"12499", "12000"},
      {"12500", "13000"},
      {"99500", "100000"},
      {"123499", "123000"},
      {"123500", "124000"},
      {"1234499", "1234000"},
      {"1234500", "1235000"},
      {"12344000", "12000000"},
      {"12344678", "13000000"},
      {"123000500", "124000000"},
      {"123999499", "123000000"},
      {"1234000500", "1235000000"},
      {"1234999499", "1234000000"},
      {"12000000500", "13000000000"},
      {"12999999499", "12000000000"},
      {"123000000500", "124000000000"},
      {"1234000000500", "1235000000000"},
      {"1234999999499", "1234000000000"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, AxisTop(row.value)) << row.value;
}

TEST_F(ValueScaling, AxisTopOfFourteenDigitsAndMoreIsCutWithoutRounding) {
  EXPECT_EQ("12345000000000", AxisTop("12345678901234"));
  EXPECT_EQ("99999000000000", AxisTop("99999999999999"));
  EXPECT_EQ("123456000000000", AxisTop("123456999999999"));
}

TEST_F(ValueScaling, AxisTopOfThreeCharactersAndLess) {
  const TextRow rows[] = {{"", "0"},  {"0", "0"},   {"-1", "-1"}, {"-2", "0"},      {"-99", "0"},
                          {"-", "0"}, {"abc", "0"}, {"2.5", "3"}, {"149.5", "150"}, {" 7 ", "7"}};
  for (const TextRow& row : rows) EXPECT_EQ(row.result, AxisTop(row.value)) << row.value;
  ExpectFailures("RoundUpYaxisMax", 0);
}

TEST_F(ValueScaling, AxisTopOfALongTextThatIsNoNumberStaysAndIsReported) {
  for (const std::string value : {"none", "1,000", "not available", "no figure was gathered"}) {
    EXPECT_EQ(value, AxisTop(value));
  }
  ExpectFailures("RoundUpYaxisMax", 4);
}

TEST_F(ValueScaling, StepIsTheNextMultipleAtOrAboveTheValue) {
  const StepRow rows[] = {
      {"0", 0, 2},
      {"1", 2, 2},
      {"2", 2, 2},
      {"7", 8, 2},
      {"8", 8, 2},
      {"9", 10, 2},
      {"10", 10, 5},
      {"12", 15, 5},
      {"99", 100, 5},
      {"100", 100, 50},
      {"123", 150, 50},
      {"999", 1000, 50},
      {"1000", 1000, 100},
      {"1234", 1300, 100},
      {"9999", 10'000, 100},
      {"12345", 13'000, 1000},
      {"123456", 130'000, 10'000},
      {"1234567", 2'000'000, 1'000'000},
      {"12345678", 20'000'000, 10'000'000},
      {"123456789", 130'000'000, 10'000'000},
      {"1234567890", 2e9, 1e9},
      {"9999999999", 1e10, 1e9},
  };
  for (const StepRow& row : rows) {
    double ceiling = 2.0;
    EXPECT_EQ(row.result, Stepped(row.value, ceiling)) << row.value;
    EXPECT_EQ(row.ceiling, ceiling) << row.value;
  }
}

TEST_F(ValueScaling, StepGoesByTheDigitTextOfAFractionOrANegative) {
  const StepRow rows[] = {{"2.4", 4, 2}, {"7.5", 8, 2}, {"9.5", 10, 5},
                          {"-1", 0, 5},  {"-7", -5, 5}, {"-10", 0, 50}};
  for (const StepRow& row : rows) {
    double ceiling = 2.0;
    EXPECT_EQ(row.result, Stepped(row.value, ceiling)) << row.value;
    EXPECT_EQ(row.ceiling, ceiling) << row.value;
  }
}

// Rounding down takes a half off before the fraction is cut, so a value that is a multiple
// falls to the one below.
TEST_F(ValueScaling, StepDownIsTheMultipleBelow) {
  const StepRow rows[] = {{"7", 6, 2}, {"9", 8, 2},   {"8", 6, 2},
                          {"6", 4, 2}, {"12", 10, 5}, {"123", 100, 50}};
  for (const StepRow& row : rows) {
    double ceiling = 2.0;
    EXPECT_EQ(row.result, Stepped(row.value, ceiling, false)) << row.value;
    EXPECT_EQ(row.ceiling, ceiling) << row.value;
  }
}

TEST_F(ValueScaling, StepOfATextThatIsNoNumberIsZeroAndChangesNothing) {
  for (const std::string value : {"", "-", "abc", "12 G", "1,000"}) {
    double ceiling = 7.5;
    EXPECT_EQ(0, Stepped(value, ceiling)) << value;
    EXPECT_EQ(7.5, ceiling) << value;
  }
  ExpectFailures("RoundToValue", 0);
}

TEST_F(ValueScaling, StepFromElevenDigitsOnIsTheCallers) {
  double ceiling = 1e9;
  EXPECT_EQ(13e9, Stepped("12345678901", ceiling));
  EXPECT_EQ(1e9, ceiling);
}

TEST_F(ValueScaling, StepBeyond32BitsIsZeroAndReported) {
  for (const std::string value : {"10000000000", "12345678901", "-12345678901", "1e15"}) {
    double ceiling = 2.0;
    EXPECT_EQ(0, Stepped(value, ceiling)) << value;
    EXPECT_EQ(2.0, ceiling) << value;
  }
  ExpectFailures("RoundToValue", 4);
}

TEST_F(ValueScaling, VolumeAxisLabels) {
  const TextRow rows[] = {
      {"2", "2 M, 1 M"},
      {"1", "1 M, 0.5 M"},
      {"5", "5 M, 2.5 M"},
      {"0", "0 M, 0 M"},
      {"25", "25 M, 13 M"},
      {"125", "125 M, 63 M"},
      {"150", "150 M, 75 M"},
      {"999", "999 M, 500 M"},
      {"-1", "-1 M, -1 M"},
      {"1000", "1 G, 0.5 G"},
      {"2000", "2 G, 1 G"},
      {"5000", "5 G, 2.5 G"},
      {"13000", "13 G, 6.5 G"},
      {"25000", "25 G, 13 G"},
      {"124000", "124 G, 62 G"},
      {"2000000", "2 T, 1 T"},
      {"13000000", "13 T, 6.5 T"},
      {"124000000", "124 T, 62 T"},
      {"2000000000", "2 P, 1 P"},
      {"13000000000", "13 P, 6.5 P"},
      {"124000000000", "124 P, 62 P"},
      {"1234000000000", "1 234 P, 617 P"},
      {"12345000000000", "1 234 P, 617 P"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, VolumeLabels(row.value)) << row.value;
}

TEST_F(ValueScaling, VolumeAxisLabelDropsTheOtherDigitsWithoutRounding) {
  const TextRow rows[] = {
      {"9999", "9 G, 4.5 G"}, {"13999", "13 G, 6.5 G"}, {"1999999", "1 T, 0.5 T"},
      {"2.5", "3 M, 1.5 M"},  {"999.5", "1 G, 0.5 G"},  {"1999999999", "1 P, 0.5 P"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, VolumeLabels(row.value)) << row.value;
}

TEST_F(ValueScaling, PacketAxisLabels) {
  const TextRow rows[] = {
      {"2", "2, 1"},
      {"1", "1, 0.5"},
      {"5", "5, 2.5"},
      {"50", "50, 25"},
      {"75", "75, 38"},
      {"125", "125, 63"},
      {"999", "999, 500"},
      {"0", "0, 0"},
      {"1000", "1 K, 0.5 K"},
      {"3000", "3 K, 1.5 K"},
      {"13000", "13 K, 6.5 K"},
      {"25000", "25 K, 13 K"},
      {"125000", "125 K, 63 K"},
      {"2000000", "2 M, 1 M"},
      {"15000000", "15 M, 7.5 M"},
      {"124000000", "124 M, 62 M"},
      {"2000000000", "2 G, 1 G"},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.result, PacketLabels(row.value)) << row.value;
}

TEST_F(ValueScaling, PacketAxisOfElevenDigitsStaysAsItIs) {
  EXPECT_EQ("13000000000, 6500000 000", PacketLabels("13000000000"));
  EXPECT_EQ("124000000000, 62000000 000", PacketLabels("124000000000"));
}

TEST_F(ValueScaling, PacketAxisTakesItsTextAsItStands) {
  EXPECT_EQ("3, 1.5", PacketLabels("2.5"));
  EXPECT_EQ("1 K, 0.5 K", PacketLabels("12.5"));
}

// The two roundings in a row make an axis on which the day's bar passes the top.
TEST_F(ValueScaling, AxisCanEndBelowItsHighestDay) {
  double ceiling = 2.0;
  std::string max = NumberText(Stepped("1234", ceiling));
  EXPECT_EQ("1300", max);
  max = AxisTop(max);
  EXPECT_EQ("1000", max);
  EXPECT_EQ("1 G, 0.5 G", VolumeLabels(max));
  EXPECT_EQ("1 K, 0.5 K", PacketLabels(max));
}

}  // namespace
}  // namespace quillon
