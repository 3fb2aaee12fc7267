// What the stored codes mean, and what is said of those that mean nothing.
#include "mail/mail_codes.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/standard_error.h"

namespace quillon {
namespace {

using namespace std::string_literals;

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

struct Reading {
  int value;
  std::string standardError;
};

template <typename Function, typename Code>
Reading Read(const Function& function, const Code& code) {
  Reading reading{};
  reading.standardError =
      StandardErrorOf([&] { reading.value = static_cast<int>(function(code)); });
  return reading;
}

// Codes with the values that they stand for, of which there is nothing to tell.
template <typename Code, typename Function>
using Meanings = std::vector<std::pair<Code, std::invoke_result_t<Function, const Code&>>>;

template <typename Code, typename Function>
void ExpectMeanings(const Function& function, const Meanings<Code, Function>& meanings) {
  for (const auto& [code, value] : meanings) {
    const Reading reading = Read(function, code);
    EXPECT_EQ(reading.value, static_cast<int>(value)) << testing::PrintToString(code);
    EXPECT_EQ(reading.standardError, "") << testing::PrintToString(code);
  }
}

template <typename Function, typename Code>
void ExpectFallsBack(const Function& function, const Code& code, int value) {
  const Reading reading = Read(function, code);
  EXPECT_EQ(reading.value, value) << testing::PrintToString(code);
  EXPECT_TRUE(IsOneLine(reading.standardError))
      << testing::PrintToString(code) << " gave " << testing::PrintToString(reading.standardError);
}

TEST(MailPriority, NumbersMeanThemselves) {
  ExpectMeanings<std::string>(MailPriority, {{"1", 1}, {"2", 2}, {"3", 3}, {"4", 4}, {"5", 5}});
}

TEST(MailPriority, NamesStandForNumbers) {
  ExpectMeanings<std::string>(
      MailPriority, {{"Highest", 1}, {"High", 2}, {"Normal", 3}, {"Low", 4}, {"Lowest", 5}});
}

TEST(MailPriority, CaseOfNamesDoesNotMatter) {
  ExpectMeanings<std::string>(
      MailPriority, {{"highest", 1}, {"HIGH", 2}, {"nOrMaL", 3}, {"low", 4}, {"LOWEST", 5}});
}

TEST(MailPriority, NothingIsNormalWithoutAWord) {
  ExpectMeanings<std::string>(MailPriority, {{"", 3}});
}

TEST(MailPriority, AnythingElseIsNormalAndTold) {
  for (const std::string& text :
       {"0"s, "6"s, "10"s, "11"s, "-1"s, "+1"s, "1.0"s, "1x"s, "01"s, "Higher"s, "Highe"s,
        "urgent"s, "99999999999999999999"s, "high\0"s, "h\xC3\xB6her"s}) {
    ExpectFallsBack(MailPriority, text, 3);
  }
}

TEST(MailPriority, LineEndsInTheTextDoNotMakeTheWordLonger) {
  for (const std::string& text : {"high\n"s, "a\nb"s, "a\r\nb\r\n"s, "\n"s}) {
    ExpectFallsBack(MailPriority, text, 3);
  }
}

TEST(IsMailPriority, IsTrueOfWhatHasAMeaningOfItsOwn) {
  for (const char* text : {"1", "5", "Highest", "normal"})
    EXPECT_TRUE(IsMailPriority(text)) << text;
  for (const char* text : {"", "0", "6", "urgent"}) EXPECT_FALSE(IsMailPriority(text)) << text;
}

TEST(CheckAttachmentEncoding, ZeroIsBase64) {
  EXPECT_EQ(StandardErrorOf([] { CheckAttachmentEncoding(0); }), "");
}

TEST(CheckAttachmentEncoding, AnythingElseIsTold) {
  for (const std::int32_t code : {1, 2, 3, -1, 100, kSmallest, kLargest}) {
    EXPECT_TRUE(IsOneLine(StandardErrorOf([&] { CheckAttachmentEncoding(code); }))) << code;
  }
}

TEST(BodyEncodingOf, CodesHaveTheirMeaning) {
  ExpectMeanings<std::int32_t>(BodyEncodingOf, {{0, BodyEncoding::kAsNeeded},
                                                {1, BodyEncoding::kQuotedPrintable},
                                                {2, BodyEncoding::kBase64}});
}

TEST(BodyEncodingOf, AnythingElseIsAsNeededAndTold) {
  for (const std::int32_t code : {3, 4, -1, 256, 257, kSmallest, kLargest}) {
    ExpectFallsBack(BodyEncodingOf, code, static_cast<int>(BodyEncoding::kAsNeeded));
  }
}

TEST(BodyFormatOf, CodesHaveTheirMeaning) {
  ExpectMeanings<std::int32_t>(BodyFormatOf,
                               {{0, BodyFormat::kPlain}, {1, BodyFormat::kHtmlBeside}});
}

TEST(BodyFormatOf, AnythingElseIsPlainAndTold) {
  for (const std::int32_t code : {2, 3, -1, 256, 257, kSmallest, kLargest}) {
    ExpectFallsBack(BodyFormatOf, code, static_cast<int>(BodyFormat::kPlain));
  }
}

}  // namespace
}  // namespace quillon
