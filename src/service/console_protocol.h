// What the operator's console and the service say to each other over the socket file: lines of
// UTF-8, whose words have a tab between them. The console asks with one line; the service answers
// with lines, of which the last one begins with "done" or "refused", and hangs up.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::console {

// The name of the socket file in the installation directory.
inline constexpr const char* kSocketName = "quillonweb.socket";

// Requests.
inline constexpr std::string_view kStatus = "status";
inline constexpr std::string_view kImport = "import";
inline constexpr std::string_view kAutoCreate = "auto-create";
inline constexpr std::string_view kMailCreate = "mail-create";
inline constexpr std::string_view kSetRepDate = "set-rep-date";  // and a date

// First words of answers.
inline constexpr std::string_view kProgress = "progress";  // unit, number, total
inline constexpr std::string_view kEvent = "event";        // type, source, text
inline constexpr std::string_view kState = "state";        // name, value: of the answer to kStatus
inline constexpr std::string_view kRefused = "refused";    // why it was not, or could not be, done
inline constexpr std::string_view kDone = "done";          // what is to be shown

// Units of kProgress.
inline constexpr std::string_view kStep = "step";
inline constexpr std::string_view kPage = "page";
inline constexpr std::string_view kReceiver = "receiver";

// The words as a line, without its end; a tab or line end in a word becomes a blank.
std::string Line(const std::vector<std::string_view>& words);

// The words of a line.
std::vector<std::string> Words(std::string_view line);

}  // namespace quillon::console
