// Each name is judged by what lies there.
#include "quillondb/check/files.h"

#include <fmt/format.h>

#include <filesystem>

#include "platform/files.h"
#include "quillondb/check/findings.h"
#include "quillondb/folders.h"
#include "quillondb/installation.h"
#include "render/themes.h"
#include "service/console_protocol.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStylesheet = "WebReports/qws.css";
constexpr const char* kEventFile = "Debug/AppEventWeb.txt";
constexpr const char* kOldEventFile = "Debug/AppEventWeb.bak";

constexpr std::uintmax_t kLongestText = 1'000'000;

// Says that something else has the name, and has to go; nothing where there is nothing.
std::string MoveAway(const fs::path& path) {
  return IsThere(path) ? "move away what lies there, and " : "";
}

void CheckFolder(const fs::path& directory, const char* folder, const std::string& owner,
                 FindingLines& findings) {
  const fs::path path = directory / folder;
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) return;
  findings.push_back(fmt::format("{}: the folder is missing; {}run 'install -d -o {} {}'", folder,
                                 MoveAway(path), owner, ShellWord(path.string())));
}

std::string HowToGet(const fs::path& directory, std::string_view file) {
  if (file != kStylesheet) return std::string("copy it from ") + kWebFileSources;
  return fmt::format("run 'quillonctl -C {} apply-changes {}', or with another theme",
                     ShellWord(directory.string()), kDefaultTheme);
}

void CheckWebFile(const fs::path& directory, const WebFile& file, FindingLines& findings) {
  const fs::path path = directory / file.path;
  if (FileExists(path.string())) return;
  findings.push_back(fmt::format("{}: the file is missing, so {}; {}{}", file.path, file.loss,
                                 MoveAway(path), HowToGet(directory, file.path)));
}

void CheckEventFile(const fs::path& directory, FindingLines& findings) {
  const fs::path path = directory / kEventFile;
  if (IsThere(path) && !FileExists(path.string())) {
    findings.push_back(std::string(kEventFile) +
                       ": no file, so no event is written down; move away what lies there");
  }
  if (!IsThere(directory / kOldEventFile)) return;
  findings.push_back(std::string(kOldEventFile) +
                     ": in the way, so old events are not deleted any more; take out what you need"
                     " of them, and delete it");
}

void CheckConsoleSocket(const fs::path& directory, FindingLines& findings) {
  const fs::path path = directory / console::kSocketName;
  std::error_code ignored;
  if (!IsThere(path) || fs::is_socket(fs::symlink_status(path, ignored))) return;
  findings.push_back(std::string(console::kSocketName) +
                     ": no socket, so quillonctl does not reach the service; delete what lies"
                     " there, and restart the service");
}

}  // namespace

const std::array<WebFile, 4> kWebFiles = {{
    {"WebReports/Language.ini", R"(every word of the pages shows as "n/a")"},
    {"WebReports/HelpText.txt", "the help is empty"},
    {"WebReports/Favicon.ico", "browsers show no icon"},
    {kStylesheet, "pages have no colours"},
}};

void CheckFiles(const std::string& directory, const std::string& owner, FindingLines& findings) {
  for (const char* folder : kFolders) CheckFolder(directory, folder, owner, findings);
  for (const WebFile& file : kWebFiles) CheckWebFile(directory, file, findings);
  CheckEventFile(directory, findings);
  CheckConsoleSocket(directory, findings);
}

bool IsShort(const std::string& path, const std::string& name, FindingLines& findings) {
  std::error_code ignored;
  const std::uintmax_t bytes = fs::file_size(path, ignored);
  if (ignored || bytes <= kLongestText) return true;
  findings.push_back(fmt::format(
      "{}: {} MB, which each start of the service reads; put a file of less than 1 MB in its place",
      name, bytes / kLongestText));
  return false;
}

}  // namespace quillon
