// The block at the left of a header band, and at the right of a report's: rows of a label and a
// value.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace quillon {

struct BandRow {
  std::string_view labelWidth;
  std::string label;
  std::string_view valueWidth;
  // Asked for when its line comes: where it fails, the lines before it stand.
  std::function<std::string()> value;
};

// Appends the cell of the block. Values of 190 and 200 pixels stand in one column: the browser
// takes the wider one, as it always has.
void BandBlock(std::initializer_list<BandRow> rows, std::string& page);

}  // namespace quillon
