// Composing the status texts.
#include "service/socket_status.h"

#include <fmt/format.h>

namespace quillon {

std::string StatusTime(const ServiceContext& context) {
  const DateTime now = context.clock.Now();
  return FormatDate(now, context.settings.DatumFormat) + " " + FormatTime(now) + "\r\n";
}

std::string StartedStatus(const ServiceContext& context, std::string_view what,
                          const std::string& address, std::int32_t port) {
  return fmt::format("{}{}\r\nIP={}\r\nPort={}", StatusTime(context), what, address, port);
}

}  // namespace quillon
