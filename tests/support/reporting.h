// What application events need, for programs that have nothing to report.
#pragma once

#include "service/diagnostics.h"
#include "support/recording_agent.h"

namespace quillon {

class Reporting {
 public:
  Reporting(const Settings& settings, Clock& clock)
      : loop_(clock), diagnostics_{settings, clock, loop_, tcpServer_, snmpAgent_, trapTarget_} {}

  const Diagnostics& diagnostics() const { return diagnostics_; }

 private:
  EventLoop loop_;
  Listener tcpServer_{loop_};
  RecordingAgent snmpAgent_;
  TrapTarget trapTarget_;
  Diagnostics diagnostics_;
};

}  // namespace quillon
