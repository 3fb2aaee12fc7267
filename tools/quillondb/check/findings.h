// How findings are put into words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// What a part of the check has found, a line for each.
using FindingLines = std::vector<std::string>;

// What to do where nothing less helps; stands behind a finding.
inline constexpr std::string_view kRestore =
    "; stop the service, and restore a backup ('quillondb restore --replace BACKUP DIR')";

// Appends the first five of what one rule has found in a table, and how many there are beside: a
// report of the wrong form has a finding in each of its rows. `place` begins the lines.
void AppendFirst(const std::string& place, const std::vector<std::string>& found,
                 std::vector<std::string>& findings);

// The words of the engine about a database, with what to do about it.
std::string FailureFinding(std::string_view failure);

// The path as a shell takes it within a command that a finding puts between '.
std::string ShellWord(const std::string& path);

}  // namespace quillon
