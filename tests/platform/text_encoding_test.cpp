// Database text as bytes of a page's charset, and a request's bytes as database text.
#include "platform/text_encoding.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace quillon {
namespace {

using namespace std::string_literals;

struct Pair {
  std::string charSet;
  std::string utf8;
  std::string bytes;
};

// Texts that a charset can show: they pass both ways.
const Pair kShown[] = {
    {"ISO-8859-1", "", ""},
    {"ISO-8859-1", "port 1/24", "port 1/24"},
    {"ISO-8859-1", "Z\u00FCrich", "Z\xFCrich"},
    {"ISO-8859-1", "\u00C5\u00DF\u00FF", "\xC5\xDF\xFF"},
    {"ISO-8859-1", "a\0b"s, "a\0b"s},
    {"ISO-8859-2", "\u0141\u00F3d\u017A",
     "\xA3\xF3"
     "d\xBC"},
    {"ISO-8859-5", "\u041F\u0440\u0438\u0432\u0435\u0442", "\xBF\xE0\xD8\xD2\xD5\xE2"},
    {"ISO-8859-15", "5 \u20AC", "5 \xA4"},
    {"ISO-2022-JP", "sw-1", "sw-1"},
    {"ISO-2022-JP", "\u65E5\u672C", "\x1B$BF|K\\\x1B(B"},
    {"ISO-2022-JP", "a\u65E5z", "a\x1B$BF|\x1B(Bz"},
    {"UTF-8", "Z\u00FCrich \u65E5", "Z\u00FCrich \u65E5"},
    {"", "Z\u00FCrich \u65E5", "Z\u00FCrich \u65E5"},
    {"no-such-charset", "Z\u00FCrich \u65E5", "Z\u00FCrich \u65E5"},
};

TEST(TextEncoding, DatabaseTextBecomesBytesOfTheCharset) {
  for (const Pair& pair : kShown) {
    EXPECT_EQ(pair.bytes, PageText(pair.utf8, pair.charSet)) << pair.charSet << ": " << pair.utf8;
  }
}

TEST(TextEncoding, BytesOfTheCharsetBecomeDatabaseText) {
  for (const Pair& pair : kShown) {
    EXPECT_EQ(pair.utf8, DatabaseText(pair.bytes, pair.charSet))
        << pair.charSet << ": " << pair.utf8;
  }
}

TEST(TextEncoding, CharacterThatTheCharsetLacksBecomesOneQuestionMark) {
  const Pair rows[] = {
      {"ISO-8859-1", "5 \u20AC", "5 ?"},
      {"ISO-8859-1", "\u20AC", "?"},
      {"ISO-8859-1", "\u65E5\u672C switch", "?? switch"},
      {"ISO-8859-1", "a\U0001F600b", "a?b"},
      {"ISO-8859-1", "\u201Cx\u201D", "?x?"},
      {"ISO-8859-5", "Z\u00FCrich", "Z?rich"},
      {"ISO-2022-JP", "Z\u00FCrich", "Z?rich"},
  };
  for (const Pair& row : rows) {
    EXPECT_EQ(row.bytes, PageText(row.utf8, row.charSet)) << row.charSet << ": " << row.utf8;
  }
}

TEST(TextEncoding, QuestionMarkBetweenJapaneseCharactersIsReadable) {
  const std::string page = PageText("\u65E5\u00FC\u672C", "ISO-2022-JP");
  EXPECT_EQ("\u65E5?\u672C", DatabaseText(page, "ISO-2022-JP"));
}

TEST(TextEncoding, ByteThatIsNoTextOfTheCharsetBecomesAQuestionMark) {
  EXPECT_EQ("a?b", DatabaseText("a\xA5"
                                "b",
                                "ISO-8859-3"));
  EXPECT_EQ("?", DatabaseText("\xA5", "ISO-8859-3"));
  EXPECT_EQ("a?b", DatabaseText("a\xFF"
                                "b",
                                "ISO-2022-JP"));
}

TEST(TextEncoding, WithoutConversionEveryByteStays) {
  const std::string bytes =
      "a\xFF\xFC"
      "b\0c"s;
  for (const std::string charSet : {"", "UTF-8", "no-such-charset"}) {
    EXPECT_EQ(bytes, PageText(bytes, charSet)) << charSet;
    EXPECT_EQ(bytes, DatabaseText(bytes, charSet)) << charSet;
  }
}

TEST(TextEncoding, LongTextIsConvertedWhole) {
  constexpr int kLength = 100'000;
  std::string utf8;
  for (int i = 0; i < kLength; ++i) utf8 += "\u00FC";
  EXPECT_EQ(std::string(kLength, '\xFC'), PageText(utf8, "ISO-8859-1"));
  EXPECT_EQ(utf8, DatabaseText(std::string(kLength, '\xFC'), "ISO-8859-1"));
}

TEST(TextEncoding, Utf8IsKnownInAnyCase) {
  for (const std::string name : {"UTF-8", "utf-8", "Utf-8"}) {
    EXPECT_EQ(PageText("\xC3\xBC\xFF", name), "\xC3\xBC\xFF") << name;
    EXPECT_EQ(DatabaseText("\xC3\xBC\xFF", name), "\xC3\xBC\xFF") << name;
  }
}

TEST(TextEncoding, FirstCharactersAreBytesInACharsetOfOneByteEach) {
  struct Case {
    std::size_t count;
    std::string first;
  };
  const Case cases[] = {{0, ""},       {1, "Z"},         {2, "Z\xFC"},
                        {3, "Z\xFCr"}, {6, "Z\xFCrich"}, {240, "Z\xFCrich"}};
  for (const std::string charSet : {"ISO-8859-1", "ISO-8859-5", "windows-1252"}) {
    for (const Case& row : cases) {
      EXPECT_EQ(FirstCharacters("Z\xFCrich", row.count, charSet), row.first) << row.count;
    }
  }
}

TEST(TextEncoding, FirstCharactersOfUtf8AreWhole) {
  const std::string text = "a\u00FC\u65E5\U0001F600z";  // of 1, 2, 3, 4 and 1 bytes
  const std::size_t lengths[] = {0, 1, 3, 6, 10, 11, 11, 11};
  for (const std::string charSet : {"UTF-8", "utf-8", ""}) {
    for (std::size_t count = 0; count < std::size(lengths); ++count) {
      EXPECT_EQ(FirstCharacters(text, count, charSet), text.substr(0, lengths[count])) << count;
    }
  }
}

TEST(TextEncoding, FirstCharactersTakeEveryByteAsItIs) {
  EXPECT_EQ(FirstCharacters("a\0b\r\n"s, 4, "ISO-8859-1"), "a\0b\r"s);
  EXPECT_EQ(FirstCharacters("a\0b\r\n"s, 4, "UTF-8"), "a\0b\r"s);
  EXPECT_EQ(FirstCharacters("", 3, "UTF-8"), "");
}

TEST(TextEncoding, FirstCharactersWithShiftStatesAreWholeAndShiftBack) {
  const std::string text = "a\x1B$BF|K\\\x1B(Bz";  // two characters between the shifts
  const std::string firsts[] = {"", "a", "a\x1B$BF|\x1B(B", "a\x1B$BF|K\\\x1B(B", text, text};
  for (std::size_t count = 0; count < std::size(firsts); ++count) {
    EXPECT_EQ(FirstCharacters(text, count, "ISO-2022-JP"), firsts[count]) << count;
  }
}

TEST(TextEncoding, FirstCharactersAreNeverMoreThanFourBytesEach) {
  EXPECT_EQ(FirstCharacters("a" + std::string(60'000, '\x80'), 240, "UTF-8").size(), 4u * 240);
}

// What is no UTF-8 is counted somehow, but nothing is added and nothing behind it is read.
TEST(TextEncoding, FirstCharactersOfBrokenUtf8AreABeginningOfIt) {
  const std::string texts[] = {"ab\xE6\x97", "\x80\x80\x80\x80", "\xFF\xFE",
                               "a\xC3",      "\xF0\x9F\x98",     "\xC3(z"};
  for (const std::string& text : texts) {
    for (std::size_t count = 0; count <= text.size() + 2; ++count) {
      const std::string first = FirstCharacters(text, count, "UTF-8");
      EXPECT_TRUE(text.starts_with(first)) << testing::PrintToString(text) << count;
    }
    EXPECT_EQ(FirstCharacters(text, text.size(), "UTF-8"), text) << testing::PrintToString(text);
  }
}

TEST(TextEncoding, LoadedCharsetChangesNothingOfTheResult) {
  for (const std::string name : {"ISO-8859-1", "ISO-8859-5", "ISO-2022-JP", "no charset", ""}) {
    const std::string before = PageText("\xC3\xBC \xD0\xB6", name);
    const LoadedCharset loaded(name);
    EXPECT_EQ(PageText("\xC3\xBC \xD0\xB6", name), before) << name;
  }
}

}  // namespace
}  // namespace quillon
