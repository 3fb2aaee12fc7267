// The pages that a mail brings, as files of the mail folder: with the short head, and whole, so
// that they open by themselves. A page that is wanted twice is built twice.
#pragma once

#include "production/production_context.h"

namespace quillon {

// Builds the receiver's lists and summaries; each choice becomes the name of its page. One that
// names no report becomes "None".
void BuildChosenPages(ProductionContext& context, RepReceiverEntry& receiver);

// Builds the receiver's port page and sets PortRepFile: "None" where no port is wanted.
void BuildPortPage(ProductionContext& context, RepReceiverEntry& receiver);

}  // namespace quillon
