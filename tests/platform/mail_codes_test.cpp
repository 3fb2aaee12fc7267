// What the stored codes mean, and what is said of those that mean nothing.
#include "platform/mail_codes.h"

#include <gtest/gtest.h>

#include <limits>

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

template <typename Function, typename Code>
void ExpectMeans(const Function& function, const Code& code, int value) {
  const Reading reading = Read(function, code);
  EXPECT_EQ(reading.value, value) << testing::PrintToString(code);
  EXPECT_EQ(reading.standardError, "") << testing::PrintToString(code);
}

template <typename Function, typename Code>
void ExpectFallsBack(const Function& function, const Code& code, int value) {
  const Reading reading = Read(function, code);
  EXPECT_EQ(reading.value, value) << testing::PrintToString(code);
  EXPECT_TRUE(IsOneLine(reading.standardError))
      << testing::PrintToString(code) << " gave " << testing::PrintToString(reading.standardError);
}

TEST(MailPriority, NumbersMeanThemselves) {
  ExpectMeans(MailPriority, "1"s, 1);
  ExpectMeans(MailPriority, "2"s, 2);
  ExpectMeans(MailPriority, "3"s, 3);
  ExpectMeans(MailPriority, "4"s, 4);
  ExpectMeans(MailPriority, "5"s, 5);
}

TEST(MailPriority, NamesStandForNumbers) {
  ExpectMeans(MailPriority, "Highest"s, 1);
  ExpectMeans(MailPriority, "High"s, 2);
  ExpectMeans(MailPriority, "Normal"s, 3);
  ExpectMeans(MailPriority, "Low"s, 4);
  ExpectMeans(MailPriority, "Lowest"s, 5);
}

TEST(MailPriority, CaseOfNamesDoesNotMatter) {
  ExpectMeans(MailPriority, "highest"s, 1);
  ExpectMeans(MailPriority, "HIGH"s, 2);
  ExpectMeans(MailPriority, "nOrMaL"s, 3);
  ExpectMeans(MailPriority, "low"s, 4);
  ExpectMeans(MailPriority, "LOWEST"s, 5);
}

TEST(MailPriority, NothingIsNormalWithoutAWord) {
  ExpectMeans(MailPriority, ""s, 3);
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

TEST(CheckAttachmentEncoding, ZeroIsBase64) {
  EXPECT_EQ(StandardErrorOf([] { CheckAttachmentEncoding(0); }), "");
}

TEST(CheckAttachmentEncoding, AnythingElseIsTold) {
  for (const std::int32_t code : {1, 2, 3, -1, 100, kSmallest, kLargest}) {
    EXPECT_TRUE(IsOneLine(StandardErrorOf([&] { CheckAttachmentEncoding(code); }))) << code;
  }
}

TEST(BodyEncodingOf, CodesHaveTheirMeaning) {
  ExpectMeans(BodyEncodingOf, 0, static_cast<int>(BodyEncoding::kAsNeeded));
  ExpectMeans(BodyEncodingOf, 1, static_cast<int>(BodyEncoding::kQuotedPrintable));
  ExpectMeans(BodyEncodingOf, 2, static_cast<int>(BodyEncoding::kBase64));
}

TEST(BodyEncodingOf, AnythingElseIsAsNeededAndTold) {
  for (const std::int32_t code : {3, 4, -1, 256, 257, kSmallest, kLargest}) {
    ExpectFallsBack(BodyEncodingOf, code, static_cast<int>(BodyEncoding::kAsNeeded));
  }
}

TEST(BodyFormatOf, CodesHaveTheirMeaning) {
  ExpectMeans(BodyFormatOf, 0, static_cast<int>(BodyFormat::kPlain));
  ExpectMeans(BodyFormatOf, 1, static_cast<int>(BodyFormat::kHtmlBeside));
}

TEST(BodyFormatOf, AnythingElseIsPlainAndTold) {
  for (const std::int32_t code : {2, 3, -1, 256, 257, kSmallest, kLargest}) {
    ExpectFallsBack(BodyFormatOf, code, static_cast<int>(BodyFormat::kPlain));
  }
}

}  // namespace
}  // namespace quillon
