// A link that names a device by its number alone.
#pragma once

#include "web/request.h"
#include "web/web_context.h"

namespace quillon {

// A request for "/DeviceId=<number>" becomes the search that shows the device; Text stays where the
// text is no number and where no device has it. A number beyond 32 bits fails.
void TakeDeviceShortcut(WebContext& context, Request& request);

}  // namespace quillon
