// Telling, and reading what comes of it.
#include "asking_client.h"

#include <algorithm>

#include "targets.h"
#include "web/expected_pages.h"
#include "whole_answers.h"

namespace quillon::fuzz {
namespace {

constexpr ConnectionId kClient = 1;     // there is no other
constexpr int kMostRounds = 1'000'000;  // of the loop, some seconds, till a client is answered

// Those who scan for gaps are dropped, where requests are logged.
bool MayBeDropped(const Settings& settings, const std::vector<std::string_view>& texts) {
  return settings.DebugMode && std::any_of(texts.begin(), texts.end(), [](std::string_view text) {
           return text.find("login.cgi") != std::string_view::npos;
         });
}

}  // namespace

std::string AskingClient::Ask(const std::vector<std::string_view>& texts) {
  if (!site_.tcpServer.Connected(kClient)) ConnectAnew();
  client_->ClearReceived();
  for (const std::string_view text : texts) Tell(text);
  if (site_.tcpServer.Connected(kClient)) return TakeAnswers();
  Require(MayBeDropped(site_.settings, texts), "a client that was dropped");
  return "";
}

void AskingClient::ConnectAnew() {
  client_.reset();
  site_.loop.Pump();  // the end of the connection before frees its number
  client_ = std::make_unique<RawClient>(site_.tcpServer.LocalPort());
  for (int round = 0; round < kMostRounds && !site_.tcpServer.Connected(kClient); ++round) {
    site_.loop.Pump();
  }
  Require(site_.tcpServer.Connected(kClient), "a connection with another number");
}

void AskingClient::Tell(std::string_view text) {
  const EventLoop::RequestMark mark(site_.loop);
  site_.server.DataIn(kClient, std::string(text));
}

// The default page is the last to be sent, so it is the last to come.
std::string AskingClient::TakeAnswers() {
  const std::string last = DefaultResponse(site_.render);
  Tell(Site::Request(""));
  for (int round = 0; !client_->ReceivedNow().ends_with(last); ++round) {
    Require(!client_->closedByServer(), "a connection that was dropped");
    Require(round < kMostRounds, "no default page behind the answers");
    site_.loop.Pump();
  }
  const std::string& all = client_->received();
  Require(WholeAnswers(all) == all.size(), "an answer that is not whole");
  return all.substr(0, all.size() - last.size());
}

}  // namespace quillon::fuzz
