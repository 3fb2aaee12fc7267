// The rules on receivers.
#include "quillondb/check/receivers.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "production/report_receivers.h"
#include "quillondb/check/findings.h"
#include "receiver_rules.h"

namespace quillon {
namespace {

// What is read of every row, and of those that want a port report.
constexpr std::string_view kAlwaysRead[] = {
    "Name",      "Recipient", "TimeSchedule", "Top10Rep1",    "Top10Rep2", "Top10Rep3",
    "Top10Rep4", "Top10Rep5", "PortRep",      "AttachReport", "IncludeUrl"};
constexpr std::string_view kReadWithPort[] = {"PortRepRecNo", "PortRepIfIndex", "PortRepDetails"};
constexpr std::string_view kChoices[] = {"Top10Rep1", "Top10Rep2", "Top10Rep3", "Top10Rep4",
                                         "Top10Rep5"};

class Receivers {
 public:
  Receivers(const SqliteFile& file, const std::string& place, std::vector<std::string>& findings)
      : file_(file), place_(place), findings_(findings) {}

  void CheckNumber() const {
    const std::int64_t rows = file_.Count("SELECT COUNT(*) FROM Settings_RepReceiver");
    if (rows <= RepReceivers::kSize) return;
    findings_.push_back(fmt::format(
        "{}Settings_RepReceiver has {} rows; beyond {} nobody gets mail, so delete some", place_,
        rows, RepReceivers::kSize));
  }

  void CheckNull(std::string_view column, std::string_view rows) const {
    const std::int64_t found = file_.Count(fmt::format(
        "SELECT COUNT(*) FROM Settings_RepReceiver WHERE {} IS NULL AND {}", column, rows));
    if (found == 0) return;
    findings_.push_back(
        fmt::format("{}{} in Settings_RepReceiver is null; nobody gets mail until it holds a"
                    " value, or its row is deleted",
                    place_, column));
  }

  // A line for each value of the column, among these rows, that `isRight` is false for.
  template <typename IsRight>
  void CheckTexts(std::string_view column, std::string_view rows, std::string_view advice,
                  IsRight&& isRight) const {
    SqliteStatement values =
        file_.Prepare(fmt::format("SELECT DISTINCT {0} COLLATE BINARY FROM Settings_RepReceiver "
                                  "WHERE {0} IS NOT NULL AND {1}",
                                  column, rows));
    std::vector<std::string> found;
    while (values.Step()) {
      const std::string text = values.Text(0);
      if (isRight(text)) continue;
      found.push_back(
          fmt::format("{}{} in Settings_RepReceiver is '{}'; {}", place_, column, text, advice));
    }
    AppendFirst(place_, found, findings_);
  }

 private:
  const SqliteFile& file_;
  const std::string& place_;
  std::vector<std::string>& findings_;
};

}  // namespace

void CheckReceivers(const SqliteFile& file, const std::string& place,
                    std::vector<std::string>& findings) {
  const Receivers receivers(file, place, findings);
  receivers.CheckNumber();
  for (const std::string_view column : kAlwaysRead) receivers.CheckNull(column, "TRUE");
  for (const std::string_view column : kReadWithPort) receivers.CheckNull(column, "PortRep");
  receivers.CheckNull("WeekDay", "TimeSchedule = 2");

  const std::string_view named = "Name <> ''";
  receivers.CheckTexts("Recipient", named, "no mail can go there; write one mail address",
                       IsMailAddress);
  receivers.CheckTexts("TimeSchedule", named,
                       "that mail never goes out; write 1 for daily, 2 for weekly, 3 for monthly",
                       [](const std::string& text) {
                         return std::ranges::find(kMailSchedules, text, &MailSchedule::number) !=
                                std::end(kMailSchedules);
                       });
  receivers.CheckTexts(
      "WeekDay", "TimeSchedule = 2",
      "the weekday of the weekly receiver before it counts; write Monday to Sunday",
      [](const std::string& text) { return WeekdayNumber(text) != 0; });
  for (const std::string_view column : kChoices) {
    receivers.CheckTexts(
        column, named, "no report is called that; write None, or a choice such as Access InVolume",
        IsReportChoice);
  }
}

}  // namespace quillon
