// The bytes of a trap: written down for a small one, and compared with those of Debian's
// snmptrap for every length and width.
#include "platform/trap_message.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <limits>

#include "platform/failure.h"
#include "support/datagram_sockets.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

using namespace std::string_literals;

const std::string kEnterprise = "1.3.6.1.4.1.7381.2.1.2";
const std::string kVariable = "1.3.6.1.4.1.7381.2.1.1.5";

TrapMessage Trap(std::vector<Varbind> varbinds = {}) {
  TrapMessage message;
  message.community = "public";
  message.enterprise = kEnterprise;
  message.agentAddress = "10.1.2.3";
  message.genericTrap = 6;
  message.specificTrap = 1;
  message.timeStamp = 5900;
  message.varbinds = std::move(varbinds);
  return message;
}

std::string Hex(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    hex += {kDigits[value / 16], kDigits[value % 16], ' '};
  }
  return hex;
}

// The program, sending to a socket of the test. It keeps its files in a folder of its own.
class TrapMessageTest : public testing::Test {
 protected:
  std::string BytesOfSnmptrap(const TrapMessage& message) {
    Run(ArgumentsOf(message));
    return receiver.Next().value_or("nothing received");
  }

  void ExpectBytesOfSnmptrap(const TrapMessage& message, const std::string& what) {
    EXPECT_EQ(Hex(EncodeTrap(message)), Hex(BytesOfSnmptrap(message))) << what;
  }

 private:
  std::vector<std::string> ArgumentsOf(const TrapMessage& message) const {
    std::vector<std::string> arguments = {"snmptrap",
                                          "-v",
                                          "1",
                                          "-c",
                                          message.community,
                                          "127.0.0.1:" + std::to_string(receiver.port()),
                                          "." + message.enterprise,
                                          message.agentAddress,
                                          std::to_string(message.genericTrap),
                                          std::to_string(message.specificTrap),
                                          std::to_string(message.timeStamp)};
    for (const Varbind& varbind : message.varbinds) {
      const auto* number = std::get_if<std::int32_t>(&varbind.value);
      arguments.push_back("." + varbind.identifier);
      arguments.emplace_back(number != nullptr ? "i" : "s");
      arguments.push_back(number != nullptr ? std::to_string(*number)
                                            : std::get<std::string>(varbind.value));
    }
    return arguments;
  }

  void Run(std::vector<std::string> arguments) const {
    std::vector<std::string> environment = {"MIBS=", "SNMP_PERSISTENT_DIR=" + folder.path(),
                                            "SNMPCONFPATH=" + folder.path()};
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int failure = posix_spawnp(&process, "snmptrap", &quiet, nullptr,
                                     Pointers(arguments).data(), Pointers(environment).data());
    posix_spawn_file_actions_destroy(&quiet);
    ASSERT_EQ(failure, 0) << "snmptrap cannot be started";
    int status = -1;
    waitpid(process, &status, 0);
    ASSERT_EQ(status, 0) << "snmptrap failed";
  }

  static std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
  }

  TemporaryFolder folder;
  UdpSocket receiver;
};

TEST_F(TrapMessageTest, SmallTrapIsTheseBytes) {
  const std::string expected =
      "\x30\x53"
      "\x02\x01\x00"    // version 1 is the number 0
      "\x04\x06public"  // community
      "\xA4\x46"        // Trap-PDU
      "\x06\x0A\x2B\x06\x01\x04\x01\xB9\x55\x02\x01\x02"
      "\x40\x04\x0A\x01\x02\x03"  // IpAddress
      "\x02\x01\x06"              // generic trap
      "\x02\x01\x01"              // specific trap
      "\x43\x02\x17\x0C"          // TimeTicks
      "\x30\x28"                  // variables
      "\x30\x14\x06\x0B\x2B\x06\x01\x04\x01\xB9\x55\x02\x01\x01\x05\x04\x05hello"
      "\x30\x10\x06\x0B\x2B\x06\x01\x04\x01\xB9\x55\x02\x01\x01\x06\x02\x01\x03"s;
  const TrapMessage message = Trap({{kVariable, "hello"}, {"1.3.6.1.4.1.7381.2.1.1.6", 3}});
  EXPECT_EQ(Hex(EncodeTrap(message)), Hex(expected));
}

TEST_F(TrapMessageTest, TrapWithoutVariablesEndsInAnEmptyList) {
  const std::string bytes = EncodeTrap(Trap());
  EXPECT_EQ(Hex(bytes.substr(bytes.size() - 2)), "30 00 ");
  ExpectBytesOfSnmptrap(Trap(), "no variables");
}

