// Standard output and files on the C library's streams.
#include "quillondb/csv/output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "import/schema/databases.h"
#include "platform/failure.h"
#include "platform/terminal_text.h"
#include "quillondb/csv/standard_stream.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// Of a database, or of what the engine keeps beside one.
bool IsDatabaseName(const std::string& name) {
  return std::ranges::any_of(kDatabases, [&](const Database& database) {
    const auto names = WithSideFiles(std::string(database.fileName));
    return std::ranges::find(names, name) != names.end();
  });
}

// A link may be somebody else's and lead anywhere, and moving a file onto a device would replace
// the device.
void RefuseOtherThanFiles(const fs::path& path) {
  constexpr const char* kOtherwise = ", or - for standard output";
  std::error_code ignored;
  const fs::file_status status = fs::symlink_status(path, ignored);
  if (fs::is_symlink(status)) {
    throw FileFailure(path.string() + " is a link; name the file that it leads to" + kOtherwise);
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw FileFailure(path.string() + " is no ordinary file; name another one" + kOtherwise);
  }
  if (IsDatabaseName(path.filename())) {
    throw FileFailure(path.string() + " is the name of a database; name another file" + kOtherwise);
  }
}

}  // namespace

void CsvOutput::Closer::operator()(std::FILE* file) const {
  if (file != stdout) std::fclose(file);
}

CsvOutput::CsvOutput(const std::string& path) {
  if (path == kStandardStream) {
    file_.reset(stdout);
    isTerminal_ = isatty(STDOUT_FILENO) == 1;
    return;
  }
  RefuseOtherThanFiles(path);
  path_ = path;
  OpenTemporary();
}

// A name that nobody else can have put a link under.
void CsvOutput::OpenTemporary() {
  std::string name = path_ + "~XXXXXX";
  const int descriptor = mkstemp(name.data());
  if (descriptor < 0) Fail("cannot create ");
  temporary_ = name;
  file_.reset(fdopen(descriptor, "w"));
  if (!file_) Fail("cannot open ");
}

CsvOutput::~CsvOutput() {
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void CsvOutput::Fail(const char* what) const {
  const std::string reason = std::generic_category().message(errno);
  throw FileFailure(what + (path_.empty() ? "standard output" : path_) + ": " + reason);
}

void CsvOutput::WriteRecord(std::string_view record) {
  if (!isTerminal_) return Write(record);
  Write(TerminalText(record.substr(0, record.size() - 1)) + '\n');
}

void CsvOutput::Write(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) {
    Fail("cannot write ");
  }
}

void CsvOutput::Commit() {
  if (std::fflush(file_.get()) != 0) Fail("cannot write ");
  if (temporary_.empty()) return;
  if (fsync(fileno(file_.get())) != 0) Fail("cannot write ");
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0) Fail("cannot replace ");
  temporary_.clear();
}

}  // namespace quillon
