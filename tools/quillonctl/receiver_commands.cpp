// The rows of Settings_RepReceiver. Their numbers are their row ids.
#include "quillonctl/receiver_commands.h"

#include <fmt/format.h>

#include <utility>

#include "exit_codes.h"
#include "platform/failure.h"
#include "production/report_receivers.h"

namespace quillon {
namespace {

using Kind = OutputField::Kind;

constexpr const char* kTable = "Settings_RepReceiver";

SettingChange ByOption(const OutputFields& fields) {
  SettingChange values;
  for (const OutputField& field : fields) values[field.name] = field.value;
  return values;
}

// The receiver as he is shown, by option. Fails where there is nobody of that number.
SettingChange StoredReceiver(const SqliteFile& file, std::int64_t number) {
  SettingChange stored = ByOption(ShownRow(file, kTable, ReceiverFields(), number));
  if (!stored.empty()) return stored;
  throw Failure(
      fmt::format("there is no receiver {}; 'quillonctl receivers' lists those there are", number));
}

void RequireRoom(const SqliteFile& file) {
  if (file.Count("SELECT COUNT(*) FROM Settings_RepReceiver") < RepReceivers::kSize) return;
  throw Failure(fmt::format("there are {} receivers already; with one more nobody would get mail",
                            RepReceivers::kSize));
}

// Every field in a column of its own.
OutputTable WholeTable() {
  OutputTable table{{"number"}, {Kind::kNumber}, {}};
  for (const SettingField& field : ReceiverFields()) {
    table.columns.emplace_back(field.option);
    table.kinds.push_back(OutputKind(field));
  }
  return table;
}

std::vector<std::string> WholeRow(const std::string& number, const OutputFields& fields) {
  std::vector<std::string> row = {number};
  for (const OutputField& field : fields) row.push_back(field.value);
  return row;
}

// What fits a terminal: of several fields that are one thing a single column.
OutputTable ShortTable() {
  return {{"number", "name", "recipient", "schedule", "reports", "port", "attach", "include-url"},
          {Kind::kNumber, Kind::kText, Kind::kText, Kind::kText, Kind::kText, Kind::kText,
           Kind::kTruth, Kind::kTruth},
          {}};
}

std::string Reports(const SettingChange& receiver) {
  std::string reports;
  for (const char* option : {"report1", "report2", "report3", "report4", "report5"}) {
    const std::string& report = receiver.at(option);
    if (report == kNoReport) continue;
    reports.append(reports.empty() ? "" : ", ").append(report);
  }
  return reports;
}

std::vector<std::string> ShortRow(const std::string& number, const OutputFields& fields) {
  const SettingChange receiver = ByOption(fields);
  const auto& schedule = receiver.at("schedule");
  const bool isWeekly = schedule == "weekly";
  const bool hasPort = receiver.at("port-report") == "yes";
  return {number,
          receiver.at("name"),
          receiver.at("recipient"),
          isWeekly ? schedule + " " + receiver.at("week-day") : schedule,
          Reports(receiver),
          hasPort ? receiver.at("port-device") + "/" + receiver.at("port-interface") : "",
          receiver.at("attach"),
          receiver.at("include-url")};
}

}  // namespace

int ListReceivers(const std::string& directory, OutputForm form) {
  const bool isShort = form == OutputForm::kPlain;
  OutputTable table = isShort ? ShortTable() : WholeTable();
  const SqliteFile file = OpenSettings(directory);
  SqliteStatement stored = file.Prepare(
      fmt::format("SELECT rowid, {} FROM {} ORDER BY rowid", ColumnList(ReceiverFields()), kTable));
  while (stored.Step()) {
    const OutputFields fields = ShownFields(ReceiverFields(), stored, 1);
    table.rows.push_back(isShort ? ShortRow(stored.Text(0), fields)
                                 : WholeRow(stored.Text(0), fields));
  }
  PrintTable(table, form);
  return kExitDone;
}

int AddReceiver(const std::string& directory, const SettingChange& change) {
  const SettingChange ordinary = OrdinaryReceiver();
  if (!IsAccepted(ReceiverComplaints(ordinary, change))) return kExitFailed;
  SettingChange row = change;
  row.insert(ordinary.begin(), ordinary.end());
  const SqliteFile file = OpenSettings(directory);
  SqliteTransaction transaction(file);
  RequireRoom(file);
  StoreRow(file, kTable, ReceiverFields(), row);
  const std::int64_t number = file.Count("SELECT last_insert_rowid()");
  transaction.Commit();
  PrintLine(std::to_string(number));
  return kExitDone;
}

int ChangeReceiver(const std::string& directory, std::int64_t number, const SettingChange& change) {
  if (change.empty()) {
    Complain("no option says what is to change; see 'quillonctl receivers change --help'");
    return kExitWrongUsage;
  }
  const SqliteFile file = OpenSettings(directory);
  SqliteTransaction transaction(file);
  if (!IsAccepted(ReceiverComplaints(StoredReceiver(file, number), change))) return kExitFailed;
  StoreChange(file, kTable, ReceiverFields(), change, number);
  transaction.Commit();
  PrintLine(fmt::format("Receiver {} is changed", number));
  return kExitDone;
}

int RemoveReceiver(const std::string& directory, std::int64_t number) {
  const SqliteFile file = OpenSettings(directory);
  SqliteTransaction transaction(file);
  StoredReceiver(file, number);
  file.Prepare("DELETE FROM Settings_RepReceiver WHERE rowid = ?").Run(number);
  transaction.Commit();
  PrintLine(fmt::format("Receiver {} is removed", number));
  return kExitDone;
}

}  // namespace quillon
