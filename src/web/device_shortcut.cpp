// From a device's number to its search.
#include "web/device_shortcut.h"

#include <string>
#include <string_view>
#include <utility>

#include "platform/number_text.h"
#include "queries/device_stats.h"
#include "web/text_search.h"

namespace quillon {

void TakeDeviceShortcut(WebContext& context, Request& request) {
  constexpr std::string_view kWords = "GET /DeviceId=";
  const long start = Position(request.httpQuery, kWords);
  const long end = Position(request.httpQuery, "HTTP");
  if (start == 0 || end == 0) return;
  const long number = start + static_cast<long>(kWords.size());
  const std::string device = Trimmed(Middle(request.httpQuery, number, end - number));
  if (!IsNumeric(device)) return;
  std::string search;
  CheckForStats(context.queries, TextToLong(device), search);
  if (!search.empty()) request.Text = std::move(search);
}

}  // namespace quillon
