// The written forms of an address: what the search makes of each in the caller's text, and whether
// it looks for it among the MAC or the IP addresses.
#include "queries/search_fixture.h"

namespace quillon {
namespace {

// A submitted value and the form in which it is searched.
struct Form {
  std::string value;
  std::string searched;
};

class MacSearchFormsTest : public SearchTest {
 protected:
  // Expects these forms, and that the text which they stand for is found in that column alone. It
  // is the form without its stars.
  template <std::size_t N>
  void ExpectForms(const Form (&forms)[N], bool ofIpAddress) {
    AddPort({{"RecNo", "1"}});
    AddPort({{"RecNo", "2"}});
    for (const Form& form : forms) {
      std::string match = form.searched;
      std::erase(match, '*');
      Sql("DELETE FROM MAC");
      AddMac({{"RecNo", "1"}, {"MacAddr", "'" + match + "'"}, {"IpAddr", "'none'"}});
      AddMac({{"RecNo", "2"}, {"MacAddr", "'none'"}, {"IpAddr", "'" + match + "'"}});
      EXPECT_EQ(SearchMac(form.value), form.searched) << form.value;
      EXPECT_EQ(RecNos(), std::vector<int>{ofIpAddress ? 2 : 1}) << form.value;
      EXPECT_EQ(Record().TableCriteria, "1 (1)") << form.value;
    }
    ExpectNoEvent();
  }
};

TEST_F(MacSearchFormsTest, ColonsFromTheThirdCharacterOnMakeThemAllBlanks) {
  const Form forms[] = {
      {"00:1B:2C:3D:4E:5F", "00 1B 2C 3D 4E 5F"},
      {"00:1b:2c:3d:4e:5f", "00 1b 2c 3d 4e 5f"},
      {"00:1b:*", "00 1b *"},
      {"00:5f", "00 5f"},
      {"*:4e:5f", "* 4e 5f"},
      {"**:5f", "** 5f"},
      {":0:5f", " 0 5f"},
      {"0:1:5f", "0 1 5f"},
      {"00:", "00 "},
      {"fe80::1", "fe80  1"},
      {":-:", " - "},
      {"00:1b-2c", "00 1b-2c"},  // the dashes then stay
      {"00-1b:2c", "00-1b 2c"},
  };
  ExpectForms(forms, false);
}

TEST_F(MacSearchFormsTest, DashesFromTheThirdCharacterOnMakeThemAllBlanks) {
  const Form forms[] = {
      {"00-1B-2C-3D-4E-5F", "00 1B 2C 3D 4E 5F"},
      {"00-1b-2c-3d-4e-5f", "00 1b 2c 3d 4e 5f"},
      {"00-1b-*", "00 1b *"},
      {"*-4e-5f", "* 4e 5f"},
      {"-0-5f", " 0 5f"},
      {"00-", "00 "},
      {"0:1b-2c", "0:1b 2c"},  // a colon at the second character does not count
      {":0-5f", ":0 5f"},
  };
  ExpectForms(forms, false);
}

TEST_F(MacSearchFormsTest, ColonOrDashAtTheFirstTwoCharactersOnlyIsLeftAlone) {
  const Form forms[] = {{":5f", ":5f"},   {"0:5f", "0:5f"}, {"::5f", "::5f"}, {":", ":"},
                        {"::", "::"},     {"*:5f", "*:5f"}, {"-5f", "-5f"},   {"0-5f", "0-5f"},
                        {"--5f", "--5f"}, {":-5f", ":-5f"}, {"-:5f", "-:5f"}};
  ExpectForms(forms, false);
}

TEST_F(MacSearchFormsTest, TextWithoutSeparatorsIsLookedForAsItIs) {
  const Form forms[] = {{"00 1b 2c 3d 4e 5f", "00 1b 2c 3d 4e 5f"},
                        {"00 1B*", "00 1B*"},
                        {"001b2c3d4e5f", "001b2c3d4e5f"},
                        {" 00 1b", " 00 1b"},
                        {"00 1b ", "00 1b "},
                        {" ", " "},
                        {"*5f", "*5f"},
                        {"42", "42"},
                        {"printer", "printer"}};
  ExpectForms(forms, false);
}

TEST_F(MacSearchFormsTest, ThreeGroupsOfFourWithDotsBecomeSixPairs) {
  const Form forms[] = {
      {"001b.2c3d.4e5f", "00 1b 2c 3d 4e 5f"}, {"001B.2C3D.4E5F", "00 1B 2C 3D 4E 5F"},
      {"zzzz.????.####", "zz zz ?? ?? ## ##"},  // only the places of the dots count
      {"001b.2c3d.4e5 ", "00 1b 2c 3d 4e 5 "}, {"001b.2c3d.....", "00 1b 2c 3d .. .."},
      {"001b.2c-d.4e:5", "00 1b 2c -d 4e :5"}, {"..............", ".. .. .. .. .. .."},
      {"1.2..3.4..5.6.", "1. 2. 3. 4. 5. 6."},
  };
  ExpectForms(forms, false);
}

TEST_F(MacSearchFormsTest, AnyOtherTextWithADotIsAnIpAddressAndStays) {
  const Form forms[] = {
      {"192.0.2.1", "192.0.2.1"},
      {"192.0.2.*", "192.0.2.*"},
      {"*.2.*", "*.2.*"},
      {".", "."},
      {"192.168.100.10", "192.168.100.10"},  // 14 characters
      {"00.1b.2c.3d.4e", "00.1b.2c.3d.4e"},
      {"001b2.c3d4.e5f", "001b2.c3d4.e5f"},
      {"001b.2c3d:4e5f", "001b.2c3d:4e5f"},
      {"001b:2c3d.4e5f", "001b:2c3d.4e5f"},
      {"001b.2c3d4.e5f", "001b.2c3d4.e5f"},
      {"001b.2c3d.4e5", "001b.2c3d.4e5"},      // 13
      {"001b.2c3d.4e5ff", "001b.2c3d.4e5ff"},  // 15
      {" 001b.2c3d.4e5f", " 001b.2c3d.4e5f"},
      {"001b.2c3d.4e5*", "001b.2c3d.4e5*"},
      {"*01b.2c3d.4e5f", "*01b.2c3d.4e5f"},
      {"001b.2c3d.*", "001b.2c3d.*"},
      {"00:1b:2c:3d:4e:5f.", "00:1b:2c:3d:4e:5f."},
      {"00-1b.2c", "00-1b.2c"},
      {"::ffff:192.0.2.1", "::ffff:192.0.2.1"},
      {"192.0.2.1 ", "192.0.2.1 "},
  };
  ExpectForms(forms, true);
}

TEST_F(MacSearchFormsTest, EmptyValueBecomesAStarThatStandsForEveryMacAddress) {
  AddPort();
  AddMac();
  AddMac({{"MacAddr", "NULL"}, {"IpAddr", "'192.0.2.2'"}});
  for (const std::string value : {"", "*"}) {
    EXPECT_EQ(SearchMac(value), "*");
    EXPECT_EQ(RecNos(), std::vector<int>{7}) << value;
    EXPECT_EQ(Record().TableCriteria, "1 (1)") << value;
  }
  EXPECT_EQ(SearchMac("%"), "%");
  EXPECT_EQ(RecNos(), std::vector<int>{7});
  ExpectNoEvent();
}

TEST_F(MacSearchFormsTest, AllFormsFindOneAddressWhateverTheCase) {
  AddPort();
  AddMac({{"MacAddr", "'00 1B 2C 3D 4E 5F'"}, {"IpAddr", "'192.0.2.1'"}});
  for (const std::string value :
       {"00:1b:2c:3d:4e:5f", "00-1B-2C-3D-4E-5F", "001b.2C3d.4E5f", "00 1b 2c 3d 4e 5f", "00:1b*",
        "*:4e:5F", "*5f", "00?1b", "00_1b_2c_3d_4e_5f", "0[01] 1b*", "192.0.2.1", "192.*",
        "192.0.2.[1-5]", "_92.0.2.1"}) {
    const bool isFound = value != "00?1b";  // no wildcard in a select
    EXPECT_EQ(PortsWithMac(value), isFound ? std::vector<int>{7} : std::vector<int>{}) << value;
  }
  ExpectNoEvent();
}

TEST_F(MacSearchFormsTest, DashOfARangeBecomesABlankToo) {
  AddPort();
  AddMac({{"MacAddr", "'05 1B'"}});
  EXPECT_EQ(SearchMac("0[0-9] 1b"), "0[0 9] 1b");
  EXPECT_EQ(RecNos(), std::vector<int>{});
}

TEST_F(MacSearchFormsTest, PositionsCountBytesOfThePagesCharset) {
  struct Case {
    std::string charSet;
    std::string value;
    std::string searched;
  };
  const Case cases[] = {
      {"ISO-8859-1", "\xE9:5f", "\xE9:5f"},  // the second character
      {"UTF-8", "\xC3\xA9:5f", "\xC3\xA9 5f"},
      {"ISO-8859-1", "00\xE9\xE9.2c3d.4e5f", "00 \xE9\xE9 2c 3d 4e 5f"},
      {"UTF-8", "00\xC3\xA9.2c3d.4e5f", "00 \xC3\xA9 2c 3d 4e 5f"},
      {"UTF-8", "00\xC3\xA9\xC3\xA9.2c3d.4e5f", "00\xC3\xA9\xC3\xA9.2c3d.4e5f"},
  };
  for (const Case& row : cases) {
    house.settings.CharSet = row.charSet;
    EXPECT_EQ(SearchMac(row.value), row.searched) << row.charSet;
  }
  ExpectNoEvent();
}

TEST_F(MacSearchFormsTest, VeryLongValuesAreTaken) {
  constexpr std::size_t kLongest = 60'000;  // what a request may hold
  AddPort();
  const std::string address(1'500, 'a');
  AddMac({{"MacAddr", "'" + address + "'"}});
  EXPECT_EQ(PortsWithMac(address), std::vector<int>{7});
  EXPECT_EQ(PortsWithMac(address + "a"), std::vector<int>{});
  EXPECT_EQ(SearchMac(std::string(kLongest, ':')), std::string(kLongest, ' '));
  EXPECT_EQ(PortsWithMac(std::string(kLongest, '*')), std::vector<int>{7});
  ExpectNoEvent();
}

}  // namespace
}  // namespace quillon
