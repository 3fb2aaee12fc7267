// One row of SwitchTableRep out of a row of VLAN: names, metric texts, the address seen
// on the port. The order of filling is kept, since a null ends it where it stands.
#pragma once

#include <string>

#include "platform/database.h"
#include "queries/query_context.h"

namespace quillon {

// The port's names and states, from the fields of the same names.
void FillPort(const QueryContext& context, const Recordset& vlan, SwitchTableRow& row);

// The twelve metric texts of a port whose statistics are of the report day.
void FillMetrics(const QueryContext& context, const Recordset& vlan, SwitchTableRow& row);

// The same of a port that has no statistics of that day.
void FillNoMetrics(const QueryContext& context, SwitchTableRow& row);

// The first address that MAC has for the port; empty addresses and "-" where it has none.
void LookUpUser(const QueryContext& context, Connection& reports, SwitchTableRow& row);

// The line of field names of a dump, recNo to userLastSeen, tab-separated.
std::string SwitchRowHead();

// The row's values in the same order, tab-separated.
std::string SwitchRowValues(const SwitchTableRow& row);

}  // namespace quillon
