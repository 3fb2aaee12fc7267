// Reading the receivers.
#include "production/report_receivers.h"

#include <array>

#include "platform/database.h"

namespace quillon {
namespace {

// TimeSchedule. A mail of any other schedule is never due.
constexpr std::int16_t kDaily = 1;
constexpr std::int16_t kWeekly = 2;
constexpr std::int16_t kMonthly = 3;

// In the order of their numbers: Sunday is 1.
constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

bool IsDue(const Recordset& row, DateTime today, unsigned& weekday) {
  switch (row.Field("TimeSchedule").AsInteger16()) {
    case kDaily:
      return true;
    case kWeekly:
      if (const unsigned named = WeekdayNumber(row.Field("WeekDay").AsText()); named != 0) {
        weekday = named;
      }
      return WeekdayOf(today) + 1 == weekday;
    case kMonthly:
      return PartsOf(today).day == 1;
    default:
      return false;
  }
}

void TakeRow(const Recordset& row, DateTime today, unsigned& weekday, RepReceiverEntry& receiver) {
  receiver.Name = row.Field("Name").AsText();
  receiver.Recipient = row.Field("Recipient").AsText();
  receiver.SendToday = IsDue(row, today, weekday);
  for (int n = 1; n <= receiver.Top10Rep.kSize; ++n) {
    receiver.Top10Rep[n] = row.Field("Top10Rep" + std::to_string(n)).AsText();
  }
  receiver.PortRep = row.Field("PortRep").AsBoolean();
  if (receiver.PortRep) {
    receiver.PortRepRecNo = row.Field("PortRepRecNo").AsLong();
    receiver.PortRepIfIndex = row.Field("PortRepIfIndex").AsLong();
    receiver.PortRepDetails = row.Field("PortRepDetails").AsBoolean();
  }
  receiver.AttachReport = row.Field("AttachReport").AsBoolean();
  receiver.IncludeUrl = row.Field("IncludeUrl").AsBoolean();
}

}  // namespace

unsigned WeekdayNumber(std::string_view name) {
  for (unsigned i = 0; i < kWeekdays.size(); ++i) {
    if (kWeekdays[i] == name) return i + 1;
  }
  return 0;
}

void ReadRepReceivers(const Settings& settings, DateTime today, RepReceivers& receivers) {
  for (RepReceiverEntry& receiver : receivers) receiver.Name.clear();
  Connection settingsFile;
  settingsFile.Open(settings.ConnMain);
  Recordset rows;
  rows.Open("Settings_RepReceiver", settingsFile, CursorType::kStatic, LockType::kOptimistic);
  unsigned weekday = 0;  // that of the last weekly row, and none before the first
  for (int n = 1; !rows.Eof(); rows.MoveNext(), ++n) {
    TakeRow(rows, today, weekday, receivers[n]);
  }
}

}  // namespace quillon
