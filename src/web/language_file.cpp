// Reading the language file line by line.
#include "web/language_file.h"

#include "platform/number_text.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

// Where the text of a line is looked for when its first column is no number: a line that
// long replaces the word of the number before it.
constexpr std::size_t kFarTab = 500;

bool IsSkipped(std::string_view line) {
  return line.empty() || line.starts_with("--") || line.starts_with("==") || line.starts_with("ID");
}

// Replaces every run of `length` tabs by one, from left to right.
void ReduceTabs(std::string& line, std::size_t length) {
  const std::string run(length, '\t');
  for (std::size_t found = line.find(run); found != std::string::npos;
       found = line.find(run, found + 1)) {
    line.replace(found, length, 1, '\t');
  }
}

}  // namespace

void ParseLanguageFile(std::string_view text, LangWords& words) {
  long number = 0;
  while (!text.empty()) {
    std::string line(TakeLine(text));
    if (IsSkipped(line)) continue;
    for (const std::size_t length : {6u, 5u, 4u, 3u, 2u}) ReduceTabs(line, length);
    std::size_t firstTab = line.find('\t');
    if (firstTab == std::string::npos) continue;
    const std::string column = line.substr(0, firstTab);
    if (IsNumeric(column)) {
      number = TextToLong(column);
    } else {
      firstTab = kFarTab - 1;
    }
    const std::size_t secondTab = line.find('\t', firstTab + 1);
    if (secondTab == std::string::npos) continue;
    words.LangWord[number] = Trimmed(line.substr(secondTab + 1));
  }
}

}  // namespace quillon
