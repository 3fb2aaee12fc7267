// import, auto-create, mail-create and set-rep-date: the jobs, which the running service carries
// out.
#pragma once

#include <string>

#include "quillonctl/output.h"

namespace quillon {

// Asks the service for a job, `request` as it is in service/console_protocol.h, shows its progress
// on a terminal, and prints how it ended. 1 where it was refused or something failed meanwhile.
int RunJob(const std::string& directory, const std::string& request, OutputForm form);

// The job set-rep-date, of a day that is judged first.
int SetReportDate(const std::string& directory, const std::string& date, OutputForm form);

}  // namespace quillon
