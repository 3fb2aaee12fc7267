// quillondb check: whether the service gets its sockets.
#include <unistd.h>

#include "platform/instance_lock.h"
#include "quillondb/check/sockets.h"
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

using QuillondbCheckSockets = CheckedInstallation;

TEST_F(QuillondbCheckSockets, FindsAPortThatAnotherProgramUses) {
  TakePort();
  ExpectOnly(
      fmt::format("port {} of 127.0.0.1 is in use by another program, which 'ss -ltnp' names; end"
                  " it, or save another port ('quillonctl save --port')",
                  port_.number()));
}

TEST_F(QuillondbCheckSockets, LeavesThePortFree) {
  ExpectNothing();
  EXPECT_NO_THROW(TakePort());
}

TEST_F(QuillondbCheckSockets, TakesThePortOfTheServiceThatRunsHere) {
  const InstanceLock service(home_.string());
  TakePort();
  ExpectNothing();
}

TEST_F(QuillondbCheckSockets, TellsWhyTheServiceThatRunsHereHasNoSite) {
  const InstanceLock service(home_.string());
  Sql("Quillon.mdb",
      "UPDATE Settings_WebServer SET Status = '2024-05-01 12:00:00' || char(13, 10) ||"
      " 'Failed to Start' || char(13, 10) || 'Port was in use'");
  ExpectAmong("the service runs without its site: 2024-05-01 12:00:00  Failed to Start");
}

TEST_F(QuillondbCheckSockets, FindsAnAddressThatIsNotOfThisMachine) {
  Sql("Quillon.mdb", "UPDATE Settings_WebServer SET IpAddr = '192.0.2.7'");
  ExpectOnly(
      "Quillon.mdb: IpAddr in Settings_WebServer is '192.0.2.7', no address of this machine; save"
      " one that 'ip address' lists ('quillonctl save --address')");
}

TEST_F(QuillondbCheckSockets, SaysNothingOfSocketsThatAreSwitchedOff) {
  Sql("Quillon.mdb",
      "UPDATE Settings_WebServer SET IpAddr = '192.0.2.7', Enabled = FALSE;"
      "UPDATE Settings_SnmpAgent SET Enabled = FALSE");
  std::ofstream(home_ / "Morvane.ini") << "ServerIpAddr=192.0.2.7\r\n";
  ExpectNothing();
}

// Which user the directory belongs to tells who listens.
TEST_F(QuillondbCheckSockets, APortBelowTheFirstFreeOneNeedsRootOrTheRightOfTheUnit) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  const ServiceUser root(home_.string());
  ASSERT_EQ(chown(home_.c_str(), 64999, 64999), 0);
  const ServiceUser user(home_.string());
  const InstalledUnit none(home_.string(), {});
  std::ofstream(root_ / "quillon-web.service")
      << "ExecStart=:\"" << home_.string() << "/quillonweb\"\n"
      << "AmbientCapabilities=CAP_NET_BIND_SERVICE\n";
  const InstalledUnit unit(home_.string(), {root_.string()});
  EXPECT_TRUE(MayListen(80, 1024, root, none));
  EXPECT_TRUE(MayListen(80, 1024, user, unit));
  EXPECT_TRUE(MayListen(1024, 1024, user, none));
  EXPECT_TRUE(MayListen(80, 80, user, none));
  EXPECT_FALSE(MayListen(1023, 1024, user, none));
  fs::create_directory(root_ / "quillon-web.service.d");
  std::ofstream(root_ / "quillon-web.service.d/override.conf") << "AmbientCapabilities=\n";
  EXPECT_FALSE(MayListen(80, 1024, user, InstalledUnit(home_.string(), {root_.string()})));
}

}  // namespace
}  // namespace quillon
