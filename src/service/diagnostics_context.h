// All that application events touch, and the progress of jobs.
#pragma once

#include "platform/agent.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/listener.h"
#include "service/job_watch.h"
#include "service/settings.h"
#include "service/trap_target.h"

namespace quillon {

struct Diagnostics {
  const Settings& settings;
  Clock& clock;
  EventLoop& loop;
  const Listener& tcpServer;  // whose address a trap names
  Agent& snmpAgent;
  const TrapTarget& trapTarget;
  const JobWatch* watch = nullptr;  // of a program that lets operators start jobs
};

}  // namespace quillon
