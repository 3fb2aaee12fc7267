// Telling, and reading what comes of it.
#include "asking_client.h"

#include "targets.h"
#include "web/expected_pages.h"
#include "whole_answers.h"

namespace quillon::fuzz {
namespace {

constexpr ConnectionId kClient = 1;  // there is no other
constexpr int kMostRounds = 1000;    // of the loop, till a client is noticed

}  // namespace

std::string AskingClient::Ask(const std::vector<std::string_view>& texts) {
  if (!site_.tcpServer.Connected(kClient)) ConnectAnew();
  client_->ClearReceived();
  for (const std::string_view text : texts) Tell(text);
  if (!site_.tcpServer.Connected(kClient)) return "";  // of those who scan for gaps
  return TakeAnswers();
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
  site_.server.DataIn(kClient, std::string(text.substr(0, Listener::kReadSize)));
}

// The default page is the last to be sent, so it is the last to come.
std::string AskingClient::TakeAnswers() {
  const std::string last = DefaultResponse(site_.render);
  Tell(Site::Request(""));
  while (!client_->ReceivedNow().ends_with(last)) {
    Require(!client_->closedByServer(), "a connection that was dropped");
    site_.loop.Pump();
  }
  const std::string& all = client_->received();
  Require(WholeAnswers(all) == all.size(), "an answer that is not whole");
  return all.substr(0, all.size() - last.size());
}

}  // namespace quillon::fuzz
