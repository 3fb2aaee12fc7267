// The run-time failures of the service. A failure carries a description that an
// operator can act on: what, which file or table, why. It is thrown below and
// caught by the one error exit (service/error_exit.h).
#pragma once

#include <stdexcept>
#include <string>

namespace quillon {

class Failure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A database, table or field that is missing, locked, damaged or of the wrong kind.
class DatabaseFailure : public Failure {
  using Failure::Failure;
};

// A file that cannot be opened, read, written or named.
class FileFailure : public Failure {
  using Failure::Failure;
};

// A value that is not what it has to become: a text that is no number, a null read as text.
class ConversionFailure : public Failure {
  using Failure::Failure;
};

// The same of a database field: its text holds what the field holds, in UTF-8.
class FieldFailure : public ConversionFailure {
  using ConversionFailure::ConversionFailure;
};

// A number beyond the range of its field.
class OverflowFailure : public Failure {
  using Failure::Failure;
};

// A position outside a fixed array.
class IndexFailure : public Failure {
  using Failure::Failure;
};

// A position or length that a text does not have.
class TextFailure : public Failure {
  using Failure::Failure;
};

// A socket that cannot be opened, bound or written. `code` tells the two kinds
// that the opening of the sockets answers with texts of their own.
class SocketFailure : public Failure {
 public:
  enum class Code { kOther = 0, kAddressInUse = 10048, kAddressNotAvailable = 10049 };

  SocketFailure(Code code, const std::string& description) : Failure(description), code_(code) {}
  Code code() const { return code_; }

 private:
  Code code_;
};

}  // namespace quillon
