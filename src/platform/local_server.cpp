// The server of the socket file.
//
// A client is read until its line is there; the line is then carried out as an event of its own,
// and what it answers is sent as far as the client takes it. Nothing here waits for a client.
#include "platform/local_server.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>
#include <asio/steady_timer.hpp>
#include <optional>
#include <set>
#include <utility>

#include "platform/failure.h"
#include "platform/socket_errors.h"
#include "platform/socket_file.h"

namespace quillon {
namespace {

using asio::local::stream_protocol;

// How long accepting rests when the machine has no file descriptor left.
constexpr std::chrono::milliseconds kAcceptPause{500};
// How often, and after how long, a request of a browser is looked for that has to end first.
constexpr std::chrono::milliseconds kPauseForRequests{10};
constexpr int kWaitsForRequests = 200;
constexpr mode_t kNobodyElse = S_IXUSR | S_IRWXG | S_IRWXO;

struct Client {
  Client(stream_protocol::socket accepted, asio::io_context& io)
      : socket(std::move(accepted)), limit(io), pause(io) {}

  stream_protocol::socket socket;
  asio::steady_timer limit;  // for the request, and for the end of the answer to be read
  bool isLimited = false;    // an end of the limit that has its turn already may be out of date
  asio::steady_timer pause;  // in front of the handler
  std::array<char, LocalServer::kLongestRequest> buffer{};
  std::string request;      // as far as it has come
  std::string waiting;      // of the answer
  bool isComplete = false;  // the answer
  bool up = true;
};

using ClientPtr = std::shared_ptr<Client>;

// Root may ask; everybody else has to be this process's user, whatever the file's rights are.
bool IsOwner(stream_protocol::socket& socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(socket.native_handle(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  return peer.uid == geteuid() || peer.uid == 0;
}

// While it lives, new files are for their owner alone.
class NarrowFiles {
 public:
  NarrowFiles() : before_(umask(kNobodyElse)) {}
  ~NarrowFiles() { umask(before_); }
  NarrowFiles(const NarrowFiles&) = delete;
  NarrowFiles& operator=(const NarrowFiles&) = delete;

 private:
  mode_t before_;
};

}  // namespace

class LocalServer::Implementation {
 public:
  explicit Implementation(EventLoop& loop)
      : loop_(loop), acceptor_(loop.io()), acceptPause_(loop.io()) {}
  ~Implementation() {
    if (acceptor_.is_open()) file_->Remove();
    for (const ClientPtr& client : std::exchange(clients_, {})) HangUp(client);
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  void SetHandler(Handler handler) { handler_ = std::move(handler); }
  void Open(const std::string& directory, const std::string& name);

 private:
  void WaitForClient();
  void TakeClient(const asio::error_code& error, stream_protocol::socket socket);
  void Limit(const ClientPtr& client);
  void WaitForText(const ClientPtr& client);
  void TakeText(const ClientPtr& client, std::size_t count);
  void Begin(const ClientPtr& client, int waits);
  void CarryOut(const ClientPtr& client);
  void Send(const ClientPtr& client, std::string_view line);
  void WriteOrWait(const ClientPtr& client);
  void Complete(const ClientPtr& client);
  void HangUp(const ClientPtr& client);

  EventLoop& loop_;
  stream_protocol::acceptor acceptor_;
  asio::steady_timer acceptPause_;
  std::optional<SocketFile> file_;
  Handler handler_;
  std::set<ClientPtr> clients_;
};

void LocalServer::Implementation::Open(const std::string& directory, const std::string& name) {
  const std::string what = "cannot make " + directory + "/" + name;
  file_.emplace(directory, name);
  if (file_->Exists() && !file_->IsSocket()) {
    throw SocketFailure(SocketFailure::Code::kOther, what + ": something else has that name");
  }
  file_->Remove();
  asio::error_code error;
  acceptor_.open(stream_protocol(), error);
  if (!error) {
    const NarrowFiles narrow;
    acceptor_.bind(stream_protocol::endpoint(file_->Address()), error);
  }
  if (!error) acceptor_.listen(kMaxClients, error);
  if (error) {
    asio::error_code ignored;
    acceptor_.close(ignored);
    throw MakeSocketFailure(what, error);
  }
  WaitForClient();
}

void LocalServer::Implementation::WaitForClient() {
  acceptor_.async_accept([this](const asio::error_code& error, stream_protocol::socket socket) {
    if (error != asio::error::operation_aborted) TakeClient(error, std::move(socket));
  });
}

void LocalServer::Implementation::TakeClient(const asio::error_code& error,
                                             stream_protocol::socket socket) {
  if (error) {
    acceptPause_.expires_after(kAcceptPause);
    acceptPause_.async_wait([this](const asio::error_code& cancelled) {
      if (!cancelled) WaitForClient();
    });
    return;
  }
  WaitForClient();
  asio::error_code failed;
  socket.non_blocking(true, failed);
  if (failed || !IsOwner(socket) || clients_.size() >= kMaxClients) return;
  const auto client = std::make_shared<Client>(std::move(socket), loop_.io());
  clients_.insert(client);
  Limit(client);
  WaitForText(client);
}

void LocalServer::Implementation::Limit(const ClientPtr& client) {
  client->isLimited = true;
  client->limit.expires_after(kRequestTime);
  client->limit.async_wait([this, client](const asio::error_code& cancelled) {
    if (!cancelled && client->isLimited) HangUp(client);
  });
}

void LocalServer::Implementation::WaitForText(const ClientPtr& client) {
  client->socket.async_read_some(asio::buffer(client->buffer),
                                 [this, client](const asio::error_code& error, std::size_t count) {
                                   if (!client->up) return;
                                   if (error) return HangUp(client);
                                   TakeText(client, count);
                                 });
}

void LocalServer::Implementation::TakeText(const ClientPtr& client, std::size_t count) {
  client->request.append(client->buffer.data(), count);
  const std::size_t end = client->request.find('\n');
  if (std::min(end, client->request.size()) >= kLongestRequest) return HangUp(client);
  if (end == std::string::npos) return WaitForText(client);
  client->request.resize(end);
  client->limit.cancel();
  client->isLimited = false;
  Begin(client, kWaitsForRequests);
}

// A job on top of a browser's request would keep that browser waiting for its own end, minutes
// perhaps. Requests last for half a second; a flood of them is not waited for. The look is taken
// where the job would begin: a request may have come before that event has its turn.
void LocalServer::Implementation::Begin(const ClientPtr& client, int waits) {
  loop_.Post([this, client, waits] {
    if (waits == 0 || !loop_.HasRequest()) return CarryOut(client);
    client->pause.expires_after(kPauseForRequests);
    client->pause.async_wait([this, client, waits](const asio::error_code& cancelled) {
      if (!cancelled && client->up) Begin(client, waits - 1);
    });
  });
}

void LocalServer::Implementation::CarryOut(const ClientPtr& client) {
  // However the handler is left, the client is not left waiting.
  struct Completion {
    ~Completion() { server.Complete(client); }
    Implementation& server;
    const ClientPtr& client;
  };
  const Completion completion{*this, client};
  handler_(client->request, [this, client](std::string_view line) { Send(client, line); });
}

void LocalServer::Implementation::Send(const ClientPtr& client, std::string_view line) {
  if (!client->up || client->isComplete) return;
  const bool writing = !client->waiting.empty();
  client->waiting.append(line).append("\n");
  if (client->waiting.size() > kPendingLimit) return HangUp(client);
  if (!writing) WriteOrWait(client);
}

void LocalServer::Implementation::WriteOrWait(const ClientPtr& client) {
  asio::error_code error;
  const std::size_t sent = client->socket.write_some(asio::buffer(client->waiting), error);
  if (error && error != asio::error::would_block) return HangUp(client);
  client->waiting.erase(0, sent);
  if (client->waiting.empty()) {
    if (client->isComplete) HangUp(client);
    return;
  }
  client->socket.async_wait(stream_protocol::socket::wait_write,
                            [this, client](const asio::error_code& cancelled) {
                              if (!cancelled && client->up) WriteOrWait(client);
                            });
}

void LocalServer::Implementation::Complete(const ClientPtr& client) {
  client->isComplete = true;
  if (client->waiting.empty()) return HangUp(client);
  Limit(client);
}

void LocalServer::Implementation::HangUp(const ClientPtr& client) {
  client->up = false;
  client->isLimited = false;
  client->limit.cancel();
  asio::error_code ignored;
  client->socket.close(ignored);
  clients_.erase(client);
}

LocalServer::LocalServer(EventLoop& loop)
    : implementation_(std::make_unique<Implementation>(loop)) {}

LocalServer::~LocalServer() = default;

void LocalServer::SetHandler(Handler handler) {
  implementation_->SetHandler(std::move(handler));
}

void LocalServer::Open(const std::string& directory, const std::string& name) {
  implementation_->Open(directory, name);
}

}  // namespace quillon
