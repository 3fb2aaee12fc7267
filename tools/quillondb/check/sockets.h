// The site's address and port, and the address of the traps: whether the service gets them.
#pragma once

#include <string>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "installation_owner.h"
#include "quillondb/check/access.h"
#include "quillondb/check/unit.h"

namespace quillon {

// Who asks for the sockets of a directory.
struct SocketUser {
  const ServiceUser& user;
  const InstalledUnit& unit;
  const OwnerRights& rights;
};

// Appends a line for each socket that the service cannot open: the port is another program's or
// needs a right, the address is none of this machine. While the service runs its own words are told
// instead. `serverAddress` is that of Morvane.ini, which stands for a site's of 0.0.0.0 and is that
// of the traps. A port that is no number, and rows that are missing, are found with the database.
void CheckSockets(const std::string& directory, const SqliteFile& settings,
                  const std::string& serverAddress, const SocketUser& by,
                  std::vector<std::string>& findings);

// Whether the user may listen on the port, as one below the first free one. A unit that cannot be
// read may give him the right.
bool MayListen(int port, int firstFreePort, const ServiceUser& user, const InstalledUnit& unit);

}  // namespace quillon