TEST_F(TrapMessageTest, TextsOfEveryLengthHaveTheBytesOfSnmptrap) {
  for (const std::size_t length : {0, 1, 127, 128, 200, 255, 256, 300}) {
    ExpectBytesOfSnmptrap(Trap({{kVariable, std::string(length, 'x')}}),
                          std::to_string(length) + " characters");
  }
}

// Each step moves one of the lengths around the text over 127 or over 255.
TEST_F(TrapMessageTest, EachLengthAroundATextGrowsOnItsOwn) {
  std::vector<std::size_t> lengths;
  for (std::size_t length = 50; length <= 130; length += 3) lengths.push_back(length);
  for (std::size_t length = 170; length <= 260; length += 3) lengths.push_back(length);
  for (const std::size_t length : lengths) {
    ExpectBytesOfSnmptrap(Trap({{kVariable, std::string(length, 'x')}}),
                          std::to_string(length) + " characters");
  }
}

TEST_F(TrapMessageTest, LengthsOfLongTextsAreInTheirShortestForm) {
  struct Case {
    std::size_t length;
    std::string head;
  };
  const Case cases[] = {{65'535, "\x04\x82\xFF\xFF"s},
                        {65'536, "\x04\x83\x01\x00\x00"s},
                        {70'000, "\x04\x83\x01\x11\x70"s}};
  for (const Case& row : cases) {
    const std::string text(row.length, 'x');
    const std::string bytes = EncodeTrap(Trap({{kVariable, text}}));
    const std::string end = row.head + text;
    ASSERT_GT(bytes.size(), end.size());
    EXPECT_TRUE(bytes.substr(bytes.size() - end.size()) == end) << row.length;
    EXPECT_EQ(bytes[1], '\x83') << row.length;
  }
}

TEST_F(TrapMessageTest, IntegersOfEveryWidthHaveTheBytesOfSnmptrap) {
  for (const std::int32_t number : {0,
                                    1,
                                    127,
                                    128,
                                    255,
                                    256,
                                    32'767,
                                    32'768,
                                    65'535,
                                    65'536,
                                    8'388'607,
                                    8'388'608,
                                    std::numeric_limits<std::int32_t>::max(),
                                    -1,
                                    -127,
                                    -128,
                                    -129,
                                    -256,
                                    -32'768,
                                    -32'769,
                                    -8'388'608,
                                    -8'388'609,
                                    std::numeric_limits<std::int32_t>::min()}) {
    ExpectBytesOfSnmptrap(Trap({{kVariable, number}}), std::to_string(number));
  }
}

TEST_F(TrapMessageTest, KindsOfTrapsHaveTheBytesOfSnmptrap) {
  struct Case {
    std::int32_t genericTrap;
    std::int32_t specificTrap;
  };
  const Case cases[] = {{0, 0}, {5, 0}, {6, 0}, {6, 127}, {6, 128}, {6, 65'536}, {6, 2'147'483'647},
                        {6, -1}};
  for (const Case& row : cases) {
    TrapMessage message = Trap();
    message.genericTrap = row.genericTrap;
    message.specificTrap = row.specificTrap;
    ExpectBytesOfSnmptrap(
        message, std::to_string(row.genericTrap) + ", " + std::to_string(row.specificTrap));
  }
}

TEST_F(TrapMessageTest, TimeStampsHaveTheBytesOfSnmptrap) {
  for (const std::uint32_t timeStamp :
       {0u, 1u, 127u, 128u, 255u, 256u, 32'767u, 32'768u, 65'536u, 8'388'608u, 16'777'216u,
        2'147'483'647u, 2'147'483'648u, 4'294'967'295u}) {
    TrapMessage message = Trap();
    message.timeStamp = timeStamp;
    ExpectBytesOfSnmptrap(message, std::to_string(timeStamp));
  }
}

TEST_F(TrapMessageTest, TimeStampWithItsHighestBitIsNotNegative) {
  TrapMessage message = Trap();
  message.timeStamp = 4'294'967'295u;
  const std::string bytes = EncodeTrap(message);
  EXPECT_EQ(Hex(bytes.substr(bytes.size() - 9)), "43 05 00 ff ff ff ff 30 00 ");
}

TEST_F(TrapMessageTest, ObjectIdentifiersHaveTheBytesOfSnmptrap) {
  std::string longest = "1.3";
  for (int i = 0; i < 40; ++i) longest += ".4294967295";
  for (const std::string& identifier : {"0.0"s,
                                        "0.39"s,
                                        "0.39.127"s,
                                        "1.0"s,
                                        "1.3"s,
                                        "1.3.0"s,
                                        "1.39"s,
                                        "2.0"s,
                                        "2.39"s,
                                        "2.40"s,
                                        "2.47.1"s,
                                        "2.48.1"s,
                                        "2.100"s,
                                        "2.100.3"s,
                                        "2.999.3"s,
                                        "1.3.127.128"s,
                                        "1.3.255.256"s,
                                        "1.3.16383.16384"s,
                                        "1.3.2097151.2097152"s,
                                        "1.3.268435455.268435456"s,
                                        "1.3.2147483647.2147483648"s,
                                        "1.3.4294967295"s,
                                        longest}) {
    TrapMessage message = Trap({{identifier, "text"}, {identifier, 1}});
    ExpectBytesOfSnmptrap(message, "variable " + identifier);
    message.enterprise = identifier;
    ExpectBytesOfSnmptrap(message, "enterprise " + identifier);
  }
}

TEST_F(TrapMessageTest, CommunitiesHaveTheBytesOfSnmptrap) {
  for (const std::string& community :
       {""s, "p"s, "public"s, "two words"s, " public "s, "Z\xFCrich"s, "Z\xC3\xBCrich"s,
        std::string(127, 'c'), std::string(128, 'c'), std::string(256, 'c')}) {
    TrapMessage message = Trap();
    message.community = community;
    ExpectBytesOfSnmptrap(message, community);
  }
}

TEST_F(TrapMessageTest, AgentAddressesHaveTheBytesOfSnmptrap) {
  for (const std::string& address :
       {"0.0.0.0"s, "127.0.0.1"s, "10.1.2.3"s, "192.168.255.254"s, "255.255.255.255"s}) {
    TrapMessage message = Trap();
    message.agentAddress = address;
    ExpectBytesOfSnmptrap(message, address);
  }
}

TEST_F(TrapMessageTest, AgentAddressThatIsNotOfVersion4IsSentAsZeros) {
  TrapMessage zeros = Trap();
  zeros.agentAddress = "0.0.0.0";
  for (const std::string& address :
       {""s, "::1"s, "fe80::1"s, "::ffff:10.1.2.3"s, "localhost"s, "10.1.2"s, "10.1.2.3.4"s,
        "300.1.1.1"s, "10.1.2.3:162"s, " 10.1.2.3"s, "10.1.2.3\0x"s}) {
    TrapMessage message = Trap();
    message.agentAddress = address;
    EXPECT_EQ(Hex(EncodeTrap(message)), Hex(EncodeTrap(zeros))) << testing::PrintToString(address);
  }
}

TEST_F(TrapMessageTest, EventTrapHasTheBytesOfSnmptrap) {
  const std::string variables = "1.3.6.1.4.1.7381.2.1.1.";
  ExpectBytesOfSnmptrap(
      Trap({{variables + "1", "10.1.2.3"},
            {variables + "2", "Quillon Web"},
            {variables + "3", "modSelectSql"},
            {variables + "4", "SqlTop10SwitchStats"},
            {variables + "5", "Reports.mdb: no such table: VLAN " + std::string(207, '\xFC')},
            {variables + "6", 1}}),
      "event");
}

TEST_F(TrapMessageTest, BytesOfTextsStandAsTheyAre) {
  const std::string text = "a\0b\r\n\x80\xFF"s;
  const std::string bytes = EncodeTrap(Trap({{kVariable, text}}));
  EXPECT_EQ(Hex(bytes.substr(bytes.size() - 9)), "04 07 61 00 62 0d 0a 80 ff ");
  TrapMessage message = Trap();
  message.community = "a\0b"s;
  EXPECT_NE(EncodeTrap(message).find("\x04\x03"
                                     "a\0b\xA4"s),
            std::string::npos);
}

TEST_F(TrapMessageTest, IdentifierThatIsNoneFails) {
  for (const std::string& identifier : {""s,
                                        "."s,
                                        "1"s,
                                        "1."s,
                                        "1.3."s,
                                        "1..3"s,
                                        "1.3..6"s,
                                        "3.1"s,
                                        "4294967295.1"s,
                                        "0.40"s,
                                        "1.40"s,
                                        "1.3.x"s,
                                        "x.3"s,
                                        "1.3.6x"s,
                                        "1.3.-1"s,
                                        "1.3.+1"s,
                                        "1.3. 6"s,
                                        " 1.3"s,
                                        "1.3 "s,
                                        "1,3"s,
                                        "1.3.0x1"s,
                                        "1.3.6\0"s,
                                        "1.3\0.6"s,
                                        "1.3.4294967296"s,
                                        "1.3.18446744073709551616"s,
                                        "1.3.18446744073709551617"s,
                                        "1.3.99999999999999999999999999"s,
                                        "iso.org"s}) {
    EXPECT_THROW(EncodeTrap(Trap({{identifier, "text"}})), ConversionFailure)
        << testing::PrintToString(identifier);
    TrapMessage message = Trap();
    message.enterprise = identifier;
    EXPECT_THROW(EncodeTrap(message), ConversionFailure) << testing::PrintToString(identifier);
  }
}

}  // namespace
}  // namespace quillon
