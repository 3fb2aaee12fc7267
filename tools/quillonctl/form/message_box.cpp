// The box.
#include "quillonctl/form/message_box.h"

#include <algorithm>

namespace quillon {
namespace {

constexpr Size kSize{30, 5};
constexpr const char* kOk = "Ok";

int Middle(std::size_t used) {
  return std::max(0, (kSize.columns - static_cast<int>(used)) / 2);
}

}  // namespace

MessageBox::MessageBox(Size screen, const std::string& title, const std::string& text)
    : window_(kSize, screen, title), ok_(window_, {Middle(6), 3}, kOk) {
  window_.AddLabel({Middle(text.size()), 1}, text.c_str());
}

WindowInput::Kind MessageBox::Wait(int watched) {
  const WindowInput::Kind kind = window_.Wait(watched).kind;
  const bool read = kind == WindowInput::Kind::kClicked || kind == WindowInput::Kind::kLeft;
  return read ? WindowInput::Kind::kPressed : kind;
}

}  // namespace quillon
