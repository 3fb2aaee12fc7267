// A connection to a mail server, on libcurl: it connects, encrypts where the server offers it, and
// logs in. What is said afterwards is the caller's. Nothing here keeps the thread: where the server
// is slow, the loop's wait runs in steps.
#pragma once

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "mail/smtp_server.h"
#include "platform/event_loop.h"

namespace quillon {

// Why a mail did not go out.
class SmtpFailure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};
// The server said no: it is there, and waits for what comes next.
class SmtpRefusal : public SmtpFailure {
  using SmtpFailure::SmtpFailure;
};

class SmtpConnection {
 public:
  // Returns when mails can be handed over. SmtpFailure for a server that cannot be reached, does
  // not speak SMTP, refuses the login, or needs longer than the time that `server` has for all that
  // the connection is used for.
  SmtpConnection(EventLoop& loop, const SmtpServer& server);
  ~SmtpConnection();
  SmtpConnection(const SmtpConnection&) = delete;
  SmtpConnection& operator=(const SmtpConnection&) = delete;

  // Sends all of it. SmtpFailure as above.
  void Send(std::string_view bytes);

  // The next line from the server, without its end. SmtpFailure as above, and for one that is
  // longer than any reply.
  std::string ReadLine();

  // Says good-bye and does not wait for the answer.
  void Quit();

 private:
  class Library;

  void Wait();

  EventLoop& loop_;
  std::chrono::steady_clock::time_point deadline_;
  std::unique_ptr<Library> library_;
  std::string received_;  // behind the lines that were read
};

}  // namespace quillon
