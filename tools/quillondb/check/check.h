// What is missing or wrong in an installation, and what to do about it.
#pragma once

#include <functional>
#include <string>

namespace quillon {

// Is told a finding, as soon as it is made: one line in plain words, fit for a terminal.
using TellFinding = std::function<void(const std::string& finding)>;

// Tells each finding once, and gives true for an installation that is whole. No content is changed.
// What cannot be read is a finding, not a failure. Root judges with the rights of the directory's
// owner.
bool CheckInstallation(const std::string& directory, const TellFinding& tell);

// The same in nine lines at most, for the log of a start: of what has many, a database say, the
// first two, and at the end how many there are beside. Large databases are not read whole.
bool CheckInBrief(const std::string& directory, const TellFinding& tell);

}  // namespace quillon
