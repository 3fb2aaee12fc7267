// What belongs to one request. Each run of tcpServer_DataIn has one of its own, so a
// request that runs nested cannot share it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/listener.h"

namespace quillon {

struct Request {
  ConnectionId id = 0;          // the connection, and the slot of its records
  std::string Text;             // all that the one read gave: head and body together
  std::string httpQuery;        // the first line, without its line end
  std::string cacheFile;        // name of the cache file that belongs to it; empty if none
  std::string pageHtml;         // the page under construction, at the end the response
  std::string chartHtml;        // the chart part of a chart page
  std::int64_t startTick = 0;   // ms; set with DebugMode only
  bool tableFromCache = false;  // logged only
  bool chartFromCache = false;  // logged only
};

}  // namespace quillon
