// Numbers as texts and back: shortest forms, digit patterns, what is a number, and the
// two roundings.
#include "platform/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "platform/failure.h"

namespace quillon {
namespace {

struct PatternRow {
  double number;
  std::string pattern;
  std::string text;
};

struct NumberRow {
  std::string text;
  double number;
};

TEST(NumberText, IsTheShortestFormWithAtMost15Digits) {
  const NumberRow rows[] = {
      {"0", 0},
      {"0", -0.0},
      {"7", 7},
      {"-12", -12},
      {"2.5", 2.5},
      {"-0.5", -0.5},
      {"0.1", 0.1},
      {"0.3", 0.1 + 0.2},
      {"0.333333333333333", 1.0 / 3},
      {"0.666666666666667", 2.0 / 3},
      {"33.3333333333333", 100.0 / 3},
      {"1234567.875", 1234567.875},
  };
  for (const NumberRow& row : rows) EXPECT_EQ(row.text, NumberText(row.number));
}

TEST(NumberText, HasNoExponentBelow1e15) {
  const NumberRow rows[] = {
      {"100000000000000", 1e14},
      {"999999999999999", 999999999999999},
      {"1000000", 1e6},
      {"0.0001", 1e-4},
      {"0.00001", 1e-5},
      {"0.0000001", 1e-7},
      {"-100000000000000", -1e14},
  };
  for (const NumberRow& row : rows) EXPECT_EQ(row.text, NumberText(row.number));
}

TEST(NumberText, HasAnExponentFrom1e15On) {
  const NumberRow rows[] = {
      {"1E+15", 1e15},
      {"-1E+15", -1e15},
      {"1.5E+300", 1.5e300},
      {"1E+15", 999999999999999.9},  // 15 digits do not hold it
      {"1.23456789012346E+20", 123456789012345678901.0},
  };
  for (const NumberRow& row : rows) EXPECT_EQ(row.text, NumberText(row.number));
}

TEST(SingleText, HasAtMost7Digits) {
  const struct {
    std::string text;
    float number;
  } rows[] = {
      {"0", 0.0F},
      {"0.1", 0.1F},
      {"12.5", 12.5F},
      {"-0.25", -0.25F},
      {"33.3", 33.3F},
      {"0.3333333", 1.0F / 3},
      {"0.6666667", 2.0F / 3},
      {"45.12346", 45.123456F},
      {"1234567", 1234567.0F},
      {"100000000", 1e8F},
  };
  for (const auto& row : rows) EXPECT_EQ(row.text, SingleText(row.number));
}

TEST(ParseNumber, ReadsSignPointExponentAndOuterBlanks) {
  const NumberRow rows[] = {
      {"0", 0},       {"12", 12},     {"-12", -12},       {"+12", 12},
      {"12.5", 12.5}, {".5", 0.5},    {"-.5", -0.5},      {"5.", 5},
      {"0012", 12},   {"  12  ", 12}, {"1e3", 1000},      {"1E3", 1000},
      {"1e+3", 1000}, {"25e-1", 2.5}, {" -1.5E2 ", -150}, {"4294967296", 4294967296.0},
      {"-0", 0},
  };
  for (const NumberRow& row : rows) {
    EXPECT_EQ(row.number, ParseNumber(row.text)) << "'" << row.text << "'";
    EXPECT_TRUE(IsNumeric(row.text)) << "'" << row.text << "'";
  }
}

TEST(ParseNumber, GivesNothingForAnyOtherText) {
  const std::string texts[] = {
      "",     " ",   "-",   "+",     ".",     "-.",  "abc",      "1,000", "$5",  "&H1",
      "12 G", "12x", "x12", "1 234", "1.2.3", "1e",  "e5",       "1e+",   "--1", "+-1",
      "0x10", "12-", "inf", "-inf",  "nan",   "NaN", "infinity", "1e2.5", "5%",  "12\xA0",
  };
  for (const std::string& text : texts) {
    EXPECT_EQ(std::nullopt, ParseNumber(text)) << "'" << text << "'";
    EXPECT_FALSE(IsNumeric(text)) << "'" << text << "'";
  }
}

TEST(ParseNumber, FailsForANumberThatIsTooGreat) {
  const std::string texts[] = {"1e999", "-1e999", " 1" + std::string(400, '0')};
  for (const std::string& text : texts) {
    EXPECT_TRUE(IsNumeric(text)) << text;
    EXPECT_THROW(ParseNumber(text), OverflowFailure) << text;
    EXPECT_THROW(LeadingNumber(text + " G"), OverflowFailure) << text;
    EXPECT_THROW(TextToLong(text), OverflowFailure) << text;
  }
}

TEST(LeadingNumber, IsTheNumberAtTheBeginningWithBlanksIgnored) {
  const NumberRow rows[] = {
      {"12 G", 12},    {"12G", 12},      {"1 234 P", 1234}, {"12.5 M", 12.5}, {"0.5 G", 0.5},
      {"-1", -1},      {"-0.5 M", -0.5}, {"  7", 7},        {".5", 0.5},      {"12.5.6", 12.5},
      {"12abc34", 12}, {"", 0},          {" ", 0},          {"-", 0},         {"abc", 0},
      {"G 12", 0},     {"150", 150},     {"+3 K", 3},       {"1,5", 1},
  };
  for (const NumberRow& row : rows) {
    EXPECT_EQ(row.number, LeadingNumber(row.text)) << "'" << row.text << "'";
  }
}

TEST(TextToLong, RoundsTiesToTheEvenNumber) {
  const struct {
    std::string text;
    std::int32_t number;
  } rows[] = {
      {"0", 0},
      {"12", 12},
      {" -12 ", -12},
      {"2.5", 2},
      {"3.5", 4},
      {"-2.5", -2},
      {"2.51", 3},
      {"1e3", 1000},
      {"0.5", 0},
      {"2147483647", INT32_MAX},
      {"-2147483648", INT32_MIN},
      {"2147483647.4", INT32_MAX},
      {"-2147483648.5", INT32_MIN},
  };
  for (const auto& row : rows) EXPECT_EQ(row.number, TextToLong(row.text)) << row.text;
}

TEST(TextToLong, FailsForNoNumberAndBeyond32Bits) {
  for (const std::string text : {"", " ", "12x", "abc", "1,000", "-", "&H1", "12 G"}) {
    EXPECT_THROW(TextToLong(text), ConversionFailure) << "'" << text << "'";
  }
  for (const std::string text : {"2147483648", "2147483647.5", "-2147483649", "1e10", "-1e300"}) {
    EXPECT_THROW(TextToLong(text), OverflowFailure) << text;
  }
}

TEST(NumberToLong, RoundsTiesToTheEvenNumberAndFailsBeyond32Bits) {
  const struct {
    double number;
    std::int32_t rounded;
  } rows[] = {{0, 0},
              {0.5, 0},
              {1.5, 2},
              {2.5, 2},
              {-1.5, -2},
              {-2.5, -2},
              {2.4999, 2},
              {2147483647.0, INT32_MAX},
              {-2147483648.5, INT32_MIN}};
  for (const auto& row : rows) EXPECT_EQ(row.rounded, NumberToLong(row.number)) << row.number;
  for (const double number : {2147483647.5, 2147483648.0, -2147483649.0, 1e18, -1e300}) {
    EXPECT_THROW(NumberToLong(number), OverflowFailure) << number;
  }
}

TEST(RoundHalfEven, TakesTheNearestWholeNumberAndTheEvenOneOfTwo) {
  const struct {
    double number;
    double rounded;
  } rows[] = {{0, 0},     {0.5, 0},   {1.5, 2},     {2.5, 2},      {3.5, 4},
              {0.49, 0},  {0.51, 1},  {-0.5, 0},    {-1.5, -2},    {-2.5, -2},
              {-2.6, -3}, {100, 100}, {1e15, 1e15}, {1e300, 1e300}};
  for (const auto& row : rows) EXPECT_EQ(row.rounded, RoundHalfEven(row.number)) << row.number;
}

void ExpectPatterns(const PatternRow* first, const PatternRow* last) {
  for (const PatternRow* row = first; row != last; ++row) {
    EXPECT_EQ(row->text, DigitPattern(row->number, row->pattern))
        << row->number << " by '" << row->pattern << "'";
  }
}

TEST(DigitPattern, GroupsByThreeAndKeepsTheBlanksOfMissingGroups) {
  const PatternRow rows[] = {
      {0, "### ### ##0", "  0"},
      {7, "### ##0", " 7"},
      {999, "### ##0", " 999"},
      {1234, "### ##0", "1 234"},
      {1000, "### ##0", "1 000"},
      {1234, "### ### ##0", " 1 234"},
      {123456789, "### ### ##0", "123 456 789"},
      {1234, "### ### ### ##0", "  1 234"},
      {12, "### ###", " 12"},
      {123456, "### ###", "123 456"},
  };
  ExpectPatterns(std::begin(rows), std::end(rows));
}

TEST(DigitPattern, PrintsZeroByAZeroOnly) {
  const PatternRow rows[] = {
      {0, "0", "0"}, {0, "#0", "0"},         {0, "### ##0", " 0"}, {0, "### ###", " "},
      {0, "#", ""},  {0, "#0.000", "0.000"}, {7, "000", "007"},    {0.2, "### ###", " "},
  };
  ExpectPatterns(std::begin(rows), std::end(rows));
}

TEST(DigitPattern, PutsDigitsBeyondItsGroupsInFront) {
  const PatternRow rows[] = {
      {1234567, "### ##0", "1234 567"},
      {6172839451, "### ##0", "6172839 451"},
      {1234567, "### ###", "1234 567"},
      {1234567890, "### ### ##0", "1234 567 890"},
      {123, "#0", "123"},
      {123456789012345, "0", "123456789012345"},
  };
  ExpectPatterns(std::begin(rows), std::end(rows));
}

TEST(DigitPattern, RoundsHalvesAwayFromZero) {
  const PatternRow rows[] = {
      {0.5, "0", "1"},
      {1.5, "0", "2"},
      {2.5, "0", "3"},
      {-0.5, "0", "-1"},
      {-2.5, "0", "-3"},
      {0.49, "0", "0"},
      {62.5, "### ##0", " 63"},
      {999.5, "### ##0", "1 000"},
      {0.0625, "#0.000", "0.063"},
      {-0.0625, "#0.000", "-0.063"},
      {0.9996, "#0.000", "1.000"},
      {99.5, "#0", "100"},
  };
  ExpectPatterns(std::begin(rows), std::end(rows));
}

TEST(DigitPattern, PutsTheMinusDirectlyBeforeTheDigits) {
  const PatternRow rows[] = {
      {-1234, "### ##0", "-1 234"},
      {-12, "### ##0", " -12"},
      {-7, "### ### ##0", "  -7"},
      {-1234, "### ### ##0", " -1 234"},
      {-1234567, "### ##0", "-1234 567"},
      {-7, "0", "-7"},
      {-5, "### ###", " -5"},
  };
  ExpectPatterns(std::begin(rows), std::end(rows));
}

TEST(DigitPattern, PrintsThreeDecimals) {
  const PatternRow rows[] = {
      {0, "# ### ### ##0.000", "   0.000"},
      {12.5, "# ### ### ##0.000", "   12.500"},
      {1234.5, "# ### ### ##0.000", "  1 234.500"},
      {-1234.5, "# ### ### ##0.000", "  -1 234.500"},
      {1234567890.125, "# ### ### ##0.000", "1 234 567 890.125"},
      {12345678901.5, "# ### ### ##0.000", "12 345 678 901.500"},
      {43200.25, "#0.000", "43200.250"},
      {3.14159, "#0.000", "3.142"},
  };
  ExpectPatterns(std::begin(rows), std::end(rows));
}

TEST(DigitPattern, LeavesATextThatIsNoNumberAsItIs) {
  const struct {
    std::string text;
    std::string printed;
  } rows[] = {{"12.5", "13"},   {" 7 ", "7"},   {"-0.5", "-1"},     {"1e3", "1000"},
              {"0012", "12"},   {"", ""},       {"-", "-"},         {"abc", "abc"},
              {"12 G", "12 G"}, {" x ", " x "}, {"1,000", "1,000"}, {"&H1", "&H1"}};
  for (const auto& row : rows) EXPECT_EQ(row.printed, DigitPattern(row.text, "0")) << row.text;
}

TEST(Trimmed, TakesBlanksAwayAndNothingElse) {
  const struct {
    std::string text;
    std::string trimmed;
  } rows[] = {{"", ""},        {"   ", ""},        {"a", "a"},         {"  a b  ", "a b"},
              {"\ta ", "\ta"}, {" \r\n ", "\r\n"}, {"a\xA0 ", "a\xA0"}};
  for (const auto& row : rows) EXPECT_EQ(row.trimmed, Trimmed(row.text)) << "'" << row.text << "'";
}

TEST(NumberToInteger16, RoundsTiesToEvenAndFailsBeyond16Bits) {
  EXPECT_EQ(2, NumberToInteger16(2.5));
  EXPECT_EQ(4, NumberToInteger16(3.5));
  EXPECT_EQ(-2, NumberToInteger16(-2.5));
  EXPECT_EQ(32767, NumberToInteger16(32767.49));
  EXPECT_EQ(-32768, NumberToInteger16(-32768.5));
  EXPECT_THROW(NumberToInteger16(32767.5), OverflowFailure);
  EXPECT_THROW(NumberToInteger16(-32768.51), OverflowFailure);
  EXPECT_THROW(NumberToInteger16(std::nan("")), OverflowFailure);
}

TEST(NumberToSingle, KeepsSevenDigitsAndFailsBeyondItsRange) {
  EXPECT_EQ(0.1F, NumberToSingle(0.1));
  EXPECT_EQ(16777216.0F, NumberToSingle(16777217));
  EXPECT_EQ(3.4e38F, NumberToSingle(3.4e38));
  EXPECT_THROW(NumberToSingle(3.5e38), OverflowFailure);
  EXPECT_THROW(NumberToSingle(-3.5e38), OverflowFailure);
  EXPECT_THROW(NumberToSingle(std::nan("")), OverflowFailure);
}

}  // namespace
}  // namespace quillon
