// The operations of the operator's console, one for each of its buttons. They judge no input: the
// tools do. None has an error exit of its own, so a failure of the database reaches the caller.
#pragma once

#include <string>

#include "platform/clock.h"
#include "service/console_form.h"
#include "service/daily_jobs.h"
#include "service/diagnostics.h"
#include "service/report_period.h"
#include "service/settings.h"

namespace quillon {

// All that the operator's jobs may touch; they run inside the service.
struct OperatorContext {
  Settings& settings;
  const Clock& clock;
  ReportPeriod& period;
  const DailyJobs& jobs;
};

// Fills the form from Settings_WebServer and Settings_General, txtRepDate and cboColorTheme left
// out. Fails where a row is missing or a field is null; the fields before it are filled then.
void cmdRead(const Settings& settings, ConsoleForm& form);

// Writes the form into the two rows, without txtStatus and cboColorTheme. The service takes them at
// its next opening or hourly pass. Fails where the port is no number; then nothing is written.
void cmdSave(const Settings& settings, const ConsoleForm& form);

// Writes the stylesheet in the colours of the theme. A failure is an event.
void cmdApplyChanges(const Diagnostics& diagnostics, const ConsoleForm& form);

// Sets the marks of a report that has just ended, imports where that is due, and returns "ok " and
// the milliseconds that the import took. Neither pages nor mails follow.
std::string cmdImport(OperatorContext& context);

// Builds all pages anew.
void cmdAutoCreate(OperatorContext& context);

// Mails whatever is due today, with DebugMode on until the next hourly pass.
void cmdMailCreate(OperatorContext& context);

// The texts of the report period out of txtRepDate; acts only while ReportStart is empty and
// RepDateOverride is True, and tells whether it did. A text that is no date is a ConversionFailure.
bool cmdSetRepDate(OperatorContext& context);

}  // namespace quillon
