// The last line is kept free for the number of the others.
#include "quillondb/check/brief.h"

#include <fmt/format.h>

namespace quillon {
namespace {

// The tenth is the program's own, which says that repairs are needed.
constexpr std::size_t kLines = 9;
constexpr int kLinesOfOne = 2;  // of one file or folder

// What a finding is about: the text before its colon.
std::string SubjectOf(const std::string& finding) {
  return finding.substr(0, finding.find(": "));
}

}  // namespace

void BriefTeller::Take(const std::string& finding) {
  if (++taken_[SubjectOf(finding)] <= kLinesOfOne && told_ < kLines - 1) {
    ++told_;
    return tell_(finding);
  }
  ++kept_;
  lastKept_ = finding;
}

void BriefTeller::End() const {
  if (kept_ == 1) tell_(lastKept_);
  if (kept_ > 1) tell_(fmt::format("and {} more; 'quillondb check' tells all", kept_));
}

}  // namespace quillon
