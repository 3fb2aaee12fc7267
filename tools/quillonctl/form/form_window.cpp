// The layout. The frames stand side by side, the buttons and the message below them.
#include "quillonctl/form/form_window.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace quillon {
namespace {

constexpr Size kSize{76, 22};  // with its border just as high as the smallest screen

// Columns of the frames and, behind the labels, of their fields.
constexpr int kLeft = 0;
constexpr int kLeftInside = 2;
constexpr int kLeftFields = 15;
constexpr int kRight = 36;
constexpr int kRightInside = 38;
constexpr int kRightFields = 55;

// Rows.
constexpr int kCssTop = 6;
constexpr int kFramesEnd = 15;
constexpr int kFirstButtons = 15;
constexpr int kSecondButtons = 16;
constexpr int kMessageTop = 18;

constexpr std::array kButtons = {Control::kApplyChanges, Control::kRead,      Control::kSave,
                                 Control::kExit,         Control::kImport,    Control::kAutoCreate,
                                 Control::kMailCreate,   Control::kSetRepDate};

std::vector<std::string> CharSets() {
  std::vector<std::string> sets(std::begin(lists::cboCharSet), std::end(lists::cboCharSet));
  sets.emplace_back("UTF-8");  // what browsers of today expect
  return sets;
}

template <std::size_t Count>
std::vector<std::string> Texts(const char* const (&list)[Count]) {
  return {std::begin(list), std::end(list)};
}

}  // namespace

FormWindow::FormWindow(Size screen, const Contents& contents)
    : window_(kSize, screen, captions::frmQuillonWeb),
      chkDebugMode_(window_, {kLeftInside, 1}, captions::chkDebugMode),
      cboDatumFormat_(window_, {kLeftFields, 2}, {12, 3}, Texts(lists::cboDatumFormat)),
      cboColorTheme_(window_, {kLeftFields, kCssTop + 1}, {12, 5}, Texts(lists::cboColorTheme)),
      cmdApplyChanges_(window_, {kLeftInside, kCssTop + 7}, captions::cmdApplyChanges),
      chkEnabled_(window_, {kRightInside, 1}, captions::chkEnabled),
      txtIpAddr_(window_, {kRightFields, 2}, 18),
      txtListeningPort_(window_, {kRightFields, 3}, 7),
      cboCharSet_(window_, {kRightFields, 4}, {15, 4}, CharSets()),
      txtStatus_(window_, {kRightInside, 9}, {36, 5}),
      cmdRead_(window_, {1, kFirstButtons}, captions::cmdRead),
      cmdSave_(window_, {18, kFirstButtons}, captions::cmdSave),
      exit_(window_, {67, kFirstButtons}, "Exit"),
      cmdImport_(window_, {1, kSecondButtons}, captions::cmdImport),
      cmdAutoCreate_(window_, {12, kSecondButtons}, captions::cmdAutoCreate),
      cmdMailCreate_(window_, {28, kSecondButtons}, captions::cmdMailCreate),
      cmdSetRepDate_(window_, {46, kSecondButtons}, captions::cmdSetRepDate),
      txtRepDate_(window_, {63, kSecondButtons}, 12),
      message_(window_, {1, kMessageTop}, {74, kSize.rows - kMessageTop}) {
  AddFrames();
  ListControls();
  ShowForm(contents);
  ShowMessage(contents.message);
  MoveTo(contents.current);
}

void FormWindow::AddFrames() {
  window_.AddFrame({kLeft, 0}, {35, kCssTop}, captions::fraGeneral);
  window_.AddLabel({kLeftInside, 2}, captions::lblUseDateFormat);
  window_.AddFrame({kLeft, kCssTop}, {35, kFramesEnd - kCssTop}, captions::fraCss);
  window_.AddLabel({kLeftInside, kCssTop + 1}, captions::lblColorTheme);
  window_.AddFrame({kRight, 0}, {40, kFramesEnd}, captions::fraWebServer);
  window_.AddLabel({kRightInside, 2}, captions::lblBindToAddress);
  window_.AddLabel({kRightInside, 3}, captions::lblListeningPort);
  window_.AddLabel({kRightInside, 4}, captions::lblCharSet);
  window_.AddLabel({kRightInside, 8}, captions::lblStatus);
}

