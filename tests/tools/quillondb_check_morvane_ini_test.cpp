// quillondb check: the values of Morvane.ini, and the address that the service takes out of it.
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

class QuillondbCheckMorvaneIni : public CheckedInstallation {
 protected:
  void Write(const std::string& text) const { std::ofstream(home_ / "Morvane.ini") << text; }

  std::string PortFinding(const std::string& value) const {
    return fmt::format(
        "{}: ServerTrapPort is '{}', so no traps arrive, and what stands behind it may not be read;"
        " write a port from 1 to 32767",
        (home_ / "Morvane.ini").string(), value);
  }
};

TEST_F(QuillondbCheckMorvaneIni, TakesWhatTheServiceTakes) {
  for (const char* text : {"", "[Server]\r\nServerIpAddr = 127.0.0.1\r\n", "ServerTrapPort=1\n",
                           "ServerTrapPort=32767", "; ServerTrapPort=none\n",
                           "ServerIpAddr=x\rServerIpAddr=127.0.0.1\r", "Other=x\n"}) {
    Write(text);
    ExpectNothing();
  }
}

TEST_F(QuillondbCheckMorvaneIni, FindsATrapPortThatTheServiceCannotUse) {
  for (const char* value : {"0", "-1", "32768", "65536", "162/udp", ""}) {
    Write(std::string("ServerTrapPort=") + value + "\r\n");
    ExpectOnly(PortFinding(value));
  }
}

TEST_F(QuillondbCheckMorvaneIni, LeavesWhatStandsBehindAWrongPortUnread) {
  Write("ServerTrapPort=x\nServerTrapPort=162\nServerIpAddr=192.0.2.7\n");
  ExpectOnly(PortFinding("x"));
}

TEST_F(QuillondbCheckMorvaneIni, FindsAnAddressThatIsNotOfThisMachine) {
  for (const char* value : {"192.0.2.7", "nms.example", ""}) {
    Write(std::string("ServerIpAddr=") + value + "\r\n");
    const Findings findings = Check();
    ASSERT_EQ(findings.size(), 2U) << testing::PrintToString(findings);
    EXPECT_EQ(findings[0],
              fmt::format("ServerIpAddr of Morvane.ini is '{}', no address of this machine, and the"
                          " site is to listen there; save an address of its own ('quillonctl save"
                          " --address')",
                          value));
    EXPECT_NE(findings[1].find("from where no traps leave"), std::string::npos) << findings[1];
  }
}

TEST_F(QuillondbCheckMorvaneIni, ReadsNoFileThatIsFarTooLong) {
  Write("ServerTrapPort=x\n" + std::string(2'000'000, '\n'));
  ExpectOnly((home_ / "Morvane.ini").string() +
             ": 2 MB, which each start of the service reads; put a file of less than 1 MB in its"
             " place");
}

TEST_F(QuillondbCheckMorvaneIni, LetsNoTextOfTheFileSteerATerminal) {
  Write("ServerTrapPort=\x1b[2J\r\n");
  ExpectOnly(PortFinding("?[2J"));
}

}  // namespace
}  // namespace quillon
