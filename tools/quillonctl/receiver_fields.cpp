// The fields of Settings_RepReceiver and their rules.
#include "quillonctl/receiver_fields.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <optional>

#include "quillonctl/settings_rules.h"
#include "receiver_rules.h"

namespace quillon {
namespace {

using Kind = SettingField::Kind;

// Rules of the options.

std::string Name(const std::string& text) {
  return text.empty() ? "it is empty; who has no name gets no mail" : "";
}

std::string Schedule(const std::string& text) {
  const bool isKnown =
      std::ranges::find(kMailSchedules, text, &MailSchedule::word) != std::end(kMailSchedules);
  return isKnown ? "" : "'" + text + "' is none of daily, weekly, monthly";
}

std::string WeekDay(const std::string& text) {
  return WeekdayNumber(text) != 0 ? "" : "'" + text + "' is no weekday; write Monday to Sunday";
}

// Stricter than what the service understands: it takes every list whose ports it cannot tell for
// one of trunk ports, and so a slip of the pen would give another report than the one meant.
std::string Report(const std::string& text) {
  const std::optional<ReportChoice> choice = ParseReportChoice(text);
  if (text == kNoReport || (choice && choice->Name() == text)) return {};
  return "no report is called '" + text +
         "'; write None, or Access or Trunk and one of InVolume, OutVolume, InBroadcast, "
         "InMulticast, InErrors, OutErrors, Summary";
}

// Of a device or an interface. They are counted from 1; the 0 of a new row stands for none.
std::string PortNumber(const std::string& text) {
  return rules::Number(text, 1, std::numeric_limits<std::int32_t>::max());
}

// How the schedule is stored and shown: its number, its word. What is no schedule stays as it is.

std::string ScheduleNumber(const std::string& word) {
  const auto* const known = std::ranges::find(kMailSchedules, word, &MailSchedule::word);
  return known == std::end(kMailSchedules) ? word : std::string(known->number);
}

std::string ScheduleWord(const std::string& number) {
  const auto* const known = std::ranges::find(kMailSchedules, number, &MailSchedule::number);
  return known == std::end(kMailSchedules) ? number : std::string(known->word);
}

// What only several fields together tell.

template <std::size_t count>
bool Touches(const SettingChange& change, const std::array<const char*, count>& options) {
  return std::ranges::any_of(options, [&](const char* option) { return change.contains(option); });
}

void JudgeWeekDay(const SettingChange& row, const SettingChange& change,
                  std::vector<std::string>& complaints) {
  if (!Touches(change, std::array{"schedule", "week-day"})) return;
  if (row.at("schedule") != "weekly" || WeekdayNumber(row.at("week-day")) != 0) return;
  complaints.emplace_back("--week-day: a weekly mail needs it; write Monday to Sunday");
}

void JudgePort(const SettingChange& row, const SettingChange& change,
               std::vector<std::string>& complaints) {
  if (!Touches(change,
               std::array{"port-report", "port-device", "port-interface", "port-details"}) ||
      row.at("port-report") != "yes") {
    return;
  }
  for (const char* option : {"port-device", "port-interface"}) {
    if (PortNumber(row.at(option)).empty()) continue;
    complaints.push_back(fmt::format("--{}: the report of a port needs it", option));
  }
  if (row.at("port-details").empty()) {
    complaints.emplace_back("--port-details: the report of a port needs it; write yes or no");
  }
}

void JudgeLinks(const SettingChange& row, const SettingChange& change,
                std::vector<std::string>& complaints) {
  if (!Touches(change, std::array{"attach", "include-url"})) return;
  if (row.at("include-url") != "yes" || row.at("attach") == "yes") return;
  complaints.emplace_back("--include-url: there are links to attached pages alone; --attach yes");
}

}  // namespace

const SettingFieldList& ReceiverFields() {
  static const SettingFieldList kFields = {
      {"name", "Name", Kind::kText, "Name beside the address", Name},
      {"recipient", "Recipient", Kind::kText, "Mail address", rules::MailAddress},
      {"schedule", "TimeSchedule", Kind::kNumber, "daily, weekly or monthly (on the first)",
       Schedule, ScheduleNumber, ScheduleWord},
      {"week-day", "WeekDay", Kind::kText, "Day of a weekly mail, Monday to Sunday", WeekDay},
      {"report1", "Top10Rep1", Kind::kText, "First list: None, or such as \"Access InVolume\"",
       Report},
      {"report2", "Top10Rep2", Kind::kText, "Second list", Report},
      {"report3", "Top10Rep3", Kind::kText, "Third list", Report},
      {"report4", "Top10Rep4", Kind::kText, "Fourth list", Report},
      {"report5", "Top10Rep5", Kind::kText, "Fifth list", Report},
      {"port-report", "PortRep", Kind::kTruth, "A report of one port as well", nullptr},
      {"port-device", "PortRepRecNo", Kind::kNumber, "Record number of that port's device",
       PortNumber},
      {"port-interface", "PortRepIfIndex", Kind::kNumber, "Interface index of that port",
       PortNumber},
      {"port-details", "PortRepDetails", Kind::kTruth, "The port's table above its charts",
       nullptr},
      {"attach", "AttachReport", Kind::kTruth, "The pages as attachments", nullptr},
      {"include-url", "IncludeUrl", Kind::kTruth, "Links to the attached pages", nullptr},
  };
  return kFields;
}

SettingChange OrdinaryReceiver() {
  return {{"schedule", "daily"},   {"week-day", "Monday"}, {"report1", "None"},
          {"report2", "None"},     {"report3", "None"},    {"report4", "None"},
          {"report5", "None"},     {"port-report", "no"},  {"port-device", "0"},
          {"port-interface", "0"}, {"port-details", "no"}, {"attach", "yes"},
          {"include-url", "no"}};
}

std::vector<std::string> ReceiverComplaints(const SettingChange& before,
                                            const SettingChange& change) {
  std::vector<std::string> complaints = Complaints(ReceiverFields(), change);
  if (!complaints.empty()) return complaints;
  SettingChange row = change;
  row.insert(before.begin(), before.end());
  JudgeWeekDay(row, change, complaints);
  JudgePort(row, change, complaints);
  JudgeLinks(row, change, complaints);
  return complaints;
}

}  // namespace quillon
