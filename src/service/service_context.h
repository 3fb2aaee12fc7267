// All that the life of the service may touch: it is the writer of settings, words and trap
// target, and opens and closes what the others use.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/agent.h"
#include "platform/event_loop.h"
#include "platform/listener.h"
#include "platform/local_server.h"
#include "platform/service_host.h"
#include "platform/service_registry.h"
#include "platform/text_encoding.h"
#include "service/daily_jobs.h"
#include "service/diagnostics.h"
#include "service/exit_status.h"
#include "service/language_words.h"
#include "service/settings.h"
#include "service/trap_target.h"

namespace quillon {

struct ServiceContext {
  const Diagnostics& diagnostics;
  Settings& settings;
  TrapTarget& trapTarget;
  Clock& clock;
  EventLoop& loop;
  ServiceHost& dartSvc;
  const ServiceRegistry& registry;
  Listener& tcpServer;
  Agent& snmpAgent;
  LangWords& words;
  std::string& FavIconData;
  const DailyJobs& jobs;
  LocalServer& consoleSocket;

  std::unique_ptr<EventLoop::Timer> timer1 = nullptr;     // runs while the service is started
  std::unique_ptr<LoadedCharset> pageCharset = nullptr;   // of CharSet, with the listener
  std::unique_ptr<EventLoop::Timer> stopLimit = nullptr;  // ends a stop that is held up
  std::int64_t startTick = 0;                             // ms of the clock's tick at StartTime
  std::int16_t LastHour = 0;                              // hour of the day of the last hourly pass
  bool socketsOpened = false;                             // the tick that opens them is over
  bool jobRunning = false;        // an hourly pass or a job of the operator is on the stack
  std::string jobName = {};       // of the operator's job that is; else empty
  bool stopping = false;          // state 0 has begun
  std::string serviceError = {};  // the last one that the service manager's side told
  int exitStatus = kExitDone;     // of the process
};

}  // namespace quillon
