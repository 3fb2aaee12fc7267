// What the buttons of the form do. Whatever fails is told in the form, which lives on.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "quillonctl/desk.h"
#include "quillonctl/form/form_check.h"
#include "quillonctl/form/running_job.h"
#include "quillonctl/form/screen.h"
#include "quillonctl/form/watches.h"

namespace quillon {

class FormActions {
 public:
  FormActions(const std::string& directory, const Watches& watches, Screen& screen);

  // Fills the form for the first time.
  void Begin();
  // "Exit" is none of its own.
  void Press(Control button);
  // Takes what has come from the service.
  void TakeAnswer();

  // The caption of the job that goes on without the form; empty where none does.
  std::string RunningCaption() const;

 private:
  void Read();
  void Save();
  void ApplyChanges();
  void SetReportDate();
  void StartJob(const char* caption, const std::string& request);
  void EndJob();

  void Attempt(const char* caption, const std::function<void()>& action);
  void Say(const std::string& message);
  void ShowMessages();
  bool Complain(const std::optional<FormComplaint>& complaint);

  std::string directory_;
  const Watches& watches_;
  Screen& screen_;
  Desk desk_;
  std::optional<RunningJob> job_;
  std::string said_;  // what came of the last button
};

}  // namespace quillon
