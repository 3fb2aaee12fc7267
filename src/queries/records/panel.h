// One chart of 45 days in a record: its words, its axis, and two series of figures. All texts
// are finished for display, as bytes of the pages' charset; a day without data is "-".
#pragma once

#include <string>

#include "platform/date_time.h"
#include "platform/one_based.h"

namespace quillon {

struct Panel {
  std::string Report;     // name of the report; in the disk summary alone
  std::string Head;       // title
  std::string NameLeft;   // legend of the left series
  std::string NameRight;  // legend of the right series
  std::string YaxisMax;   // a number until the bars are made of it, then the label of the top
  std::string YaxisHalf;  // label of the middle
  Days<std::string> Left;
  Days<std::string> LeftBar;  // whole percent of the axis top, at least 1 for a figure above 0
  Days<std::string> Right;
  Days<std::string> RightBar;
  Days<std::string> Proc;  // used share, " (41%)" or ""; of storages alone
  Days<std::string> Num;   // number of storages in the sums; in the disk summary alone
};

// The dates of a record that no report has written yet.
inline Days<DateTime> DatesNeverSet() {
  Days<DateTime> dates;
  dates.Fill(ZeroDate());
  return dates;
}

}  // namespace quillon
