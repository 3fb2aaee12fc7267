// Parsing and matching of LIKE patterns.
#include "platform/like_pattern.h"

#include "platform/text_folding.h"

namespace quillon {
namespace {

bool InList(char32_t character, std::u32string_view list) {
  const bool negated = list.size() > 1 && list.front() == U'!';
  if (negated) list.remove_prefix(1);
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool isRange = i + 2 < list.size() && list[i + 1] == U'-';
    const char32_t last = isRange ? list[i + 2] : list[i];
    if (character >= list[i] && character <= last) return !negated;
    if (isRange) i += 2;
  }
  return negated;
}

}  // namespace

LikePattern::LikePattern(std::string_view utf8) {
  const std::u32string folded = Folded(utf8);
  for (std::u32string_view pattern = folded; !pattern.empty();) {
    const char32_t character = pattern.front();
    if (character == U'[') {
      TakeList(pattern);
      continue;
    }
    const auto kind = character == U'%'   ? Element::Kind::kAnyRun
                      : character == U'_' ? Element::Kind::kAnyOne
                                          : Element::Kind::kCharacter;
    elements_.push_back({kind, character, {}});
    pattern.remove_prefix(1);
  }
}

// Adds the bracket list that begins at the front of the pattern and takes it off. "[]"
// stands for nothing; an unclosed "[" is that character.
void LikePattern::TakeList(std::u32string_view& pattern) {
  const std::size_t close = pattern.find(U']');
  if (close == std::u32string_view::npos) {
    elements_.push_back({Element::Kind::kCharacter, U'[', {}});
    pattern.remove_prefix(1);
    return;
  }
  if (close > 1) {
    elements_.push_back({Element::Kind::kList, 0, std::u32string(pattern.substr(1, close - 1))});
  }
  pattern.remove_prefix(close + 1);
}

bool LikePattern::MatchesOne(char32_t character, const Element& element) {
  if (element.kind == Element::Kind::kList) return InList(character, element.list);
  return element.kind == Element::Kind::kAnyOne || element.character == character;
}

// Matches without recursion: where a piece does not fit, it is enough to let the last
// "%" take one character more.
bool LikePattern::Matches(std::string_view utf8) const {
  const std::u32string text = Folded(utf8);
  std::size_t t = 0;
  std::size_t e = 0;
  std::size_t afterRun = 0;  // the piece behind the last "%"; 0 before there is one
  std::size_t runEnd = 0;    // the first character that this "%" leaves
  while (t < text.size() || e < elements_.size()) {
    if (e < elements_.size() && elements_[e].kind == Element::Kind::kAnyRun) {
      afterRun = ++e;
      runEnd = t;
    } else if (e < elements_.size() && t < text.size() && MatchesOne(text[t], elements_[e])) {
      ++t;
      ++e;
    } else if (afterRun != 0 && runEnd < text.size()) {
      t = ++runEnd;
      e = afterRun;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace quillon
