// The texts of failures.
#include "service/error_exit.h"

#include "platform/failure.h"
#include "platform/text_encoding.h"

namespace quillon {

std::string FailureText(const Settings& settings, const std::exception& failure) {
  const bool ofDatabase = dynamic_cast<const DatabaseFailure*>(&failure) != nullptr ||
                          dynamic_cast<const FieldFailure*>(&failure) != nullptr;
  return ofDatabase ? PageText(failure.what(), settings.CharSet) : failure.what();
}

}  // namespace quillon
