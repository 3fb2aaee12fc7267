// Lines or JSON.
#include "quillonctl/command_outcome.h"

#include "exit_codes.h"

namespace quillon {
namespace {

const char* ResultWord(CommandOutcome::Result result) {
  switch (result) {
    case CommandOutcome::Result::kDone:
      return "done";
    case CommandOutcome::Result::kRefused:
      return "refused";
    case CommandOutcome::Result::kOpen:
      break;
  }
  return "failed";
}

void PrintJson(const std::string& command, const CommandOutcome& outcome) {
  std::string failures;
  for (const std::string& failure : outcome.failures) failures.append(failure).append("\n");
  PrintFields({{"command", command},
               {"result", ResultWord(outcome.result)},
               {"message", outcome.message},
               {"failures", failures, OutputField::Kind::kLines}},
              OutputForm::kJson);
}

void PrintMessage(const CommandOutcome& outcome) {
  if (outcome.message.empty()) return;
  if (outcome.result == CommandOutcome::Result::kDone) return PrintLine(outcome.message);
  Complain(outcome.message);
}

}  // namespace

void TellFailure(const std::string& text, OutputForm form, CommandOutcome& outcome) {
  outcome.failures.push_back(text);
  if (form != OutputForm::kJson) Complain(text);
}

int PrintOutcome(const std::string& command, const CommandOutcome& outcome, OutputForm form) {
  if (form == OutputForm::kJson) {
    PrintJson(command, outcome);
  } else {
    PrintMessage(outcome);
  }
  return outcome.result == CommandOutcome::Result::kDone && outcome.failures.empty() ? kExitDone
                                                                                     : kExitFailed;
}

}  // namespace quillon
