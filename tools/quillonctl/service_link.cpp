// The client of the socket file.
#include "quillonctl/service_link.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "platform/socket_file.h"
#include "service/console_protocol.h"

namespace quillon {
namespace {

[[noreturn]] void Fail(const std::string& text) {
  throw SocketFailure(SocketFailure::Code::kOther, text);
}

[[noreturn]] void FailToReach(const std::string& directory, int error) {
  if (error == ENOENT || error == ECONNREFUSED) {
    throw ServiceIsDown(SocketFailure::Code::kOther, "the service does not run in " + directory);
  }
  if (error == EACCES || error == EPERM) {
    Fail("the service in " + directory + " belongs to another user; ask as that user, or as root");
  }
  Fail("cannot reach the service in " + directory + ": " + std::strerror(error));
}

// The descriptor of a connection.
int Connect(const std::string& directory) {
  const SocketFile file(directory, console::kSocketName);
  if (file.Exists() && !file.IsSocket()) {
    Fail(directory + "/" + console::kSocketName +
         " is no socket: move it away, and restart the service to reach it");
  }
  const std::string path = file.Address();
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return descriptor;
  }
  const int error = errno;
  close(descriptor);
  FailToReach(directory, error);
}

}  // namespace

class ServiceLink::Implementation {
 public:
  Implementation(const std::string& directory, const std::string& request,
                 std::chrono::seconds limit)
      : descriptor_(Connect(directory)) {
    const timeval patience{limit.count(), 0};
    setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const std::string line = request + "\n";
    // A service that hangs up at once is told of by the answer that does not come.
    send(descriptor_, line.data(), line.size(), MSG_NOSIGNAL);
  }
  ~Implementation() { close(descriptor_); }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  int descriptor() const { return descriptor_; }
  bool ended() const { return ended_; }

  std::optional<std::vector<std::string>> Next() {
    while (!ended_) {
      if (auto words = TakeLine()) return words;
      Read(0);
    }
    return std::nullopt;
  }

  std::optional<std::vector<std::string>> NextAtOnce() {
    while (!ended_) {
      if (auto words = TakeLine()) return words;
      if (!Read(MSG_DONTWAIT)) break;
    }
    return std::nullopt;
  }

 private:
  // The words of the next line that has come whole.
  std::optional<std::vector<std::string>> TakeLine() {
    const std::size_t end = text_.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::vector<std::string> words = console::Words(std::string_view(text_).substr(0, end));
    text_.erase(0, end + 1);
    ended_ = words[0] == console::kDone || words[0] == console::kRefused;
    return words;
  }

  // False where nothing is there yet.
  bool Read(int flags) {
    std::array<char, 4096> buffer;
    const ssize_t count = recv(descriptor_, buffer.data(), buffer.size(), flags);
    if (count > 0) {
      text_.append(buffer.data(), static_cast<std::size_t>(count));
      return true;
    }
    if (count < 0 && errno == EINTR) return true;
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      if (flags == 0) Fail("the service does not answer");
      return false;
    }
    Fail("the service ended, or hung up, before its answer was complete");
  }

  int descriptor_;
  std::string text_;  // of the answer, behind the lines that were taken
  bool ended_ = false;
};

ServiceLink::ServiceLink(const std::string& directory, const std::string& request,
                         std::chrono::seconds limit)
    : implementation_(std::make_unique<Implementation>(directory, request, limit)) {}

ServiceLink::~ServiceLink() = default;

std::optional<std::vector<std::string>> ServiceLink::Next() {
  return implementation_->Next();
}
std::optional<std::vector<std::string>> ServiceLink::NextAtOnce() {
  return implementation_->NextAtOnce();
}
int ServiceLink::descriptor() const {
  return implementation_->descriptor();
}
bool ServiceLink::ended() const {
  return implementation_->ended();
}

}  // namespace quillon
