// Patterns of texts: wildcards for any run of characters and for one, "[abc]" and "[a-f]" for one
// of a list, "[!a]" for one outside it. An unclosed "[" is that character, "[]" stands for nothing,
// "[!]" for "!". Case does not count, for all letters.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon {

// The characters that stand for others; 0 where a kind of pattern has none.
struct Wildcards {
  char32_t anyRun;
  char32_t anyOne;
  char32_t digit;  // one of 0 to 9
};
inline constexpr Wildcards kSqlWildcards = {U'%', U'_', 0};         // LIKE in a select
inline constexpr Wildcards kProgramWildcards = {U'*', U'?', U'#'};  // matched row by row here

// A pattern that is parsed once and matched with many texts.
class LikePattern {
 public:
  explicit LikePattern(std::string_view pattern, const Wildcards& wildcards = kSqlWildcards);

  bool Matches(std::string_view text) const;

  // How many steps a match with a text of that length may take at the most: the longest piece
  // behind a run may be tried at each of its places.
  std::size_t StepsFor(std::size_t length) const;

 private:
  struct Range {
    char32_t first;
    char32_t last;
  };
  // In order and without overlaps: a list may be as long as a request, and is asked for each
  // character of each row.
  using Ranges = std::vector<Range>;
  struct Element {
    enum class Kind { kAnyRun, kAnyOne, kCharacter, kInside, kOutside };
    Kind kind;
    char32_t character = 0;
    Ranges list;
  };

  void AddRun();
  bool TakeList(std::u32string_view& pattern);
  static Ranges Sorted(Ranges ranges);
  static bool Holds(const Ranges& ranges, char32_t character);
  static bool MatchesOne(char32_t character, const Element& element);
  static std::size_t NextStart(std::string_view text, std::size_t position, const Element& first);

  std::vector<Element> elements_;
  std::size_t longestPiece_ = 1;
};

}  // namespace quillon
