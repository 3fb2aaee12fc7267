// Morvane.ini: whatever stands there, an address is one line, and what fails is the port.
#include "service/morvane_ini.h"

#include "platform/text_lines.h"
#include "support/service_house.h"
#include "targets.h"

namespace quillon::fuzz {
namespace {

class IniReader {
 public:
  IniReader() {
    house_.settings.MorvaneDir = house_.installation.path();
    house_.settings.AppPath.clear();  // a failure writes no line then, for which it would wait
    house_.watch.event = [this](int, std::string_view, std::string_view text) { failure_ = text; };
  }

  void Read(std::string_view bytes) {
    failure_.clear();
    house_.installation.Write("Morvane.ini", std::string(bytes));
    ReadMorvaneIni(house_.service);
    const std::string& address = house_.settings.ServerIpAddr;
    Require(address.find_first_of("\r\n") == std::string::npos, "an address of two lines");
    Require(TrimmedView(address) == address, "an address with blanks around it");
    Require(failure_.empty() || failure_.starts_with("ServerTrapPort in Morvane.ini is "),
            failure_);
  }

 private:
  ServiceHouse house_;
  std::string failure_;
};

}  // namespace

void FuzzMorvaneIni(std::string_view bytes) {
  static IniReader reader;  // its databases take longer to make than thousands of inputs to read
  reader.Read(bytes);
}

}  // namespace quillon::fuzz
