// Comparing texts without regard to case. The same inside selects is in
// database_select_test.
#include "platform/text_folding.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

struct Pair {
  std::string left;
  std::string right;
};

TEST(CompareFolded, TakesTextsOfDifferentCaseAsEqual) {
  const Pair equal[] = {
      {"", ""},           {"core", "CORE"}, {"Zürich", "zÜRICH"}, {"МОСКВА", "москва"},
      {"αθηνα", "ΑΘΗΝΑ"}, {"łódź", "ŁÓDŹ"}, {"ÿ", "Ÿ"},
  };
  for (const Pair& row : equal) {
    EXPECT_EQ(CompareFolded(row.left, row.right), 0) << row.left << " and " << row.right;
  }
}

TEST(CompareFolded, OrdersByLettersAndNotByCase) {
  const Pair ascending[] = {
      {"", "a"},   {"a", "B"}, {"A", "b"}, {"port", "Port 1"}, {"Port 1", "port 2"},
      {"10", "9"}, {"z", "ä"}, {"а", "Б"}, {"α", "Ω"},         {"a ", "a1"},
  };
  for (const Pair& row : ascending) {
    EXPECT_LT(CompareFolded(row.left, row.right), 0) << row.left << " before " << row.right;
    EXPECT_GT(CompareFolded(row.right, row.left), 0) << row.right << " after " << row.left;
  }
}

TEST(Folded, ByteThatBeginsNoCharacterIsNoLetter) {
  const std::string texts[] = {"\xE4",
                               "\xC3",
                               "\xC3z",
                               "\xE4"
                               "ab",
                               "\xF0\x9F\x98",
                               "\xBC"};
  for (const std::string& text : texts) {
    EXPECT_EQ(Folded(text).size(), text.size()) << testing::PrintToString(text);
    EXPECT_NE(CompareFolded(text, "ä"), 0) << testing::PrintToString(text);
  }
}

TEST(Capitalized, FirstLetterIsInUpperCaseAndTheRestStays) {
  const Pair rows[] = {
      {"", ""},         {"m", "M"},   {"mars 5", "Mars 5"}, {"Mars", "Mars"}, {"éTÉ", "ÉTÉ"},
      {"únor", "Únor"}, {"αβ", "Αβ"}, {"ж", "Ж"},           {"ⰰ", "Ⰰ"},       {"𐐨x", "𐐀x"},
      {"1st", "1st"},   {" a", " a"}, {"\xE4r", "\xE4r"},   {"\xC3", "\xC3"},
  };
  for (const Pair& row : rows) {
    EXPECT_EQ(Capitalized(row.left), row.right) << testing::PrintToString(row.left);
  }
}

}  // namespace
}  // namespace quillon
