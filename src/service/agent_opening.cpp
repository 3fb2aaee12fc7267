// The agent's steps.
#include "service/agent_opening.h"

#include "platform/files.h"
#include "service/socket_status.h"

namespace quillon {
namespace {

constexpr std::int32_t kAnyPort = 0;
constexpr std::int16_t kAfterOpeningMs = 1000;

// The status text of the open agent.
std::string Open(ServiceContext& context, const SettingsRow& row) {
  Settings& settings = context.settings;
  TrapTarget& target = context.trapTarget;
  context.snmpAgent.OpenAgent(kAnyPort, settings.ServerIpAddr);
  context.loop.DelayMs(kAfterOpeningMs);
  std::string status =
      StartedStatus(context, "SNMP Agent Started", context.snmpAgent.LocalAddress(),
                    context.snmpAgent.LocalPort());
  settings.SendAppEvents = row.Field("SendAppEvents").AsBoolean();
  target.ServerIpAddr = settings.ServerIpAddr;
  target.ServerTrapPort = settings.ServerTrapPort;
  settings.TrapComm = row.Field("TrapComm").AsText();
  target.SnmpAgentOpen = true;
  return status;
}

}  // namespace

void OpenAgentByRow(ServiceContext& context, SettingsRow& row) {
  const bool enabled = row.Field("Enabled").AsBoolean();
  const std::string status = enabled ? Open(context, row) : kNotStarted;
  if (!context.settings.DebugMode) return;
  ReplaceFile(PathBelow(context.settings, "\\Debug\\WebServices.txt"),
              "############ SNMP Agent Started ###########\r\n" + status + "\r\n\r\n",
              OldFile::kStays);
}

}  // namespace quillon
