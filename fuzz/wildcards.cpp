// A pattern and a text, with a line end between them; the first byte chooses the wildcards. A
// pattern without lists is matched by a second, plain procedure as well.
#include <algorithm>
#include <vector>

#include "input.h"
#include "platform/like_pattern.h"
#include "platform/text_folding.h"
#include "targets.h"

namespace quillon::fuzz {
namespace {

bool StandsFor(char32_t sign, char32_t character, const Wildcards& wildcards) {
  if (sign == wildcards.anyOne) return true;
  if (wildcards.digit != 0 && sign == wildcards.digit) {
    return character >= U'0' && character <= U'9';
  }
  return sign == character;
}

// Sign by sign: to which places of the text the pattern can come.
bool MatchesPlainly(std::string_view pattern, std::string_view text, const Wildcards& wildcards) {
  const std::u32string characters = Folded(text);
  std::vector<bool> places(characters.size() + 1);
  places.front() = true;
  for (const char32_t sign : Folded(pattern)) {
    if (sign == wildcards.anyRun) {
      std::fill(std::find(places.begin(), places.end(), true), places.end(), true);
      continue;
    }
    for (std::size_t place = characters.size(); place > 0; --place) {
      places[place] = places[place - 1] && StandsFor(sign, characters[place - 1], wildcards);
    }
    places.front() = false;
  }
  return places.back();
}

}  // namespace

void FuzzWildcards(std::string_view bytes) {
  Input input(bytes);
  const Wildcards& wildcards = input.Byte() % 2 == 0 ? kSqlWildcards : kProgramWildcards;
  const std::string pattern(input.TakeUpTo('\n'));
  const std::string_view text = input.Rest();
  const bool matches = LikePattern(pattern, wildcards).Matches(text);
  if (pattern.find('[') == std::string::npos) {
    Require(matches == MatchesPlainly(pattern, text, wildcards), "a match that is none, or missed");
  }
  if (!matches) return;
  // A run may be empty.
  const char run = static_cast<char>(wildcards.anyRun);
  Require(LikePattern(run + pattern + run, wildcards).Matches(text), "a run that is not empty");
}

}  // namespace quillon::fuzz
