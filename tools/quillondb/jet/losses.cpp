// Lines by their table; a damaged column of a large one must not fill the memory.
#include "quillondb/jet/losses.h"

#include <fmt/format.h>

#include "platform/terminal_text.h"

namespace quillon {
namespace {

constexpr std::size_t kToldOfTable = 20;

}  // namespace

void JetLosses::AddTable(std::string_view table, std::string_view what) {
  Add(table, fmt::format("{}: {}", table, what));
}

void JetLosses::AddField(std::string_view table, std::int64_t row, std::string_view column,
                         std::string_view what) {
  Add(table, fmt::format("{}, row {}, {}: {}", table, row, column, what));
}

void JetLosses::Add(std::string_view table, std::string_view what) {
  OfTable& told = tables_[std::string(table)];
  if (told.lines.size() == kToldOfTable) {
    ++told.untold;
  } else {
    told.lines.push_back(TerminalText(what));
  }
}

std::vector<std::string> JetLosses::Lines() const {
  std::vector<std::string> lines;
  for (const auto& [table, told] : tables_) {
    lines.insert(lines.end(), told.lines.begin(), told.lines.end());
    if (told.untold > 0) {
      lines.push_back(fmt::format("{}: and {} more", TerminalText(table), told.untold));
    }
  }
  return lines;
}

}  // namespace quillon
