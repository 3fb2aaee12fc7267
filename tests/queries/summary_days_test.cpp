// The days of both summaries: which row of the sums stands at which position. More of the ports'
// days is in switch_summary_days_test, more of the storages' in disk_summary_test.
#include "queries/summary_fixture.h"

namespace quillon {
namespace {

template <typename Sums>
class SummaryDaysTest : public SummaryTest<Sums> {
 protected:
  DateTime Date(int position) { return (this->Record().*Sums::kDates)[position]; }
};
TYPED_TEST_SUITE(SummaryDaysTest, BothSums, SumsName);

TYPED_TEST(SummaryDaysTest, EachDayStandsAtThePositionOfItsAge) {
  this->AddMarkedDaysUpTo(45);
  this->Query();
  std::map<int, std::string> marks;
  for (int position = 1; position <= 45; ++position)
    marks[position] = std::to_string(46 - position);
  this->ExpectDays(marks);
  EXPECT_EQ(DayText(this->Date(1)), "2024-03-18");
  this->ExpectDaysUpTo(MakeDateTime({2024, 5, 1}));
  this->ExpectNoEvent();
}

TYPED_TEST(SummaryDaysTest, RowOfTodayOrLaterHoldsTheWalkSoThatAllDaysAreDashes) {
  for (const int age : {0, -1, -366}) {
    SCOPED_TRACE(age);
    this->ClearDays();
    this->AddMarkedDaysUpTo(45);
    this->AddMarkedDays({age});
    this->Query();
    this->ExpectMarkedDays({});
    this->ExpectDaysUpTo(MakeDateTime({2024, 5, 1}));
  }
  this->ExpectNoEvent();
}

TYPED_TEST(SummaryDaysTest, RowWithoutADateIsOfNoDay) {
  this->AddMoment("NULL");
  this->Query();
  this->ExpectMarkedDays({});
  this->AddMarkedDays({1, 2});
  this->Query();
  this->ExpectMarkedDays({1, 2});
  this->ExpectNoEvent();
}

TYPED_TEST(SummaryDaysTest, OverriddenReportDateIsTheDay) {
  this->AddMoment("'2014-11-06 03:10:00'", {{TypeParam::kMark, "1"}});
  this->AddMoment("'2014-11-04 03:10:00'", {{TypeParam::kMark, "3"}});
  this->house.settings.txtRepDate = "2014-11-07";
  this->Query();
  this->ExpectMarkedDays({});
  this->ExpectDaysUpTo(MakeDateTime({2024, 5, 1}));
  this->house.settings.RepDateOverride = true;
  this->Query();
  this->ExpectDays({{45, "1"}, {43, "3"}});
  this->ExpectDaysUpTo(MakeDateTime({2014, 11, 6}));
  EXPECT_EQ(DayText(this->Date(1)), "2014-09-23");
}

}  // namespace
}  // namespace quillon
