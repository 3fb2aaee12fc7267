// What can be put into a window: how each kind of control is made, filled and read.
#pragma once

#include <string>
#include <vector>

#include "quillonctl/form/window.h"

namespace quillon {

class Button {
 public:
  Button(Window& window, Place place, const char* caption);
  Component component() const { return component_; }

 private:
  Component component_;
};

class CheckBox {
 public:
  CheckBox(Window& window, Place place, const char* caption);
  Component component() const { return component_; }
  bool IsTicked() const;
  void Tick(bool ticked);

 private:
  Component component_;
};

class TextField {
 public:
  TextField(Window& window, Place place, int columns);
  Component component() const { return component_; }
  std::string Text() const;
  void SetText(const std::string& text);

 private:
  Component component_;
};

// Offers texts, of which one is chosen.
class ChoiceList {
 public:
  // A list that offers more texts than it has rows scrolls. It is empty until something is chosen.
  ChoiceList(Window& window, Place place, Size size, std::vector<std::string> offered);
  ChoiceList(const ChoiceList&) = delete;
  ChoiceList& operator=(const ChoiceList&) = delete;

  Component component() const { return component_; }
  const std::string& Chosen() const;
  // Chooses the text. Where it is none of those that are offered, it is listed behind them.
  void Choose(const std::string& text);
  // Chooses the text that begins there on the screen, if one of the list's does.
  void ChooseAt(Place screen);

 private:
  void MoveTo(const std::string& text);

  Component component_ = nullptr;
  std::vector<std::string> offered_;
  std::vector<std::string> listed_;  // the library's list points to each of them
};

// Lines to be read alone; those that do not fit are not seen.
class TextPane {
 public:
  TextPane(Window& window, Place place, Size size);
  Component component() const { return component_; }
  void SetText(const std::string& text);

 private:
  Component component_;
};

}  // namespace quillon
