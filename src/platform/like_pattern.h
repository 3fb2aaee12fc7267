// LIKE patterns: "%" stands for any run of characters, "_" for one, "[abc]" and "[a-f]" for
// one of a list, "[!a]" for one outside it. An unclosed "[" is that character, "[]" stands
// for nothing, "[!]" for "!". Case does not count, for all letters.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// A pattern that is parsed once and matched with many texts.
class LikePattern {
 public:
  explicit LikePattern(std::string_view pattern);

  // In time that grows with the product of the two lengths at the most.
  bool Matches(std::string_view text) const;

 private:
  struct Element {
    enum class Kind { kAnyRun, kAnyOne, kCharacter, kList };
    Kind kind;
    char32_t character = 0;
    std::u32string list;
  };

  void TakeList(std::u32string_view& pattern);
  static bool MatchesOne(char32_t character, const Element& element);

  std::vector<Element> elements_;
};

}  // namespace quillon
