// libmdb. Fields are read from the page where it can be done: its own texts of dates are wrong
// before 1899-12-30, and its texts of numbers follow the locale.
#include "quillondb/jet/jet_library.h"

#include <glib.h>
#include <iconv.h>
#include <mdbtools.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "platform/number_text.h"
#include "quillondb/jet/jet_message.h"

namespace quillon {
namespace {

// The room for one text; none of the columns of an installation comes near it.
constexpr std::size_t kTextRoom = 1 << 16;

constexpr double kCurrencySteps = 10000;  // currency is a whole number of these

// "1" or "0"; the null bit of the row is what holds a truth value, so there are no bytes to read.
using BooleanText = std::array<char, 8>;

struct HandleCloser {
  void operator()(MdbHandle* handle) const { mdb_close(handle); }
};
struct TableFreer {
  void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
struct TextFreer {
  void operator()(char* text) const { g_free(text); }
};
using Handle = std::unique_ptr<MdbHandle, HandleCloser>;
using Table = std::unique_ptr<MdbTableDef, TableFreer>;
using LibraryText = std::unique_ptr<char, TextFreer>;

// iconv tells by the pointer -1 that it cannot.
bool IsOpen(iconv_t conversion) {
  return conversion != reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr)
}

// The library's own conversion turns each half of a character beyond the first 65,536 into a
// question mark.
void ReadAllCharacters(MdbHandle* handle) {
  if (IS_JET3(handle)) return;  // there a character is a byte
  iconv_t conversion = iconv_open("UTF-8", "UTF-16LE");
  if (!IsOpen(conversion)) throw Failure("the texts of the file cannot be converted");
  if (IsOpen(handle->iconv_in)) iconv_close(handle->iconv_in);
  handle->iconv_in = conversion;
}

Handle OpenFile(const std::string& path) {
  // Charsets of the caller's environment would be taken for the file's and for ours.
  for (const char* variable : {"MDBICONV", "MDB_JET3_CHARSET", "MDBOPTS"}) unsetenv(variable);
  Handle handle(mdb_open(path.c_str(), MDB_NOFLAGS));
  if (!handle) throw Failure("the file cannot be opened as a database");
  if (handle->f->db_key != 0) {
    throw Failure("the file is encrypted; have the program that made it decode it, and take that");
  }
  ReadAllCharacters(handle.get());
  mdb_set_bind_size(handle.get(), kTextRoom);
  mdb_set_boolean_fmt_numbers(handle.get());
  return handle;
}

std::vector<MdbCatalogEntry*> UserTables(MdbHandle* handle) {
  const GPtrArray* catalog = mdb_read_catalog(handle, MDB_TABLE);
  if (catalog == nullptr) throw Failure("the file is damaged: it has no catalog of tables");
  std::vector<MdbCatalogEntry*> entries;
  for (guint place = 0; place < catalog->len; ++place) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(catalog, place));
    if (mdb_is_user_table(entry) != 0) entries.push_back(entry);
  }
  return entries;
}

Table OpenTable(MdbCatalogEntry* entry) {
  Table table(mdb_read_table(entry));
  if (!table || mdb_read_columns(table.get()) == nullptr) {
    throw Failure(std::string("the file is damaged: nothing tells the columns of the table ") +
                  static_cast<const char*>(entry->object_name));
  }
  return table;
}

std::vector<MdbColumn*> ColumnsOf(const MdbTableDef* table) {
  std::vector<MdbColumn*> columns;
  for (guint place = 0; place < table->columns->len; ++place) {
    columns.push_back(static_cast<MdbColumn*>(g_ptr_array_index(table->columns, place)));
  }
  return columns;
}

