// Port rows: the metric texts are made here, in one place for lists and searches.
#include "queries/switch_row.h"

#include "platform/number_text.h"
#include "platform/text_encoding.h"
#include "render/value_scaling.h"

namespace quillon {
namespace {

constexpr std::string_view kNoVlan = "-1";

// Numbers of the unit words in the language file.
constexpr int kPerDay = 38;
constexpr int kPerMinute = 39;
constexpr int kPerSecond = 40;
constexpr int kMegabit = 41;
constexpr int kKilobit = 44;
constexpr int kGigabit = 45;

// A field of the database as text of the page.
std::string PageField(const QueryContext& context, const Recordset& rows, std::string_view name) {
  return PageText(rows.Field(name).AsText(), context.settings.CharSet);
}

// "  (<value> <unit>)" behind a figure.
std::string Bracket(double value, const std::string& unit) {
  return "  (" + Trimmed(DigitPattern(RoundHalfEven(value), "### ##0")) + " " + unit + ")";
}

// The mean rate of a day's volume in megabytes: 10,800 of them are one megabit a second.
// `smallest` is the volume that the last test looks at.
std::string RatePart(const QueryContext& context, const std::string& volume,
                     const std::string& smallest) {
  constexpr double kSecondsPerDay = 86400;
  constexpr double kGigabitVolume = 108'000'000;
  constexpr double kMegabitVolume = 10'800;
  constexpr double kLeastVolume = 10;
  const auto number = ParseNumber(volume);
  if (!number) return "";
  if (*number > kGigabitVolume) {
    return Bracket(*number / 10'800'000, context.LangWord(kGigabit));
  }
  if (*number > kMegabitVolume) {
    return Bracket(*number * 8 / kSecondsPerDay, context.LangWord(kMegabit));
  }
  if (LeadingNumber(smallest) > kLeastVolume) {
    return Bracket(*number * 8 * 1000 / kSecondsPerDay, context.LangWord(kKilobit));
  }
  return "";
}

// A volume in its short and its full form. `smallest` as in RatePart.
void VolumeTexts(const QueryContext& context, const std::string& value, const std::string& smallest,
                 std::string& shortForm, std::string& fullForm) {
  std::string text = value;
  ConvHCBytes(context.diagnostics, text, false);
  shortForm = text;
  text = value;
  ConvHCBytes(context.diagnostics, text, true);
  fullForm = text + RatePart(context, value, smallest);
}

// A count with its unit, and in brackets its rate in the next smaller unit of time,
// where the count is above what one makes of it.
struct CountUnits {
  int unit;            // word of the count's unit
  int rateUnit;        // word of the rate's unit
  double perRateUnit;  // how many of the smaller unit make one of the unit
};

constexpr CountUnits kPacketUnits = {kPerMinute, kPerSecond, 60};
constexpr CountUnits kErrorUnits = {kPerDay, kPerMinute, 1440};

void CountTexts(const QueryContext& context, const std::string& value, const CountUnits& units,
                std::string& shortForm, std::string& fullForm) {
  shortForm = Trimmed(DigitPattern(value, "### ### ##0"));
  fullForm = shortForm + " " + context.LangWord(units.unit);
  const auto number = ParseNumber(value);
  if (!number || *number <= units.perRateUnit) return;
  fullForm += Bracket(*number / units.perRateUnit, context.LangWord(units.rateUnit));
}

std::string SelectPortMac(std::int32_t recNo, std::int32_t ifIndex) {
  return "SELECT MacAddr, IpAddr, LastSeen FROM MAC"
         " WHERE RecNo=" +
         std::to_string(recNo) + " AND IfIndex=" + std::to_string(ifIndex);
}

// The fields of a row in record order, as the dumps show them.
struct DumpField {
  std::string_view name;
  std::string SwitchTableRow::*text = nullptr;
  std::int32_t SwitchTableRow::*number = nullptr;
};

constexpr DumpField kDumpFields[] = {
    {"recNo", nullptr, &SwitchTableRow::recNo},
    {"device", &SwitchTableRow::device},
    {"ipAddr", &SwitchTableRow::ipAddr},
    {"vlanID", &SwitchTableRow::vlanID},
    {"ifIndex", nullptr, &SwitchTableRow::ifIndex},
    {"ifDescr", &SwitchTableRow::ifDescr},
    {"ifSpeed", &SwitchTableRow::ifSpeed},
    {"ifAlias", &SwitchTableRow::ifAlias},
    {"ifAdmin", &SwitchTableRow::ifAdmin},
    {"ifOper", &SwitchTableRow::ifOper},
    {"inHCOctetsMb24H", &SwitchTableRow::inHCOctetsMb24H},
    {"inHCOctetsMb24HF", &SwitchTableRow::inHCOctetsMb24HF},
    {"outHCOctetsMb24H", &SwitchTableRow::outHCOctetsMb24H},
    {"outHCOctetsMb24HF", &SwitchTableRow::outHCOctetsMb24HF},
    {"inBroadCastPpm24H", &SwitchTableRow::inBroadCastPpm24H},
    {"inBroadCastPpm24HF", &SwitchTableRow::inBroadCastPpm24HF},
    {"inMultiCastPpm24H", &SwitchTableRow::inMultiCastPpm24H},
    {"inMultiCastPpm24HF", &SwitchTableRow::inMultiCastPpm24HF},
    {"inErrorsTot24H", &SwitchTableRow::inErrorsTot24H},
    {"inErrorsTot24HF", &SwitchTableRow::inErrorsTot24HF},
    {"outErrorsTot24H", &SwitchTableRow::outErrorsTot24H},
    {"outErrorsTot24HF", &SwitchTableRow::outErrorsTot24HF},
    {"userMacAddr", &SwitchTableRow::userMacAddr},
    {"userIpAddr", &SwitchTableRow::userIpAddr},
    {"userLastSeen", &SwitchTableRow::userLastSeen},
};

}  // namespace

void FillPort(const QueryContext& context, const Recordset& vlan, SwitchTableRow& row) {
  row.recNo = vlan.Field("RecNo").AsLong();
  row.device = PageField(context, vlan, "DevName");
  row.ipAddr = PageField(context, vlan, "IpAddr");
  row.ifIndex = vlan.Field("IfIndex").AsLong();
  row.ifDescr = PageField(context, vlan, "IfDescr");
  row.ifSpeed = PageField(context, vlan, "IfSpeed");
  row.ifAlias = PageField(context, vlan, "IfAlias");
  row.ifAdmin = PageField(context, vlan, "IfAdmin");
  row.ifOper = PageField(context, vlan, "IfOper");
  const std::string vlanID = PageField(context, vlan, "VlanID");
  row.vlanID = vlanID == kNoVlan ? "-" : vlanID;
}

void FillMetrics(const QueryContext& context, const Recordset& vlan, SwitchTableRow& row) {
  const auto metric = [&](std::string_view name) { return PageField(context, vlan, name); };
  const std::string inVolume = metric("InHCOctetsMb24H");
  VolumeTexts(context, inVolume, inVolume, row.inHCOctetsMb24H, row.inHCOctetsMb24HF);
  // The outgoing volume shows its rate by the incoming one: a port with little traffic in
  // and some out shows none.
  VolumeTexts(context, metric("OutHCOctetsMb24H"), inVolume, row.outHCOctetsMb24H,
              row.outHCOctetsMb24HF);
  CountTexts(context, metric("InBroadCastPpm24H"), kPacketUnits, row.inBroadCastPpm24H,
             row.inBroadCastPpm24HF);
  const std::string inMultiCast = metric("InMultiCastPpm24H");
  if (inMultiCast == "-1") {  // the device does not count them
    row.inMultiCastPpm24H = "-";
    row.inMultiCastPpm24HF = "-";
  } else {
    CountTexts(context, inMultiCast, kPacketUnits, row.inMultiCastPpm24H, row.inMultiCastPpm24HF);
  }
  CountTexts(context, metric("InErrorsTot24H"), kErrorUnits, row.inErrorsTot24H,
             row.inErrorsTot24HF);
  CountTexts(context, metric("OutErrorsTot24H"), kErrorUnits, row.outErrorsTot24H,
             row.outErrorsTot24HF);
}

void LookUpUser(const QueryContext& context, Connection& reports, SwitchTableRow& row) {
  const Recordset mac = reports.Execute(SelectPortMac(row.recNo, row.ifIndex));
  if (mac.Eof()) {
    row.userMacAddr.clear();
    row.userIpAddr.clear();
    row.userLastSeen = "-";
    return;
  }
  row.userMacAddr = PageField(context, mac, "MacAddr");
  row.userIpAddr = PageField(context, mac, "IpAddr");
  row.userLastSeen = FormatDate(mac.Field("LastSeen").AsDate(), context.settings.DatumFormat);
}

std::string SwitchRowHead() {
  std::string line;
  for (const DumpField& field : kDumpFields) {
    if (!line.empty()) line += '\t';
    line += field.name;
  }
  return line;
}

std::string SwitchRowValues(const SwitchTableRow& row) {
  std::string line;
  for (const DumpField& field : kDumpFields) {
    if (&field != kDumpFields) line += '\t';
    line += field.text != nullptr ? row.*field.text : std::to_string(row.*field.number);
  }
  return line;
}

}  // namespace quillon
