// A few findings in place of all.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "quillondb/check/check.h"

namespace quillon {

// Passes on the findings as they come, as far as nine lines reach: two of each thing.
class BriefTeller {
 public:
  explicit BriefTeller(const TellFinding& tell) : tell_(tell) {}

  void Take(const std::string& finding);

  // Says how many there were beside.
  void End() const;

 private:
  const TellFinding& tell_;
  std::map<std::string, int> taken_;  // by what they are about
  std::size_t told_ = 0;
  std::size_t kept_ = 0;
  std::string lastKept_;
};

}  // namespace quillon
