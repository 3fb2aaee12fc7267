// The connection logs of DebugMode: \Debug\WebConnection-<id>.txt with all that a
// connection says and gets, \Debug\WebConnections.txt with two blocks a request. Files
// are opened, written and closed within the step. The caller asks DebugMode.
#pragma once

#include <string>

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

void LogConnected(const WebContext& context, ConnectionId id);
void LogAllReset(const WebContext& context, ConnectionId id);
// Request and response go to both files.
void LogRequest(const WebContext& context, const Request& request);
void LogResponse(const WebContext& context, const Request& request);
void LogDisconnected(const WebContext& context, ConnectionId id, const std::string& description);
// Goes to \Debug\WebServices.txt.
void LogListenerError(const WebContext& context, int errorCode, const std::string& description);

}  // namespace quillon
