// What people write into the alias of a port: rooms, machines, other alphabets, nothing.
#pragma once

#include <string>

namespace quillon {

// The alias of the access port of that ordinal, counted from 0 over the whole network; empty for
// about every third.
std::string AccessAlias(int ordinal);

}  // namespace quillon
