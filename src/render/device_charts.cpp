// The charts of one device: what their bands name, and which panels they can show.
#include "render/device_charts.h"

#include "render/chart_band.h"
#include "render/chart_body.h"
#include "service/error_exit.h"

namespace quillon {
namespace {

constexpr std::string_view kModule = "modHtml";
constexpr int kDeviceWord = 15;
constexpr int kPortWord = 16;
constexpr int kStorageWord = 68;

constexpr ChartKind<Hist45SwitchRecord> kPortKinds[] = {
    {"volume", &Hist45SwitchRecord::Volume, 100},
    {"broadcast", &Hist45SwitchRecord::Broadcast, 200},
    {"errors", &Hist45SwitchRecord::Errors, 300},
};
constexpr ChartKind<Hist45MemRecord> kMemoryKinds[] = {
    {"physical", &Hist45MemRecord::Physical, 100},
    {"virtual", &Hist45MemRecord::Virtual, 200},
};
constexpr int kDiskPopupBase = 100;

// The band of a device and one of its parts.
template <typename Record>
void DeviceBand(const RenderContext& context, const SlotRecords<Record>& records, long slot,
                int partWord, std::string Record::*part, const ChartWords& words,
                std::string& page) {
  ChartBand(
      {{"50px", context.LangWord(kDeviceWord) + ":", "190px", [&] { return records[slot].Device; }},
       {"50px", context.LangWord(partWord) + ":", "200px", [&] { return records[slot].*part; }}},
      words, page);
}

}  // namespace

void ChartHeader45_Switch(const RenderContext& context, ConnectionId slot, std::string_view title,
                          std::string_view leftWord, std::string_view rightWord,
                          std::string& chartHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartHeader45_Switch", [&] {
    DeviceBand(context, context.records.Hist45SwitchRep, slot, kPortWord, &Hist45SwitchRecord::Port,
               {title, leftWord, rightWord}, chartHtml);
  });
}

void ChartHeader45_Mem(const RenderContext& context, ConnectionId slot, std::string_view title,
                       std::string_view leftWord, std::string_view rightWord,
                       std::string& chartHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartHeader45_Mem", [&] {
    DeviceBand(context, context.records.Hist45MemRep, slot, kStorageWord, &Hist45MemRecord::Storage,
               {title, leftWord, rightWord}, chartHtml);
  });
}

void ChartHeader45_Disk(const RenderContext& context, ConnectionId slot, std::string_view title,
                        std::string_view leftWord, std::string_view rightWord,
                        std::string& chartHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartHeader45_Disk", [&] {
    DeviceBand(context, context.records.Hist45DiskRep, slot, kStorageWord,
               &Hist45DiskRecord::Storage, {title, leftWord, rightWord}, chartHtml);
  });
}

void ChartData45_Switch(const RenderContext& context, ConnectionId slot, std::string_view chartKind,
                        std::string& chartHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartData45_Switch", [&] {
    ChartBody(context,
              ChartOf<Hist45SwitchRecord>(kPortKinds, chartKind, context.records.Hist45SwitchRep,
                                          slot, &Hist45SwitchRecord::TrafficDate),
              chartHtml);
  });
}

void ChartData45_Mem(const RenderContext& context, ConnectionId slot, std::string_view chartKind,
                     std::string& chartHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartData45_Mem", [&] {
    ChartBody(context,
              ChartOf<Hist45MemRecord>(kMemoryKinds, chartKind, context.records.Hist45MemRep, slot,
                                       &Hist45MemRecord::StorageDate),
              chartHtml);
  });
}

void ChartData45_Disk(const RenderContext& context, ConnectionId slot, std::string& chartHtml) {
  ErrorExit(context.diagnostics, kModule, "ChartData45_Disk", [&] {
    const Hist45DiskRecord& record = context.records.Hist45DiskRep[slot];
    ChartBody(context,
              {record.Disk,
               kDiskPopupBase,
               {},
               [&](int position) { return record.StorageDate[position]; }},
              chartHtml);
  });
}

}  // namespace quillon
