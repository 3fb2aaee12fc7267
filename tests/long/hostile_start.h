// A service that starts on hostile settings, opens its sockets, runs an hourly pass and stops.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "support/service_house.h"
#include "targets.h"

namespace quillon {

class HostileStart {
 public:
  // The settings are those of the file.
  explicit HostileStart(const std::string& settingsPath) {
    house_.settings.ConnMain.clear();  // no start yet
    std::filesystem::copy_file(settingsPath, house_.installation.path() + "/Quillon.mdb",
                               std::filesystem::copy_options::overwrite_existing);
  }

  // Whether it came to its timer. Where it did not, it has told why.
  bool Run() {
    dartSvc_State(house_.service, ServiceState::kStart);
    if (house_.service.timer1 == nullptr) {
      fuzz::Require(!house_.Events().empty(), "a start that ends without a word");
      return false;
    }
    TickAfter(std::chrono::seconds(30));
    fuzz::Require(house_.service.socketsOpened, "a service without its sockets' step");
    TickAfter(std::chrono::hours(1));
    house_.loop.Post([this] { dartSvc_State(house_.service, ServiceState::kStop); });
    house_.loop.Run();
    return true;
  }

  // Oldest first.
  std::vector<std::string> Events() const { return house_.Events(); }

 private:
  void TickAfter(std::chrono::milliseconds wait) {
    house_.clock.Advance(wait);
    timer1_Timer(house_.service);
  }

  ServiceHouse house_;  // its jobs only note their call
};

}  // namespace quillon
