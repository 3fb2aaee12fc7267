// Descriptors as streams.
#include "quillondb/csv/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/failure.h"
#include "quillondb/csv/standard_stream.h"

namespace quillon {
namespace {

std::string Reason() {
  return std::generic_category().message(errno);
}

bool IsFile(const Descriptor& input) {
  struct stat status {};
  return fstat(input.get(), &status) == 0 && S_ISREG(status.st_mode);
}

// Standard input as a descriptor of its own: where it is closed, the number would be free for the
// next file that is opened.
Descriptor OpenInput(const std::string& path, const std::string& name, CsvSource source) {
  const bool isFile = source == CsvSource::kFile;
  const int flags = O_RDONLY | O_CLOEXEC | (isFile ? O_NONBLOCK : 0);
  Descriptor input(path == kStandardStream ? dup(STDIN_FILENO) : open(path.c_str(), flags));
  if (input.get() < 0) throw FileFailure("cannot open " + name + ": " + Reason());
  if (isFile && !IsFile(input)) {
    throw FileFailure(name + " is no ordinary file; name another one, or - for standard input");
  }
  return input;
}

}  // namespace

DescriptorInput::int_type DescriptorInput::underflow() {
  ssize_t count = 0;
  do {
    count = read(input_.get(), piece_.data(), piece_.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0) throw FileFailure("cannot be read: " + Reason());
  if (count == 0) return traits_type::eof();
  setg(piece_.data(), piece_.data(), piece_.data() + count);
  return traits_type::to_int_type(piece_.front());
}

CsvInput::CsvInput(const std::string& path, CsvSource source)
    : name_(path == kStandardStream ? "standard input" : path),
      input_(OpenInput(path, name_, source)),
      stream_(&input_) {}

}  // namespace quillon
