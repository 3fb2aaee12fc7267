// The history of the switch ports: a rotation of day tables, and the sums of each day.
#pragma once

#include <string>

#include "import/import_context.h"

namespace quillon {

// Takes the first free row of VLAN_HistCtrl (see import/rotation.h), copies the day into its
// table and stamps it. Without a free row the day stays out of the day tables, and nothing is
// reported.
void SwitchStatsToHist(ImportContext& context);

// Copies the rows of VLAN whose InOctetsDate is of today into the day table, values unchanged.
// A failure leaves the rows before it; it is reported under the name with the table's behind it.
void SwitchStatsCopyToHist_(ImportContext& context, const std::string& table);

// Deletes the rows of VLAN_HistSum older than 1200 days, by the real clock.
void ClearSwitchHistSum(ImportContext& context);

// Appends a row to VLAN_HistSum: the sums over the access or trunk ports that were written today,
// in the units of VLAN, rounded to a 32-bit integer at each addition, ties to even. Ports counts
// all ports of the class. A sum beyond 32 bits is a failure, and the class gets no row.
void SwitchStatsSum(ImportContext& context, bool isTrunk);

}  // namespace quillon
