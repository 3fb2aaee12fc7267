// The rules of LIKE, case by case. LIKE inside selects is in database_select_test.
#include "platform/like_pattern.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

struct LikeCase {
  std::string text;
  std::string pattern;
};

template <std::size_t N>
void ExpectLike(const LikeCase (&cases)[N], bool matches) {
  for (const LikeCase& row : cases) {
    EXPECT_EQ(LikePattern(row.pattern).Matches(row.text), matches)
        << "'" << row.text << "' LIKE '" << row.pattern << "'";
  }
}

TEST(LikePattern, PercentStandsForAnyRun) {
  const LikeCase matching[] = {
      {"", "%"},
      {"", "%%"},
      {"core", "%"},
      {"core", "co%"},
      {"core", "%re"},
      {"core", "%o%"},
      {"core", "c%e"},
      {"core", "%c%o%r%e%"},
      {"core", "core%"},
      {"aab", "%ab"},
      {"abcabcd", "%abcd"},
      {"a%b", "a%b"},
      {"line\nend", "l%d"},
      {"core", "%%re"},
  };
  const LikeCase failing[] = {
      {"core", "co"}, {"core", "%or"}, {"core", "or%"}, {"core", "%x%"}, {"", "%a"}, {"core", ""},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, UnderscoreStandsForOneCharacter) {
  const LikeCase matching[] = {
      {"a", "_"}, {"core", "c_r_"}, {"core", "____"}, {"core", "_%"}, {"core", "%____"},
      {"é", "_"}, {"Ю1", "_1"},     {"日本", "__"},   {"😀", "_"},
  };
  const LikeCase failing[] = {
      {"", "_"}, {"core", "___"}, {"core", "_____"}, {"é", "__"}, {"core", "%_____"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, OtherCharactersStandForThemselves) {
  const LikeCase matching[] = {
      {"", ""},         {"a*", "a*"},   {"a?", "a?"},           {"a#", "a#"}, {"a]", "a]"},
      {"a\\b", "a\\b"}, {"a-b", "a-b"}, {"10.0.0.1", "10.0.%"}, {"a!", "a!"},
  };
  const LikeCase failing[] = {
      {"ab", "a*"}, {"ab", "a?"}, {"a1", "a#"}, {"10x0", "10.0"}, {"a%", "a\\%"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, ListStandsForOneOfItsCharacters) {
  const LikeCase matching[] = {
      {"b", "[abc]"},   {"port 2", "port [123]"}, {"%", "[%]"},       {"_", "[_]"},
      {"[", "[[]"},     {"a[b", "a[[]b"},         {"!", "[a!]"},      {"?", "[?*]"},
      {"ä", "[äö]"},    {"ö1", "[äö]1"},          {"cab", "%[xyzb]"}, {"ab", "[a][b]"},
      {"50%", "50[%]"},
  };
  const LikeCase failing[] = {
      {"d", "[abc]"}, {"", "[abc]"}, {"ab", "[ab]"}, {"x", "[%]"}, {"x", "[_]"}, {"ü", "[äö]"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, RangeHoldsItsTwoEdges) {
  const LikeCase matching[] = {
      {"a", "[a-f]"}, {"f", "[a-f]"},    {"c", "[a-f]"},    {"0", "[0-9]"}, {"9", "[0-9]"},
      {"5", "[5-5]"}, {"x", "[a-cx-z]"}, {"7", "[a-c0-9]"}, {"λ", "[α-ω]"}, {"м", "[а-я]"},
      {"q", "[abq]"}, {"b", "[a-cq]"},   {"q", "[a-cq]"},
  };
  const LikeCase failing[] = {
      {"g", "[a-f]"}, {"`", "[a-f]"},    {"-", "[a-f]"}, {":", "[0-9]"},
      {"/", "[0-9]"}, {"d", "[a-cx-z]"}, {"a", "[α-ω]"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, DashAtAnEdgeOfAListIsItself) {
  const LikeCase matching[] = {
      {"-", "[-ab]"}, {"a", "[-ab]"}, {"-", "[ab-]"}, {"b", "[ab-]"}, {"-", "[-]"}, {"c", "[!-ab]"},
  };
  const LikeCase failing[] = {
      {"c", "[-ab]"}, {"c", "[ab-]"}, {"a", "[-]"}, {"-", "[!-ab]"}, {"-", "[!ab-]"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, ListBehindAnExclamationMarkStandsForOneOutsideIt) {
  const LikeCase matching[] = {
      {"b", "[!a]"},   {"%", "[!a]"},    {"g", "[!a-f]"},
      {"é", "[!a-z]"}, {"xb", "x[!ac]"}, {"a", "[!!]"},
  };
  const LikeCase failing[] = {
      {"a", "[!a]"}, {"", "[!a]"}, {"c", "[!a-f]"}, {"x", "x[!a]"}, {"bb", "[!a]"}, {"!", "[!!]"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, BracketsWithoutAListHaveMeaningsOfTheirOwn) {
  const LikeCase matching[] = {
      {"[", "["},     {"a[b", "a[b"},   {"a[", "a["},      {"x[b", "%[b"}, {"[a-f", "[a-f"},
      {"[!a", "[!a"}, {"[12", "[__"},   {"", "[]"},        {"ab", "a[]b"}, {"a]", "[]a]"},
      {"!", "[!]"},   {"a!b", "a[!]b"}, {"Port!", "%[!]"},
  };
  const LikeCase failing[] = {
      {"b", "[b"}, {"a", "[!]"}, {"", "[!]"}, {"x", "[]"}, {"a", "[]a]"}, {"axb", "a[]b"},
  };
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

TEST(LikePattern, CaseDoesNotCountForAnyLetter) {
  const LikeCase matching[] = {
      {"CORE", "core"},   {"core", "CO%"}, {"ÄÖÜ", "äöü"}, {"äöü", "Ä%"}, {"МОСКВА", "моск%"},
      {"αθηνα", "ΑΘΗΝΑ"}, {"C", "[a-f]"},  {"c", "[A-F]"}, {"Ä", "[ä]"},  {"м", "[А-Я]"},
      {"Łódź", "łÓ%Ź"},   {"É", "_"},      {"ÿ", "Ÿ"},
  };
  const LikeCase failing[] = {{"C", "[!a-f]"}, {"Ä", "a"}, {"Ä", "[!ä]"}, {"É", "e"}};
  ExpectLike(matching, true);
  ExpectLike(failing, false);
}

// With a walk back to every "%" this would not end.
TEST(LikePattern, ManyPercentsOnALongTextEnd) {
  const std::string text(20000, 'a');
  std::string runs;
  for (int i = 0; i < 30; ++i) runs += "%a";
  EXPECT_FALSE(LikePattern(runs + "%b").Matches(text));
  EXPECT_FALSE(LikePattern(runs + "%[b-d]_%").Matches(text));
  EXPECT_TRUE(LikePattern(runs + "%b").Matches(text + "b"));
  EXPECT_TRUE(LikePattern(std::string(1000, '%')).Matches(text));
}

TEST(LikePattern, BytesThatAreNoTextDoNoHarm) {
  const std::string bytes[] = {"\xE4", "a\xFFz", "\xC3", "\xF0\x9F\x98", std::string("a\0b", 3)};
  for (const std::string& text : bytes) {
    EXPECT_TRUE(LikePattern("%").Matches(text)) << testing::PrintToString(text);
    EXPECT_TRUE(LikePattern(text).Matches(text)) << testing::PrintToString(text);
    EXPECT_FALSE(LikePattern("").Matches(text)) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace quillon
