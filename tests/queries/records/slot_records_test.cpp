// Records that are made when a slot is first used.
#include "queries/records/slot_records.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "queries/records/hist45_switch.h"

namespace quillon {
namespace {

TEST(SlotRecords, RecordKeepsWhatWasWrittenAndItsPlace) {
  SlotRecords<Hist45SwitchRecord> records;
  Hist45SwitchRecord& first = records[1];
  first.Device = "Core";
  records[20].Device = "Edge";
  EXPECT_EQ("Core", records[1].Device);
  EXPECT_EQ(&first, &records[1]);
  EXPECT_EQ("Core", std::as_const(records)[1].Device);
  EXPECT_EQ("Edge", std::as_const(records)[20].Device);
}

TEST(SlotRecords, SlotThatNobodyUsedReadsLikeAFreshRecord) {
  const SlotRecords<Hist45SwitchRecord> records;
  EXPECT_EQ("", records[3].Device);
  EXPECT_EQ("", records[3].Volume.LeftBar[45]);
  EXPECT_EQ("1899-12-30", DayText(records[3].TrafficDate[1]));
}

TEST(SlotRecords, SlotOutsideOf1To20Fails) {
  SlotRecords<Hist45SwitchRecord> records;
  for (const long slot : {-1L, 0L, 21L, 32767L}) {
    EXPECT_THROW(records[slot], IndexFailure) << slot;
    EXPECT_THROW(std::as_const(records)[slot], IndexFailure) << slot;
  }
}

}  // namespace
}  // namespace quillon
