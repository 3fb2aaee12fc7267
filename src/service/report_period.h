// The report period as display texts. The daily import writes them, page bands and
// debug dumps show them.
#pragma once

#include <string>

namespace quillon {

struct ReportPeriod {
  std::string ReportStart;
  std::string ReportEnd;
};

}  // namespace quillon
