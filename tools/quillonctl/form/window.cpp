// The window as a form of the library.
#include "quillonctl/form/window.h"

#include <newt.h>

#include <algorithm>

namespace quillon {
namespace {

constexpr int kCtrlC = '\003';
constexpr int kEscape = '\033';

std::string Times(const char* text, int count) {
  std::string row;
  for (int number = 0; number < count; ++number) row += text;
  return row;
}

bool Covers(Component component, Place place) {
  Place corner;
  Size size;
  newtComponentGetPosition(component, &corner.column, &corner.row);
  newtComponentGetSize(component, &size.columns, &size.rows);
  return place.column >= corner.column && place.column < corner.column + size.columns &&
         place.row >= corner.row && place.row < corner.row + size.rows;
}

}  // namespace

Window::Window(Size size, Size screen, const std::string& title)
    : form_(newtForm(nullptr, nullptr, 0)),
      origin_{std::max(0, (screen.columns - size.columns) / 2),
              std::max(0, (screen.rows - size.rows) / 2)} {
  newtOpenWindow(origin_.column, origin_.row, static_cast<unsigned>(size.columns),
                 static_cast<unsigned>(size.rows), title.c_str());
  newtFormAddHotKey(form_, kEscape);
  newtFormAddHotKey(form_, kCtrlC);
}

Window::~Window() {
  newtFormDestroy(form_);
  newtPopWindow();
}

Component Window::Add(Component component) {
  newtFormAddComponent(form_, component);
  components_.push_back(component);
  return component;
}

void Window::AddLabel(Place place, const char* text) {
  newtFormAddComponent(form_, newtLabel(place.column, place.row, text));
}

void Window::AddLine(Place place, const char* text) {
  Component line = Add(newtLabel(place.column, place.row, text));
  newtComponentTakesFocus(line, 1);
}

void Window::AddFrame(Place place, Size size, const char* caption) {
  const std::string head = std::string("┌ ") + caption + " ";
  const auto used = static_cast<int>(std::string(caption).size()) + 4;  // with both corners
  const int right = place.column + size.columns - 1;
  const int bottom = place.row + size.rows - 1;
  AddLabel(place, (head + Times("─", size.columns - used) + "┐").c_str());
  for (int row = place.row + 1; row < bottom; ++row) {
    AddLabel({place.column, row}, "│");
    AddLabel({right, row}, "│");
  }
  AddLabel({place.column, bottom}, ("└" + Times("─", size.columns - 2) + "┘").c_str());
}

Component Window::Current() const {
  return newtFormGetCurrent(form_);
}

void Window::SetCurrent(Component component) {
  newtFormSetCurrent(form_, component);
}

void Window::Draw() {
  newtDrawForm(form_);
}

WindowInput Window::Wait(int watched) {
  newtFormWatchFd(form_, watched, NEWT_FD_READ);
  newtExitStruct end{};
  newtFormRun(form_, &end);
  switch (end.reason) {
    case newtExitStruct::NEWT_EXIT_COMPONENT:
      return {WindowInput::Kind::kPressed, end.u.co, {}};
    case newtExitStruct::NEWT_EXIT_HOTKEY:
      if (end.u.key == kEscape) return AtEscape();
      return {WindowInput::Kind::kLeft, nullptr, {}};
    case newtExitStruct::NEWT_EXIT_ERROR:
      return {WindowInput::Kind::kLost, nullptr, {}};
    default:
      return {};
  }
}

WindowInput Window::AtEscape() {
  const EscapeInput input = ReadBehindEscape();
  if (input.isKey) return {WindowInput::Kind::kLeft, nullptr, {}};
  if (!input.click) return {};
  Component component = Under(*input.click);
  if (component == nullptr) return {};
  Place corner;
  newtComponentGetPosition(component, &corner.column, &corner.row);
  const Place row{origin_.column + corner.column, input.click->row};
  return {WindowInput::Kind::kClicked, component, row};
}

Component Window::Under(Place place) const {
  const Place inside{place.column - origin_.column, place.row - origin_.row};
  const auto found = std::find_if(components_.begin(), components_.end(),
                                  [&](Component component) { return Covers(component, inside); });
  return found == components_.end() ? nullptr : *found;
}

}  // namespace quillon
