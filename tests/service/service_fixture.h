// The service of a test, driven by its states and the ticks of its timer.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "support/service_house.h"

namespace quillon {

class ServiceTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  ServiceTest() { house.settings.ConnMain.clear(); }  // no start yet

  void Start() { dartSvc_State(house.service, ServiceState::kStart); }
  void Tick() { timer1_Timer(house.service); }
  void TickAt(std::chrono::milliseconds afterStart) {
    house.clock.Advance(house.settings.StartTime + afterStart - house.clock.Now());
    Tick();
  }

  // An event line of a service procedure: "1\tmodQuillonWeb_ServiceOpen\t...".
  static std::string Failed(std::string_view name, std::string_view text) {
    return "1\t" + std::string(name) + "\t" + std::string(text);
  }

  ServiceHouse house;
};

}  // namespace quillon
