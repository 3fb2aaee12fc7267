// Columns, CSV and JSON out of the same rows.
#include "quillonctl/output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <system_error>

#include "csv_record.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "platform/standard_error.h"
#include "platform/terminal_text.h"
#include "platform/text_lines.h"

namespace quillon {
namespace {

using Json = nlohmann::ordered_json;  // names in the order in which they are given
using Kind = OutputField::Kind;

constexpr std::string_view kColumnGap = "  ";

void Print(std::string_view text) {
  errno = 0;
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (isWritten && std::fflush(stdout) == 0) return;
  throw FileFailure("cannot write to standard output: " + std::generic_category().message(errno));
}

// In characters.
std::size_t Width(std::string_view utf8) {
  const auto begins = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), begins));
}

// Finished for the terminal, without blanks around them.
using Cells = std::vector<std::string>;

Cells CellsOf(const std::vector<std::string>& texts) {
  Cells cells;
  for (const std::string& text : texts) cells.push_back(Trimmed(TerminalText(text)));
  return cells;
}

// The widest cell of each column.
std::vector<std::size_t> Widths(const std::vector<Cells>& lines) {
  std::vector<std::size_t> widths(lines.front().size());
  for (const Cells& cells : lines) {
    for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], Width(cells[i]));
  }
  return widths;
}

std::string AlignedLine(const Cells& cells, const std::vector<std::size_t>& widths,
                        const std::vector<Kind>& kinds) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string padding(widths[i] - Width(cells[i]), ' ');
    line += kinds[i] == Kind::kNumber ? padding + cells[i] : cells[i] + padding;
    line += kColumnGap;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

// Columns as wide as their widest cell.
std::string Aligned(const std::vector<Cells>& lines, const std::vector<Kind>& kinds) {
  if (lines.empty()) return "";
  const std::vector<std::size_t> widths = Widths(lines);
  std::string text;
  for (const Cells& cells : lines) text += AlignedLine(cells, widths, kinds);
  return text;
}

std::string PlainTable(const OutputTable& table) {
  std::vector<Cells> lines = {CellsOf(table.columns)};
  for (const auto& row : table.rows) lines.push_back(CellsOf(row));
  return Aligned(lines, table.kinds);
}

std::string PlainFields(const OutputFields& fields) {
  std::vector<Cells> lines;
  for (const OutputField& field : fields) {
    std::string_view rest = field.value;
    lines.push_back(CellsOf({field.name, std::string(TakeLine(rest))}));
    while (!rest.empty()) lines.push_back(CellsOf({"", std::string(TakeLine(rest))}));
  }
  return Aligned(lines, {Kind::kText, Kind::kText});
}

std::string CsvLine(const std::vector<std::string>& texts) {
  std::string line;
  AppendCsvRecord(line, texts);
  return line;
}

// Whatever the fields hold, for a program; and for a terminal what it may get.
std::string CsvTable(const OutputTable& table) {
  const bool isShown = isatty(STDOUT_FILENO) == 1;
  std::string text = CsvLine(table.columns);
  for (const auto& row : table.rows) {
    const std::string line = CsvLine(row);
    text += isShown ? TerminalText(std::string_view(line).substr(0, line.size() - 1)) + '\n' : line;
  }
  return text;
}

Json JsonLines(std::string_view text) {
  Json lines = Json::array();
  while (!text.empty()) lines.push_back(TakeLine(text));
  return lines;
}

Json JsonValue(const std::string& text, Kind kind) {
  if (kind == Kind::kLines) return JsonLines(text);
  if (kind == Kind::kTruth && (text == "yes" || text == "no")) return text == "yes";
  if (kind != Kind::kNumber) return text;
  const Json number = Json::parse(text, nullptr, false);
  return number.is_number() ? number : Json(text);
}

Json JsonTable(const OutputTable& table) {
  Json rows = Json::array();
  for (const auto& row : table.rows) {
    Json object = Json::object();
    for (std::size_t i = 0; i < row.size(); ++i) {
      object[table.columns[i]] = JsonValue(row[i], table.kinds[i]);
    }
    rows.push_back(object);
  }
  return rows;
}

Json JsonFields(const OutputFields& fields) {
  Json object = Json::object();
  for (const OutputField& field : fields) object[field.name] = JsonValue(field.value, field.kind);
  return object;
}

// In ASCII, with escapes for all else: it may be read on a terminal. Bytes that are no UTF-8, as a
// database may hold, become the sign for such.
std::string JsonText(const Json& value) {
  constexpr int kIndent = 2;
  return value.dump(kIndent, ' ', true, Json::error_handler_t::replace) + '\n';
}

}  // namespace

void PrintFields(const OutputFields& fields, OutputForm form) {
  Print(form == OutputForm::kJson ? JsonText(JsonFields(fields)) : PlainFields(fields));
}

void PrintTable(const OutputTable& table, OutputForm form) {
  switch (form) {
    case OutputForm::kPlain:
      return Print(PlainTable(table));
    case OutputForm::kCsv:
      return Print(CsvTable(table));
    case OutputForm::kJson:
      return Print(JsonText(JsonTable(table)));
  }
}

void PrintLine(std::string_view text) {
  Print(TerminalText(text) + '\n');
}

void Complain(std::string_view text) {
  TellStandardError("quillonctl: " + std::string(text));
}

}  // namespace quillon
