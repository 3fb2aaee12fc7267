// What opening and closing have in common: the row, and the failures.
#include "service/sockets.h"

#include <algorithm>
#include <iterator>

#include "platform/failure.h"
#include "service/agent_opening.h"
#include "service/error_exit.h"
#include "service/listener_opening.h"
#include "service/settings_row.h"
#include "service/socket_status.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modQuillonWeb";
constexpr std::string_view kAgent = "snmpAgent";
constexpr std::string_view kListener = "tcpServer";
constexpr const char* kListenerTable = "Settings_WebServer";

// How a failed opening that has a text of its own is told.
struct KnownFailure {
  std::string_view name;
  SocketFailure::Code code;
  std::string_view event;
  std::string_view addedStatus;
};

constexpr KnownFailure kKnownFailures[] = {
    {kAgent, SocketFailure::Code::kAddressInUse, "SNMP Agent Port was in use", "Port was in use"},
    {kAgent, SocketFailure::Code::kAddressNotAvailable, "SNMP Agent IP Address is not valid",
     "IP Address is not valid"},
    {kListener, SocketFailure::Code::kAddressNotAvailable, "TCP Server IP Address is not valid",
     ""},
};

struct Socket {
  std::string_view name;
  const char* table;
  void (*open)(ServiceContext& context, SettingsRow& row);
};

constexpr Socket kSockets[] = {
    {kAgent, "Settings_SnmpAgent", OpenAgentByRow},
    {kListener, kListenerTable, OpenListenerByRow},
};

const KnownFailure* FindKnown(std::string_view name, const std::exception& failure) {
  const auto* socket = dynamic_cast<const SocketFailure*>(&failure);
  if (socket == nullptr) return nullptr;
  const auto* const found = std::find_if(
      std::begin(kKnownFailures), std::end(kKnownFailures), [&](const KnownFailure& known) {
        return known.name == name && known.code == socket->code();
      });
  return found == std::end(kKnownFailures) ? nullptr : found;
}

void OpenDatabaseOnly(const ServiceContext& context) {
  Connection main;
  main.Open(context.settings.ConnMain);
}

// The listener's address is that of a new installation again, so that a bad one cures itself
// at the next start.
void StoreFailure(const ServiceContext& context, const Socket& socket, const std::string& status) {
  SettingsRow row(context.settings, socket.table);
  if (socket.name == kListener) row.Store("IpAddr", kEveryAddress);
  row.Store("Status", status);
  row.Update();
}

void OpenSocket(ServiceContext& context, const Socket& socket) {
  bool rowIsThere = false;
  std::string status;
  const bool opened = ErrorExit(
      context.diagnostics, kModule, "ServiceOpen",
      [&] {
        SettingsRow row(context.settings, socket.table);
        rowIsThere = true;
        socket.open(context, row);
      },
      [&](const std::exception& failure) {
        const KnownFailure* known = FindKnown(socket.name, failure);
        status = StatusTime(context) + "Failed to Start\r\n";
        if (known == nullptr) return FailureText(context.settings, failure);
        status += known->addedStatus;
        return std::string(known->event);
      });
  if (opened || !rowIsThere) return;
  ErrorExit(context.diagnostics, kModule, "ServiceOpen",
            [&] { StoreFailure(context, socket, status); });
}

}  // namespace

void ServiceOpen(ServiceContext& context, std::string_view name) {
  const auto* const socket =
      std::find_if(std::begin(kSockets), std::end(kSockets),
                   [&](const Socket& candidate) { return candidate.name == name; });
  if (socket != std::end(kSockets)) return OpenSocket(context, *socket);
  ErrorExit(context.diagnostics, kModule, "ServiceOpen", [&] { OpenDatabaseOnly(context); });
}

void ServiceClose(ServiceContext& context, std::string_view name) {
  ErrorExit(context.diagnostics, kModule, "ServiceClose", [&] {
    if (name != kListener) return OpenDatabaseOnly(context);
    SettingsRow row(context.settings, kListenerTable);
    if (context.tcpServer.Listening()) {
      context.tcpServer.SetListening(false);
      context.loop.Pump();
    }
    row.Store("Status", kNotStarted);
    row.Update();
  });
}

}  // namespace quillon
