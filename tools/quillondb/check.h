// What is missing or wrong in an installation.
#pragma once

#include <string>
#include <vector>

namespace quillon {

// One line in plain words for each finding; none for an installation that is whole. Nothing is
// changed. What cannot be read is a finding, not a failure.
std::vector<std::string> CheckInstallation(const std::string& directory);

}  // namespace quillon
