// Plain sockets, and no more of the protocol than a client that sends one mail can see.
#include "support/scripted_smtp_server.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>

namespace quillon {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(10);  // with clients
constexpr int kSliceMs = 10;

// <1896.697170952@postoffice.reston.mci.net>, the example of RFC 2195.
const std::string kCramMd5Challenge = "PDE4OTYuNjk3MTcwOTUyQHBvc3RvZmZpY2UucmVzdG9uLm1jaS5uZXQ+";

bool IsReady(int socket, short events) {
  pollfd waited{socket, events, 0};
  return poll(&waited, 1, kSliceMs) == 1;
}

int Listen(const std::string& address, int backlog) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), "0", &hints, &found) != 0) {
    throw std::runtime_error("no address: " + address);
  }
  const int listener = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool bound = listener >= 0 && bind(listener, found->ai_addr, found->ai_addrlen) == 0;
  freeaddrinfo(found);
  if (bound && listen(listener, backlog) == 0) return listener;
  if (listener >= 0) close(listener);
  throw std::runtime_error("cannot listen on " + address);
}

std::int32_t PortOf(int listener) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
  // The port stands at the same place in both versions.
  return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  return text;
}

bool Begins(const std::string& text, std::string_view beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

}  // namespace

// One connection, up to its end.
class ScriptedSmtpServer::Conversation {
 public:
  Conversation(int socket, const SmtpScript& script, SmtpSession& session,
               const std::atomic<bool>& ending)
      : socket_(socket), script_(script), session_(session), ending_(ending) {}
  ~Conversation() { close(socket_); }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  void Run() {
    if (!Answer(SmtpPoint::kGreeting, "220 server.example ready\r\n")) return;
    while (const std::optional<std::string> command = Line()) {
      session_.commands.push_back(*command);
      if (!Obey(Upper(*command))) return;
    }
  }

 private:
  // These return whether the conversation goes on.
  bool Obey(const std::string& command) {
    if (Begins(command, "EHLO")) return Answer(SmtpPoint::kEhlo, Offers());
    if (Begins(command, "HELO")) return Answer(SmtpPoint::kHelo, "250 server.example\r\n");
    if (Begins(command, "STARTTLS")) return Answer(SmtpPoint::kStartTls, "220 go ahead\r\n");
    if (Begins(command, "AUTH")) return Authenticate(command);
    if (Begins(command, "MAIL")) return Answer(SmtpPoint::kMail, "250 sender ok\r\n");
    if (Begins(command, "RCPT")) return Answer(SmtpPoint::kRecipient, "250 recipient ok\r\n");
    if (Begins(command, "DATA")) return TakeMail();
    if (Begins(command, "QUIT")) {
      Answer(SmtpPoint::kQuit, "221 bye\r\n");
      return false;
    }
    return Send("250 ok\r\n");
  }

  std::string Offers() const {
    std::vector<std::string> lines = {"server.example"};
    lines.insert(lines.end(), script_.offers.begin(), script_.offers.end());
    std::string answer;
    for (const std::string& line : lines) {
      answer += (&line == &lines.back() ? "250 " : "250-") + line + "\r\n";
    }
    return answer;
  }

  // Asks for what the mechanism needs; whoever knows what to say is let in.
  bool Authenticate(const std::string& command) {
    if (script_.answers.count(SmtpPoint::kAuth) != 0) return Answer(SmtpPoint::kAuth, "");
    std::vector<std::string> questions;
    if (Begins(command, "AUTH LOGIN")) questions = {"VXNlcm5hbWU6", "UGFzc3dvcmQ6"};
    if (Begins(command, "AUTH PLAIN")) questions = {""};
    if (Begins(command, "AUTH CRAM-MD5")) questions = {kCramMd5Challenge};
    const bool answeredAlready = std::count(command.begin(), command.end(), ' ') > 1;
    if (answeredAlready && !questions.empty()) questions.erase(questions.begin());
    for (const std::string& question : questions) {
      if (!Send("334 " + question + "\r\n")) return false;
      const std::optional<std::string> line = Line();
      if (!line) return false;
      session_.commands.push_back(*line);
    }
    return Answer(SmtpPoint::kLogin, "235 logged in\r\n");
  }

  bool TakeMail() {
    if (!Answer(SmtpPoint::kData, "354 go on\r\n")) return false;
    if (script_.answers.count(SmtpPoint::kData) != 0 &&
        !Begins(script_.answers.at(SmtpPoint::kData).lines, "354")) {
      return true;
    }
    if (!Answer(SmtpPoint::kText, "")) return false;
    std::string mail;
    while (const std::optional<std::string> line = Line()) {
      if (*line == ".") {
        session_.mail = mail;
        return Answer(SmtpPoint::kTextEnd, "250 taken\r\n");
      }
      mail += (Begins(*line, ".") ? line->substr(1) : *line) + "\r\n";
    }
    return false;
  }

