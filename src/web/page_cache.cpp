// The page cache and the mail copies.
#include "web/page_cache.h"

#include "platform/files.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";

std::string CacheFolder(const Settings& settings) {
  return PathBelow(settings, "\\WebReports\\Cache");
}

}  // namespace

bool TakeRemembered(const Settings& settings, const PageMemory& memory, std::string_view fileName,
                    std::string& text) {
  return memory.Take(CacheFolder(settings) + "/" + std::string(fileName), text);
}

bool IsCached(const Settings& settings, std::string_view fileName) {
  return PlainFileExists(CacheFolder(settings), fileName);
}

void ReadFromCache(const Diagnostics& diagnostics, PageMemory& memory, ConnectionId,
                   std::string_view fileName, std::string& text) {
  ErrorExit(diagnostics, kModule, "ReadFromCache",
            [&] { memory.Read(PlainFilePath(CacheFolder(diagnostics.settings), fileName), text); });
}

void SaveToCache(const Diagnostics& diagnostics, ConnectionId, std::string_view fileName,
                 std::string_view text) {
  ErrorExit(diagnostics, kModule, "SaveToCache", [&] {
    ReplaceFile(PlainFilePath(CacheFolder(diagnostics.settings), fileName), text, OldFile::kGoes);
  });
}

void SaveForMail(const Diagnostics& diagnostics, ConnectionId, std::string_view fileName,
                 std::string_view text) {
  ErrorExit(diagnostics, kModule, "SaveForMail", [&] {
    const std::string folder = PathBelow(diagnostics.settings, "\\WebReports\\Mail");
    ReplaceFile(PlainFilePath(folder, fileName), text, OldFile::kGoes);
  });
}

}  // namespace quillon