template <typename Number>
Number NumberAt(const char* bytes) {
  Number number{};
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

std::string TextOf(MdbHandle* handle, const MdbColumn& column) {
  const LibraryText text(mdb_col_to_string(handle, static_cast<void*>(handle->pg_buf),
                                           column.cur_value_start, column.col_type,
                                           column.cur_value_len));
  std::string read = text ? text.get() : "";
  if (read.size() + 1 >= kTextRoom) throw Failure("a text of the table is longer than 64 KiB");
  return read;
}

JetValue DecimalOf(MdbHandle* handle, const MdbColumn& column) {
  const LibraryText text(
      mdb_numeric_to_string(handle, column.cur_value_start, column.col_scale, column.col_prec));
  const auto number = ParseNumber(text ? text.get() : "");
  if (!number) throw Failure("the file is damaged: a decimal number is none");
  return *number;
}

std::int64_t FixedSize(int type) {
  switch (type) {
    case MDB_BYTE:
      return 1;
    case MDB_INT:
      return 2;
    case MDB_LONGINT:
    case MDB_FLOAT:
      return 4;
    case MDB_MONEY:
    case MDB_DOUBLE:
    case MDB_DATETIME:
      return 8;
    default:
      return 0;  // as long as the row says
  }
}

void RequireBytes(const MdbHandle* handle, const MdbColumn& column) {
  constexpr std::int64_t kPage = sizeof handle->pg_buf;
  const std::int64_t start = column.cur_value_start;
  const std::int64_t length = column.cur_value_len;
  const bool liesInPage = start >= 0 && length >= 0 && start + length <= kPage;
  if (liesInPage && length >= FixedSize(column.col_type)) return;
  throw Failure("the file is damaged: a field does not lie in its page");
}

JetValue StoredValueOf(MdbHandle* handle, const MdbColumn& column) {
  RequireBytes(handle, column);
  const char* bytes = reinterpret_cast<const char*>(handle->pg_buf) + column.cur_value_start;
  switch (column.col_type) {
    case MDB_BYTE:
      return std::int64_t{NumberAt<std::uint8_t>(bytes)};
    case MDB_INT:
      return std::int64_t{NumberAt<std::int16_t>(bytes)};
    case MDB_LONGINT:
      return std::int64_t{NumberAt<std::int32_t>(bytes)};
    case MDB_MONEY:
      return static_cast<double>(NumberAt<std::int64_t>(bytes)) / kCurrencySteps;
    case MDB_FLOAT:
      return NumberAt<float>(bytes);
    case MDB_DOUBLE:
      return NumberAt<double>(bytes);
    case MDB_DATETIME:
      return JetDate{NumberAt<double>(bytes)};
    case MDB_NUMERIC:
      return DecimalOf(handle, column);
    case MDB_TEXT:
    case MDB_MEMO:
      return TextOf(handle, column);
    default:
      return JetOpaque{};
  }
}

JetValue ValueOf(MdbHandle* handle, const MdbColumn& column) {
  if (column.col_type == MDB_BOOL) return *static_cast<const char*>(column.bind_ptr) == '1';
  if (column.cur_value_len != 0) return StoredValueOf(handle, column);
  const bool isText = column.col_type == MDB_TEXT || column.col_type == MDB_MEMO;
  return isText ? JetValue(std::string()) : JetValue(JetNull{});
}

MdbCatalogEntry* FindTable(MdbHandle* handle, const std::string& name) {
  for (MdbCatalogEntry* entry : UserTables(handle)) {
    if (name == static_cast<const char*>(entry->object_name)) return entry;
  }
  throw Failure("the table " + name + " is gone");
}

[[noreturn]] void FailCount(const JetTable& table, std::int64_t found) {
  throw Failure("the file is damaged: the table " + table.name + " counts " +
                std::to_string(table.rows) + " rows, and " + std::to_string(found) +
                " can be read; have the program that made it repair it, and take that");
}

}  // namespace

void SendJetTables(const std::string& path, const SendBytes& send) {
  const Handle handle = OpenFile(path);
  const std::vector<MdbCatalogEntry*> entries = UserTables(handle.get());
  if (entries.empty()) throw Failure("the file has no table: it is empty, or damaged");
  for (MdbCatalogEntry* entry : entries) {
    const Table table = OpenTable(entry);
    JetTable shape{static_cast<const char*>(entry->object_name), {}, table->num_rows};
    for (const MdbColumn* column : ColumnsOf(table.get())) {
      shape.columns.emplace_back(static_cast<const char*>(column->name));
    }
    send(TableMessage(shape));
  }
}

void SendJetRows(const std::string& path, const std::string& name, const SendBytes& send) {
  const Handle handle = OpenFile(path);
  const Table table = OpenTable(FindTable(handle.get(), name));
  const JetTable shape{name, {}, table->num_rows};
  const std::vector<MdbColumn*> columns = ColumnsOf(table.get());
  std::vector<BooleanText> booleans(columns.size());
  for (std::size_t place = 0; place < columns.size(); ++place) {
    if (columns[place]->col_type != MDB_BOOL) continue;
    columns[place]->bind_ptr = booleans[place].data();
  }
  JetRow row(columns.size());
  std::int64_t found = 0;
  // Of a table that counts none the library looks for none, so a damaged count would hide them all.
  if (shape.rows == 0) table->num_rows = 1;
  while (mdb_fetch_row(table.get()) != 0) {
    if (++found > shape.rows) FailCount(shape, found);
    for (std::size_t place = 0; place < columns.size(); ++place) {
      row[place] = ValueOf(handle.get(), *columns[place]);
    }
    send(RowMessage(row));
  }
  if (found < shape.rows) FailCount(shape, found);
}

bool IsHarmlessComplaint(std::string_view line) {
  return (line.starts_with("warning: page ") && line.find(" from map ") != line.npos) ||
         line.starts_with("Warning: defaulting to brute force read");
}

}  // namespace quillon
