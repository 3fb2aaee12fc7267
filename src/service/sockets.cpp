// The listener's opening and closing.
#include "service/sockets.h"

#include <fmt/format.h>

#include "platform/database.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modQuillonWeb";
constexpr std::string_view kListener = "tcpServer";
constexpr const char* kListenerTable = "Settings_WebServer";
constexpr const char* kNotStarted = "Not Started";
constexpr const char* kEveryAddress = "0.0.0.0";
constexpr std::int16_t kAfterOpeningMs = 500;
constexpr std::int16_t kAfterStoringMs = 500;

// "<date> <time>" in the display format, and the line end: how every status begins.
std::string StatusTime(const ServiceContext& context) {
  const DateTime now = context.clock.Now();
  return FormatDate(now, context.settings.DatumFormat) + " " + FormatTime(now) + "\r\n";
}

// The row of the listener's settings, on a connection of its own.
class ListenerRow {
 public:
  explicit ListenerRow(const Settings& settings) {
    main_.Open(settings.ConnMain);
    row_.Open(kListenerTable, main_, CursorType::kStatic, LockType::kOptimistic);
    row_.Field("Status");  // fails here where the table has no row
  }
  Value Field(std::string_view name) const { return row_.Field(name); }
  void Store(std::string_view name, const std::string& text) {
    row_.SetField(name, Value::Text(text));
  }
  void Update() { row_.Update(); }

 private:
  Connection main_;
  Recordset row_;
};

// Opens the listener as the row says; the status text.
std::string Listen(ServiceContext& context, ListenerRow& row) {
  Listener& tcpServer = context.tcpServer;
  tcpServer.SetListening(false);
  const std::string address = row.Field("IpAddr").AsText();
  tcpServer.SetLocalHost(address == kEveryAddress ? context.settings.ServerIpAddr : address);
  tcpServer.SetLocalPort(row.Field("TcpPort").AsLong());
  tcpServer.SetListening(true);
  context.loop.DelayMs(kAfterOpeningMs);
  row.Store("IpAddr", tcpServer.LocalHost());
  return fmt::format("{}Web Server Started\r\nIP={}\r\nPort={}", StatusTime(context),
                     tcpServer.LocalHost(), tcpServer.LocalPort());
}

void OpenListener(ServiceContext& context, ListenerRow& row) {
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

// The address is that of a new installation again, so that a bad one cures itself at the
// next start.
void StoreListenerFailure(const ServiceContext& context, const std::string& status) {
  ListenerRow row(context.settings);
  row.Store("IpAddr", kEveryAddress);
  row.Store("Status", status);
  row.Update();
}

std::string OpeningFailureText(const ServiceContext& context, const std::exception& failure) {
  const auto* socket = dynamic_cast<const SocketFailure*>(&failure);
  const bool badAddress =
      socket != nullptr && socket->code() == SocketFailure::Code::kAddressNotAvailable;
  return badAddress ? "TCP Server IP Address is not valid" : FailureText(context.settings, failure);
}

void OpenDatabaseOnly(const ServiceContext& context) {
  Connection main;
  main.Open(context.settings.ConnMain);
}

}  // namespace

void ServiceOpen(ServiceContext& context, std::string_view name) {
  bool rowIsThere = false;
  std::string status;
  const bool opened = ErrorExit(
      context.diagnostics, kModule, "ServiceOpen",
      [&] {
        if (name != kListener) return OpenDatabaseOnly(context);
        ListenerRow row(context.settings);
        rowIsThere = true;
        OpenListener(context, row);
      },
      [&](const std::exception& failure) {
        status = StatusTime(context) + "Failed to Start\r\n";
        return OpeningFailureText(context, failure);
      });
  if (opened || !rowIsThere) return;
  ErrorExit(context.diagnostics, kModule, "ServiceOpen",
            [&] { StoreListenerFailure(context, status); });
}

void ServiceClose(ServiceContext& context, std::string_view name) {
  ErrorExit(context.diagnostics, kModule, "ServiceClose", [&] {
    if (name != kListener) return OpenDatabaseOnly(context);
    ListenerRow row(context.settings);
    if (context.tcpServer.Listening()) {
      context.tcpServer.SetListening(false);
      context.loop.Pump();
    }
    row.Store("Status", kNotStarted);
    row.Update();
  });
}

}  // namespace quillon
