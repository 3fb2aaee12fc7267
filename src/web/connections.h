// The four events of the listener tcpServer. One read of a socket is one request: its
// text is head and body together, and every test on it is a substring test.
#pragma once

#include <string>

#include "platform/listener.h"
#include "web/web_context.h"

namespace quillon {

// From this id on a new connection is not refused: it drops all others and itself.
inline constexpr ConnectionId kResetConnectionId = 20;

// Each has an error exit of its own (module frmQuillonWeb) and throws nothing but
// LoopEnded. Events may run nested inside the waits of what they call.
void tcpServer_Connected(WebContext& context, ConnectionId id, int statusCode,
                         const std::string& description);
void tcpServer_DataIn(WebContext& context, ConnectionId id, std::string text);
void tcpServer_Disconnected(WebContext& context, ConnectionId id, int statusCode,
                            const std::string& description);
void tcpServer_Error(WebContext& context, int errorCode, const std::string& description);

// Hands the listener's events to the procedures above.
class WebServer : public ListenerEvents {
 public:
  explicit WebServer(WebContext& context) : context_(context) {}

  void Connected(ConnectionId id, int statusCode, const std::string& description) override;
  void DataIn(ConnectionId id, std::string text) override;
  void Disconnected(ConnectionId id, int statusCode, const std::string& description) override;
  void Error(int errorCode, const std::string& description) override;

 private:
  WebContext& context_;
};

}  // namespace quillon
