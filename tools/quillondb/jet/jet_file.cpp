// Each reading is a process: it opens the file anew, so one that fails spoils nothing for others.
#include "quillondb/jet/jet_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/failure.h"
#include "platform/terminal_text.h"
#include "quillondb/jet/jet_header.h"
#include "quillondb/jet/jet_library.h"
#include "quillondb/jet/jet_message.h"
#include "quillondb/jet/reading_failure.h"
#include "quillondb/jet/reading_process.h"

namespace quillon {
namespace {

constexpr ReadingLimits kLimits{.isHarmless = IsHarmlessComplaint};

}  // namespace

JetFile::JetFile(std::string path) : path_(std::move(path)) {
  RequireJetFile(path_);
  atFirst_ = Now();
}

std::string JetFile::Name() const {
  return TerminalText(path_);
}

JetFile::State JetFile::Now() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) {
    throw FileFailure("cannot read " + Name() + ": " + std::strerror(errno));
  }
  return {status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

template <typename Reading>
void JetFile::Read(const Reading& reading) const {
  try {
    reading();
  } catch (const ReadingFailure& failure) {
    throw FileFailure(Name() + ": " + TerminalText(failure.what()));
  }
  if (Now() == atFirst_) return;
  throw FileFailure(Name() +
                    " changed while it was read; repeat this when its program is done with it");
}

std::vector<JetTable> JetFile::Tables() {
  std::vector<JetTable> tables;
  Read([&] {
    RunReadingProcess([&](const SendBytes& send) { SendJetTables(path_, send); },
                      [&](std::string_view bytes) { tables.push_back(TableOfMessage(bytes)); },
                      kLimits);
  });
  return tables;
}

void JetFile::ReadRows(const JetTable& table, const JetRowHandler& handler) {
  Read([&] {
    RunReadingProcess([&](const SendBytes& send) { SendJetRows(path_, table.name, send); },
                      [&](std::string_view bytes) {
                        const JetRow row = RowOfMessage(bytes);
                        if (row.size() != table.columns.size())
                          throw ReadingFailure("the file is damaged");
                        handler(row);
                      },
                      kLimits);
  });
}

}  // namespace quillon
