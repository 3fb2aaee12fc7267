// Which report a choice means, and the name of its page.
#include "production/report_choice.h"

#include <gtest/gtest.h>

#include <string>

#include "production/mail_choices.h"

namespace quillon {
namespace {

// The name of the page, "" for none.
std::string FileOf(const std::string& text) {
  const auto choice = ParseReportChoice(text);
  return choice ? choice->File() : "";
}

TEST(ReportChoice, EachWordIsOneReportOfAccessOrTrunkPorts) {
  for (const ChosenReport& report : kChosenReports) {
    for (const bool isTrunk : {false, true}) {
      const std::string text = (isTrunk ? "Trunk " : "Access ") + std::string(report.word);
      const std::string kind = isTrunk ? "trunk" : "access";
      const auto choice = ParseReportChoice(text);
      ASSERT_TRUE(choice) << text;
      EXPECT_EQ(choice->kind.isTrunk, isTrunk) << text;
      EXPECT_EQ(choice->kind.name, kind) << text;
      EXPECT_EQ(choice->metric == nullptr ? "" : choice->metric->sortField, report.field) << text;
      EXPECT_EQ(choice->File(), report.File(kind)) << text;
    }
  }
}

TEST(ReportChoice, TheNamesOfThePagesAreThoseOfTheSite) {
  EXPECT_EQ(FileOf("Access Summary"), "switch-access-port-summary.htm");
  EXPECT_EQ(FileOf("Trunk Summary"), "switch-trunk-port-summary.htm");
  EXPECT_EQ(FileOf("Access InVolume"), "switch-access-port-top10-involume.htm");
  EXPECT_EQ(FileOf("Trunk OutErrors"), "switch-trunk-port-top10-outerrors.htm");
}

TEST(ReportChoice, AccessCountsWhereverItStands) {
  for (const char* text : {"Access InErrors", "InErrors Access", "InErrorsAccess", "AccessInErrors",
                           "Top 10 Access Ports: InErrors", "xAccessx InErrors Trunk"}) {
    EXPECT_EQ(FileOf(text), "switch-access-port-top10-inerrors.htm") << text;
  }
}

TEST(ReportChoice, AllElseIsTrunk) {
  for (const char* text : {"InErrors", "Trunk InErrors", "access InErrors", "ACCESS InErrors",
                           "Acces InErrors", "Acc ess InErrors", " InErrors "}) {
    EXPECT_EQ(FileOf(text), "switch-trunk-port-top10-inerrors.htm") << text;
  }
}

TEST(ReportChoice, OfSeveralWordsTheFirstOfTheListCounts) {
  for (const ChosenReport& first : kChosenReports) {
    for (const ChosenReport* second = &first; second != std::end(kChosenReports); ++second) {
      const std::string behind = std::string("Access ") + first.word + " " + second->word;
      const std::string before = std::string(second->word) + first.word + " Access";
      EXPECT_EQ(FileOf(behind), first.File("access")) << behind;
      EXPECT_EQ(FileOf(before), first.File("access")) << before;
    }
  }
}

TEST(ReportChoice, TheWordsCountInsideOtherTexts) {
  EXPECT_EQ(FileOf("Top10InVolumeAccessPorts"), "switch-access-port-top10-involume.htm");
  EXPECT_EQ(FileOf("None InVolume"), "switch-trunk-port-top10-involume.htm");
  EXPECT_EQ(FileOf("(Summary)"), "switch-trunk-port-summary.htm");
}

TEST(ReportChoice, WithoutAWordThereIsNoReport) {
  for (const char* text : {"",
                           " ",
                           "None",
                           "none",
                           "Access",
                           "Trunk",
                           "Access Volume",
                           "Access involume",
                           "Access INVOLUME",
                           "Access Involume",
                           "Access In Volume",
                           "Access summary",
                           "Access SUMMARY",
                           "Access InBroadCast",
                           "Access InMultiCast",
                           "Access Errors",
                           "Access OutBroadcast",
                           "Access OutMulticast",
                           "switch-access-port-top10-involume.htm",
                           "InHCOctetsMb24H"}) {
    EXPECT_FALSE(ParseReportChoice(text)) << text;
  }
}

}  // namespace
}  // namespace quillon
