// The cleaner of the debug folder.
#include "service/debug_folder.h"

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

}  // namespace

void ClearDebugDir(const Diagnostics& diagnostics) {
  ErrorExit(diagnostics, "modQuillonWeb", "ClearDebugDir", [&] {
    for (const char* pattern : kDebugFiles) {
      DeleteMatching(PathBelow(diagnostics.settings, "\\Debug"), pattern);
    }
  });
}

}  // namespace quillon
