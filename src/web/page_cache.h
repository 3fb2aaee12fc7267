// Finished pages as plain files: \WebReports\Cache\ for the site, \WebReports\Mail\ for
// what a mail attaches. A file's presence is the whole cache state. A stored page stops
// before its footer, so that charts can follow it.
#pragma once

#include <string>
#include <string_view>

#include "platform/listener.h"
#include "service/diagnostics.h"
#include "web/page_memory.h"

namespace quillon {

// True when the name is not empty and a file of it is in the cache. A name that is no
// plain file name is never cached.
bool IsCached(const Settings& settings, std::string_view fileName);

// IsCached and ReadFromCache at the price of one look at the file, for a page that is still the
// one that was read before. False, and nothing done, for any other.
bool TakeRemembered(const Settings& settings, const PageMemory& memory, std::string_view fileName,
                    std::string& text);

// text := the bytes of the cache file. A name that is not there gives an empty text and
// leaves an empty file behind, which counts as cached from then on. A failure is
// reported and leaves the text as it was. The connection id is not used.
void ReadFromCache(const Diagnostics& diagnostics, PageMemory& memory, ConnectionId id,
                   std::string_view fileName, std::string& text);

// Replaces the cache file by the text, in one move. A failure is reported and leaves
// neither the old file nor a new one. The connection id is not used.
void SaveToCache(const Diagnostics& diagnostics, ConnectionId id, std::string_view fileName,
                 std::string_view text);

// The same in the mail folder.
void SaveForMail(const Diagnostics& diagnostics, ConnectionId id, std::string_view fileName,
                 std::string_view text);

}  // namespace quillon
