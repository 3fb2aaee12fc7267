// What the first bytes of a file tell: whether it is a Jet database of a kind that can be read.
#pragma once

#include <string>

namespace quillon {

// FileFailure, naming the file and what to do, where it is anything else than a whole number of
// pages of a Jet 3 or Jet 4 database. Encryption and damage behind the head are not seen here.
void RequireJetFile(const std::string& path);

}  // namespace quillon
