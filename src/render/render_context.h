// All that rendering may touch. Every rendering procedure takes it first and appends to
// a text that its caller owns; what was appended before a failure stays.
#pragma once

#include "platform/calendar_names.h"
#include "queries/records/report_records.h"
#include "service/diagnostics.h"
#include "service/language_words.h"
#include "service/report_period.h"
#include "service/settings.h"

namespace quillon {

struct RenderContext {
  const Diagnostics& diagnostics;
  const Settings& settings;
  const LangWords& words;
  const CalendarNames& calendar;
  const ReportPeriod& period;
  const ReportRecords& records;

  const std::string& LangWord(int number) const { return words.LangWord[number]; }
};

}  // namespace quillon
