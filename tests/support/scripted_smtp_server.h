// A mail server that follows a script: what it answers at which point of a session, and where it
// falls silent, drips, floods or hangs up. It runs in a thread of its own on blocking calls, so
// that nothing it does can depend on the loop under test.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace quillon {

// The points of a session at which the server has the word. kText is the time in which it reads
// the text of a mail, kLogin the end of an exchange that AUTH has begun.
enum class SmtpPoint {
  kGreeting,
  kEhlo,
  kHelo,
  kStartTls,
  kAuth,
  kLogin,
  kMail,
  kRecipient,
  kData,
  kText,
  kTextEnd,
  kQuit
};

// What it does there.
struct SmtpAnswer {
  enum class Way { kAtOnce, kDrip, kHang, kClose, kFlood };

  static SmtpAnswer Say(const std::string& lines) { return {Way::kAtOnce, lines, {}}; }
  // One byte each time the interval has passed.
  static SmtpAnswer Drip(const std::string& lines, std::chrono::milliseconds interval) {
    return {Way::kDrip, lines, interval};
  }
  // Nothing, until the client goes.
  static SmtpAnswer Hang() { return {Way::kHang, {}, {}}; }
  static SmtpAnswer Close() { return {Way::kClose, {}, {}}; }
  // The text again and again, for ten seconds, as fast as the client takes it.
  static SmtpAnswer Flood(const std::string& text) { return {Way::kFlood, text, {}}; }

  Way way = Way::kAtOnce;
  std::string lines;  // with their line ends
  std::chrono::milliseconds interval{0};
};

struct SmtpScript {
  std::vector<std::string> offers;          // "AUTH LOGIN PLAIN"
  std::map<SmtpPoint, SmtpAnswer> answers;  // where it is not a server that takes every mail
};

// A server that offers this, or answers so at that point, and is as friendly as any otherwise.
inline SmtpScript Offering(const std::string& offer) {
  SmtpScript script;
  script.offers = {offer};
  return script;
}
inline SmtpScript Answering(SmtpPoint point, const std::string& answer) {
  SmtpScript script;
  script.answers[point] = SmtpAnswer::Say(answer);
  return script;
}

// What a client said on one connection.
struct SmtpSession {
  // The lines in their order, those of an exchange that AUTH has begun among them.
  std::vector<std::string> commands;
  // The text of the mail, once its end has come; dots that were doubled are single again.
  std::optional<std::string> mail;

  // The commands that begin like this.
  std::vector<std::string> CommandsLike(const std::string& beginning) const;
};

class ScriptedSmtpServer {
 public:
  // Each connection has the next script, and the last one stays.
  explicit ScriptedSmtpServer(std::vector<SmtpScript> scripts,
                              const std::string& address = "127.0.0.1");
  explicit ScriptedSmtpServer(SmtpScript script = {}, const std::string& address = "127.0.0.1");
  ~ScriptedSmtpServer();
  ScriptedSmtpServer(const ScriptedSmtpServer&) = delete;
  ScriptedSmtpServer& operator=(const ScriptedSmtpServer&) = delete;

  std::int32_t port() const { return port_; }

  // Ends the server when all clients that have come by now are gone, which may take them ten
  // seconds, and tells what each said. Every socket of the server is closed then.
  const std::vector<SmtpSession>& Sessions();

 private:
  class Conversation;

  void Run();
  const SmtpScript& NextScript() const;
  void End();

  const std::vector<SmtpScript> scripts_;
  int listener_ = -1;
  std::int32_t port_ = 0;
  std::vector<SmtpSession> sessions_;  // the thread's own until it is joined
  std::atomic<bool> ending_{false};
  std::thread thread_;
};

// A listening port whose queue is full, so that the system lets a connection neither come nor fail.
class FullPort {
 public:
  FullPort();
  ~FullPort();
  FullPort(const FullPort&) = delete;
  FullPort& operator=(const FullPort&) = delete;

  std::int32_t port() const { return port_; }

 private:
  int listener_ = -1;
  std::int32_t port_ = 0;
  std::vector<int> waiting_;
};

// A port of the loopback on which nobody listens.
std::int32_t ClosedPort();

}  // namespace quillon
