// A client of the socket file. The first byte chooses what the service is at, the second one how
// many of the others come first.
#include "input.h"
#include "platform/local_server_fixture.h"
#include "service/console_protocol.h"
#include "service/console_requests.h"
#include "support/service_house.h"
#include "targets.h"

namespace quillon::fuzz {
namespace {

bool IsEnd(std::string_view line) {
  const std::string word = console::Words(line)[0];
  return word == console::kDone || word == console::kRefused;
}

// Lines of which the last one, and no other, is an end.
void RequireAnswer(std::string_view answer) {
  Require(answer.ends_with('\n'), "an answer without a line end");
  while (!answer.empty()) {
    const std::size_t end = answer.find('\n');
    const std::string_view line = answer.substr(0, end);
    answer.remove_prefix(end + 1);
    Require(line.find('\r') == std::string_view::npos, "an answer with a carriage return");
    Require(IsEnd(line) == answer.empty(), "an answer that does not end in its end");
  }
}

class ConsoleHouse {
 public:
  ConsoleHouse() {
    house_.consoleSocket.SetHandler(
        [this](const std::string& request, const LocalServer::Answer& answer) {
          AnswerConsole(house_.service, house_.operators, house_.watch, request, answer);
        });
    house_.consoleSocket.Open(house_.installation.path(), kTestSocket);
  }

  void Run(Input input) {
    SetState(input.Byte());
    const std::size_t first = input.Byte();
    const bool isRequest = input.Rest().find('\n') < LocalServer::kLongestRequest;
    LocalClient client(house_.installation.path());
    house_.loop.Pump();
    Send(client, input.Take(first));
    Send(client, input.Rest());
    const std::string& answer = client.Received();
    Require(answer.empty() != isRequest, isRequest ? "no answer" : "an answer to no request");
    if (isRequest) RequireAnswer(answer);
    client.Leave();
    house_.loop.Pump();  // which notices it
  }

 private:
  void SetState(unsigned choice) {
    house_.service.socketsOpened = (choice & 1) == 0;
    house_.service.jobRunning = (choice & 2) != 0;
    house_.service.stopping = (choice & 4) != 0;
    house_.settings.RepDateOverride = (choice & 8) != 0;
    house_.settings.DebugMode = false;  // a job may have set it
    house_.period = {};
    house_.jobCalls.clear();
  }

  void Send(const LocalClient& client, std::string_view bytes) {
    client.Send(bytes);
    house_.loop.Pump();
  }

  ServiceHouse house_;  // its jobs only note their call
};

}  // namespace

void FuzzConsole(std::string_view bytes) {
  static ConsoleHouse house;  // its databases take longer to make than thousands of inputs to run
  house.Run(Input(bytes));
}

}  // namespace quillon::fuzz
