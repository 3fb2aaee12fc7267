// The listener's steps.
#include "service/listener_opening.h"

#include "platform/files.h"
#include "service/socket_status.h"

namespace quillon {
namespace {

constexpr std::int16_t kAfterOpeningMs = 500;
constexpr std::int16_t kAfterStoringMs = 500;

// The status text of the open listener.
std::string Listen(ServiceContext& context, SettingsRow& row) {
  Listener& tcpServer = context.tcpServer;
  tcpServer.SetListening(false);
  const std::string address = row.Field("IpAddr").AsText();
  tcpServer.SetLocalHost(address == kEveryAddress ? context.settings.ServerIpAddr : address);
  tcpServer.SetLocalPort(row.Field("TcpPort").AsLong());
  tcpServer.SetListening(true);
  context.loop.DelayMs(kAfterOpeningMs);
  row.Store("IpAddr", tcpServer.LocalHost());
  return StartedStatus(context, "Web Server Started", tcpServer.LocalHost(), tcpServer.LocalPort());
}

}  // namespace

void OpenListenerByRow(ServiceContext& context, SettingsRow& row) {
  context.settings.CharSet = row.Field("CharSet").AsText();
  context.pageCharset = std::make_unique<LoadedCharset>(context.settings.CharSet);
  const bool enabled = row.Field("Enabled").AsBoolean();
  const std::string status = enabled ? Listen(context, row) : kNotStarted;
  row.Store("Status", status);
  row.Update();
  context.loop.DelayMs(kAfterStoringMs);
  if (!context.settings.DebugMode) return;
  AppendToFile(PathBelow(context.settings, "\\Debug\\WebServices.txt"),
               "########### Web Server Started ############\r\n" + status + "\r\n\r\n");
}

}  // namespace quillon
