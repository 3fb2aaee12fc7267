// Parsing and matching of patterns.
#include "platform/like_pattern.h"

#include <algorithm>
#include <string>

#include "platform/text_folding.h"

namespace quillon {

LikePattern::LikePattern(std::string_view utf8, const Wildcards& wildcards) {
  using Kind = Element::Kind;
  const std::u32string folded = Folded(utf8);
  bool mayClose = true;  // once a list does not, none behind it does
  for (std::u32string_view pattern = folded; !pattern.empty();) {
    const char32_t character = pattern.front();
    if (character == U'[' && mayClose) {
      mayClose = TakeList(pattern);
      continue;
    }
    pattern.remove_prefix(1);
    if (character == wildcards.anyRun) {
      AddRun();
    } else if (character == wildcards.anyOne) {
      elements_.push_back({Kind::kAnyOne, 0, {}});
    } else if (wildcards.digit != 0 && character == wildcards.digit) {
      elements_.push_back({Kind::kInside, 0, {{U'0', U'9'}}});
    } else {
      elements_.push_back({Kind::kCharacter, character, {}});
    }
  }
  const auto isRun = [](const Element& element) { return element.kind == Kind::kAnyRun; };
  auto run = std::find_if(elements_.begin(), elements_.end(), isRun);
  while (run != elements_.end()) {
    const auto next = std::find_if(run + 1, elements_.end(), isRun);
    longestPiece_ = std::max(longestPiece_, static_cast<std::size_t>(next - run));
    run = next;
  }
}

// Several runs on end are one.
void LikePattern::AddRun() {
  const bool followsRun = !elements_.empty() && elements_.back().kind == Element::Kind::kAnyRun;
  if (!followsRun) elements_.push_back({Element::Kind::kAnyRun, 0, {}});
}

// Adds the bracket list that begins at the front of the pattern and takes it off. "[]"
// stands for nothing; an unclosed "[" is that character. False where no list closes any more.
bool LikePattern::TakeList(std::u32string_view& pattern) {
  const std::size_t close = pattern.find(U']');
  if (close == std::u32string_view::npos) {
    elements_.push_back({Element::Kind::kCharacter, U'[', {}});
    pattern.remove_prefix(1);
    return false;
  }
  std::u32string_view list = pattern.substr(1, close - 1);
  pattern.remove_prefix(close + 1);
  if (list.empty()) return true;
  const bool outside = list.size() > 1 && list.front() == U'!';
  if (outside) list.remove_prefix(1);
  Ranges ranges;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool isRange = i + 2 < list.size() && list[i + 1] == U'-';
    ranges.push_back({list[i], isRange ? list[i + 2] : list[i]});
    if (isRange) i += 2;
  }
  const auto kind = outside ? Element::Kind::kOutside : Element::Kind::kInside;
  elements_.push_back({kind, 0, Sorted(std::move(ranges))});
  return true;
}

LikePattern::Ranges LikePattern::Sorted(Ranges ranges) {
  std::erase_if(ranges, [](const Range& range) { return range.first > range.last; });
  std::sort(ranges.begin(), ranges.end(),
            [](const Range& left, const Range& right) { return left.first < right.first; });
  Ranges merged;
  for (const Range& range : ranges) {
    if (merged.empty() || range.first > merged.back().last) {
      merged.push_back(range);
    } else {
      merged.back().last = std::max(merged.back().last, range.last);
    }
  }
  merged.shrink_to_fit();
  return merged;
}

bool LikePattern::Holds(const Ranges& ranges, char32_t character) {
  const auto behind =
      std::upper_bound(ranges.begin(), ranges.end(), character,
                       [](char32_t wanted, const Range& range) { return wanted < range.first; });
  return behind != ranges.begin() && character <= std::prev(behind)->last;
}

bool LikePattern::MatchesOne(char32_t character, const Element& element) {
  switch (element.kind) {
    case Element::Kind::kCharacter:
      return character == element.character;
    case Element::Kind::kInside:
      return Holds(element.list, character);
    case Element::Kind::kOutside:
      return !Holds(element.list, character);
    default:
      return true;
  }
}

// The first place from `position` on where the element can match, as far as that shows without a
// closer look: most of a text is passed over here.
std::size_t LikePattern::NextStart(std::string_view text, std::size_t position,
                                   const Element& first) {
  if (first.kind != Element::Kind::kCharacter) return position;
  while (position < text.size()) {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (!IsAscii(byte) || FoldedAscii(byte) == first.character) break;
    ++position;
  }
  return position;
}

std::size_t LikePattern::StepsFor(std::size_t length) const {
  return length * std::min(length, longestPiece_);
}

// Matches without recursion: where a piece does not fit, it is enough to let the last
// run take one character more.
bool LikePattern::Matches(std::string_view text) const {
  const auto end = elements_.end();
  auto element = elements_.begin();
  auto behindRun = end;  // where the piece behind the last run begins; the end before there is one
  std::size_t runEnd = 0;  // the first character that this run leaves
  std::size_t t = 0;
  while (t < text.size() || element != end) {
    if (element != end) {
      if (element->kind == Element::Kind::kAnyRun) {
        ++element;
        if (element == end) return true;
        behindRun = element;
        t = runEnd = NextStart(text, t, *behindRun);
        continue;
      }
      std::size_t next = t;
      if (t < text.size() && MatchesOne(NextFolded(text, next), *element)) {
        t = next;
        ++element;
        continue;
      }
    }
    if (behindRun == end || runEnd >= text.size()) return false;
    NextFolded(text, runEnd);
    t = runEnd = NextStart(text, runEnd, *behindRun);
    element = behindRun;
  }
  return true;
}

}  // namespace quillon
