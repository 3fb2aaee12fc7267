// All that the report queries may touch: they read databases, settings and words, write
// the per-connection records, and pause on the loop.
#pragma once

#include <string>
#include <string_view>

#include "platform/event_loop.h"
#include "queries/records/report_records.h"
#include "service/diagnostics.h"
#include "service/language_words.h"
#include "service/report_period.h"
#include "service/settings.h"

namespace quillon {

// The module under which the report queries report their failures.
inline constexpr std::string_view kQueryModule = "modSelectSql";

struct QueryContext {
  const Diagnostics& diagnostics;
  const Settings& settings;
  const Clock& clock;
  EventLoop& loop;
  const LangWords& words;
  const ReportPeriod& period;
  ReportRecords& records;

  const std::string& LangWord(int number) const { return words.LangWord[number]; }
};

}  // namespace quillon
