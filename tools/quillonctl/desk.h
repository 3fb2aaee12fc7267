// The objects of the service that settings and report queries need, in this program: for whatever
// needs only the databases. They have no sockets.
#pragma once

#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "queries/query_context.h"
#include "service/diagnostics.h"
#include "service/job_watch.h"

namespace quillon {

// Where failures are told: by the operation as in the service, in the event file, or only here.
enum class DeskEvents { kInTheFile, kOnlyHere };

class Desk {
 public:
  // Of the installation in the directory. Reads no settings; texts of the pages are UTF-8.
  Desk(const std::string& directory, DeskEvents events);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  // What failed so far, in the order in which it did.
  const std::vector<std::string>& failures() const { return failures_; }

  Settings settings;
  SystemClock clock;
  EventLoop loop{clock};
  LangWords words;
  ReportPeriod period;
  ReportRecords records;

 private:
  std::vector<std::string> failures_;
  JobWatch watch_;
  Listener tcpServer_{loop};
  UdpAgent snmpAgent_{loop};
  TrapTarget trapTarget_;

 public:
  const Diagnostics diagnostics{settings,   clock,       loop,   tcpServer_,
                                snmpAgent_, trapTarget_, &watch_};
  QueryContext queries{diagnostics, settings, clock, loop, words, period, records};
};

}  // namespace quillon
