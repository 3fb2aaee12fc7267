// The days that a chart shows, from yesterday back.
#pragma once

#include "platform/date_time.h"
#include "platform/one_based.h"
#include "queries/query_context.h"

namespace quillon {

class DaysBack {
 public:
  explicit DaysBack(const QueryContext& context) : context_(context) {}

  // Goes to the next older day; false behind the last of the 45.
  bool Next();

  // The place of the day in a record, 45 for yesterday.
  int Position() const { return Days<DateTime>::kSize + 1 - day_; }
  // The day itself, without a time.
  DateTime Wanted() const { return wanted_; }

 private:
  const QueryContext& context_;
  int day_ = 0;  // days before the report day
  DateTime wanted_;
};

}  // namespace quillon
