// CSV, written record by record.
#include "csv_record.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "quillondb/csv/reader.h"

namespace quillon {
namespace {

using Record = std::vector<std::string>;

std::string Written(const Record& fields) {
  std::string text;
  AppendCsvRecord(text, fields);
  return text;
}

TEST(CsvRecord, QuotesStandWhereTheyAreNeeded) {
  const std::pair<Record, const char*> kCases[] = {
      {{"a", "b"}, "a,b\n"},    {{"", ""}, ",\n"},      {{" a ", "b;c\t'd'"}, " a ,b;c\t'd'\n"},
      {{"a,b"}, "\"a,b\"\n"},   {{"\""}, "\"\"\"\"\n"}, {{"a\"b", "c"}, "\"a\"\"b\",c\n"},
      {{"a\nb"}, "\"a\nb\"\n"}, {{"a\r"}, "\"a\r\"\n"},
  };
  for (const auto& [fields, text] : kCases) EXPECT_EQ(Written(fields), text);
}

TEST(CsvRecord, RecordsAreAppended) {
  std::string text = "head\n";
  AppendCsvRecord(text, {"a"});
  AppendCsvRecord(text, {"b"});
  EXPECT_EQ(text, "head\na\nb\n");
}

TEST(CsvRecord, TheReaderGetsBackEveryText) {
  const Record texts = {"", " ", "\"", "\"\"", "\",\"", "\n", "\r\n", "\r", ",", "a\"\nb,", "\t"};
  for (const std::string& first : texts) {
    for (const std::string& second : texts) {
      std::istringstream input(Written({first, second}));
      CsvReader reader(input);
      CsvFields fields;
      ASSERT_TRUE(reader.Next(fields));
      EXPECT_EQ(Record(fields.begin(), fields.end()), (Record{first, second}));
      EXPECT_FALSE(reader.Next(fields));
    }
  }
}

}  // namespace
}  // namespace quillon
