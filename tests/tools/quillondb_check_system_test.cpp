// quillondb check: room on the disk, the locale and the zone.
#include "quillondb/check/system.h"
#include "support/environment.h"
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

using QuillondbCheckSystem = CheckedInstallation;

TEST_F(QuillondbCheckSystem, FindsADiskWithLessThan500Megabytes) {
  EXPECT_EQ(SpaceFinding("/opt/quillon-web", 500'000'000), "");
  EXPECT_EQ(
      SpaceFinding("/opt/quillon-web", 499'999'999),
      "/opt/quillon-web: the disk has 499 MB left; make room for at least 500 MB, or pages and"
      " days get lost");
}

TEST_F(QuillondbCheckSystem, FindsALocaleThatTheMachineDoesNotHaveAtAStartAlone) {
  const Environment environment({"LC_ALL", "LC_TIME", "LANG", "INVOCATION_ID", "NOTIFY_SOCKET"});
  environment.Set("LC_TIME", "xx_XX.UTF-8");
  ExpectNothing();
  for (const char* sign : {"INVOCATION_ID", "NOTIFY_SOCKET"}) {
    environment.Set(sign, "x");
    ExpectOnly(
        "the locale 'xx_XX.UTF-8' is not on this machine, so days and months have English names;"
        " generate it ('dpkg-reconfigure locales'), and restart");
    environment.Set(sign, std::nullopt);
  }
  environment.Set("INVOCATION_ID", "x");
  environment.Set("LC_TIME", "C.UTF-8");
  ExpectNothing();
}

// A zone of the caller's would make the last report one of a moment to come.
TEST_F(QuillondbCheckSystem, TakesTheZoneOfTheUnitInPlaceOfATerminals) {
  const Environment environment({"TZ", "INVOCATION_ID", "NOTIFY_SOCKET"});
  std::ofstream(root_ / "quillon-web.service")
      << "ExecStart=:\"" << home_.string() << "/quillonweb\"\n";
  const InstalledUnit unit(home_.string(), {root_.string()});
  environment.Set("TZ", "Pacific/Auckland");
  TakeZoneOf(InstalledUnit(home_.string(), {}));
  EXPECT_STREQ(std::getenv("TZ"), "Pacific/Auckland");
  environment.Set("INVOCATION_ID", "x");
  TakeZoneOf(unit);
  EXPECT_STREQ(std::getenv("TZ"), "Pacific/Auckland");
  environment.Set("INVOCATION_ID", std::nullopt);
  TakeZoneOf(unit);
  EXPECT_EQ(std::getenv("TZ"), nullptr);
}

}  // namespace
}  // namespace quillon
