// CSV, read record by record.
#include <gtest/gtest.h>

#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "quillondb/csv/reader.h"

namespace quillon {
namespace {

using Record = std::vector<std::string>;

// The number of the line on which it begins stands in front of each record.
std::vector<Record> Records(const std::string& text) {
  std::istringstream input(text);
  CsvReader reader(input);
  std::vector<Record> records;
  for (CsvFields fields; reader.Next(fields);) {
    records.emplace_back(fields.begin(), fields.end());
    records.back().insert(records.back().begin(), std::to_string(reader.line()));
  }
  return records;
}

// "<line>: <why>" of the first record that cannot be read.
std::string Refused(const std::string& text) {
  std::istringstream input(text);
  CsvReader reader(input);
  CsvFields fields;
  try {
    while (reader.Next(fields)) {
    }
  } catch (const Failure& failure) {
    return std::to_string(reader.line()) + ": " + failure.what();
  }
  return "nothing was refused";
}

TEST(CsvReader, FieldsEndAtCommasAndRecordsAtLines) {
  const std::pair<const char*, std::vector<Record>> kCases[] = {
      {"", {}},
      {"\n\r\n", {}},
      {"a", {{"1", "a"}}},
      {"a,b\n", {{"1", "a", "b"}}},
      {"a,b\r\nc,d\r\n", {{"1", "a", "b"}, {"2", "c", "d"}}},
      {"a,b\nc,d\r\ne", {{"1", "a", "b"}, {"2", "c", "d"}, {"3", "e"}}},
      {",", {{"1", "", ""}}},
      {"a,,\n", {{"1", "a", "", ""}}},
      {"a\n\n\nb\n", {{"1", "a"}, {"4", "b"}}},
      {" a , b \n", {{"1", " a ", " b "}}},
      {"a;b\tc\n", {{"1", "a;b\tc"}}},
  };
  for (const auto& [text, records] : kCases) EXPECT_EQ(Records(text), records) << text;
}

TEST(CsvReader, QuotesKeepWhatWouldEndAFieldOrALine) {
  const std::pair<const char*, std::vector<Record>> kCases[] = {
      {R"("a")", {{"1", "a"}}},
      {R"("")", {{"1", ""}}},
      {R"("","")", {{"1", "", ""}}},
      {R"("a,b",c)", {{"1", "a,b", "c"}}},
      {R"("""")", {{"1", "\""}}},
      {R"("""""")", {{"1", "\"\""}}},
      {R"("a""b","""c","d""")", {{"1", "a\"b", "\"c", "d\""}}},
      {R"("a""""b""c")", {{"1", "a\"\"b\"c"}}},
      {"\"a\nb\",c\nd\n", {{"1", "a\nb", "c"}, {"3", "d"}}},
      {"\"a\r\nb\"\r\nc\r\n", {{"1", "a\r\nb"}, {"3", "c"}}},
      {"\"\n\n\"\nb", {{"1", "\n\n"}, {"4", "b"}}},
      {"\"a\r\"\r\n", {{"1", "a\r"}}},
      {"\"\r\"", {{"1", "\r"}}},
  };
  for (const auto& [text, records] : kCases) EXPECT_EQ(Records(text), records) << text;
}

TEST(CsvReader, AByteOrderMarkInFrontIsNoText) {
  EXPECT_EQ(Records("\xEF\xBB\xBF\"a\",b\n"), (std::vector<Record>{{"1", "a", "b"}}));
  EXPECT_EQ(Records("\xEF\xBB\xBF"), std::vector<Record>{});
  EXPECT_EQ(Records("a\n\xEF\xBB\xBF"
                    "b\n"),
            (std::vector<Record>{{"1", "a"},
                                 {"2",
                                  "\xEF\xBB\xBF"
                                  "b"}}));
}

TEST(CsvReader, ZeroBytesArePartOfAField) {
  const std::string zero(1, '\0');
  EXPECT_EQ(Records("a" + zero + "b,c\n"), (std::vector<Record>{{"1", "a" + zero + "b", "c"}}));
}

TEST(CsvReader, BrokenRulesAreToldWithTheLineOfTheRecord) {
  const std::pair<const char*, const char*> kCases[] = {
      {"a\nb\"c\n", "2: a quote stands inside a field; "},
      {"a\n\nb\"c\"\n", "3: a quote stands inside a field; "},
      {"a\nb\"c\nd\n\"e\"\n", "2: a quote stands inside a field; "},
      {"a\nb\"c\nd\"e\n", "2: a quote stands inside a field; "},
      {"a\n\"b\"c\n", "2: a field goes on behind its closing quote; "},
      {"a\n\"b\" ,c\n", "2: a field goes on behind its closing quote; "},
      {"a\rb\rc\r", "1: a CR stands alone; "},
      {"a\r,b\n", "1: a CR stands alone; "},
  };
  for (const auto& [text, refusal] : kCases) {
    EXPECT_EQ(Refused(text).substr(0, std::string(refusal).size()), refusal) << text;
  }
}

TEST(CsvReader, AQuoteThatIsOpenAtTheEndIsNotClosed) {
  for (const char* text : {"a\n\"b\"\"c\n", "a\n\"b\nc\n\nd\n", "a\n\"", "a\n\"b"}) {
    EXPECT_EQ(Refused(text), "2: a field begins with a quote that is not closed") << text;
  }
}

TEST(CsvReader, TextInAnotherEncodingIsToldByItsMark) {
  for (const std::string text : {"\xFF\xFE", "\xFE\xFF", "\xFF\xFEz", "\xFE\xFFz\na"}) {
    EXPECT_EQ(Refused(text), "1: the text is in UTF-16; save it in UTF-8") << text;
  }
  EXPECT_EQ(Records("a\n\xFF\xFE\n"), (std::vector<Record>{{"1", "a"}, {"2", "\xFF\xFE"}}));
}

TEST(CsvReader, LinesAndRecordsBeyondTheirLimitAreRefused) {
  const std::string half(CsvReader::kLongest / 2, 'x');
  EXPECT_EQ(Records(half + "\n").at(0).at(1).size(), half.size());
  EXPECT_EQ(Refused("a\n" + half + half + "\n"),
            "2: a line is longer than 16 MiB; is this a text file?");
  EXPECT_EQ(Refused("a\n\"" + half + "\n" + half + "\"\n"),
            "2: a field begins with a quote that is not closed within 16 MiB");
}

// A device that fails behind its first line.
class FailingInput : public std::streambuf {
 public:
  FailingInput() { setg(line_, line_, line_ + sizeof line_); }

 protected:
  int_type underflow() override { throw FileFailure("cannot go on"); }

 private:
  char line_[2] = {'a', '\n'};
};

TEST(CsvReader, AnInputThatCannotBeReadIsNotTakenForItsEnd) {
  FailingInput failing;
  std::istream input(&failing);
  CsvReader reader(input);
  CsvFields fields;
  ASSERT_TRUE(reader.Next(fields));
  EXPECT_THROW(reader.Next(fields), FileFailure);
}

}  // namespace
}  // namespace quillon
