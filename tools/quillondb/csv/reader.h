// CSV as RFC 4180 has it, record by record: commas, quotes, doubled quotes, line breaks in quotes.
// What the fields mean is not known here.
#pragma once

#include <cstdint>
#include <deque>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

using CsvFields = std::vector<std::string_view>;

class CsvReader {
 public:
  // No line and no record may be longer, in bytes: a quote that is never closed would otherwise
  // take the rest of the input into memory.
  static constexpr std::size_t kLongest = std::size_t{16} * 1024 * 1024;

  // The input outlives the reader. A byte order mark in front of it is passed over. What keeps the
  // input from being read goes on as it was thrown by it.
  explicit CsvReader(std::istream& input);

  // The fields of the next record, which are valid until the next call; false behind the last one.
  // Lines end in LF or CR LF, the last one in nothing as well; a line with nothing on it is no
  // record. ConversionFailure where the text breaks the rules: what follows cannot be told apart
  // then.
  bool Next(CsvFields& fields);

  // The line on which the record begins that was read last, or could not be read; from 1.
  std::int64_t line() const { return line_; }

  // The field of that record that broke the rules, from 0; none where no single one did.
  std::optional<std::size_t> brokenField() const { return brokenField_; }

 private:
  bool TakeLine(std::string_view& line);
  bool TakeRecord();
  void TakeByteOrderMark();
  std::string_view TakeField(std::string_view& rest);
  std::string_view TakeQuotedField(std::string_view& rest);
  std::size_t FindQuote(std::string_view text, std::size_t start = 0) const;
  std::string_view JoinDoubledQuotes(std::string_view start, std::string_view& rest);

  std::istream& input_;
  std::unique_ptr<char[]> buffer_;  // of one line
  std::string record_;              // without its line end
  bool isCutOff_ = false;           // at the limit of a record
  std::deque<std::string> joined_;  // the fields of the record that had doubled quotes
  std::optional<std::size_t> brokenField_;
  std::int64_t line_ = 0;
  std::int64_t nextLine_ = 1;
};

}  // namespace quillon
