// What the library says of a file, past the process in which it reads.
#include "quillondb/jet/jet_library.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(JetLibrary, OnlyWordsOnMapsOfPagesAreHarmless) {
  const std::pair<const char*, bool> kCases[] = {
      {"warning: page 12 from map doesn't match: Type=1, buf[4..7]=3 Expected table_pg=9", true},
      {"Warning: defaulting to brute force read", true},
      {"warning: Invalid page buffer detected in mdb_crack_row.", false},
      {"Warning: incorrect memo length", false},
      {"error: reading page 12 failed.", false},
      {"offset 40960 is beyond EOF", false},
      {"", false},
  };
  for (const auto& [line, harmless] : kCases)
    EXPECT_EQ(IsHarmlessComplaint(line), harmless) << line;
}

}  // namespace
}  // namespace quillon
