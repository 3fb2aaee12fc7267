// A real listener on a free port of the loopback, clients on raw sockets, and a listener
// of its events that notes each and lets a test hang handlers of its own on them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/failure.h"
#include "platform/listener.h"
#include "support/site.h"
#include "support/test_clock.h"

namespace quillon {

using Log = std::vector<std::string>;

class RecordingEvents : public ListenerEvents {
 public:
  void Connected(ConnectionId id, int, const std::string&) override {
    log.push_back("connected " + std::to_string(id));
    connected.push_back(id);
  }
  void DataIn(ConnectionId id, std::string text) override {
    log.push_back("data " + std::to_string(id));
    reads[id].push_back(text);
    if (onData) onData(id, text);
  }
  void Disconnected(ConnectionId id, int, const std::string&) override {
    log.push_back("disconnected " + std::to_string(id));
  }
  void Error(int errorCode, const std::string& description) override {
    log.push_back("error " + std::to_string(errorCode) + " " + description);
  }

  Log log;                              // one entry an event: "data 1"
  std::vector<ConnectionId> connected;  // ids in the order in which they were given
  std::map<ConnectionId, Log> reads;    // texts of each connection, one a read
  std::function<void(ConnectionId, const std::string&)> onData;
};

class ListenerTest : public testing::Test {
 protected:
  using Client = std::unique_ptr<RawClient>;

  ListenerTest() {
    listener.SetEvents(events);
    listener.SetLocalHost("127.0.0.1");
    listener.SetLocalPort(0);
    listener.SetListening(true);
  }

  // A new client whose Connected event has run.
  Client Connect() {
    auto client = std::make_unique<RawClient>(listener.LocalPort());
    Settle();
    return client;
  }

  // The same without any event.
  Client ConnectUnnoticed() { return std::make_unique<RawClient>(listener.LocalPort()); }

  // Runs events until nothing happens for a while.
  void Settle() {
    for (int round = 0; round < 6; ++round) {
      loop.Pump();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  void SendAndSettle(RawClient& client, std::string_view bytes) {
    client.Send(bytes);
    Settle();
  }

  void CloseAndSettle(RawClient& client) {
    client.Close();
    Settle();
  }

  // Lets the client read until it has so many bytes or five seconds have passed.
  void ReceiveUpTo(RawClient& client, std::size_t bytes) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (client.received().size() < bytes && std::chrono::steady_clock::now() < end) {
      loop.Pump();
      client.Receive();
    }
  }

  static std::string Joined(const Log& pieces) {
    std::string text;
    for (const std::string& piece : pieces) text += piece;
    return text;
  }

  TestClock clock;
  EventLoop loop{clock};
  RecordingEvents events;
  Listener listener{loop};
};

// Bytes of which no two stretches are alike, so that a lost or moved piece shows.
inline std::string CountedText(std::size_t size) {
  std::string text;
  for (std::size_t number = 0; text.size() < size; ++number) text += std::to_string(number) + ",";
  text.resize(size);
  return text;
}

}  // namespace quillon
