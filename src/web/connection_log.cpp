// The blocks of the connection logs.
#include "web/connection_log.h"

#include <fmt/format.h>

#include "platform/files.h"
#include "platform/number_text.h"

namespace quillon {
namespace {

// Lines that go into a file of the debug folder in one write.
class Block {
 public:
  template <typename... Pieces>
  void Line(fmt::format_string<Pieces...> format, Pieces&&... pieces) {
    text_ += fmt::format(format, std::forward<Pieces>(pieces)...);
    text_ += kLineEnd;
  }
  void EmptyLine() { text_ += kLineEnd; }
  void AppendTo(const WebContext& context, const std::string& backslashPath) const {
    AppendToFile(PathBelow(context.settings, backslashPath), text_);
  }

 private:
  std::string text_;
};

std::string ConnectionFile(ConnectionId id) {
  return fmt::format("\\Debug\\WebConnection-{}.txt", id);
}

constexpr const char* kAllConnectionsFile = "\\Debug\\WebConnections.txt";

std::string Peer(const WebContext& context, ConnectionId id) {
  return fmt::format("{}:{}", context.tcpServer.RemoteHost(id), context.tcpServer.RemotePort(id));
}

// The tick count in seconds, its digits in groups of three.
std::string Ticks(const WebContext& context) {
  const double seconds = static_cast<double>(context.clock.TickMs()) / 1000.0;
  return Trimmed(DigitPattern(seconds, "# ### ### ##0.000"));
}

std::string_view Word(bool truth) {
  return truth ? "True" : "False";
}

// The head of a connection's life: four empty lines and a rule.
Block ConnectionHead() {
  Block block;
  for (int line = 0; line < 4; ++line) block.EmptyLine();
  block.Line("########## TCP Server Connection ##########");
  return block;
}

}  // namespace

void LogConnected(const WebContext& context, ConnectionId id) {
  Block block = ConnectionHead();
  block.Line("[{}] {} --- Connected with {} on port {}", id, LogTimeStamp(context.clock),
             context.tcpServer.RemoteHost(id), context.tcpServer.RemotePort(id));
  block.EmptyLine();
  block.AppendTo(context, ConnectionFile(id));
}

void LogAllReset(const WebContext& context, ConnectionId id) {
  Block block = ConnectionHead();
  block.Line("[{}] {} --- All Connections Resetted", id, LogTimeStamp(context.clock));
  block.EmptyLine();
  block.AppendTo(context, ConnectionFile(id));
}

void LogRequest(const WebContext& context, const Request& request) {
  const std::string peer = Peer(context, request.id);
  Block whole;
  whole.Line("[{}] {} <-- {}", request.id, LogTimeStamp(context.clock), peer);
  whole.Line("{}", request.Text);
  whole.EmptyLine();
  whole.AppendTo(context, ConnectionFile(request.id));

  Block brief;
  brief.Line("[{}] {} (tick={}) <-- {}", request.id, LogTimeStamp(context.clock), Ticks(context),
             peer);
  brief.Line("[{}] httpQuery: {}", request.id, request.httpQuery);
  brief.AppendTo(context, kAllConnectionsFile);
}

void LogResponse(const WebContext& context, const Request& request) {
  Block whole;
  whole.Line("[{}] {} --> ", request.id, LogTimeStamp(context.clock));
  whole.Line("{}", request.pageHtml);
  whole.EmptyLine();
  whole.AppendTo(context, ConnectionFile(request.id));

  Block brief;
  brief.Line("[{}] Table From Cache: {}", request.id, Word(request.tableFromCache));
  brief.Line("[{}] Chart From Cache: {}", request.id, Word(request.chartFromCache));
  brief.Line("[{}] Total Time: {} ms", request.id, context.clock.TickMs() - request.startTick);
  brief.Line("[{}] {} (tick={}) --> {}", request.id, LogTimeStamp(context.clock), Ticks(context),
             Peer(context, request.id));
  brief.EmptyLine();
  brief.AppendTo(context, kAllConnectionsFile);
}

void LogDisconnected(const WebContext& context, ConnectionId id, const std::string& description) {
  Block block;
  block.Line("########## TCP Server Disconnection ##########");
  block.Line("[{}] {}     {}", id, LogTimeStamp(context.clock), description);
  block.EmptyLine();
  block.AppendTo(context, ConnectionFile(id));
}

void LogListenerError(const WebContext& context, int errorCode, const std::string& description) {
  Block block;
  block.Line("########## TCP Server ERROR ###########");
  block.Line("[ErrorCode={}] {} {}", errorCode, LogTimeStamp(context.clock), description);
  block.EmptyLine();
  block.AppendTo(context, "\\Debug\\WebServices.txt");
}

}  // namespace quillon
