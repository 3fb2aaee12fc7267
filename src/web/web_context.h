// All that the web server may touch.
#pragma once

#include <string>

#include "platform/listener.h"
#include "queries/query_context.h"
#include "render/render_context.h"
#include "web/page_memory.h"

namespace quillon {

struct WebContext {
  const Diagnostics& diagnostics;
  const Settings& settings;
  Clock& clock;
  Listener& tcpServer;
  RenderContext& render;
  QueryContext& queries;
  ReportRecords& records;
  PageMemory& pageMemory;
  const std::string& FavIconData;  // bytes of the icon, read at the start
};

}  // namespace quillon
