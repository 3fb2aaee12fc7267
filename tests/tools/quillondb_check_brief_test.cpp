// quillondb check: the short form for the log of a start, and damage of every sort without a
// failure.
#include <algorithm>

#include "quillondb/check/brief.h"
#include "tools/quillondb_check_fixture.h"

namespace quillon {
namespace {

using QuillondbCheckBrief = CheckedInstallation;

using Lines = std::vector<std::string>;

// So many findings about one thing.
Lines Findings(const std::string& subject, int count) {
  Lines findings;
  for (int i = 1; i <= count; ++i) findings.push_back(fmt::format("{}: {}", subject, i));
  return findings;
}

Lines Findings(int subjects) {
  Lines findings;
  for (int i = 1; i <= subjects; ++i) findings.push_back(fmt::format("{}: wrong", i));
  return findings;
}

Lines InBrief(const Lines& findings) {
  Lines brief;
  const TellFinding tell = [&](const std::string& line) { brief.push_back(line); };
  BriefTeller teller(tell);
  for (const std::string& finding : findings) teller.Take(finding);
  teller.End();
  return brief;
}

TEST(CheckBrief, LeavesNineFindingsAsTheyAre) {
  EXPECT_EQ(InBrief(Findings(9)), Findings(9));
  EXPECT_EQ(InBrief({}), Lines());
}

TEST(CheckBrief, TellsAFindingAsSoonAsItIsMade) {
  Lines brief;
  const TellFinding tell = [&](const std::string& line) { brief.push_back(line); };
  BriefTeller teller(tell);
  teller.Take("a: 1");
  EXPECT_EQ(brief, Lines{"a: 1"});
}

TEST(CheckBrief, TellsTwoOfEachThingAndHowManyThereAreBeside) {
  Lines findings = Findings("History.mdb", 90);
  findings.emplace_back("the port is in use");
  EXPECT_EQ(InBrief(findings), Lines({"History.mdb: 1", "History.mdb: 2", "the port is in use",
                                      "and 88 more; 'quillondb check' tells all"}));
}

TEST(CheckBrief, HasNineLinesAtMost) {
  const Lines brief = InBrief(Findings(30));
  ASSERT_EQ(brief.size(), 9U);
  EXPECT_EQ(brief.back(), "and 22 more; 'quillondb check' tells all");
}

TEST_F(QuillondbCheckBrief, EveryPartStandsDamageOfWhateverSort) {
  const char* const kPaths[] = {
      "Quillon.mdb",      "Reports.mdb", "History.mdb", "Morvane.ini", "WebReports/Language.ini",
      "WebReports/Cache", "Debug"};
  for (const char* path : kPaths) {
    fs::remove_all(home_ / path);
    EXPECT_FALSE(Check().empty()) << path << " is missing";
    fs::create_directories(home_ / path / "a folder");
    EXPECT_NO_THROW(Check()) << path << " is a folder";
    fs::remove_all(home_ / path);
    std::ofstream(home_ / path) << std::string("\xff\0\x1b[2J\n101\t\t1\n=\n", 16);
    EXPECT_NO_THROW(Check()) << path << " is rubbish";
    for (const std::string& finding : Check()) {
      EXPECT_EQ(finding.find('\x1b'), std::string::npos) << finding;
    }
  }
}

TEST_F(QuillondbCheckBrief, TheProgramIsBriefOnRequest) {
  Sql("Reports.mdb",
      "DROP INDEX VLAN_Port; DROP INDEX VLAN_Device; DROP INDEX MAC_Port; DROP TABLE HostDiskInfo");
  const Outcome brief = Run("check --brief {}");
  EXPECT_EQ(brief.status, 1);
  EXPECT_EQ(std::ranges::count(brief.out, '\n'), 3) << brief.out;
  EXPECT_TRUE(brief.out.ends_with("\nand 2 more; 'quillondb check' tells all\n")) << brief.out;
}

// Of the damage only a reading of the whole file tells.
TEST_F(QuillondbCheckBrief, LargeDatabasesAreNotReadWhole) {
  std::fstream file(home_ / "Reports.mdb", std::ios::in | std::ios::out | std::ios::binary);
  constexpr int kPlaceOfTheNumberOfFreePages = 36;
  file.seekp(kPlaceOfTheNumberOfFreePages);
  file.write("\0\0\0\5", 4);
  file.close();
  EXPECT_NE(Run("check --brief {}").out.find("Reports.mdb: damaged: "), std::string::npos);
  fs::resize_file(home_ / "Reports.mdb", 100'000'001);
  EXPECT_EQ(Run("check --brief {}").out.find("damaged"), std::string::npos);
  ExpectAmong("Reports.mdb: damaged: ");
}

TEST_F(QuillondbCheckBrief, OneThatCannotBeReadHidesNothingOfTheOthers) {
  std::ofstream(home_ / "Quillon.mdb") << "This has been a spreadsheet once, and a long one.";
  fs::remove_all(home_ / "Debug");
  ExpectAmong("Quillon.mdb: ");
  ExpectAmong("Debug: the folder is missing");
}

}  // namespace
}  // namespace quillon
