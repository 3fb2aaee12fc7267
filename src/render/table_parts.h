// What all tables of ten rows have alike: the opening with the heads of the first two columns, the
// classes of the rows, the style of the last column, the end.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "render/render_context.h"

namespace quillon {

// Appends the opening of the table and the heads of its first two columns, device and what `word`
// of the language file names.
void TableHeadBegin(const RenderContext& context, int word, std::string& pageHtml);

// True for the last of a table's columns.
template <typename Column, std::size_t N>
bool IsLast(const Column (&columns)[N], const Column& column) {
  return &column == columns + N - 1;
}

// Appends a head that is no link.
void PlainHead(std::string_view text, bool isLast, std::string& pageHtml);

// A row by its place in the record, 1 to 10.
std::string_view RowClass(int rowNumber);

// What stands behind a cell's width: the last column has no rule at its right.
std::string_view CellStyle(bool isLast);

void TableEnd(std::string& pageHtml);

}  // namespace quillon
