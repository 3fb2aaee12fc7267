// The listener's events. tcpServer_DataIn is one handler in two halves: what a request
// is stands here, which report it yields in the route table.
#include "web/connections.h"

#include "platform/failure.h"
#include "platform/number_text.h"
#include "service/error_exit.h"
#include "web/connection_log.h"
#include "web/device_shortcut.h"
#include "web/empty_tables.h"
#include "web/route_table.h"
#include "web/text_search.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "frmQuillonWeb";

// The first line of a request. A text without a line end has none.
std::string FirstLine(std::string_view text) {
  const long lineEnd = Position(text, "\r\n");
  if (lineEnd == 0) throw TextFailure("a request without a line end");
  return std::string(Middle(text, 1, lineEnd - 1));
}

// The tail of the URL from `word` up to the blank before "HTTP", trimmed, into
// `cacheFile`; it stays as it is where one of the two is missing.
void TakeCacheFile(std::string_view httpQuery, std::string_view word, std::string& cacheFile) {
  const long start = Position(httpQuery, word);
  const long end = Position(httpQuery, "HTTP");
  if (start == 0 || end == 0) return;
  cacheFile = Trimmed(Middle(httpQuery, start, end - 1 - start));
}

// Scanners look for it. The filter works with DebugMode on only, as it stands.
bool IsSpam(const Request& request) {
  return Holds(request.httpQuery, "login.cgi");
}

void DropSpammer(WebContext& context, ConnectionId id) {
  AppEvent(context.diagnostics, kModule, "tcpServer_DataIn",
           "Spam: " + context.tcpServer.RemoteHost(id), EventType::kFailure);
  context.tcpServer.Drop(id);
}

void Respond(WebContext& context, Request& request) {
  if (!context.tcpServer.Connected(request.id)) return;  // the client left meanwhile
  if (!context.settings.DebugMode) {
    return context.tcpServer.DataToSend(request.id, std::move(request.pageHtml));
  }
  context.tcpServer.DataToSend(request.id, request.pageHtml);
  LogResponse(context, request);
}

void HandleRequest(WebContext& context, Request& request) {
  EmptyTables(context.records, request.id);
  request.httpQuery = FirstLine(request.Text);
  TakeDeviceShortcut(context, request);
  request.httpQuery = FirstLine(request.Text);
  TakeCacheFile(request.httpQuery, "switch", request.cacheFile);
  TakeCacheFile(request.httpQuery, "disk-", request.cacheFile);
  if (context.settings.DebugMode) {
    request.startTick = context.clock.TickMs();
    LogRequest(context, request);
    if (IsSpam(request)) return DropSpammer(context, request.id);
  }
  Dispatch(context, request);
  Respond(context, request);
}

}  // namespace

void tcpServer_Connected(WebContext& context, ConnectionId id, int, const std::string&) {
  ErrorExit(context.diagnostics, kModule, "tcpServer_Connected", [&] {
    if (context.settings.DebugMode) LogConnected(context, id);
    if (id < kResetConnectionId) return;
    for (ConnectionId other = 1; other <= kResetConnectionId; ++other) {
      context.tcpServer.Drop(other);
    }
    if (context.settings.DebugMode) LogAllReset(context, id);
  });
}

void tcpServer_DataIn(WebContext& context, ConnectionId id, std::string text) {
  ErrorExit(context.diagnostics, kModule, "tcpServer_DataIn", [&] {
    Request request;
    request.id = id;
    request.Text = std::move(text);
    HandleRequest(context, request);
  });
}

void tcpServer_Disconnected(WebContext& context, ConnectionId id, int,
                            const std::string& description) {
  ErrorExit(context.diagnostics, kModule, "tcpServer_Disconnected", [&] {
    if (context.settings.DebugMode) LogDisconnected(context, id, description);
  });
}

void tcpServer_Error(WebContext& context, int errorCode, const std::string& description) {
  ErrorExit(context.diagnostics, kModule, "tcpServer_Error", [&] {
    if (context.settings.DebugMode) LogListenerError(context, errorCode, description);
  });
}

void WebServer::Connected(ConnectionId id, int statusCode, const std::string& description) {
  tcpServer_Connected(context_, id, statusCode, description);
}

void WebServer::DataIn(ConnectionId id, std::string text) {
  tcpServer_DataIn(context_, id, std::move(text));
}

void WebServer::Disconnected(ConnectionId id, int statusCode, const std::string& description) {
  tcpServer_Disconnected(context_, id, statusCode, description);
}

void WebServer::Error(int errorCode, const std::string& description) {
  tcpServer_Error(context_, errorCode, description);
}

}  // namespace quillon
