// Words that several parts of the check use.
#include "quillondb/check/findings.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon {
namespace {

constexpr std::size_t kMostOfARule = 5;

// Part of what the engine says, and what to do then.
struct Remedy {
  std::string_view words;
  std::string_view text;
};

constexpr std::string_view kSeeRights =
    "; the service's user has to read and write the file and its directory, so see whose they are"
    " ('ls -la'), and that the disk is mounted for writing";

constexpr Remedy kRemedies[] = {
    {"locked", "; another program keeps the database to itself: end that one, and check again"},
    {"unable to open", kSeeRights},
    {"readonly", kSeeRights},
    {"disk is full", "; make room on the disk"},
    {"disk I/O",
     "; make room where the disk is full; else see what the system says of it ('dmesg'), mend it,"
     " and check again"},
};

bool IsPlain(char character) {
  constexpr std::string_view kPlain = "/._-+,:@%~=";
  const bool isAlphanumeric = (character >= 'a' && character <= 'z') ||
                              (character >= 'A' && character <= 'Z') ||
                              (character >= '0' && character <= '9');
  return isAlphanumeric || kPlain.find(character) != std::string_view::npos;
}

}  // namespace

void AppendFirst(const std::string& place, const std::vector<std::string>& found,
                 std::vector<std::string>& findings) {
  const std::size_t told = std::min(found.size(), kMostOfARule);
  findings.insert(findings.end(), found.begin(), found.begin() + static_cast<std::ptrdiff_t>(told));
  if (found.size() == told) return;
  findings.push_back(fmt::format("{}and {} more of this kind", place, found.size() - told));
}

std::string FailureFinding(std::string_view failure) {
  const auto remedy = std::ranges::find_if(kRemedies, [&](const Remedy& candidate) {
    return failure.find(candidate.words) != std::string_view::npos;
  });
  const std::string_view text = remedy == std::end(kRemedies) ? kRestore : remedy->text;
  return std::string(failure).append(text);
}

std::string ShellWord(const std::string& path) {
  if (std::ranges::all_of(path, IsPlain)) return path;
  std::string word = "\"";
  for (const char character : path) {
    if (std::string_view("\"\\$`").find(character) != std::string_view::npos) word += '\\';
    word += character;
  }
  return word + "\"";
}

}  // namespace quillon
