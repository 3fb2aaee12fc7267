// Reading the settings tables of Quillon.mdb into the settings.
#pragma once

#include <string>

#include "service/service_context.h"

namespace quillon {

// Reads the row of Settings_General, at the start: DebugMode and DatumFormat are set, and its
// SnmpcDir is returned. Fails where the database does.
std::string ReadGeneralSettings(Settings& settings);

// At the head of each hourly pass: SendAppEvents, DebugMode and DatumFormat anew. These three
// take effect within the hour; everything else needs a restart. A failure is reported and
// leaves those behind it as they were.
void RefreshSettings(ServiceContext& context);

}  // namespace quillon
