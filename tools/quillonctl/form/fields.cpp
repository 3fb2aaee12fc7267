// The controls of the library.
#include "quillonctl/form/fields.h"

#include <newt.h>
#include <slang.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/terminal_text.h"

namespace quillon {
namespace {

constexpr const char* kTicks = " *";  // as the marks of a check box follow each other
constexpr char kTicked = '*';
constexpr char kBlank = ' ';

constexpr std::size_t kWidest = 80;  // columns of a window

// What the screen shows from a place on, up to a blank.
std::string WordOnScreen(Place screen) {
  std::array<SLsmg_Char_Type, kWidest> cells{};
  SLsmg_gotorc(screen.row, screen.column);
  const unsigned int count = SLsmg_read_raw(cells.data(), kWidest);
  std::string word;
  for (unsigned int column = 0; column < count; ++column) {
    const SLwchar_Type character = cells.at(column).wchars[0];
    if (character <= kBlank || character > '~') break;
    word += static_cast<char>(character);
  }
  return word;
}

}  // namespace

Button::Button(Window& window, Place place, const char* caption)
    : component_(window.Add(newtCompactButton(place.column, place.row, caption))) {}

CheckBox::CheckBox(Window& window, Place place, const char* caption)
    : component_(
          window.Add(newtCheckbox(place.column, place.row, caption, kBlank, kTicks, nullptr))) {}

bool CheckBox::IsTicked() const {
  return newtCheckboxGetValue(component_) == kTicked;
}

void CheckBox::Tick(bool ticked) {
  newtCheckboxSetValue(component_, ticked ? kTicked : kBlank);
}

TextField::TextField(Window& window, Place place, int columns)
    : component_(
          window.Add(newtEntry(place.column, place.row, "", columns, nullptr, NEWT_FLAG_SCROLL))) {}

std::string TextField::Text() const {
  return newtEntryGetValue(component_);
}

void TextField::SetText(const std::string& text) {
  newtEntrySet(component_, text.c_str(), 1);
}

ChoiceList::ChoiceList(Window& window, Place place, Size size, std::vector<std::string> offered)
    : offered_(std::move(offered)) {
  const bool scrolls = offered_.size() > static_cast<std::size_t>(size.rows);
  component_ =
      window.Add(newtListbox(place.column, place.row, size.rows, scrolls ? NEWT_FLAG_SCROLL : 0));
  newtListboxSetWidth(component_, size.columns);
}

const std::string& ChoiceList::Chosen() const {
  return *static_cast<const std::string*>(newtListboxGetCurrent(component_));
}

void ChoiceList::Choose(const std::string& text) {
  newtListboxClear(component_);
  listed_ = offered_;
  if (std::find(listed_.begin(), listed_.end(), text) == listed_.end()) listed_.push_back(text);
  for (const std::string& entry : listed_) {
    newtListboxAppendEntry(component_, entry.c_str(), &entry);
  }
  MoveTo(text);
}

// The library does not tell how far the list is scrolled.
void ChoiceList::ChooseAt(Place screen) {
  MoveTo(WordOnScreen(screen));
}

void ChoiceList::MoveTo(const std::string& text) {
  const auto found = std::find(listed_.begin(), listed_.end(), text);
  if (found == listed_.end()) return;
  newtListboxSetCurrent(component_, static_cast<int>(found - listed_.begin()));
}

// Without a scroll bar, over which the library would write.
TextPane::TextPane(Window& window, Place place, Size size)
    : component_(window.Add(
          newtTextbox(place.column, place.row, size.columns, size.rows, NEWT_FLAG_WRAP))) {}

void TextPane::SetText(const std::string& text) {
  newtTextboxSetText(component_, TerminalLines(text).c_str());
}

}  // namespace quillon
