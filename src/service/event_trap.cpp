// The fields of an event's trap, as the management product knows them.
#include "service/event_trap.h"

#include <algorithm>
#include <string>
#include <utility>
#include <variant>

#include "platform/text_encoding.h"

namespace quillon {
namespace {

constexpr const char* kEnterprise = "1.3.6.1.4.1.7381.2.1.2";
constexpr const char* kVariables = "1.3.6.1.4.1.7381.2.1.1.";  // their numbers follow
constexpr const char* kSource = "Quillon Web";
constexpr std::int32_t kEnterpriseSpecific = 6;
constexpr std::int32_t kSpecificTrap = 1;
constexpr std::size_t kLongestText = 240;  // characters of the text

// Hundredths of a second since the start, in whole seconds of the wall clock, of which StartTime
// is a moment. A clock that was put back behind the start gives 0; the count wraps after 497
// days, as that of every agent does.
std::uint32_t SinceStart(const Diagnostics& diagnostics) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(diagnostics.clock.Now() -
                                                                diagnostics.settings.StartTime);
  return static_cast<std::uint32_t>(std::max<std::int64_t>(seconds.count(), 0) * 100);
}

}  // namespace

void SendEventTrap(const Diagnostics& diagnostics, std::string_view module,
                   std::string_view procedure, std::string_view text, std::int32_t type) {
  const Settings& settings = diagnostics.settings;
  TrapMessage message;
  message.community = PageText(settings.TrapComm, settings.CharSet);
  message.enterprise = kEnterprise;
  message.genericTrap = kEnterpriseSpecific;
  message.specificTrap = kSpecificTrap;
  message.timeStamp = SinceStart(diagnostics);
  message.agentAddress = diagnostics.snmpAgent.LocalAddress();
  const auto append = [&](std::variant<std::int32_t, std::string> value) {
    const std::string number = std::to_string(message.varbinds.size() + 1);
    message.varbinds.push_back({kVariables + number, std::move(value)});
  };
  append(diagnostics.tcpServer.LocalHost());
  append(kSource);
  append(std::string(module));
  append(std::string(procedure));
  append(FirstCharacters(text, kLongestText, settings.CharSet));
  append(type);

  const TrapTarget& target = diagnostics.trapTarget;
  diagnostics.snmpAgent.SendTrapMessage(
      message, target.ServerIpAddr + ":" + std::to_string(target.ServerTrapPort));
}

}  // namespace quillon
