// Reading, saving and the theme are done here; the jobs by the service.
#include "quillonctl/form/form_actions.h"

#include <exception>

#include "quillonctl/outcome_texts.h"
#include "quillonctl/settings_lock.h"
#include "service/console_operations.h"
#include "service/console_protocol.h"

namespace quillon {

FormActions::FormActions(const std::string& directory, const Watches& watches, Screen& screen)
    : directory_(directory),
      watches_(watches),
      screen_(screen),
      desk_(directory, DeskEvents::kInTheFile) {}

void FormActions::Begin() {
  Say("Tab moves on, Space or Enter presses, Esc leaves");
  Read();
}

void FormActions::Press(Control button) {
  switch (button) {
    case Control::kRead:
      return Read();
    case Control::kSave:
      return Save();
    case Control::kApplyChanges:
      return ApplyChanges();
    case Control::kImport:
      return StartJob(captions::cmdImport, std::string(console::kImport));
    case Control::kAutoCreate:
      return StartJob(captions::cmdAutoCreate, std::string(console::kAutoCreate));
    case Control::kMailCreate:
      return StartJob(captions::cmdMailCreate, std::string(console::kMailCreate));
    case Control::kSetRepDate:
      return SetReportDate();
    default:
      return;
  }
}

void FormActions::Read() {
  ConsoleForm form = screen_.contents().form;
  Attempt(captions::cmdRead, [&] { cmdRead(desk_.settings, form); });
  screen_.ShowForm(form);  // as far as it was read
}

void FormActions::Save() {
  if (Complain(SettingsComplaint(screen_.contents()))) return;
  Attempt(captions::cmdSave, [this] {
    const SettingsLock lock(directory_);
    cmdSave(desk_.settings, screen_.contents().form);
    Say(kSavedText);
  });
}

void FormActions::ApplyChanges() {
  Attempt(captions::cmdApplyChanges, [this] {
    const std::size_t before = desk_.failures().size();
    const std::string& theme = screen_.contents().form.cboColorTheme;
    cmdApplyChanges(desk_.diagnostics, screen_.contents().form);
    const bool failed = desk_.failures().size() > before;
    Say(failed ? desk_.failures().back() : ThemeText(theme));
  });
}

void FormActions::SetReportDate() {
  const Contents& contents = screen_.contents();
  if (Complain(DateComplaint(contents))) return;
  StartJob(captions::cmdSetRepDate, console::Line({console::kSetRepDate, contents.txtRepDate}));
}

void FormActions::StartJob(const char* caption, const std::string& request) {
  if (job_) return Say(std::string(caption) + ": another job is still running");
  Attempt(caption, [&] {
    job_.emplace(watches_, directory_, caption, request);
    Say("");
  });
}

void FormActions::TakeAnswer() {
  if (!job_) return;
  const std::string caption = job_->caption();
  Attempt(caption.c_str(), [this] {
    job_->Take();
    if (job_->ended()) return EndJob();
    ShowMessages();
  });
}

void FormActions::EndJob() {
  const CommandOutcome outcome = job_->outcome();
  const bool isImport = job_->caption() == captions::cmdImport;
  const std::string message = job_->Message();
  job_.reset();
  Say(message);
  if (isImport && outcome.result == CommandOutcome::Result::kDone) {
    screen_.ShowBox(captions::cmdImport, outcome.message);
  }
}

std::string FormActions::RunningCaption() const {
  return job_ ? job_->caption() : "";
}

// A job that fails has ended: its link is of no use any more.
void FormActions::Attempt(const char* caption, const std::function<void()>& action) {
  try {
    action();
  } catch (const std::exception& failure) {
    if (job_ && job_->caption() == caption) job_.reset();
    Say(std::string(caption) + ": " + failure.what());
  }
}

void FormActions::Say(const std::string& message) {
  said_ = message;
  ShowMessages();
}

// What was said of the last button stays while the job below it goes on.
void FormActions::ShowMessages() {
  std::string messages = said_;
  if (job_) messages.append(said_.empty() ? "" : "\n").append(job_->Message());
  screen_.ShowMessage(messages);
}

// True where there is something to complain about; the cursor is at the field then.
bool FormActions::Complain(const std::optional<FormComplaint>& complaint) {
  if (!complaint) return false;
  Say(complaint->text);
  screen_.MoveTo(complaint->control);
  return true;
}

}  // namespace quillon
