// The texts by which the settings tables and the debug file tell the state of a socket.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "service/service_context.h"

namespace quillon {

inline constexpr const char* kNotStarted = "Not Started";

// "<date> <time>" in the display format, and the line end: how every other status begins.
std::string StatusTime(const ServiceContext& context);

// "<time>", "<what>", "IP=<address>", "Port=<port>", a line each, the last one without an end.
std::string StartedStatus(const ServiceContext& context, std::string_view what,
                          const std::string& address, std::int32_t port);

}  // namespace quillon