void FormWindow::ListControls() {
  controls_ = {{Control::kDebugMode, chkDebugMode_.component()},
               {Control::kDateFormat, cboDatumFormat_.component()},
               {Control::kColorTheme, cboColorTheme_.component()},
               {Control::kApplyChanges, cmdApplyChanges_.component()},
               {Control::kEnabled, chkEnabled_.component()},
               {Control::kAddress, txtIpAddr_.component()},
               {Control::kPort, txtListeningPort_.component()},
               {Control::kCharSet, cboCharSet_.component()},
               {Control::kRead, cmdRead_.component()},
               {Control::kSave, cmdSave_.component()},
               {Control::kExit, exit_.component()},
               {Control::kImport, cmdImport_.component()},
               {Control::kAutoCreate, cmdAutoCreate_.component()},
               {Control::kMailCreate, cmdMailCreate_.component()},
               {Control::kSetRepDate, cmdSetRepDate_.component()},
               {Control::kRepDate, txtRepDate_.component()}};
}

void FormWindow::ShowForm(const Contents& contents) {
  const ConsoleForm& form = contents.form;
  chkDebugMode_.Tick(form.chkDebugMode);
  cboDatumFormat_.Choose(form.cboDatumFormat);
  chkEnabled_.Tick(form.chkEnabled);
  txtIpAddr_.SetText(form.txtIpAddr);
  txtListeningPort_.SetText(form.txtListeningPort);
  txtStatus_.SetText(form.txtStatus);
  cboCharSet_.Choose(form.cboCharSet);
  cboColorTheme_.Choose(form.cboColorTheme);
  txtRepDate_.SetText(contents.txtRepDate);
}

void FormWindow::ShowMessage(const std::string& message) {
  message_.SetText(message);
}

void FormWindow::MoveTo(Control control) {
  window_.SetCurrent(ComponentOf(control));
}

void FormWindow::Store(Contents& contents) const {
  ConsoleForm& form = contents.form;
  form.chkDebugMode = chkDebugMode_.IsTicked();
  form.cboDatumFormat = cboDatumFormat_.Chosen();
  form.chkEnabled = chkEnabled_.IsTicked();
  form.txtIpAddr = txtIpAddr_.Text();
  form.txtListeningPort = txtListeningPort_.Text();
  form.cboCharSet = cboCharSet_.Chosen();
  form.cboColorTheme = cboColorTheme_.Chosen();
  contents.txtRepDate = txtRepDate_.Text();
  contents.current = ControlOf(window_.Current()).value_or(contents.current);
}

WindowInput::Kind FormWindow::Wait(int watched) {
  const WindowInput input = window_.Wait(watched);
  pressed_.reset();
  if (input.kind == WindowInput::Kind::kPressed) pressed_ = ControlOf(input.component);
  if (input.kind != WindowInput::Kind::kClicked) return input.kind;
  TakeClick(input);
  return pressed_ ? WindowInput::Kind::kPressed : WindowInput::Kind::kWoken;
}

void FormWindow::TakeClick(const WindowInput& input) {
  const std::optional<Control> control = ControlOf(input.component);
  if (!control) return;
  window_.SetCurrent(input.component);
  if (*control == Control::kDebugMode) chkDebugMode_.Tick(!chkDebugMode_.IsTicked());
  if (*control == Control::kEnabled) chkEnabled_.Tick(!chkEnabled_.IsTicked());
  if (*control == Control::kDateFormat) cboDatumFormat_.ChooseAt(input.row);
  if (*control == Control::kColorTheme) cboColorTheme_.ChooseAt(input.row);
  if (*control == Control::kCharSet) cboCharSet_.ChooseAt(input.row);
  if (std::find(kButtons.begin(), kButtons.end(), *control) != kButtons.end()) pressed_ = control;
}

std::optional<Control> FormWindow::ControlOf(Component component) const {
  for (const auto& [control, itsComponent] : controls_) {
    if (itsComponent == component) return control;
  }
  return std::nullopt;
}

Component FormWindow::ComponentOf(Control control) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(),
                                  [&](const auto& entry) { return entry.first == control; });
  return found->second;
}

}  // namespace quillon
