// Rotation, copy and sums of the storages.
#include "import/disk_history.h"

#include <array>
#include <optional>

#include "import/day_copy.h"
#include "import/day_sums.h"
#include "import/disk_class.h"
#include "import/history_table.h"
#include "import/rotation.h"
#include "import/row_pauses.h"
#include "service/error_exit.h"
#include "service/report_day.h"

namespace quillon {
namespace {

// The sums of one class, as 32-bit floats at each step.
struct ClassSums {
  DiskClass type;
  std::string_view totalField;
  std::string_view usedField;
  std::string_view countField;
  float totalM = 0;
  float usedM = 0;
  std::int16_t count = 0;
};

using DiskSums = std::array<ClassSums, 4>;

// In the order of the fields of a row of sums.
DiskSums NoSums() {
  return {{{DiskClass::kWindowsDisk, "TotalMWindows", "UsedMWindows", "NumWindows"},
           {DiskClass::kUnixDisk, "TotalMUnix", "UsedMUnix", "NumUnix"},
           {DiskClass::kPhysicalMemory, "TotalMPhysical", "UsedMPhysical", "NumPhysical"},
           {DiskClass::kVirtualMemory, "TotalMVirtual", "UsedMVirtual", "NumVirtual"}}};
}

void CopyStorage(const Recordset& storage, Recordset& day) {
  const float freeM = storage.Field("FreeRawM").AsSingle();
  const float usedM = storage.Field("UsedRawM").AsSingle();
  const float totalM = PlusSingle(freeM, usedM, "FreeRawM and UsedRawM");
  if (totalM <= 0) return;  // what has no size has no share in use
  day.AddNew();
  const Value storDescr = storage.Field("StorDescr");
  day.SetField("RecNo", storage.Field("RecNo"));
  day.SetField("DevName", storage.Field("DevName"));
  day.SetField("StorDescr", storDescr);
  day.SetField("Type", Value::Integer(static_cast<std::int64_t>(ClassOf(storDescr))));
  day.SetField("TotalM", Value::Single(totalM));
  day.SetField("UsedM", Value::Single(usedM));
  day.SetField("FreeM", Value::Single(freeM));
  day.SetField("UsedProc", storage.Field("UsedProc"));
  day.SetField("Trend14d", storage.Field("UsedProc14Trend"));
  day.SetField("Trend30d", storage.Field("UsedProc30Trend"));
  day.Update();
}

// The table of the day; nothing where the day was not copied.
std::optional<std::string> DayTable(ImportContext& context) {
  const DateTime day = HistoryDay(ReportDay(context.settings, context.clock));
  HistoryTable history(context, "Disk_HistCtrl");
  Recordset& control = history.rows;
  for (; !control.Eof(); control.MoveNext()) {
    if (control.Field("StorageDate").IsOfDay(day)) return control.Field("HistTable").AsText();
  }
  return std::nullopt;
}

void AddStorage(const Recordset& storage, DiskSums& sums) {
  const Value type = storage.Field("Type");
  if (type.type() != Value::Type::kInteger) return;
  for (ClassSums& sum : sums) {
    if (type.integer() != static_cast<std::int64_t>(sum.type)) continue;
    sum.totalM = PlusSingle(sum.totalM, storage.Field("TotalM").AsSingle(), sum.totalField);
    sum.usedM = PlusSingle(sum.usedM, storage.Field("UsedM").AsSingle(), sum.usedField);
    sum.count = PlusOne(sum.count, sum.countField);
  }
}

// The sums of the day; nothing where the day was not copied.
std::optional<DiskSums> SumStorages(ImportContext& context) {
  const auto table = DayTable(context);
  if (!table) return std::nullopt;
  HistoryTable history(context, *table);
  Recordset& storages = history.rows;
  DiskSums sums = NoSums();
  RowPauses pauses(context.loop);
  for (; !storages.Eof(); storages.MoveNext()) {
    AddStorage(storages, sums);
    pauses.RowDone();
  }
  return sums;
}

}  // namespace

void DiskStatsToHist(ImportContext& context) {
  ErrorExit(context.diagnostics, "modImport", "DiskStatsToHist", [&] {
    FillFreeTable(context, {"Disk_HistCtrl", "StorageDate", DiskStatsCopyToHist_});
  });
}

void DiskStatsCopyToHist_(ImportContext& context, const std::string& table) {
  const std::string name = NameWithTable(context, "DiskStatsCopyToHist_", table);
  ErrorExit(context.diagnostics, "modImport", name, [&] {
    CopyToday(context, {"HostDiskInfo", "LastUpdate"}, table, CopyStorage);
  });
}

void ClearDiskHistSum(ImportContext& context) {
  ErrorExit(context.diagnostics, "modImport", "ClearDiskHistSum",
            [&] { TrimSums(context, "Disk_HistSum", "StorageDate"); });
}

void DiskStatsSum(ImportContext& context) {
  ErrorExit(context.diagnostics, "modImport", "DiskStatsSum", [&] {
    const auto sums = SumStorages(context);
    if (!sums) return;
    SumFields fields;
    for (const ClassSums& sum : *sums) {
      fields.emplace_back(sum.totalField, Value::Single(sum.totalM));
      fields.emplace_back(sum.usedField, Value::Single(sum.usedM));
    }
    for (const ClassSums& sum : *sums) {
      fields.emplace_back(sum.countField, Value::Integer(sum.count));
    }
    AppendSums(context, "Disk_HistSum", "StorageDate", fields);
  });
}

}  // namespace quillon
