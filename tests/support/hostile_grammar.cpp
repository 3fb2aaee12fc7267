// A grammar of little more than the pieces that matter. What it makes stays small in its work: at
// most a few tables are joined.
#include "support/hostile_texts.h"

namespace quillon {
namespace {

using Choices = std::vector<const char*>;

const Choices kColumns = {"RecNo",   "DevName", "IpAddr",     "IfIndex",   "IfDescr",
                          "IfAlias", "MacAddr", "LastSeen",   "StorDescr", "Colour",
                          "rowid",   "sql",     "VLAN.RecNo", "a.RecNo"};
const Choices kTables = {
    "VLAN",          "MAC",     "HostDiskInfo",      "VLAN a",           "MAC a",
    "sqlite_master", "Missing", "pragma_table_list", "json_each('[1]')", "Settings_SmtpServer",
    "main.VLAN"};
const Choices kLiterals = {"1",    "0",       "-1",     "NULL",  "'a'", "'sw7'",
                           "'%'",  "x'00'",   "9e999",  "''",    "1.5", "9223372036854775807",
                           "TRUE", "'[a-z]'", "'\xE4'", "\"a\"", "?"};
const Choices kOperators = {"=",
                            "<>",
                            "<",
                            ">=",
                            "||",
                            "-",
                            "/",
                            "%",
                            "&",
                            "<<",
                            " IS ",
                            " LIKE ",
                            " GLOB ",
                            " AND ",
                            " OR ",
                            " IN ",
                            " COLLATE NOCASE=",
                            " MATCH ",
                            "->>"};
const Choices kFunctions = {"count",   "Format",   "like",           "hex",  "printf",
                            "replace", "zeroblob", "readfile",       "max",  "random",
                            "char",    "json",     "load_extension", "total"};
const Choices kBeginnings = {"'", "%'", "x'", "*'", "sw*'", "", "'%", "10.*'", "1.1.1.1'"};
const Choices kEnds = {" --", "",     "'",          ";", "; --", " OR '", " AND '%' LIKE '",
                       ")",   "\t--", " LIMIT 1 --"};
const Choices kPieces = {
    "*",        "?",           "#",         "[",    "]",    "!",  "a",         "sw",   "7",
    "-",        ".",           ":",         "+",    " ",    "%",  "_",         "'",    "\"",
    "<",        ">",           "&",         "=",    "\r\n", "\r", "\n",        "\t",   "\xE4",
    "\xC0\x80", "DeviceName=", "PortName=", "HTTP", "../",  "\\", "usedbytes", "desc", "asc"};
const Choices kUrlPieces = {"hist45-",
                            "hist45d-switch-",
                            "-port-summary",
                            "switch-access-port-top10",
                            "switch-trunk-port-top10",
                            "select?report=",
                            "search-mac-ip",
                            "histdisk45-",
                            "histdisksearch45-",
                            "disk-physical-top10",
                            "disk-mem-summary",
                            "disk-search-1",
                            "switch-mac-ip-1",
                            "qws.css",
                            "favicon.ico",
                            "DeviceId=",
                            "search-device-disk",
                            "7",
                            "-",
                            "4",
                            ".htm",
                            "C_",
                            "mem",
                            "HTTP",
                            " ",
                            "../",
                            "/",
                            "\\",
                            "'",
                            "%00",
                            "99999999999",
                            "-1",
                            "x",
                            "\xE4",
                            "<b>",
                            "?",
                            "*",
                            "\t"};

}  // namespace

const char* HostileGrammar::Any(const std::vector<const char*>& choices) {
  return choices[Below(static_cast<unsigned>(choices.size()))];
}

std::string HostileGrammar::Noise(unsigned size) {
  std::string bytes(size, ' ');
  for (char& byte : bytes) byte = static_cast<char>(Below(256));
  return bytes;
}

std::string HostileGrammar::Expression(int depth) {
  switch (depth > 0 ? Below(9) : Below(2)) {
    case 0:
      return Any(kColumns);
    case 1:
    case 2:
      return Any(kLiterals);
    case 3:
      return "(" + Select(depth - 1) + ")";
    case 4:
      return std::string(Any(kFunctions)) + "(" + Expression(depth - 1) + ")";
    case 5:
      return std::string(Any(kFunctions)) + "(" + Expression(depth - 1) + "," +
             Expression(depth - 1) + ")";
    case 6:
      return "CASE WHEN " + Condition(depth - 1) + " THEN " + Expression(depth - 1) + " END";
    case 7:
      return "CAST(" + Expression(depth - 1) + " AS TEXT)";
    default:
      return "(" + Expression(depth - 1) + Any(kOperators) + Expression(depth - 1) + ")";
  }
}

std::string HostileGrammar::Condition(int depth) {
  switch (Below(5)) {
    case 0:
      return "EXISTS(" + Select(depth - 1) + ")";
    case 1:
      return "NOT " + Expression(depth);
    case 2:
      return Expression(depth) + " IN (" + (Below(2) == 0 ? Select(depth - 1) : "1,'a',NULL") + ")";
    default:
      return Expression(depth) + Any(kOperators) + Expression(depth);
  }
}

std::string HostileGrammar::Select(int depth) {
  std::string select = "SELECT " + Expression(depth - 1);
  if (Below(4) != 0) select += std::string(" FROM ") + Any(kTables);
  if (Below(6) == 0) select += std::string(",") + Any(kTables) + " b";
  if (depth > 0 && Below(2) == 0) select += " WHERE " + Condition(depth - 1);
  if (Below(8) == 0) select += " GROUP BY " + Expression(0);
  if (Below(8) == 0) select += " ORDER BY " + Expression(0);
  if (Below(4) == 0) select += " LIMIT " + Expression(0);
  if (depth > 0 && Below(5) == 0) select += " UNION " + Select(depth - 1);
  return select;
}

std::string HostileGrammar::Sql() {
  std::string text = Any(kBeginnings);
  switch (Below(4)) {
    case 0:
      text += " UNION " + Select(3);
      break;
    case 1:
      text += "; " + Select(2);
      break;
    default:
      text += (Below(2) == 0 ? " AND " : " OR ") + Condition(3);
  }
  return text + Any(kEnds);
}

std::string HostileGrammar::Text() {
  const unsigned kind = Below(10);
  if (kind < 6) return Sql();
  if (kind == 6) return Noise(Below(200));
  std::string text;
  for (unsigned count = Below(20) + 1; count > 0; --count) {
    const std::string piece = Any(kPieces);
    text += kind == 7 && Below(8) == 0 ? Repeated(piece, static_cast<int>(Below(2'000))) : piece;
  }
  return text;
}

std::string HostileGrammar::Url() {
  std::string url;
  for (unsigned count = Below(9) + 1; count > 0; --count) {
    url += Below(20) == 0 ? Noise(Below(40)) : std::string(Any(kUrlPieces));
  }
  return url;
}

}  // namespace quillon
