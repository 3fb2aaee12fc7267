// All that the report queries may touch: they read databases, settings and words, and
// write the per-connection records.
#pragma once

#include "queries/records/report_records.h"
#include "service/diagnostics.h"
#include "service/language_words.h"
#include "service/report_period.h"
#include "service/settings.h"

namespace quillon {

struct QueryContext {
  const Diagnostics& diagnostics;
  const Settings& settings;
  const Clock& clock;
  const LangWords& words;
  const ReportPeriod& period;
  ReportRecords& records;

  const std::string& LangWord(int number) const { return words.LangWord[number]; }
};

}  // namespace quillon
