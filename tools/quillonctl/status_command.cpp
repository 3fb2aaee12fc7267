// The service's own words, then those of the databases.
#include "quillonctl/status_command.h"

#include "exit_codes.h"
#include "platform/database.h"
#include "quillonctl/desk.h"
#include "quillonctl/service_link.h"
#include "service/console_protocol.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

using Kind = OutputField::Kind;

Kind KindOf(const std::string& name) {
  if (name == "port") return Kind::kNumber;
  return name == "debug-mode" ? Kind::kTruth : Kind::kText;
}

// The texts of the report period are those of the pages: their blanks become plain ones.
std::string WithPlainBlanks(std::string text) {
  constexpr std::string_view kBlanks = "&nbsp;&nbsp";
  if (const std::size_t start = text.find(kBlanks); start != std::string::npos) {
    text.replace(start, kBlanks.size(), "  ");
  }
  return text;
}

// False where no service runs.
bool AskService(const std::string& directory, OutputFields& fields) {
  try {
    ServiceLink link(directory, std::string(console::kStatus), ServiceLink::kPatience);
    fields.push_back({"running", "yes", Kind::kTruth});
    while (const auto words = link.Next()) {
      if ((*words)[0] != console::kState || words->size() < 3) continue;
      fields.push_back({(*words)[1], WithPlainBlanks((*words)[2]), KindOf((*words)[1])});
    }
    return true;
  } catch (const ServiceIsDown&) {
    fields.push_back({"running", "no", Kind::kTruth});
    return false;
  }
}

// A mark that was never set shows nothing.
std::string Mark(const Recordset& marks, const char* field) {
  const Value value = marks.Field(field);
  return value.IsNull() ? "" : value.AsText();
}

// False where the history cannot be read, which is told.
bool ReadMarks(const Desk& desk, OutputFields& fields) {
  return ErrorExit(desk.diagnostics, "quillonctl", "status", [&] {
    Connection history;
    history.Open(desk.settings.ConnHistory);
    Recordset marks;
    marks.Open("General_Info", history, CursorType::kStatic, LockType::kReadOnly);
    fields.push_back({"last-report", Mark(marks, "LastReport")});
    fields.push_back({"last-import", Mark(marks, "LastImport")});
  });
}

}  // namespace

int ShowStatus(const std::string& directory, OutputForm form) {
  const Desk desk(directory, DeskEvents::kOnlyHere);
  OutputFields fields = {{"directory", directory}};
  const bool runs = AskService(directory, fields);
  const bool isKnown = ReadMarks(desk, fields);
  PrintFields(fields, form);
  for (const std::string& failure : desk.failures()) Complain(failure);
  return runs && isKnown ? kExitDone : kExitFailed;
}

}  // namespace quillon
