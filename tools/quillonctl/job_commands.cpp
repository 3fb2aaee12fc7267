// Asking the service.
#include "quillonctl/job_commands.h"

#include <unistd.h>

#include <iostream>

#include "platform/terminal_text.h"
#include "quillonctl/command_outcome.h"
#include "quillonctl/job_answer.h"
#include "quillonctl/service_link.h"
#include "quillonctl/settings_rules.h"
#include "service/console_protocol.h"

namespace quillon {
namespace {

// The line on a terminal that shows how far a job is. Elsewhere there is none.
class ProgressLine {
 public:
  ProgressLine() = default;
  ~ProgressLine() { Clear(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void Show(const std::string& text) {
    if (!isTerminal_) return;
    std::cerr << "\r\033[K" << TerminalText(text) << std::flush;
    isShown_ = true;
  }
  void Clear() {
    if (isShown_) std::cerr << "\r\033[K" << std::flush;
    isShown_ = false;
  }

 private:
  bool isTerminal_ = isatty(STDERR_FILENO) == 1;
  bool isShown_ = false;
};

void Follow(const std::string& directory, const std::string& request, OutputForm form,
            CommandOutcome& outcome) {
  ServiceLink link(directory, request);
  ProgressLine line;
  while (const auto words = link.Next()) {
    if (const auto progress = ProgressText(*words)) line.Show(*progress);
    if (const auto failure = FailureOfJob(*words)) {
      line.Clear();
      TellFailure(*failure, form, outcome);
    }
    TakeEnd(*words, outcome);
  }
}

}  // namespace

int RunJob(const std::string& directory, const std::string& request, OutputForm form) {
  CommandOutcome outcome;
  try {
    Follow(directory, request, form, outcome);
  } catch (const SocketFailure& failure) {
    outcome.message = failure.what();  // told with what came before it
  }
  return PrintOutcome(console::Words(request)[0], outcome, form);
}

int SetReportDate(const std::string& directory, const std::string& date, OutputForm form) {
  const std::string complaint = rules::Day(date);
  if (complaint.empty()) {
    return RunJob(directory, console::Line({console::kSetRepDate, date}), form);
  }
  return PrintOutcome(std::string(console::kSetRepDate),
                      {CommandOutcome::Result::kRefused, complaint, {}}, form);
}

}  // namespace quillon
