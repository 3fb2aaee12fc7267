// A pattern and a text, with a line end between them; the first byte chooses the wildcards.
#include "input.h"
#include "platform/like_pattern.h"
#include "targets.h"

namespace quillon::fuzz {

void FuzzWildcards(std::string_view bytes) {
  Input input(bytes);
  const Wildcards& wildcards = input.Byte() % 2 == 0 ? kSqlWildcards : kProgramWildcards;
  const std::string pattern(input.TakeUpTo('\n'));
  const std::string_view text = input.Rest();
  if (!LikePattern(pattern, wildcards).Matches(text)) return;
  // A run may be empty.
  const char run = static_cast<char>(wildcards.anyRun);
  Require(LikePattern(run + pattern + run, wildcards).Matches(text), "a run that is not empty");
}

}  // namespace quillon::fuzz
