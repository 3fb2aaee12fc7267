// The rules on single settings: what each takes, and what it must not take.
#include "quillonctl/settings_rules.h"

#include <gtest/gtest.h>

#include "service/console_form.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;
using Rule = std::string (*)(const std::string& text);

void ExpectTaken(Rule rule, const Texts& texts) {
  for (const std::string& text : texts) EXPECT_EQ(rule(text), "") << text;
}

void ExpectRefused(Rule rule, const Texts& texts) {
  for (const std::string& text : texts) EXPECT_NE(rule(text), "") << text;
}

TEST(SettingsRules, AddressIsOneOfEitherVersion) {
  ExpectTaken(rules::Address, {"0.0.0.0", "192.0.2.1", "::", "::1", "2001:db8::1"});
  ExpectRefused(rules::Address, {"", "localhost", "192.0.2", "192.0.2.256", " 192.0.2.1",
                                 "192.0.2.1 ", "192.0.2.1:80", "[::1]", "::1\0"s});
}

TEST(SettingsRules, PortIsANumberOfOne) {
  ExpectTaken(rules::Port, {"1", "80", "8080", "65535"});
  ExpectRefused(rules::Port, {"", "0", "65536", "-1", "+80", "80.0", "8e1", " 80", "80 ", "0x50",
                              "http", "99999999999999999999"});
}

TEST(SettingsRules, NumberHasItsBounds) {
  EXPECT_EQ(rules::Number("0", 0, 10), "");
  EXPECT_EQ(rules::Number("10", 0, 10), "");
  EXPECT_EQ(rules::Number("11", 0, 10), "'11' is no number from 0 to 10");
  EXPECT_EQ(rules::Number("-1", 0, 10), "'-1' is no number from 0 to 10");
}

TEST(SettingsRules, DateFormatIsOneOfTheList) {
  ExpectTaken(rules::DateFormat, {"YYYY-MM-DD", "MM/DD/YYYY", "DD/MM/YYYY"});
  ExpectRefused(rules::DateFormat, {"", "yyyy-mm-dd", "YYYY-MM-DD ", "DD.MM.YYYY"});
}

TEST(SettingsRules, EveryCharsetOfTheFormIsTaken) {
  for (const char* charSet : lists::cboCharSet) EXPECT_EQ(rules::CharSet(charSet), "") << charSet;
}

TEST(SettingsRules, CharsetsThatHoldAsciiAreTaken) {
  ExpectTaken(rules::CharSet, {"UTF-8", "utf-8", "UTF8", "US-ASCII", "iso-8859-15", "windows-1252",
                               "CP1251", "KOI8-R", "GB18030", "EUC-JP", "BIG5"});
}

TEST(SettingsRules, CharsetsInWhichMarkupIsSomethingElseAreRefused) {
  ExpectRefused(rules::CharSet, {"UTF-16", "UTF-16LE", "UCS-2", "UTF-32", "UTF-7", "EBCDIC-US",
                                 "IBM037", "CP500", "ISO646-DE", "WCHAR_T", "UNICODE"});
}

TEST(SettingsRules, WhatIsNoNameOfACharsetIsRefused) {
  ExpectRefused(rules::CharSet,
                {"", "Latin", "ISO-8859-99", "ISO-8859-1//TRANSLIT", "UTF-8//IGNORE", "//",
                 "ISO-8859-1 ", "UTF-8\n", "UTF-8\"", "UTF-8,UTF-16", "../UTF-8", "UTF-8\0x"s});
}

TEST(SettingsRules, ThemeIsOneOfTheList) {
  for (const char* theme : lists::cboColorTheme) EXPECT_EQ(rules::Theme(theme), "") << theme;
  ExpectRefused(rules::Theme, {"", "blue", "BLUE", "Red", "Blue "});
}

TEST(SettingsRules, DayIsOneOfTheCalendar) {
  ExpectTaken(rules::Day, {"2014-11-07", "2024-02-29", "1999-12-31"});
  ExpectRefused(rules::Day, {"", "2023-02-29", "2014-13-01", "2014-00-01", "2014-11-31",
                             "2014-11-7", "14-11-07", "2014/11/07", "07.11.2014",
                             "2014-11-07 00:00:00", " 2014-11-07", "today"});
}

TEST(SettingsRules, MailAddressIsOneOfAscii) {
  ExpectTaken(rules::MailAddress,
              {"a@b", "noc@example.org", "<noc@example.org>", "Noc <noc@example.org>",
               "Büro <noc@example.org>", "first.last+x@[192.0.2.1]"});
  ExpectRefused(rules::MailAddress, {"", "noc", "@example.org", "noc@", "a@b, c@d", "a@b c@d",
                                     "noc@exämple.org", "<a@b> <c@d>", "a@b\r\nBcc: c@d"});
}

TEST(SettingsRules, PlainTextIsUtf8WithoutControlCharacters) {
  ExpectTaken(rules::PlainText, {"", "Ann", "Büro", "\xE2\x82\xAC", "\xF0\x9F\x93\xA0", "a\"b'c"});
  ExpectRefused(rules::PlainText, {"a\nb", "\r", "\x1B[2J", "\x7F", "a\0b"s, "B\xFCro", "\xC0\xAF",
                                   "\xED\xA0\x80", "\xE2\x82"});
}

}  // namespace
}  // namespace quillon
