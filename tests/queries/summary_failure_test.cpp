// The ways in which both summaries fail and what their records hold then; their waits, in which
// other events run. What is of one of them alone is in switch_summary_failure_test and
// disk_summary_failure_test.
#include "queries/summary_fixture.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

template <typename Sums>
class SummaryFailureTest : public SummaryTest<Sums> {
 protected:
  using typename SummaryTest<Sums>::Column;
  using typename SummaryTest<Sums>::Lines;

  // Expects that a null in the column ends the walk at the field that it was to fill.
  void ExpectNullEndsTheWalkAt(const Column& broken) {
    const int newest = this->kNewest;
    this->ClearDays();
    this->house.ForgetEvents();
    this->FillRecord();
    this->AddDay(1);
    this->AddDay(2, {{broken.name, "NULL"}});
    this->AddDay(3);
    this->Query();
    this->ExpectFailure(broken.name);
    EXPECT_EQ(this->Bars(newest), Lines(this->kBars, "1"));
    bool filled = true;
    for (const Column& column : Sums::InOrder()) {
      const std::string raw = Sums::Ordinary().at(column.name);
      if (column.name == broken.name) filled = false;
      EXPECT_EQ(this->Value(column.name, newest), raw) << column.name;
      EXPECT_EQ(this->Value(column.name, newest - 1), filled ? raw : this->kBefore) << column.name;
    }
    EXPECT_EQ(this->Bars(newest - 1), Lines(this->kBars, this->kBefore));
    EXPECT_EQ((this->Record().*Sums::kDates)[newest - 1], MakeDateTime({2024, 4, 30}));
    this->ExpectOfBefore(newest - 2);
  }

  // Expects that no slot holds anything.
  void ExpectFreshRecords() {
    for (ConnectionId slot = 1; slot <= 20; ++slot) {
      const typename Sums::Record& record = this->Record(slot);
      EXPECT_EQ((record.*Sums::kDates)[this->kNewest], ZeroDate()) << slot;
      for (const auto panel : this->Panels()) {
        EXPECT_EQ((record.*panel).Head, "") << slot;
        EXPECT_EQ((record.*panel).Left[this->kNewest], "") << slot;
      }
    }
  }
};
TYPED_TEST_SUITE(SummaryFailureTest, BothSums, SumsName);

TYPED_TEST(SummaryFailureTest, NullEndsTheWalkAtItsColumn) {
  for (const auto& column : TypeParam::InOrder()) {
    SCOPED_TRACE(column.name);
    this->ExpectNullEndsTheWalkAt(column);
  }
}

TYPED_TEST(SummaryFailureTest, SlotOutsideOneToTwentyFails) {
  for (const bool hasRow : {false, true}) {
    if (hasRow) this->AddDay(1);
    for (const int slot : {0, 21, -1, 32767}) {
      this->house.ForgetEvents();
      TypeParam::Run(this->house.queries, static_cast<ConnectionId>(slot));
      this->ExpectFailure("position " + std::to_string(slot) + " ");
    }
  }
  this->ExpectFreshRecords();
}

TYPED_TEST(SummaryFailureTest, MissingDatabaseLeavesTheRecordAsItWas) {
  this->house.installation.Remove("History.mdb");
  this->FillRecord();
  this->Query();
  this->ExpectFailure("History.mdb");
  this->ExpectOfBefore(45);
  EXPECT_FALSE(this->house.installation.Exists("History.mdb"));
}

TYPED_TEST(SummaryFailureTest, MissingTableLeavesTheRecordAsItWas) {
  const std::string table = TypeParam::kTable;
  this->History("DROP TABLE " + table);
  this->FillRecord();
  this->Query();
  EXPECT_EQ(this->house.Events(), std::vector{std::string("1\t") + TypeParam::kProcedure +
                                              "\tHistory.mdb: no such table: " + table});
  this->ExpectOfBefore(45);
}

TYPED_TEST(SummaryFailureTest, FailureInTheWalkWaitsForItsEventAlone) {
  this->AddDay(1, {{TypeParam::kMark, "NULL"}});
  this->Query();
  EXPECT_EQ(this->house.clock.slept(), milliseconds(500));
}

template <typename Sums>
class SummaryWaitTest : public SummaryTest<Sums> {};
TYPED_TEST_SUITE(SummaryWaitTest, BothSums, SumsName);

TYPED_TEST(SummaryWaitTest, IsTenMillisecondsADay) {
  this->AddMarkedDays({1, 3});
  this->Query();
  EXPECT_EQ(this->house.clock.slept(), milliseconds(450));
  this->ClearDays();
  this->Query();
  EXPECT_EQ(this->house.clock.slept(), milliseconds(900));
}

TYPED_TEST(SummaryWaitTest, KeepsNothingOfTheDatabaseOpen) {
  const std::string path = this->house.installation.path() + "/History.mdb";
  this->AddMarkedDays({1, 2});
  bool isAlone = false;
  this->house.loop.Post([&] {
    isAlone = OtherWriter::IsAlone(path);
    this->ClearDays();
  });
  this->Query();
  EXPECT_TRUE(isAlone);
  this->ExpectMarkedDays({1, 2});
}

}  // namespace
}  // namespace quillon
