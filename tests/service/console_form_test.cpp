// The lists of the console's form, against the parts of the service that take what they offer.
#include "service/console_form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "platform/date_time.h"
#include "platform/text_encoding.h"
#include "render/stylesheet.h"
#include "support/installation.h"

namespace quillon {
namespace {

template <typename List>
bool Offers(const List& list, std::string_view value) {
  return std::ranges::find(list, value) != std::end(list);
}

TEST(ConsoleForm, EachDateFormatShowsADateInAWayOfItsOwn) {
  const DateTime day = MakeDateTime({2024, 5, 2});
  std::vector<std::string> texts;
  for (const char* format : lists::cboDatumFormat) texts.push_back(FormatDate(day, format));
  EXPECT_EQ(texts, (std::vector<std::string>{"2024-05-02", "05/02/2024", "02/05/2024"}));
}

TEST(ConsoleForm, TextsCanBeConvertedToEachCharset) {
  for (const char* charSet : lists::cboCharSet) EXPECT_TRUE(IsKnownCharset(charSet)) << charSet;
}

TEST(ConsoleForm, CharsetsAreThePartsOfTheStandardThatExistAndAJapaneseOne) {
  std::vector<std::string> expected;
  for (int part = 1; part <= 16; ++part) {
    if (part != 12) expected.push_back("ISO-8859-" + std::to_string(part));
  }
  expected.emplace_back("ISO-2022-JP");
  EXPECT_TRUE(std::ranges::equal(lists::cboCharSet, expected));
}

TEST(ConsoleForm, EachThemeHasColoursOfItsOwn) {
  std::set<std::string> sheets = {StylesheetText(FindTheme("no theme"))};
  for (const char* theme : lists::cboColorTheme) {
    EXPECT_TRUE(sheets.insert(StylesheetText(FindTheme(theme))).second) << theme;
  }
  EXPECT_EQ(sheets.size(), 1u + 5);
}

TEST(ConsoleForm, NewFormShowsTheThemeOfANewInstallation) {
  EXPECT_EQ(ConsoleForm().cboColorTheme, kDefaultTheme);
  EXPECT_TRUE(Offers(lists::cboColorTheme, ConsoleForm().cboColorTheme));
}

TEST(ConsoleForm, SettingsOfANewInstallationAreOffered) {
  const Installation fresh;
  const auto stored = [&](const std::string& select) {
    return fresh.Select("Quillon.mdb", select)[0];
  };
  EXPECT_TRUE(Offers(lists::cboDatumFormat, stored("SELECT DatumFormat FROM Settings_General")));
  EXPECT_TRUE(Offers(lists::cboCharSet, stored("SELECT CharSet FROM Settings_WebServer")));
}

}  // namespace
}  // namespace quillon
