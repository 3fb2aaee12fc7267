// The listener on Asio sockets.
//
// A connection waits for readability, then reads once and raises one event. The wait
// for the next text is armed before the event runs, so that a second request of the
// same client can be served nested, inside a pumping wait of the first.
#include "platform/listener.h"

#include <algorithm>
#include <array>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/socket_errors.h"

namespace quillon {
namespace {

using asio::ip::tcp;

// How long accepting rests when the machine has no file descriptor left.
constexpr std::chrono::milliseconds kAcceptPause{500};

// How often a job that is held up is looked at while clients are held back for it.
constexpr std::chrono::milliseconds kResumePause{10};

struct Connection {
  explicit Connection(tcp::socket accepted) : socket(std::move(accepted)) {}

  tcp::socket socket;
  std::string remoteHost;
  std::int32_t remotePort = 0;
  std::deque<std::string> waiting;  // texts in the order of their assignment
  std::size_t waitingBytes = 0;     // what of them is not sent yet
  std::size_t sentOfFirst = 0;      // bytes of waiting.front() that are out
  bool up = true;
};

using ConnectionPtr = std::shared_ptr<Connection>;

// Sends what the socket takes now. True when nothing waits any more.
bool WriteNow(Connection& connection, asio::error_code& error) {
  while (!connection.waiting.empty()) {
    const std::string& first = connection.waiting.front();
    const std::size_t sent = connection.socket.write_some(
        asio::buffer(first.data() + connection.sentOfFirst, first.size() - connection.sentOfFirst),
        error);
    if (error) return false;
    connection.sentOfFirst += sent;
    connection.waitingBytes -= sent;
    if (connection.sentOfFirst < first.size()) continue;
    connection.waiting.pop_front();
    connection.sentOfFirst = 0;
  }
  return true;
}

}  // namespace

class Listener::Implementation {
 public:
  explicit Implementation(EventLoop& loop)
      : loop_(loop), acceptor_(loop.io()), acceptPause_(loop.io()), resumePause_(loop.io()) {}

  void SetEvents(ListenerEvents& events) { events_ = &events; }
  void SetLocalHost(const std::string& address) { localHost_ = address; }
  void SetLocalPort(std::int32_t port) { localPort_ = port; }
  std::string LocalHost() const;
  std::int32_t LocalPort() const;
  void Open();
  void Close();
  bool IsOpen() const { return acceptor_.is_open(); }

  ConnectionPtr FindUp(ConnectionId id) const;
  void Drop(ConnectionId id);
  void Send(ConnectionId id, std::string text);

 private:
  // One event of a connection. The events that run are a stack, whose top belongs to the
  // handler that is at work: its number means its own connection, also when that has gone
  // meanwhile and the number is another client's. So a page that was being built for a
  // client who left reaches nobody else.
  class RunningEvent {
   public:
    RunningEvent(Implementation& owner, ConnectionId id, ConnectionPtr connection) : owner_(owner) {
      mark_.emplace(owner.loop_);
      owner_.running_.push_back({id, std::move(connection)});
    }
    ~RunningEvent() {
      owner_.running_.pop_back();
      mark_.reset();  // before it is asked how deep the others are
      owner_.ResumeHeldBack();
    }
    RunningEvent(const RunningEvent&) = delete;
    RunningEvent& operator=(const RunningEvent&) = delete;

   private:
    Implementation& owner_;
    std::optional<EventLoop::RequestMark> mark_;
  };

  struct Numbered {
    ConnectionId id;
    ConnectionPtr connection;
  };

  bool HoldsBack() const { return loop_.RequestDepth() >= kDepthLimit || loop_.HasOverdueJob(); }
  ConnectionId FreeId() const;
  void WaitForClient();
  void WaitForClientLater();
  void TakeClient(const asio::error_code& error, tcp::socket socket);
  void AddClient(tcp::socket socket);
  void WaitForText(ConnectionId id, const ConnectionPtr& connection);
  void TakeReadable(ConnectionId id, const ConnectionPtr& connection);
  void ReadText(ConnectionId id, const ConnectionPtr& connection);
  void WriteOrWait(ConnectionId id, const ConnectionPtr& connection);
  void End(ConnectionId id, const ConnectionPtr& connection, int code, const std::string& why);
  void ResumeHeldBack();
  void ResumeLater();
  void ResumeClient();
  void ResumeReadable();

