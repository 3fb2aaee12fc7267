// The rules of LIKE and of the patterns that are matched row by row, case by case. LIKE inside
// selects is in database_select_test.
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
void ExpectLike(const LikeCase (&cases)[N], bool matches,
                const Wildcards& wildcards = kSqlWildcards) {
  for (const LikeCase& row : cases) {
    EXPECT_EQ(LikePattern(row.pattern, wildcards).Matches(row.text), matches)
        << "'" << row.text << "' LIKE '" << row.pattern << "'";
  }
}

std::string Repeated(const std::string& piece, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

// So many Chinese characters, each of them once.
std::string ManyCharacters(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    const int character = 0x4E00 + i;
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
  return text;
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

TEST(LikePattern, RangesOfAListMayOverlap) {
  const LikeCase matching[] = {
      {"a", "[a-mc-e]"}, {"d", "[a-mc-e]"}, {"m", "[a-mc-e]"}, {"m", "[c-ea-m]"},
      {"k", "[a-cb-k]"}, {"k", "[b-ka-c]"}, {"m", "[a-mm]"},   {"b", "[bbb]"},
  };
  const LikeCase others[] = {{"n", "[a-mc-e]"}, {"l", "[a-cb-k]"}, {"l", "[a-ck-mb]_"}};
  ExpectLike(matching, true);
  ExpectLike(others, false);
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

TEST(LikePattern, ListOfThousandsOfCharactersHoldsEachOfThem) {
  const std::string characters = ManyCharacters(5000);
  for (const Wildcards& wildcards : {kSqlWildcards, kProgramWildcards}) {
    const LikePattern inside("[" + characters + "q-s]", wildcards);
    const LikePattern outside("[!" + characters + "q-s]", wildcards);
    for (const std::string character : {"一", "\xE5\xA6\x83", "\xE6\x86\x87", "Q", "r", "S"}) {
      EXPECT_TRUE(inside.Matches(character)) << character;
      EXPECT_FALSE(outside.Matches(character)) << character;
    }
    // One before the first and one behind the last of them among others.
    for (const std::string character : {"\xE4\xB7\xBF", "\xE6\x86\x88", "p", "t", "-", "é"}) {
      EXPECT_FALSE(inside.Matches(character)) << character;
      EXPECT_TRUE(outside.Matches(character)) << character;
    }
  }
}

TEST(LikePattern, ThousandsOfPiecesAreMatchedOneByOne) {
  const std::string pieces = Repeated("[ab]?#*", 1000);
  const std::string text = Repeated("aü7--", 1000);
  EXPECT_TRUE(LikePattern(pieces, kProgramWildcards).Matches(text));
  EXPECT_TRUE(LikePattern(pieces + "-", kProgramWildcards).Matches(text));
  EXPECT_FALSE(LikePattern(pieces + "[ab]", kProgramWildcards).Matches(text));
  EXPECT_FALSE(LikePattern(pieces, kProgramWildcards).Matches(text.substr(6)));
  const std::string lists = Repeated("[!b-z]", 4000);
  EXPECT_TRUE(LikePattern(lists).Matches(std::string(4000, 'a')));
  EXPECT_FALSE(LikePattern(lists).Matches(std::string(4001, 'a')));
  EXPECT_FALSE(LikePattern(lists).Matches(std::string(3999, 'a')));
  EXPECT_FALSE(LikePattern(lists).Matches(std::string(3999, 'a') + "b"));
}

TEST(LikePattern, OfTheProgramHasAStarForAnyRun) {
  const LikeCase matching[] = {
      {"", "*"},           {"", "**"},           {"core", "*"},   {"core", "CO*"},
      {"core", "*re"},     {"core", "*o*"},      {"core", "c*e"}, {"core", "core*"},
      {"aab", "*ab"},      {"abcabcd", "*abcd"}, {"a*b", "a*b"},  {"line\nend", "l*d"},
      {"größe", "GRÖ*E*"}, {"日本語", "日*"},
  };
  const LikeCase failing[] = {
      {"core", "co"}, {"core", "*or"}, {"core", "or*"}, {"core", "*x*"}, {"", "*a"}, {"core", ""},
  };
  ExpectLike(matching, true, kProgramWildcards);
  ExpectLike(failing, false, kProgramWildcards);
}

TEST(LikePattern, OfTheProgramHasAQuestionMarkForOneCharacter) {
  const LikeCase matching[] = {
      {"a", "?"},        {"core", "c?r?"}, {"core", "????"}, {"core", "?*"},
      {"core", "*????"}, {"é", "?"},       {"Ю1", "?1"},     {"日本", "??"},
      {"😀", "?"},        {"?", "?"},       {"7", "?"},       {" ", "?"},
  };
  const LikeCase failing[] = {
      {"", "?"}, {"core", "???"}, {"core", "?????"}, {"é", "??"}, {"core", "*?????"},
  };
  ExpectLike(matching, true, kProgramWildcards);
  ExpectLike(failing, false, kProgramWildcards);
}

TEST(LikePattern, OfTheProgramHasANumberSignForOneDigit) {
  const LikeCase matching[] = {
      {"0", "#"},       {"9", "#"},     {"42", "##"},     {"Disk 7", "disk #"},
      {"a1b2", "?#?#"}, {"x123", "*#"}, {"10.0", "##.#"}, {"1", "*#*"},
      {"a#", "a[#]"},   {"5#", "#[#]"}, {"no 1", "*#"},
  };
  const LikeCase failing[] = {
      {"", "#"},  {"a", "#"}, {"#", "#"}, {"12", "#"}, {"1", "##"},  {"/", "#"},
      {":", "#"}, {"٣", "#"}, {"²", "#"}, {"-1", "#"}, {"x", "*#*"}, {"7", "[#]"},
  };
  ExpectLike(matching, true, kProgramWildcards);
  ExpectLike(failing, false, kProgramWildcards);
}

TEST(LikePattern, OfTheProgramHasTheListsOfLike) {
  const LikeCase matching[] = {
      {"b", "[abc]"}, {"C:", "[a-f]:"}, {"d:", "[A-F]:"}, {"g:", "[!a-f]:"}, {"Ö", "[äöü]"},
      {"*", "[*]"},   {"?", "[?]"},     {"#", "[#]"},     {"[", "[[]"},      {"!", "[!]"},
      {"!", "[a!]"},  {"", "[]"},       {"ab", "a[]b"},   {"[a", "[a"},      {"a]", "a]"},
      {"-", "[-a]"},  {"-", "[a-]"},    {"7", "[0-9]"},   {"x1", "*[0-9]"},  {"1", "[!*?#]"},
  };
  const LikeCase failing[] = {
      {"d", "[abc]"},  {"g:", "[a-f]:"}, {"C:", "[!a-f]:"}, {"", "[abc]"},
      {"a", "[*]"},    {"a", "[?]"},     {"7", "[#]"},      {"*", "[!*?#]"},
      {"#", "[!*?#]"}, {"ab", "[ab]"},   {"x", "[]"},       {"a", "[!]"},
  };
  ExpectLike(matching, true, kProgramWildcards);
  ExpectLike(failing, false, kProgramWildcards);
}

TEST(LikePattern, EachKindTakesTheWildcardsOfTheOtherAsTheyAre) {
  const LikeCase ofProgram[] = {{"%", "%"}, {"_", "_"}, {"a%b_", "a%b_"}, {"50%", "##%"}};
  const LikeCase notOfProgram[] = {{"ab", "a%"}, {"a", "_"}, {"", "%"}};
  ExpectLike(ofProgram, true, kProgramWildcards);
  ExpectLike(notOfProgram, false, kProgramWildcards);
  const LikeCase ofSelects[] = {{"*", "*"}, {"?", "?"}, {"#", "#"}, {"a#1", "%#_"}};
  const LikeCase notOfSelects[] = {{"ab", "a*"}, {"a", "?"}, {"1", "#"}, {"", "*"}};
  ExpectLike(ofSelects, true, kSqlWildcards);
  ExpectLike(notOfSelects, false, kSqlWildcards);
  const std::string nul("a\0b", 3);  // the sign of a kind that has no such wildcard
  EXPECT_TRUE(LikePattern(nul, kSqlWildcards).Matches(nul));
  EXPECT_FALSE(LikePattern(nul, kSqlWildcards).Matches("a1b"));
}

// What a search text of 64 KiB may hold: none of it may take long, once or for each row.
TEST(LikePattern, ManyBracketsThatNeverCloseAreThemselves) {
  const std::string brackets(60'000, '[');
  EXPECT_TRUE(LikePattern(brackets).Matches(brackets));
  EXPECT_FALSE(LikePattern(brackets).Matches(brackets + "["));
  EXPECT_TRUE(LikePattern("[a][[b").Matches("a[[b"));
}

TEST(LikePattern, RunsOnEndAreOneRun) {
  const LikePattern pattern("a" + std::string(60'000, '*') + "[]*b", kProgramWildcards);
  EXPECT_TRUE(pattern.Matches("ab"));
  EXPECT_TRUE(pattern.Matches("a with more b"));
  EXPECT_FALSE(pattern.Matches("a with more"));
  EXPECT_EQ(pattern.StepsFor(100), 200u);
}

TEST(LikePattern, StepsGrowWithTheLongestPieceBehindARun) {
  struct Case {
    std::string pattern;
    std::size_t steps;  // for a text of ten characters
  };
  const Case cases[] = {
      {"", 10},         {"abcdef", 10},  {"abcdef%", 10},         {"%abc", 40},
      {"%a%bc%d%", 30}, {"%[a-f]_", 30}, {"%abcdefghijklm", 100},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(LikePattern(row.pattern).StepsFor(10), row.steps) << row.pattern;
  }
}

TEST(LikePattern, ManyStarsOnALongTextEnd) {
  const std::string text(20000, 'a');
  const std::string runs = Repeated("*a?", 30);
  EXPECT_FALSE(LikePattern(runs + "*b", kProgramWildcards).Matches(text));
  EXPECT_FALSE(LikePattern(runs + "*[b-d]?*#", kProgramWildcards).Matches(text));
  EXPECT_TRUE(LikePattern(runs + "*#", kProgramWildcards).Matches(text + "1"));
  EXPECT_TRUE(LikePattern(std::string(1000, '*'), kProgramWildcards).Matches(text));
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
