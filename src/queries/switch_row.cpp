// Port rows: the metric texts are made here, in one place for lists and searches.
#include "queries/switch_row.h"

#include "platform/number_text.h"
#include "queries/page_field.h"
#include "queries/rates.h"
#include "queries/record_fields.h"
#include "render/value_scaling.h"

namespace quillon {
namespace {

constexpr std::string_view kNoVlan = "-1";

// A volume in its short and its full form, whose rate is left out where `smallest` is small.
void VolumeTexts(const QueryContext& context, const std::string& value, const std::string& smallest,
                 std::string& shortForm, std::string& fullForm) {
  std::string text = value;
  ConvHCBytes(context.diagnostics, text, false);
  shortForm = text;
  text = value;
  ConvHCBytes(context.diagnostics, text, true);
  fullForm = text;
  if (const auto number = ParseNumber(value)) {
    fullForm += VolumeRate(context, *number, LeadingNumber(smallest), "### ##0");
  }
}

void CountTexts(const QueryContext& context, const std::string& value, const CountUnits& units,
                std::string& shortForm, std::string& fullForm) {
  shortForm = Trimmed(DigitPattern(value, "### ### ##0"));
  fullForm = CountText(context, value, units, "  ");
}

std::string SelectPortMac(std::int32_t recNo, std::int32_t ifIndex) {
  return "SELECT MacAddr, IpAddr, LastSeen FROM MAC"
         " WHERE RecNo=" +
         std::to_string(recNo) + " AND IfIndex=" + std::to_string(ifIndex);
}

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
  CountTexts(context, metric("InBroadCastPpm24H"), kPortPackets, row.inBroadCastPpm24H,
             row.inBroadCastPpm24HF);
  const std::string inMultiCast = metric("InMultiCastPpm24H");
  if (inMultiCast == "-1") {  // the device does not count them
    row.inMultiCastPpm24H = "-";
    row.inMultiCastPpm24HF = "-";
  } else {
    CountTexts(context, inMultiCast, kPortPackets, row.inMultiCastPpm24H, row.inMultiCastPpm24HF);
  }
  CountTexts(context, metric("InErrorsTot24H"), kPortErrors, row.inErrorsTot24H,
             row.inErrorsTot24HF);
  CountTexts(context, metric("OutErrorsTot24H"), kPortErrors, row.outErrorsTot24H,
             row.outErrorsTot24HF);
}

void FillNoMetrics(const QueryContext& context, SwitchTableRow& row) {
  for (std::string* volume : {&row.inHCOctetsMb24H, &row.inHCOctetsMb24HF, &row.outHCOctetsMb24H,
                              &row.outHCOctetsMb24HF}) {
    *volume = "0";
  }
  const std::string none = DigitPattern(0.0, "### ### ##0");  // its blanks stay here
  const auto setCount = [&](int unit, std::string& shortForm, std::string& fullForm) {
    shortForm = none;
    fullForm = none + " " + context.LangWord(unit);
  };
  setCount(kPortPackets.unit, row.inBroadCastPpm24H, row.inBroadCastPpm24HF);
  setCount(kPortPackets.unit, row.inMultiCastPpm24H, row.inMultiCastPpm24HF);
  setCount(kPortErrors.unit, row.inErrorsTot24H, row.inErrorsTot24HF);
  setCount(kPortErrors.unit, row.outErrorsTot24H, row.outErrorsTot24HF);
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
  return FieldNames(kSwitchFields);
}

std::string SwitchRowValues(const SwitchTableRow& row) {
  return FieldValues(kSwitchFields, row);
}

}  // namespace quillon
