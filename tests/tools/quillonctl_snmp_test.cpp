// quillonctl snmp: the row of the traps.
#include "tools/quillonctl_fixture.h"

namespace quillon {
namespace {

class QuillonctlSnmp : public Quillonctl {
 protected:
  QuillonctlSnmp() { CreateWhole(); }

  Row Stored() const { return Sql("Quillon.mdb", "SELECT * FROM Settings_SnmpAgent").at(0); }
};

TEST_F(QuillonctlSnmp, EveryOptionHasItsField) {
  const Outcome set = Run("snmp set --enabled no --send-events no --community 'Größe, \"x\"'");
  EXPECT_EQ(set.status, 0) << set.error;
  EXPECT_EQ(set.out,
            "Saved; the service takes send-events within the hour, the rest at its next start\n");
  EXPECT_EQ(Stored(), (Row{"0", "0", "Größe, \"x\"", ""}));
}

TEST_F(QuillonctlSnmp, WhatIsNotGivenStays) {
  ASSERT_EQ(Run("snmp set --send-events no").status, 0);
  EXPECT_EQ(Stored(), (Row{"1", "0", "public", ""}));
}

TEST_F(QuillonctlSnmp, CommunityHasOneTo255Bytes) {
  EXPECT_EQ(Run("snmp set --community " + std::string(255, 'x')).status, 0);
  const Row before = Stored();
  for (const std::string& wrong :
       {std::string("''"), std::string(256, 'x'), std::string(254, 'x') + "ä",
        std::string("'a\tb'"), std::string("'\xff'")}) {
    const Outcome set = Run("snmp set --send-events no --community " + wrong);
    EXPECT_EQ(set.status, 1) << wrong;
    EXPECT_EQ(set.error.find("quillonctl: --community: "), 0U) << set.error;
    EXPECT_EQ(Stored(), before) << wrong;
  }
}

TEST_F(QuillonctlSnmp, ShowHasTheStatusToo) {
  Sql("Quillon.mdb", "UPDATE Settings_SnmpAgent SET Status = 'no such address'");
  EXPECT_EQ(
      Run("snmp").out,
      "enabled      yes\nsend-events  yes\ncommunity    public\nstatus       no such address\n");
  EXPECT_EQ(Run("snmp show --json").out,
            "{\n  \"enabled\": true,\n  \"send-events\": true,\n  \"community\": \"public\",\n"
            "  \"status\": \"no such address\"\n}\n");
}

TEST_F(QuillonctlSnmp, ShowTakesNulls) {
  Sql("Quillon.mdb", "UPDATE Settings_SnmpAgent SET Enabled = NULL, TrapComm = NULL");
  const Outcome show = Run("snmp show --json");
  EXPECT_EQ(show.status, 0) << show.error;
  EXPECT_NE(show.out.find("\"enabled\": \"\""), std::string::npos) << show.out;
}

TEST_F(QuillonctlSnmp, MissingRowIsSaid) {
  Sql("Quillon.mdb", "DELETE FROM Settings_SnmpAgent");
  for (const char* arguments : {"snmp", "snmp set --enabled no"}) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 1) << arguments;
    EXPECT_EQ(outcome.error, "quillonctl: Quillon.mdb: Settings_SnmpAgent has no row\n");
  }
}

TEST_F(QuillonctlSnmp, WhatIsNoCommandLineIsWrongUsage) {
  for (const char* arguments : {"snmp set", "snmp set --enabled", "snmp set --enabled maybe",
                                "snmp set --status x", "snmp --community public"}) {
    EXPECT_EQ(Run(arguments).status, 2) << arguments;
  }
}

}  // namespace
}  // namespace quillon
