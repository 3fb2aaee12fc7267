// The language file, read as the service reads it.
#include "quillondb/check/words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/check/files.h"
#include "web/language_file.h"

namespace quillon {
namespace {

constexpr const char* kFile = "WebReports/Language.ini";

// The numbers up to the last word of the pages, and those among them that no page uses.
constexpr int kLastWord = 88;
constexpr std::array kUnused = {28, 36, 42, 87};

bool IsUsed(int number) {
  return std::ranges::find(kUnused, number) == kUnused.end();
}

// "12, 40".
std::string MissingNumbers(const LangWords& words) {
  std::string numbers;
  for (int number = 1; number <= kLastWord; ++number) {
    const std::string& word = words.LangWord[number];
    if (!IsUsed(number) || (!word.empty() && word != LangWords::kMissing)) continue;
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(number);
  }
  return numbers;
}

// The words up to the first line that cannot be read, which ends the service's reading, too.
LangWords ReadWords(const std::string& text, std::vector<std::string>& findings) {
  LangWords words;
  try {
    ParseLanguageFile(text, words);
  } catch (const Failure& failure) {
    findings.push_back(
        fmt::format("{}: {}; the words behind that line are not read, so correct its"
                    " number (1 to 100)",
                    kFile, failure.what()));
  }
  return words;
}

}  // namespace

void CheckWords(const std::string& directory, const ServiceUser& user,
                std::vector<std::string>& findings) {
  const std::string path = directory + "/" + kFile;
  if (!FileExists(path) || !user.May(kMayRead, path)) return;
  if (!IsShort(path, kFile, findings)) return;
  const std::string missing = MissingNumbers(ReadWords(ReadFileBytes(path), findings));
  if (missing.empty()) return;
  findings.push_back(
      fmt::format("{}: no text for {}, so pages show \"{}\" there; take the lines over from the"
                  " file in {}",
                  kFile, missing, LangWords::kMissing, kWebFileSources));
}

}  // namespace quillon
