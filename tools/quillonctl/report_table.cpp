// Columns and rows. A wide terminal takes the columns for people side by side.
#include "quillonctl/report_table.h"

#include <span>

#include "queries/record_fields.h"

namespace quillon {
namespace {

using Kind = OutputField::Kind;

template <typename Row>
struct Column {
  RecordField<Row> field;  // its name is the head
  Kind kind;
};

constexpr Column<SwitchTableRow> kPortColumns[] = {
    {{"Device", &SwitchTableRow::device}, Kind::kText},
    {{"Port", &SwitchTableRow::ifDescr}, Kind::kText},
    {{"Alias", &SwitchTableRow::ifAlias}, Kind::kText},
    {{"In", &SwitchTableRow::inHCOctetsMb24H}, Kind::kNumber},
    {{"Out", &SwitchTableRow::outHCOctetsMb24H}, Kind::kNumber},
    {{"Bcast/min", &SwitchTableRow::inBroadCastPpm24H}, Kind::kNumber},
    {{"Mcast/min", &SwitchTableRow::inMultiCastPpm24H}, Kind::kNumber},
    {{"Err in", &SwitchTableRow::inErrorsTot24H}, Kind::kNumber},
    {{"Err out", &SwitchTableRow::outErrorsTot24H}, Kind::kNumber},
    {{"User IP", &SwitchTableRow::userIpAddr}, Kind::kText},
};

constexpr Column<SwitchTableRow> kAddressColumns[] = {
    {{"MAC", &SwitchTableRow::userMacAddr}, Kind::kText},
    {{"IP", &SwitchTableRow::userIpAddr}, Kind::kText},
    {{"Last seen", &SwitchTableRow::userLastSeen}, Kind::kText},
    {{"Device", &SwitchTableRow::device}, Kind::kText},
    {{"Port", &SwitchTableRow::ifDescr}, Kind::kText},
    {{"Alias", &SwitchTableRow::ifAlias}, Kind::kText},
    {{"VLAN", &SwitchTableRow::vlanID}, Kind::kNumber},
    {{"In", &SwitchTableRow::inHCOctetsMb24H}, Kind::kNumber},
    {{"Out", &SwitchTableRow::outHCOctetsMb24H}, Kind::kNumber},
};

constexpr Column<DiskTableRow> kDiskColumns[] = {
    {{"Device", &DiskTableRow::device}, Kind::kText},
    {{"Disk", &DiskTableRow::storDescr}, Kind::kText},
    {{"Total", &DiskTableRow::totalM}, Kind::kNumber},
    {{"Free", &DiskTableRow::freeM}, Kind::kNumber},
    {{"Used", &DiskTableRow::usedM}, Kind::kNumber},
    {{"Used %", &DiskTableRow::usedProc}, Kind::kNumber},
    {{"14 days", &DiskTableRow::trend14d}, Kind::kNumber},
    {{"30 days", &DiskTableRow::trend30d}, Kind::kNumber},
};

template <typename Row>
std::vector<std::string> Values(std::span<const Column<Row>> columns, const Row& row) {
  std::vector<std::string> values;
  for (const Column<Row>& column : columns) values.push_back(column.field.Value(row));
  return values;
}

template <typename Row>
OutputTable TableOf(const TableRows<Row>& rows, std::span<const Column<Row>> columns) {
  OutputTable table;
  for (const Column<Row>& column : columns) {
    table.columns.emplace_back(column.field.name);
    table.kinds.push_back(column.kind);
  }
  for (const Row& row : rows) {
    if (row.recNo != 0) table.rows.push_back(Values(columns, row));
  }
  return table;
}

// The figures are texts with units; only what the record has as a number is one.
template <typename Row>
OutputTable WholeTable(const TableRows<Row>& rows, std::span<const RecordField<Row>> fields) {
  std::vector<Column<Row>> columns;
  for (const RecordField<Row>& field : fields) {
    columns.push_back({field, field.number != nullptr ? Kind::kNumber : Kind::kText});
  }
  return TableOf<Row>(rows, columns);
}

}  // namespace

OutputTable WholeRows(const SwitchTableRecord& record) {
  return WholeTable<SwitchTableRow>(record.rows, kSwitchFields);
}

OutputTable WholeRows(const DiskTableRecord& record) {
  return WholeTable<DiskTableRow>(record.rows, kDiskFields);
}

OutputTable PortFigures(const SwitchTableRecord& record) {
  return TableOf<SwitchTableRow>(record.rows, kPortColumns);
}

OutputTable PortsOfAddresses(const SwitchTableRecord& record) {
  return TableOf<SwitchTableRow>(record.rows, kAddressColumns);
}

OutputTable DiskFigures(const DiskTableRecord& record) {
  return TableOf<DiskTableRow>(record.rows, kDiskColumns);
}

std::string ShownOfAll(const std::string& criteria) {
  constexpr std::string_view kBracket = " (";
  const std::size_t bracket = criteria.find(kBracket);
  if (bracket == std::string::npos) return criteria;
  const std::string all = criteria.substr(bracket + kBracket.size());
  return criteria.substr(0, bracket) + " of " + all.substr(0, all.find(')'));
}

}  // namespace quillon
