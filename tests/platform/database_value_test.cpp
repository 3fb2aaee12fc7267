// Values: what each type reads as, and that a null or a wrong kind of value fails with
// the name of its field.
#include <gtest/gtest.h>

#include <functional>

#include "platform/database.h"
#include "platform/failure.h"

namespace quillon {
namespace {

const DateTime kMidnight = MakeDateTime({2024, 5, 1});
const DateTime kMorning = MakeDateTime({2024, 5, 1, 3, 4, 5});

TEST(Value, IsNullUntilItIsMade) {
  EXPECT_TRUE(Value().IsNull());
  EXPECT_EQ(Value().type(), Value::Type::kNull);
  EXPECT_FALSE(Value::Text("").IsNull());
  EXPECT_FALSE(Value::Integer(0).IsNull());
}

TEST(Value, ReadsAsTextInItsShortestForm) {
  struct Case {
    Value value;
    std::string text;
  };
  const Case cases[] = {
      {Value::Integer(0), "0"},
      {Value::Integer(-1), "-1"},
      {Value::Integer(2147483648), "2147483648"},
      {Value::Real(12), "12"},
      {Value::Real(0.1), "0.1"},
      {Value::Real(-2.5), "-2.5"},
      {Value::Real(123456789012345), "123456789012345"},
      {Value::Single(0.1f), "0.1"},
      {Value::Single(1234567.0f), "1234567"},
      {Value::Single(16777216.0f), "16777220"},  // seven digits
      {Value::Text(""), ""},
      {Value::Text(" O'Neil "), " O'Neil "},
      {Value::Boolean(true), "True"},
      {Value::Boolean(false), "False"},
      {Value::Date(kMidnight), "2024-05-01"},
      {Value::Date(kMorning), "2024-05-01 03:04:05"},
  };
  for (const Case& row : cases) EXPECT_EQ(row.value.AsText(), row.text);
}

TEST(Value, ReadsAsALongWithTiesToEven) {
  struct Case {
    Value value;
    std::int32_t number;
  };
  const Case cases[] = {
      {Value::Integer(7), 7},
      {Value::Integer(-2147483648LL), -2147483647 - 1},
      {Value::Integer(2147483647), 2147483647},
      {Value::Real(2.5), 2},
      {Value::Real(3.5), 4},
      {Value::Real(-2.5), -2},
      {Value::Single(1.75f), 2},
      {Value::Text("42"), 42},
      {Value::Text(" 1.5 "), 2},
  };
  for (const Case& row : cases) EXPECT_EQ(row.value.AsLong(), row.number) << row.value.AsText();
}

TEST(Value, BeyondALongIsAnOverflow) {
  const Value beyond[] = {Value::Integer(2147483648), Value::Integer(-2147483649LL),
                          Value::Real(1e10), Value::Text("99999999999")};
  for (const Value& value : beyond) EXPECT_THROW(value.AsLong(), OverflowFailure) << value.AsText();
}

TEST(Value, ReadsAsANumber) {
  EXPECT_EQ(Value::Integer(5).AsNumber(), 5);
  EXPECT_EQ(Value::Real(-0.5).AsNumber(), -0.5);
  EXPECT_EQ(Value::Single(2.5f).AsNumber(), 2.5);
  EXPECT_EQ(Value::Text(" -1.5e2 ").AsNumber(), -150);
}

TEST(Value, ReadsAsADateAndAsABoolean) {
  EXPECT_EQ(Value::Date(kMorning).AsDate(), kMorning);
  EXPECT_TRUE(Value::Boolean(true).AsBoolean());
  EXPECT_FALSE(Value::Boolean(false).AsBoolean());
}

TEST(Value, TruthCountsAsMinusOne) {
  EXPECT_EQ(Value::Boolean(true).AsNumber(), -1);
  EXPECT_EQ(Value::Boolean(true).AsLong(), -1);
  EXPECT_EQ(Value::Boolean(false).AsLong(), 0);
}

TEST(Value, TextReadsAsTheDateThatItSpells) {
  EXPECT_EQ(Value::Text("2024-05-01").AsDate(), kMidnight);
  EXPECT_EQ(Value::Text("2024-05-01 03:04:05").AsDate(), kMorning);
}

TEST(Value, WordOfATruthAndANumberReadAsABoolean) {
  struct Case {
    Value value;
    bool truth;
  };
  const Case cases[] = {
      {Value::Text("True"), true}, {Value::Text("False"), false}, {Value::Text("-1"), true},
      {Value::Text("0"), false},   {Value::Integer(2), true},     {Value::Integer(0), false},
      {Value::Real(0.5), true},    {Value::Single(0), false},
  };
  for (const Case& row : cases) EXPECT_EQ(row.value.AsBoolean(), row.truth) << row.value.AsText();
}

TEST(Value, DateIsNoNumberAndNoTruth) {
  const Value date = Value::Date(kMidnight);
  EXPECT_THROW(date.AsNumber(), ConversionFailure);
  EXPECT_THROW(date.AsBoolean(), ConversionFailure);
  for (const std::string word : {"true", "FALSE", "yes", ""}) {
    EXPECT_THROW(Value::Text(word).AsBoolean(), ConversionFailure) << word;
  }
}

TEST(Value, OfAWrongKindFailsWithTheFieldsName) {
  struct Case {
    std::string what;
    Value value;
    std::function<void(const Value&)> read;
  };
  const auto text = [](const Value& value) { value.AsText(); };
  const auto whole = [](const Value& value) { value.AsLong(); };
  const auto number = [](const Value& value) { value.AsNumber(); };
  const auto date = [](const Value& value) { value.AsDate(); };
  const auto truth = [](const Value& value) { value.AsBoolean(); };
  Case cases[] = {
      {"null as text", Value(), text},
      {"null as long", Value(), whole},
      {"null as number", Value(), number},
      {"null as date", Value(), date},
      {"null as boolean", Value(), truth},
      {"word as long", Value::Text("many"), whole},
      {"empty text as long", Value::Text(""), whole},
      {"grouped digits as number", Value::Text("1,000"), number},
      {"word as number", Value::Text("12 G"), number},
      {"word as date", Value::Text("soon"), date},
  };
  for (Case& row : cases) {
    row.value.SetName(std::make_shared<const std::string>("InErrorsTot24H"));
    try {
      row.read(row.value);
      ADD_FAILURE() << row.what << " did not fail";
    } catch (const ConversionFailure& failure) {
      EXPECT_NE(std::string(failure.what()).find("InErrorsTot24H"), std::string::npos)
          << row.what << ": " << failure.what();
    }
  }
}

TEST(Value, FailureShowsTheBeginningOfALongText) {
  Value value = Value::Text(std::string(99, 'x') + "\xC3\xA9" + std::string(1000000, 'y'));
  value.SetName(std::make_shared<const std::string>("FreeRawM"));
  try {
    value.AsNumber();
    FAIL();
  } catch (const ConversionFailure& failure) {
    EXPECT_EQ(std::string(failure.what()),
              "field FreeRawM holds \"" + std::string(99, 'x') + "\xC3\xA9...\" and not a number");
  }
}

TEST(Value, ReadsAsA16BitIntegerAndAsASingle) {
  EXPECT_EQ(2, Value::Real(2.5).AsInteger16());
  EXPECT_EQ(-32768, Value::Text("-32768").AsInteger16());
  EXPECT_THROW(Value::Integer(32768).AsInteger16(), OverflowFailure);
  EXPECT_EQ(0.1F, Value::Text("0.1").AsSingle());
  EXPECT_THROW(Value::Real(1e39).AsSingle(), OverflowFailure);
  EXPECT_THROW(Value().AsSingle(), ConversionFailure);
}

TEST(Value, IsOfADayWhateverItsTimeAndOnlyAsADate) {
  const DateTime day = MakeDateTime({2024, 5, 1});
  EXPECT_TRUE(Value::Date(day).IsOfDay(day));
  EXPECT_TRUE(Value::Date(MakeDateTime({2024, 5, 1, 23, 59, 59})).IsOfDay(day));
  EXPECT_TRUE(Value::Date(day).IsOfDay(MakeDateTime({2024, 5, 1, 12})));
  EXPECT_FALSE(Value::Date(MakeDateTime({2024, 4, 30, 23, 59, 59})).IsOfDay(day));
  EXPECT_FALSE(Value::Date(MakeDateTime({2023, 5, 1})).IsOfDay(day));
  EXPECT_FALSE(Value().IsOfDay(day));
  EXPECT_FALSE(Value::Text("2024-05-01").IsOfDay(day));
  EXPECT_FALSE(Value::Integer(20240501).IsOfDay(day));
}

}  // namespace
}  // namespace quillon
