// The texts of failures.
#include "service/error_exit.h"

#include "platform/failure.h"
#include "platform/text_encoding.h"

namespace quillon {
namespace {

// A description may quote a request, of which there can be many with 64 KiB each.
constexpr std::size_t kMaxCharacters = 500;

}  // namespace

std::string FailureText(const Settings& settings, const std::exception& failure) {
  const bool ofDatabase = dynamic_cast<const DatabaseFailure*>(&failure) != nullptr ||
                          dynamic_cast<const FieldFailure*>(&failure) != nullptr;
  std::string text = ofDatabase ? PageText(failure.what(), settings.CharSet) : failure.what();
  if (text.size() <= kMaxCharacters) return text;
  const std::string beginning = FirstCharacters(text, kMaxCharacters, settings.CharSet);
  return beginning == text ? text : beginning + "...";
}

}  // namespace quillon
