// Day table, heads, rows and dump of the disk tables.
#include "queries/disk_table.h"

#include "queries/page_field.h"
#include "queries/record_fields.h"
#include "queries/report_table.h"
#include "render/value_scaling.h"
#include "service/report_day.h"

namespace quillon {
namespace {

std::string VolumeField(const QueryContext& context, const Recordset& disk, std::string_view name) {
  std::string text = PageField(context, disk, name);
  ConvHCBytes(context.diagnostics, text, true);
  return text;
}

// A growth shows its sign.
std::string TrendField(const QueryContext& context, const Recordset& disk, std::string_view name) {
  const bool grows = disk.Field(name).AsNumber() > 0;
  return (grows ? "+" : "") + PageField(context, disk, name) + " %";
}

}  // namespace

std::optional<std::string> FindDiskTable(const QueryContext& context, Connection& history) {
  const DateTime day = HistoryDay(ReportDay(context.settings, context.clock));
  Recordset control;
  control.Open("Disk_HistCtrl", history, CursorType::kStatic, LockType::kOptimistic);
  for (; !control.Eof(); control.MoveNext()) {
    if (control.Field("StorageDate").IsOfDay(day)) return control.Field("HistTable").AsText();
  }
  return std::nullopt;
}

const DiskSort* DiskSortByWord(std::string_view word) {
  for (const DiskSort& sort : kDiskSorts) {
    if (sort.word == word) return &sort;
  }
  return nullptr;
}

const DiskSort* DiskSortByColumn(std::string_view column) {
  for (const DiskSort& sort : kDiskSorts) {
    if (sort.column == column) return &sort;
  }
  return nullptr;
}

void SetDiskHead(const QueryContext& context, const DiskSort* sort, std::string_view direction,
                 DiskTableRecord& record) {
  if (sort == nullptr) return;
  record.TableHead = context.LangWord(direction == "ASC" ? sort->ascendingWord : sort->otherWord);
}

void FillDisk(const QueryContext& context, const Recordset& disk, DiskTableRow& row) {
  row.recNo = disk.Field("RecNo").AsLong();
  row.device = PageField(context, disk, "DevName");
  row.storDescr = PageField(context, disk, "StorDescr");
  row.totalM = VolumeField(context, disk, "TotalM");
  row.freeM = VolumeField(context, disk, "FreeM");
  row.usedM = VolumeField(context, disk, "UsedM");
  row.usedProc = PageField(context, disk, "UsedProc") + " %";
  row.trend14d = TrendField(context, disk, "Trend14d");
  row.trend30d = TrendField(context, disk, "Trend30d");
}

void DumpDiskTable(const QueryContext& context, const DiskTableRecord& record, DebugDump& dump) {
  const auto values = [](const DiskTableRow& row) { return FieldValues(kDiskFields, row); };
  DumpTable(context, record, FieldNames(kDiskFields), values, dump);
}

}  // namespace quillon
