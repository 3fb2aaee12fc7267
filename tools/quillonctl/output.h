// What the commands print: lines for people, or one JSON value for programs. Failures go to
// standard error, in lines that begin with the program's name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

enum class OutputForm { kPlain, kCsv, kJson };

// A value of a list of names and values. The kind is JSON's affair, and in columns for people
// numbers stand at the right. A truth is "yes" or "no"; lines are an array there.
struct OutputField {
  enum class Kind { kText, kNumber, kTruth, kLines };

  std::string name;  // "listening-port"
  std::string value;
  Kind kind = Kind::kText;
};
using OutputFields = std::vector<OutputField>;

// Rows of texts under column names. All rows have as many fields as there are columns.
struct OutputTable {
  std::vector<std::string> columns;
  std::vector<OutputField::Kind> kinds;  // one for each column
  std::vector<std::vector<std::string>> rows;
};

// The texts are UTF-8. Where standard output takes them no more, as on a full disk, all of these
// raise FileFailure.

// JSON: one object. Else the names and values in two columns, a value of several lines on as many.
void PrintFields(const OutputFields& fields, OutputForm form);

// Plain: columns with blanks between them; CSV as RFC 4180 has it, with LF; JSON: an array of
// objects. In JSON a number or a truth that is none is a text.
void PrintTable(const OutputTable& table, OutputForm form);

// A line for people.
void PrintLine(std::string_view text);

// "quillonctl: <text>" on standard error.
void Complain(std::string_view text);

}  // namespace quillon
