// Lines are joined to records by their quotes, and a record is cut into fields.
#include "quillondb/csv/reader.h"

#include "platform/failure.h"

namespace quillon {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kMarksOfUtf16[] = {"\xFF\xFE", "\xFE\xFF"};

bool Holds(std::string_view text, char character) {
  return text.find(character) != std::string_view::npos;
}

bool HasOddQuotes(std::string_view line) {
  bool isOdd = false;
  for (std::size_t quote = line.find('"'); quote != std::string_view::npos;
       quote = line.find('"', quote + 1)) {
    isOdd = !isOdd;
  }
  return isOdd;
}

}  // namespace

CsvReader::CsvReader(std::istream& input)
    : input_(input), buffer_(std::make_unique_for_overwrite<char[]>(kLongest)) {
  input_.exceptions(std::ios_base::badbit);
}

bool CsvReader::Next(CsvFields& fields) {
  do {
    if (!TakeRecord()) return false;
  } while (record_.empty());
  fields.clear();
  joined_.clear();
  std::string_view rest = record_;
  brokenField_ = 0;
  fields.push_back(TakeField(rest));
  while (!rest.empty()) {
    rest.remove_prefix(1);  // the comma
    brokenField_ = fields.size();
    fields.push_back(TakeField(rest));
  }
  brokenField_.reset();
  return true;
}

// The next line without its LF; false behind the last one.
bool CsvReader::TakeLine(std::string_view& line) {
  input_.getline(buffer_.get(), static_cast<std::streamsize>(kLongest));
  if (input_.fail() && !input_.eof()) {
    throw ConversionFailure("a line is longer than 16 MiB; is this a text file?");
  }
  const auto length = static_cast<std::size_t>(input_.gcount());
  if (length == 0) return false;
  line = std::string_view(buffer_.get(), input_.eof() ? length : length - 1);
  ++nextLine_;
  return true;
}

// A line break belongs to the record as long as an odd number of quotes stands before it: a doubled
// quote counts as two, and so changes nothing.
bool CsvReader::TakeRecord() {
  line_ = nextLine_;
  record_.clear();
  std::string_view line;
  if (!TakeLine(line)) return false;
  record_ = line;
  for (bool isOpen = HasOddQuotes(line); isOpen; isOpen ^= HasOddQuotes(line)) {
    // Which quote is wrong is found out field by field.
    if (!TakeLine(line)) break;
    isCutOff_ = record_.size() + line.size() >= kLongest;
    if (isCutOff_) break;
    record_ += '\n';
    record_ += line;
  }
  if (record_.ends_with('\r')) record_.pop_back();
  if (line_ == 1) TakeByteOrderMark();
  return true;
}

void CsvReader::TakeByteOrderMark() {
  for (const std::string_view mark : kMarksOfUtf16) {
    if (!record_.starts_with(mark)) continue;
    throw ConversionFailure("the text is in UTF-16; save it in UTF-8");
  }
  if (record_.starts_with(kByteOrderMark)) record_.erase(0, kByteOrderMark.size());
}

// Leaves nothing of `rest`, or what begins with the comma behind the field.
std::string_view CsvReader::TakeField(std::string_view& rest) {
  if (rest.starts_with('"')) return TakeQuotedField(rest);
  const std::string_view field = rest.substr(0, rest.find(','));
  if (Holds(field, '"')) {
    throw ConversionFailure(
        "a quote stands inside a field; put the field in quotes, and double those inside");
  }
  if (Holds(field, '\r')) {
    throw ConversionFailure("a CR stands alone; end lines with LF or CR LF");
  }
  rest.remove_prefix(field.size());
  return field;
}

std::string_view CsvReader::TakeQuotedField(std::string_view& rest) {
  rest.remove_prefix(1);
  std::string_view field = rest.substr(0, FindQuote(rest));
  rest.remove_prefix(field.size() + 1);
  if (rest.starts_with('"')) field = JoinDoubledQuotes(field, rest);
  if (!rest.empty() && rest.front() != ',') {
    throw ConversionFailure(
        "a field goes on behind its closing quote; a quote inside a field has to be doubled");
  }
  return field;
}

// Where the next quote stands.
std::size_t CsvReader::FindQuote(std::string_view text, std::size_t start) const {
  const std::size_t quote = text.find('"', start);
  if (quote != std::string_view::npos) return quote;
  throw ConversionFailure(std::string("a field begins with a quote that is not closed") +
                          (isCutOff_ ? " within 16 MiB" : ""));
}

// `rest` begins with the second quote of the pair behind `start`.
std::string_view CsvReader::JoinDoubledQuotes(std::string_view start, std::string_view& rest) {
  std::string& field = joined_.emplace_back(start);
  while (rest.starts_with('"')) {
    const std::size_t next = FindQuote(rest, 1);
    field += rest.substr(0, next);
    rest.remove_prefix(next + 1);
  }
  return field;
}

}  // namespace quillon