  EventLoop& loop_;
  tcp::acceptor acceptor_;
  asio::steady_timer acceptPause_;
  asio::steady_timer resumePause_;
  ListenerEvents* events_ = nullptr;
  std::string localHost_ = "0.0.0.0";
  std::int32_t localPort_ = 0;
  std::array<char, kReadSize> readBuffer_;  // shared: a text is copied out before its event runs
  std::map<ConnectionId, ConnectionPtr> connections_;
  std::vector<Numbered> running_;  // the events on the stack, the one at work last
  int opening_ = 0;  // counts the openings: what an earlier one has accepted late is dropped

  // What waits for the depth to fall, or for a job to go on: a client without a number, connections
  // that are not watched, and those that have a text, in the order in which it came.
  std::optional<tcp::socket> heldClient_;
  std::vector<Numbered> unwatched_;
  std::deque<Numbered> readable_;
  bool resuming_ = false;      // the next of readable_ has its turn already
  bool resumesLater_ = false;  // resumePause_ is running
};

std::string Listener::Implementation::LocalHost() const {
  return IsOpen() ? acceptor_.local_endpoint().address().to_string() : localHost_;
}

std::int32_t Listener::Implementation::LocalPort() const {
  return IsOpen() ? acceptor_.local_endpoint().port() : localPort_;
}

void Listener::Implementation::Open() {
  const std::string place = localHost_ + " port " + std::to_string(localPort_);
  const asio::ip::address address = AddressToBind(localHost_);
  if (localPort_ < 0 || localPort_ > 65535) {
    throw SocketFailure(SocketFailure::Code::kOther,
                        "not a TCP port: " + std::to_string(localPort_));
  }
  const tcp::endpoint endpoint(address, static_cast<unsigned short>(localPort_));
  asio::error_code error;
  acceptor_.open(endpoint.protocol(), error);
  if (!error) acceptor_.set_option(tcp::acceptor::reuse_address(true), error);
  if (!error) acceptor_.bind(endpoint, error);
  if (!error) acceptor_.listen(tcp::acceptor::max_listen_connections, error);
  if (error) {
    asio::error_code ignored;
    acceptor_.close(ignored);
    throw MakeSocketFailure("cannot listen on " + place, error);
  }
  ++opening_;
  WaitForClient();
}

void Listener::Implementation::Close() {
  asio::error_code ignored;
  acceptPause_.cancel();
  heldClient_.reset();
  acceptor_.close(ignored);
}

ConnectionPtr Listener::Implementation::FindUp(ConnectionId id) const {
  if (!running_.empty() && running_.back().id == id) {
    return running_.back().connection->up ? running_.back().connection : nullptr;
  }
  const auto found = connections_.find(id);
  return found != connections_.end() && found->second->up ? found->second : nullptr;
}

// Numbers of clients that left inside their own events come last: until such an event ends, its
// report fills the records of that number.
ConnectionId Listener::Implementation::FreeId() const {
  const auto isRunning = [this](ConnectionId id) {
    return std::any_of(running_.begin(), running_.end(),
                       [id](const Numbered& event) { return event.id == id; });
  };
  ConnectionId lowest = 0;
  for (ConnectionId id = 1; id <= Listener::kKeptApart; ++id) {
    if (connections_.contains(id)) continue;
    if (!isRunning(id)) return id;
    if (lowest == 0) lowest = id;
  }
  if (lowest != 0) return lowest;
  ConnectionId id = Listener::kKeptApart + 1;
  while (connections_.contains(id)) ++id;
  return id;
}

void Listener::Implementation::WaitForClient() {
  acceptor_.async_accept(
      [this, opening = opening_](const asio::error_code& error, tcp::socket socket) {
        if (!IsOpen() || opening != opening_) return;
        TakeClient(error, std::move(socket));
      });
}

// Accepts again as an event of its own. What such an event finds takes its turn behind the
// ends of dropped connections, so their numbers are free before the next client takes one.
void Listener::Implementation::WaitForClientLater() {
  asio::post(acceptor_.get_executor(), [this, opening = opening_] {
    if (IsOpen() && opening == opening_) WaitForClient();
  });
}

void Listener::Implementation::TakeClient(const asio::error_code& error, tcp::socket socket) {
  if (!error && HoldsBack()) {
    heldClient_ = std::move(socket);
    return ResumeLater();
  }
  if (!error) return AddClient(std::move(socket));
  // Most often no file descriptor is left. Accepting at once again would only spin.
  acceptPause_.expires_after(kAcceptPause);
  acceptPause_.async_wait([this](const asio::error_code& cancelled) {
    if (!cancelled) WaitForClientLater();
  });
  events_->Error(error.value(), error.message());
}

void Listener::Implementation::AddClient(tcp::socket socket) {
  asio::error_code error;
  const tcp::endpoint peer = socket.remote_endpoint(error);
  if (!error) socket.non_blocking(true, error);
  if (!error) socket.set_option(tcp::no_delay(true), error);
  if (error) return WaitForClientLater();  // gone before it was looked at: it had no number
  const ConnectionId id = FreeId();
  const auto connection = std::make_shared<Connection>(std::move(socket));
  connection->remoteHost = peer.address().to_string();
  connection->remotePort = peer.port();
  connections_[id] = connection;
  WaitForText(id, connection);
  const RunningEvent running(*this, id, connection);
  WaitForClientLater();
  events_->Connected(id, 0, "Connected");
}

void Listener::Implementation::WaitForText(ConnectionId id, const ConnectionPtr& connection) {
  if (HoldsBack()) {
    unwatched_.push_back({id, connection});
    return ResumeLater();
  }
  connection->socket.async_wait(tcp::socket::wait_read,
                                [this, id, connection](const asio::error_code& error) {
                                  if (error || !connection->up) return;
                                  TakeReadable(id, connection);
                                });
}

// Reads now, or queues behind those that are held back: first come, first served, so that
// nobody can keep the others out.
void Listener::Implementation::TakeReadable(ConnectionId id, const ConnectionPtr& connection) {
  if (!HoldsBack() && readable_.empty()) return ReadText(id, connection);
  readable_.push_back({id, connection});
  ResumeLater();
}

void Listener::Implementation::ReadText(ConnectionId id, const ConnectionPtr& connection) {
  asio::error_code error;
  const std::size_t count = connection->socket.read_some(asio::buffer(readBuffer_), error);
  if (error == asio::error::would_block || error == asio::error::interrupted) {
    WaitForText(id, connection);
    ResumeHeldBack();
    return;
  }
  if (error) {
    const bool closed = error == asio::error::eof;
    End(id, connection, error.value(), closed ? "Closed by the client" : error.message());
    return;
  }
  std::string text(readBuffer_.data(), count);
  const RunningEvent running(*this, id, connection);
  WaitForText(id, connection);
  events_->DataIn(id, std::move(text));
}

void Listener::Implementation::Send(ConnectionId id, std::string text) {
  const ConnectionPtr connection = FindUp(id);
  const std::string name = "connection " + std::to_string(id);
  if (!connection) throw SocketFailure(SocketFailure::Code::kOther, name + " is not up");
  if (connection->waitingBytes > kPendingLimit) {
    throw SocketFailure(SocketFailure::Code::kOther, name + " does not read what it is sent");
  }
  if (text.empty()) return;
  const bool writing = !connection->waiting.empty();
  connection->waitingBytes += text.size();
  connection->waiting.push_back(std::move(text));
  if (!writing) WriteOrWait(id, connection);
}

void Listener::Implementation::WriteOrWait(ConnectionId id, const ConnectionPtr& connection) {
  asio::error_code error;
  // A peer that has gone shows as a failed write first, and then as the end of what can
  // be read: that end is the event, so an error here only stops the writing.
  if (WriteNow(*connection, error) || error != asio::error::would_block) return;
  connection->socket.async_wait(tcp::socket::wait_write,
                                [this, id, connection](const asio::error_code& cancelled) {
                                  if (cancelled || !connection->up) return;
                                  WriteOrWait(id, connection);
                                });
}

void Listener::Implementation::Drop(ConnectionId id) {
  const ConnectionPtr connection = FindUp(id);
  if (!connection) return;
  connection->up = false;
  asio::error_code ignored;
  connection->socket.close(ignored);
  // The event comes by itself, and not inside whoever drops the connection.
  asio::post(acceptor_.get_executor(),
             [this, id, connection] { End(id, connection, 0, "Closed by the server"); });
}

void Listener::Implementation::End(ConnectionId id, const ConnectionPtr& connection, int code,
                                   const std::string& why) {
  connection->up = false;
  asio::error_code ignored;
  connection->socket.close(ignored);
  connection->waiting.clear();
  connections_.erase(id);
  const RunningEvent running(*this, id, connection);
  events_->Disconnected(id, code, why);
}

// Called whenever an event has ended. One connection is resumed at a time; its own event
// resumes the next.
void Listener::Implementation::ResumeHeldBack() {
  if (HoldsBack()) return ResumeLater();
  if (heldClient_) asio::post(acceptor_.get_executor(), [this] { ResumeClient(); });
  for (const auto& [id, connection] : std::exchange(unwatched_, {})) {
    if (connection->up) WaitForText(id, connection);
  }
  if (readable_.empty() || resuming_) return;
  resuming_ = true;
  asio::post(acceptor_.get_executor(), [this] { ResumeReadable(); });
}

// A job that goes on tells nobody, so it is asked for. Whoever finds that something has to be
// held back (still) calls this: a turn that was called is gone.
void Listener::Implementation::ResumeLater() {
  const bool holdsSomething = heldClient_ || !unwatched_.empty() || !readable_.empty();
  if (!holdsSomething || std::exchange(resumesLater_, true)) return;
  resumePause_.expires_after(kResumePause);
  resumePause_.async_wait([this](const asio::error_code& cancelled) {
    if (cancelled) return;
    resumesLater_ = false;
    ResumeHeldBack();
  });
}

void Listener::Implementation::ResumeClient() {
  if (HoldsBack()) return ResumeLater();
  if (!heldClient_) return;
  tcp::socket client = std::move(*heldClient_);
  heldClient_.reset();
  AddClient(std::move(client));
}

void Listener::Implementation::ResumeReadable() {
  resuming_ = false;
  if (HoldsBack()) return ResumeLater();
  while (!readable_.empty()) {
    const auto [id, connection] = readable_.front();
    readable_.pop_front();
    if (connection->up) return ReadText(id, connection);
  }
}

Listener::Listener(EventLoop& loop) : implementation_(std::make_unique<Implementation>(loop)) {}

Listener::~Listener() = default;

void Listener::SetEvents(ListenerEvents& events) {
  implementation_->SetEvents(events);
}
void Listener::SetLocalHost(const std::string& address) {
  implementation_->SetLocalHost(address);
}
void Listener::SetLocalPort(std::int32_t port) {
  implementation_->SetLocalPort(port);
}
std::string Listener::LocalHost() const {
  return implementation_->LocalHost();
}
std::int32_t Listener::LocalPort() const {
  return implementation_->LocalPort();
}
bool Listener::Listening() const {
  return implementation_->IsOpen();
}

void Listener::SetListening(bool listening) {
  if (listening == Listening()) return;
  if (listening) {
    implementation_->Open();
  } else {
    implementation_->Close();
  }
}

bool Listener::Connected(ConnectionId id) const {
  return implementation_->FindUp(id) != nullptr;
}
void Listener::Drop(ConnectionId id) {
  implementation_->Drop(id);
}
void Listener::DataToSend(ConnectionId id, std::string text) {
  implementation_->Send(id, std::move(text));
}

std::string Listener::RemoteHost(ConnectionId id) const {
  const ConnectionPtr connection = implementation_->FindUp(id);
  return connection ? connection->remoteHost : std::string();
}

std::int32_t Listener::RemotePort(ConnectionId id) const {
  const ConnectionPtr connection = implementation_->FindUp(id);
  return connection ? connection->remotePort : 0;
}

}  // namespace quillon
