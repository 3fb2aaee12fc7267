// All that the day's production may touch: it runs the report queries in a slot of the records,
// renders their pages, writes them into the cache and mail folders, and sends mails.
#pragma once

#include <functional>
#include <memory>

#include "platform/listener.h"
#include "platform/smtp.h"
#include "production/report_receivers.h"
#include "queries/query_context.h"
#include "render/render_context.h"

namespace quillon {

// The slot of the per-connection records in which all pages are built. It is not reserved: a
// connection of this number shares it.
inline constexpr ConnectionId BackgroundSlot = 15;

// How far a pre-generation is, in files of the cache.
struct PageCount {
  int stored = 0;
  int expected = 0;  // about; 0 while nobody watches
};

struct ProductionContext {
  const Diagnostics& diagnostics;
  const Settings& settings;
  const Clock& clock;
  EventLoop& loop;
  const Listener& tcpServer;  // whose address stands in the links of mails
  const RenderContext& render;
  QueryContext& queries;
  ReportRecords& records;
  RepReceivers& RepReceiver;
  std::function<std::unique_ptr<Smtp>()> newSmtp;  // called once for each mail
  PageCount pages = {};
};

}  // namespace quillon
