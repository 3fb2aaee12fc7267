// The sockets are opened and closed again, by the classes that the service uses.
#include "quillondb/check/sockets.h"

#include <fmt/format.h>
#include <unistd.h>

#include <fstream>
#include <optional>

#include "platform/agent.h"
#include "platform/clock.h"
#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "platform/listener.h"
#include "platform/text_lines.h"
#include "service/listener_opening.h"

namespace quillon {
namespace {

// Ports below are for root and whoever got the right; what the system has set may differ.
constexpr int kUsualFirstFreePort = 1024;
constexpr const char* kFirstFreePortFile = "/proc/sys/net/ipv4/ip_unprivileged_port_start";

struct Site {
  std::string address;  // as it stands in the settings
  int port = 0;
  std::string status;
};

// The sockets that the service is to open.
struct Wanted {
  std::optional<Site> site;
  bool agent = false;
};

Wanted ReadWanted(const SqliteFile& settings) {
  Wanted wanted;
  SqliteStatement site = settings.Prepare(
      "SELECT IpAddr, TcpPort, Status FROM Settings_WebServer WHERE Enabled"
      " AND typeof(TcpPort) = 'integer' AND TcpPort BETWEEN 1 AND 65535");
  if (site.Step()) {
    wanted.site = {site.Text(0), static_cast<int>(site.Integer(1)), site.Text(2)};
  }
  wanted.agent = settings.Count("SELECT COUNT(*) FROM Settings_SnmpAgent WHERE Enabled") > 0;
  return wanted;
}

bool ServiceRuns(const std::string& directory) {
  return !InstanceLock(directory).held();
}

// The state that the service has written into its settings.
void CheckStatus(const Site& site, std::vector<std::string>& findings) {
  if (site.status.find("Failed") == std::string::npos) return;
  findings.push_back("the service runs without its site: " + OneLine(site.status) +
                     "; free the port or save another address ('quillonctl save'), and restart it");
}

int FirstFreePort() {
  int port = kUsualFirstFreePort;
  std::ifstream(kFirstFreePortFile) >> port;
  return port;
}

// Which setting the address came from, and how it is set right.
std::string AddressFinding(const Site& site, const std::string& address) {
  if (site.address == kEveryAddress) {
    return fmt::format(
        "ServerIpAddr of Morvane.ini is '{}', no address of this machine, and the site is"
        " to listen there; save an address of its own ('quillonctl save --address')",
        address);
  }
  return fmt::format(
      "Quillon.mdb: IpAddr in Settings_WebServer is '{}', no address of this machine;"
      " save one that 'ip address' lists ('quillonctl save --address')",
      address);
}

std::string ListenFinding(const Site& site, const std::string& address,
                          const SocketFailure& failure) {
  switch (failure.code()) {
    case SocketFailure::Code::kAddressInUse:
      return fmt::format(
          "port {} of {} is in use by another program, which 'ss -ltnp' names; end it, or"
          " save another port ('quillonctl save --port')",
          site.port, address);
    case SocketFailure::Code::kAddressNotAvailable:
      return AddressFinding(site, address);
    case SocketFailure::Code::kOther:
      break;
  }
  return fmt::format("{}; save another address or port ('quillonctl save')", failure.what());
}

void TryListener(EventLoop& loop, const Site& site, const std::string& address,
                 std::vector<std::string>& findings) {
  Listener listener(loop);
  listener.SetLocalHost(address);
  listener.SetLocalPort(site.port);
  try {
    listener.SetListening(true);
    listener.SetListening(false);
  } catch (const SocketFailure& failure) {
    findings.push_back(ListenFinding(site, address, failure));
  }
}

void CheckRight(const Site& site, int firstFree, const SocketUser& by,
                std::vector<std::string>& findings) {
  if (MayListen(site.port, firstFree, by.user, by.unit)) return;
  findings.push_back(
      fmt::format("Quillon.mdb: TcpPort in Settings_WebServer is {}, for which {} has no right; "
                  "let systemd start"
                  " the service ('quillonweb -install'), or save a port from {} on",
                  site.port, by.user.name(), firstFree));
}

// The port may need a right of root's, which the unit gives the service.
void CheckSite(EventLoop& loop, const Site& site, const std::string& serverAddress,
               const SocketUser& by, std::vector<std::string>& findings) {
  const int firstFree = FirstFreePort();
  CheckRight(site, firstFree, by, findings);
  const CallersRights rights(by.rights);
  // Whoever has no right himself learns nothing of the port.
  if (site.port < firstFree && geteuid() != 0) return;
  const bool chosen = site.address != kEveryAddress;
  TryListener(loop, site, chosen ? site.address : serverAddress, findings);
}

void CheckAgent(EventLoop& loop, const std::string& address, std::vector<std::string>& findings) {
  constexpr int kAnyPort = 0;
  try {
    UdpAgent(loop).OpenAgent(kAnyPort, address);
  } catch (const SocketFailure& failure) {
    findings.push_back(
        fmt::format("ServerIpAddr of Morvane.ini is '{}', from where no traps leave ({});"
                    " write an address of this machine",
                    address, failure.what()));
  }
}

void TryAll(const Wanted& wanted, const std::string& serverAddress, const SocketUser& by,
            std::vector<std::string>& findings) {
  SystemClock clock;
  EventLoop loop(clock);
  if (wanted.site) CheckSite(loop, *wanted.site, serverAddress, by, findings);
  if (wanted.agent) CheckAgent(loop, serverAddress, findings);
}

}  // namespace

void CheckSockets(const std::string& directory, const SqliteFile& settings,
                  const std::string& serverAddress, const SocketUser& by,
                  std::vector<std::string>& findings) {
  const Wanted wanted = ReadWanted(settings);
  if (!ServiceRuns(directory)) {
    TryAll(wanted, serverAddress, by, findings);
  } else if (wanted.site) {
    CheckStatus(*wanted.site, findings);
  }
}

bool MayListen(int port, int firstFreePort, const ServiceUser& user, const InstalledUnit& unit) {
  return port >= firstFreePort || user.isRoot() || unit.Grants("CAP_NET_BIND_SERVICE") ||
         !unit.failure().empty();
}

}  // namespace quillon
