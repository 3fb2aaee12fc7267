// The cleaners of the debug folder.
#include "service/debug_folder.h"

#include <string>

#include "platform/date_time.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr const char* kDebugFiles[] = {
    "WebConnection*.txt",  // one for each connection, and WebConnections.txt
    "WebServices.txt",
    "Language.ini",
    "HelpText.txt",
    "qws.css",
    "WebSql*.txt",
    "SendMailSMTP.txt",
    "~new*",  // what a kill left of a file that was being written
};

constexpr std::chrono::days kEventAge{60};  // events of so long ago go
constexpr std::size_t kPiece = 65'536;      // bytes of lines that are written at once
constexpr std::size_t kDateLength = 10;     // "YYYY-MM-DD", with which a line begins

bool IsYoung(std::string_view line, DateTime today) {
  const std::string_view date = line.substr(0, kDateLength);
  const auto day = ParseDateTime(date);
  if (!day) {
    throw ConversionFailure("a line of AppEventWeb.bak begins with no date: \"" +
                            std::string(date) + "\"");
  }
  return today - *day < kEventAge;
}

// Copies the lines of `old` that stay into `events`, up to one that cannot be judged. In pieces:
// the file has no limit.
void CopyYoungLines(const std::string& old, const std::string& events, DateTime today) {
  std::string kept;
  const auto writeOut = [&] {
    AppendToFile(events, kept);
    kept.clear();
  };
  TouchFile(events);
  try {
    ReadLines(old, [&](std::string_view line) {
      if (line.size() <= kDateLength || !IsYoung(line, today)) return;
      kept.append(line).append(kLineEnd);
      if (kept.size() >= kPiece) writeOut();
    });
  } catch (const ConversionFailure&) {
    writeOut();
    throw;
  }
  writeOut();
}

}  // namespace

void ClearDebugDir(const Diagnostics& diagnostics) {
  ErrorExit(diagnostics, "modQuillonWeb", "ClearDebugDir", [&] {
    for (const char* pattern : kDebugFiles) {
      DeleteMatching(PathBelow(diagnostics.settings, "\\Debug"), pattern);
    }
  });
}

void ClearDebugDir_AEW(const Diagnostics& diagnostics) {
  ErrorExit(diagnostics, "modQuillonWeb", "ClearDebugDir_AEW", [&] {
    const std::string events = PathBelow(diagnostics.settings, "\\Debug\\AppEventWeb.txt");
    const std::string old = PathBelow(diagnostics.settings, "\\Debug\\AppEventWeb.bak");
    if (!FileExists(events)) return;
    MoveFile(events, old);
    const auto today = std::chrono::floor<std::chrono::days>(diagnostics.clock.Now());
    CopyYoungLines(old, events, today);
    SyncFile(events);  // before its only copy goes
    DeleteFile(old);
  });
}

}  // namespace quillon
