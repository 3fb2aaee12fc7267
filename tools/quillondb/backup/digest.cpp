// GLib's checksum: the mails bring that library along already, so no other one is loaded for it.
// (The engine of the databases has a SHA-3 in its shell alone.)
#include "quillondb/backup/digest.h"

#include <glib.h>

#include <memory>

#include "quillondb/backup/files.h"

namespace quillon {

std::string Sha256Of(const SourceFile& file) {
  const std::unique_ptr<GChecksum, void (*)(GChecksum*)> sum(g_checksum_new(G_CHECKSUM_SHA256),
                                                             g_checksum_free);
  file.Read([&](std::string_view piece) {
    g_checksum_update(sum.get(), reinterpret_cast<const guchar*>(piece.data()),
                      static_cast<gssize>(piece.size()));
  });
  return g_checksum_get_string(sum.get());
}

std::string Sha256OfFile(const std::string& path) {
  return Sha256Of(SourceFile::Open(path));
}

}  // namespace quillon
