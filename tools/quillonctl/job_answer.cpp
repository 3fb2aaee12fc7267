// Reading the lines.
#include "quillonctl/job_answer.h"

#include <fmt/format.h>

#include "service/console_protocol.h"
#include "service/diagnostics.h"

namespace quillon {
namespace {

// The word at a position; empty where the line has no such.
std::string Word(const std::vector<std::string>& words, std::size_t position) {
  return position < words.size() ? words[position] : "";
}

bool IsNotice(const std::string& type) {
  return type == std::to_string(static_cast<int>(EventType::kNotice));
}

}  // namespace

std::optional<std::string> ProgressText(const std::vector<std::string>& words) {
  if (Word(words, 0) != console::kProgress) return std::nullopt;
  const std::string unit = Word(words, 1);
  return fmt::format("{} {} of {}{}", unit, Word(words, 2), unit == console::kPage ? "about " : "",
                     Word(words, 3));
}

std::optional<std::string> FailureOfJob(const std::vector<std::string>& words) {
  if (Word(words, 0) != console::kEvent || IsNotice(Word(words, 1))) return std::nullopt;
  return Word(words, 2) + ": " + Word(words, 3);
}

void TakeEnd(const std::vector<std::string>& words, CommandOutcome& outcome) {
  const std::string kind = Word(words, 0);
  if (kind != console::kDone && kind != console::kRefused) return;
  outcome.result =
      kind == console::kDone ? CommandOutcome::Result::kDone : CommandOutcome::Result::kRefused;
  outcome.message = Word(words, 1);
}

}  // namespace quillon