  bool Answer(SmtpPoint point, const std::string& ordinary) {
    const auto found = script_.answers.find(point);
    if (found == script_.answers.end()) return Send(ordinary);
    const SmtpAnswer& answer = found->second;
    switch (answer.way) {
      case SmtpAnswer::Way::kAtOnce:
        return Send(answer.lines);
      case SmtpAnswer::Way::kDrip:
        return std::all_of(answer.lines.begin(), answer.lines.end(), [&](char byte) {
          std::this_thread::sleep_for(answer.interval);
          return Send(std::string(1, byte));
        });
      case SmtpAnswer::Way::kHang:
        WaitUntilGone(point != SmtpPoint::kText);
        return false;
      case SmtpAnswer::Way::kClose:
        return false;
      case SmtpAnswer::Way::kFlood:
        SendAgainAndAgain(answer.lines);
        return false;
    }
    return false;
  }

  // It ends some day, lest a client that never has enough stops the tests.
  void SendAgainAndAgain(const std::string& lines) {
    const auto end = Clock::now() + kPatience;
    while (Clock::now() < end && Send(lines)) continue;
  }

  // Who does not read what comes does not see either that the client has gone.
  void WaitUntilGone(bool reading) {
    if (reading) {
      while (Receive()) received_.clear();
      return;
    }
    while (!ending_) std::this_thread::sleep_for(std::chrono::milliseconds(kSliceMs));
  }

  // The next line, which ends in CR LF and holds neither alone, without its end.
  std::optional<std::string> Line() {
    for (;;) {
      const std::size_t end = received_.find("\r\n", searched_);
      if (end != std::string::npos) {
        std::string line = received_.substr(begin_, end - begin_);
        begin_ = searched_ = end + 2;
        return line;
      }
      received_.erase(0, begin_);
      begin_ = 0;
      searched_ = received_.empty() ? 0 : received_.size() - 1;
      if (!Receive()) return std::nullopt;
    }
  }

  // False when the client has gone.
  bool Receive() {
    if (!WaitFor(POLLIN)) return false;
    std::string bytes(65'536, '\0');
    const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
    if (count <= 0) return false;
    received_.append(bytes, 0, static_cast<std::size_t>(count));
    return true;
  }

  bool Send(std::string_view bytes) {
    while (!bytes.empty()) {
      if (!WaitFor(POLLOUT)) return false;
      const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count < 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  bool WaitFor(short events) {
    while (!IsReady(socket_, events)) {
      if (!ending_) continue;
      if (!givingUp_) givingUp_ = Clock::now() + kPatience;
      if (Clock::now() > *givingUp_) return false;
    }
    return true;
  }

  const int socket_;
  const SmtpScript& script_;
  SmtpSession& session_;
  const std::atomic<bool>& ending_;
  std::optional<Clock::time_point> givingUp_;
  std::string received_;
  std::size_t begin_ = 0;     // of the next line
  std::size_t searched_ = 0;  // no line ends before
};

std::vector<std::string> SmtpSession::CommandsLike(const std::string& beginning) const {
  std::vector<std::string> alike;
  std::copy_if(commands.begin(), commands.end(), std::back_inserter(alike),
               [&](const std::string& command) { return Begins(command, beginning); });
  return alike;
}

ScriptedSmtpServer::ScriptedSmtpServer(std::vector<SmtpScript> scripts, const std::string& address)
    : scripts_(std::move(scripts)),
      listener_(Listen(address, SOMAXCONN)),
      port_(PortOf(listener_)),
      thread_([this] { Run(); }) {}

ScriptedSmtpServer::ScriptedSmtpServer(SmtpScript script, const std::string& address)
    : ScriptedSmtpServer(std::vector<SmtpScript>{std::move(script)}, address) {}

ScriptedSmtpServer::~ScriptedSmtpServer() {
  End();
}

const std::vector<SmtpSession>& ScriptedSmtpServer::Sessions() {
  End();
  return sessions_;
}

void ScriptedSmtpServer::End() {
  ending_ = true;
  if (thread_.joinable()) thread_.join();
  if (listener_ >= 0) close(listener_);
  listener_ = -1;
}

void ScriptedSmtpServer::Run() {
  for (;;) {
    const bool last = ending_;  // asked before the queue, so that nobody in it is forgotten
    if (!IsReady(listener_, POLLIN)) {
      if (last) return;
      continue;
    }
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    const SmtpScript& script = NextScript();
    sessions_.emplace_back();
    Conversation(socket, script, sessions_.back(), ending_).Run();
  }
}

const SmtpScript& ScriptedSmtpServer::NextScript() const {
  return scripts_[std::min(sessions_.size(), scripts_.size() - 1)];
}

FullPort::FullPort() : listener_(Listen("127.0.0.1", 0)), port_(PortOf(listener_)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port_));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  for (int i = 0; i < 8; ++i) {
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    waiting_.push_back(client);
    if (!IsReady(client, POLLOUT)) return;  // neither connected nor refused
  }
  throw std::runtime_error("the queue of a port does not fill");
}

FullPort::~FullPort() {
  for (const int client : waiting_) close(client);
  close(listener_);
}

std::int32_t ClosedPort() {
  const int listener = Listen("127.0.0.1", 1);
  const std::int32_t port = PortOf(listener);
  close(listener);
  return port;
}

}  // namespace quillon
