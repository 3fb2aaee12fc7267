// Where CSV comes from: a file, or standard input.
#pragma once

#include <array>
#include <istream>
#include <streambuf>
#include <string>
#include <utility>

#include "platform/descriptor.h"

namespace quillon {

// What a descriptor gives, piece by piece. The streams of the library take a failure to read for
// the end of standard input; here it is a FileFailure, which leaves a stream that lets it through.
class DescriptorInput : public std::streambuf {
 public:
  explicit DescriptorInput(Descriptor input) : input_(std::move(input)) {}

 protected:
  int_type underflow() override;

 private:
  Descriptor input_;
  std::array<char, 65536> piece_{};
};

// What a path may name: a pipe is waited for, a file never is.
enum class CsvSource { kAnything, kFile };

class CsvInput {
 public:
  // A path, or "-". FileFailure where it cannot be opened. No rights are needed from then on.
  explicit CsvInput(const std::string& path, CsvSource source = CsvSource::kAnything);

  std::istream& stream() { return stream_; }
  // As messages tell it.
  const std::string& name() const { return name_; }

 private:
  std::string name_;
  DescriptorInput input_;
  std::istream stream_;
};

}  // namespace quillon
