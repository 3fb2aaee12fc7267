// What the service does for the operator's console: tells its state, and runs the jobs.
#pragma once

#include <string>

#include "platform/local_server.h"
#include "service/console_operations.h"
#include "service/job_watch.h"
#include "service/service_context.h"

namespace quillon {

// Carries out a request of service/console_protocol.h and answers it. A job is refused while the
// service starts or stops, in an hourly pass, and beside another job. While it runs the answer
// tells its progress and the events that it raises; a client who leaves does not end it.
void AnswerConsole(ServiceContext& service, OperatorContext& context, JobWatch& watch,
                   const std::string& request, const LocalServer::Answer& answer);

}  // namespace quillon
