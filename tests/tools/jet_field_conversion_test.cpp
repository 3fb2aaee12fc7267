// Fields of old tables in the columns of new ones.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "platform/failure.h"
#include "quillondb/jet/field_conversion.h"
#include "tools/jet_made_up.h"

namespace quillon {
namespace {

using Whole = std::int64_t;
using Text = std::string;

std::string Shown(const StoredField& field) {
  if (const auto* whole = std::get_if<Whole>(&field)) return "whole " + std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&field)) return "real " + std::to_string(*real);
  if (const auto* text = std::get_if<Text>(&field)) return "text " + *text;
  return "null";
}

TEST(JetFieldConversion, EachColumnGetsWhatItHolds) {
  struct Case {
    const char* type;
    JetValue value;
    StoredField stored;
  };
  const Case kCases[] = {
      {"BOOLEAN", true, Whole{1}},
      {"BOOLEAN", false, Whole{0}},
      {"BOOLEAN", Whole{-1}, Whole{1}},
      {"INTEGER", Whole{-7}, Whole{-7}},
      {"INTEGER", 2.5, Whole{2}},
      {"INTEGER", 3.5, Whole{4}},
      {"INTEGER", Text("12"), Whole{12}},
      {"INTEGER", Whole{2147483647}, Whole{2147483647}},
      {"SINGLE", 0.5F, 0.5},
      {"SINGLE", 0.1, static_cast<double>(0.1F)},
      {"SINGLE", 32209924.0F, 32209924.0},  // eight digits
      {"NUMERIC", 0.1F, 0.1},
      {"NUMERIC", 32209924.0F, 32209924.0},
      {"NUMERIC", 922337203685477.5807, 922337203685477.5807},
      {"NUMERIC", Whole{-1}, -1.0},
      {"TEXT", Text("Größe"), Text("Größe")},
      {"TEXT", Whole{100}, Text("100")},
      {"TEXT", true, Text("True")},
      {"TEXT", 0.1F, Text("0.1")},
      {"TEXT", JetNull{}, Text()},
      {"INTEGER", JetNull{}, StoredField()},
      {"DATE", JetNull{}, StoredField()},
      {"DATE", Text("2024-05-01 03:00:00"), Text("2024-05-01 03:00:00")},
  };
  for (const Case& each : kCases) {
    EXPECT_EQ(ConvertField(each.value, each.type), each.stored)
        << each.type << ": " << Shown(ConvertField(each.value, each.type));
  }
}

TEST(JetFieldConversion, DatesCountFromTheirZeroInBothDirections) {
  const std::pair<double, const char*> kCases[] = {
      {0, "1899-12-30 00:00:00"},         {0.5, "1899-12-30 12:00:00"},
      {1, "1899-12-31 00:00:00"},         {-1, "1899-12-29 00:00:00"},
      {-1.25, "1899-12-29 06:00:00"},     {-0.75, "1899-12-30 18:00:00"},
      {45413.125, "2024-05-01 03:00:00"}, {45412.99999999, "2024-05-01 00:00:00"},
      {-657434, "0100-01-01 00:00:00"},   {2958465.5, "9999-12-31 12:00:00"},
  };
  for (const auto& [days, text] : kCases) {
    EXPECT_EQ(ConvertField(JetDate{days}, "DATE"), StoredField(Text(text))) << days;
  }
}

TEST(JetFieldConversion, WhatDoesNotFitIsAFailureWithItsReason) {
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  struct Case {
    const char* type;
    JetValue value;
    const char* reason;
  };
  const Case kCases[] = {
      {"INTEGER", 2147483648.0, "2147483648"},
      {"INTEGER", Text("many"), "\"many\" is no number"},
      {"INTEGER", JetDate{1}, "a date is no number"},
      {"INTEGER", kEndless, "not finite"},
      {"NUMERIC", std::numeric_limits<double>::quiet_NaN(), "not finite"},
      {"SINGLE", 1e300, ""},
      {"DATE", Text("1 May"), "\"1 May\" is no date"},
      {"DATE", Whole{45413}, "a number is no date"},
      {"DATE", JetDate{-657435}, "outside the years"},
      {"DATE", JetDate{2958466}, "outside the years"},
      {"DATE", JetDate{kEndless}, "outside the years"},
      {"DATE", Text(std::string(50, 'x')), "xxx...\" is no date"},
      {"TEXT", JetOpaque{}, "pictures"},
  };
  for (const Case& each : kCases) {
    try {
      ADD_FAILURE() << each.type << " " << each.reason << ": "
                    << Shown(ConvertField(each.value, each.type));
    } catch (const Failure& failure) {
      EXPECT_NE(std::string(failure.what()).find(each.reason), std::string::npos)
          << each.reason << ": " << failure.what();
    }
  }
}

TEST(JetFieldConversion, AnEmptyFieldIsNothingOfItsType) {
  EXPECT_EQ(EmptyField("TEXT"), StoredField(Text()));
  EXPECT_EQ(EmptyField("DATE"), StoredField(Text("2000-01-01 00:00:00")));
  EXPECT_EQ(EmptyField("NUMERIC"), StoredField(Whole{0}));
  EXPECT_EQ(EmptyField("BOOLEAN"), StoredField(Whole{0}));
}

}  // namespace
}  // namespace quillon
