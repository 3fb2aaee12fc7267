// The search for disks and memories by the names of device and storage.
#pragma once

#include <string>

#include "platform/listener.h"
#include "queries/query_context.h"

namespace quillon {

// Fills DiskTableRep of the slot, 1 to 20, with the first storages of the newest day table, as
// many as it has rows, whose names match, of whatever class. In a pattern "*" stands for any run of
// characters, "?" for one, "#" for a digit, "[abc]" and "[a-f]" for one of a list, "[!a]" for one
// outside it; case does not count. The patterns are bytes of the pages' charset; an empty one
// becomes "*" in the caller's variable. `orderBy` is a word and a direction, "totalbytes-asc" or
// "trend30d-desc". The caller has set each recNo of the slot to 0. Without a table of that day
// nothing is touched, the patterns neither. A failure is reported; what was filled until then
// stays.
void SqlSearchDeviceDisk(QueryContext& context, ConnectionId slot, std::string& devPattern,
                         std::string& diskPattern, const std::string& orderBy);

}  // namespace quillon
