// The clock of selects, and their words.
#include "platform/select_limits.h"

#include <sqlite3.h>

namespace quillon {
namespace {

constexpr int kProgressSteps = 100;  // of the engine's machine between two looks at the time
constexpr std::chrono::seconds kLimit{2};

bool IsOfWord(char c) {
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || (c >= '0' && c <= '9') || c == '_' || c == '$' || (c & 0x80) != 0;
}

// Behind the next occurrence of `end`, or at the end of the text.
std::size_t Behind(std::string_view text, std::string_view end, std::size_t from) {
  const std::size_t found = text.find(end, from);
  return found == std::string_view::npos ? text.size() : found + end.size();
}

}  // namespace

// Takes the text apart as the engine does: whoever could make the two differ could hide words.
int CountWords(std::string_view select) {
  int words = 0;
  for (std::size_t i = 0; i < select.size();) {
    const std::string_view rest = select.substr(i);
    const char c = rest.front();
    if (rest.starts_with("--")) {
      i = Behind(select, "\n", i);
    } else if (rest.starts_with("/*")) {
      i = Behind(select, "*/", i + 2);
    } else if (c == '\'' || c == '"' || c == '`' || c == '[') {
      ++words;
      i = Behind(select, c == '[' ? "]" : rest.substr(0, 1), i + 1);
    } else if (IsOfWord(c)) {
      ++words;
      while (i < select.size() && IsOfWord(select[i])) ++i;
    } else {
      ++i;
    }
  }
  return words;
}

SelectLimits::Stretch::Stretch(SelectLimits& limit) : limit_(limit) {
  limit.start_ = Clock::now();
  const auto isOver = [](void* data) { return static_cast<SelectLimits*>(data)->IsOver() ? 1 : 0; };
  sqlite3_progress_handler(limit.handle_, kProgressSteps, isOver, &limit);
}

SelectLimits::Stretch::~Stretch() {
  sqlite3_progress_handler(limit_.handle_, 0, nullptr, nullptr);
  limit_.worked_ += Clock::now() - *limit_.start_;
  limit_.start_.reset();
}

bool SelectLimits::IsOver() const {
  return start_ && worked_ + (Clock::now() - *start_) > kLimit;
}

bool SelectLimits::StopIfOver() const {
  if (!IsOver()) return false;
  sqlite3_interrupt(handle_);
  return true;
}

}  // namespace quillon
