// The process from its command line to its end.
#pragma once

#include <string>

#include "service/service_context.h"

namespace quillon {

// Carries out the command line; the exit status of the process: 0 for done, 1 for refused or
// failed. "-install", also with more letters behind it, registers the service of this directory,
// "-install_noMsg" without a word about it; "-uninstall" removes it. With no option the process
// is the service itself until a stop arrives. One instance runs in a directory.
int Form_Load(ServiceContext& context, const std::string& commandLine);

}  // namespace quillon
