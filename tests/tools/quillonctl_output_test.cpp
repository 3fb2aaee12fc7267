// What quillonctl prints: columns for people, CSV and JSON for programs.
#include <gtest/gtest.h>

#include <string>

#include "quillonctl/output.h"
#include "support/standard_error.h"

namespace quillon {
namespace {

using Kind = OutputField::Kind;

std::string Printed(const OutputTable& table, OutputForm form) {
  testing::internal::CaptureStdout();
  PrintTable(table, form);
  return testing::internal::GetCapturedStdout();
}

std::string Printed(const OutputFields& fields, OutputForm form) {
  testing::internal::CaptureStdout();
  PrintFields(fields, form);
  return testing::internal::GetCapturedStdout();
}

// One column of texts, "Name".
OutputTable Names(const std::vector<std::string>& names) {
  OutputTable table{{"Name"}, {Kind::kText}, {}};
  for (const std::string& name : names) table.rows.push_back({name});
  return table;
}

const OutputTable kReceivers = {{"number", "name", "attach"},
                                {Kind::kNumber, Kind::kText, Kind::kTruth},
                                {{"7", "Bj\u00F6rn, \u041E\u043B\u044F", "yes"}, {"12", "", "no"}}};

TEST(QuillonctlOutput, ColumnsAreAsWideAsTheirWidestText) {
  EXPECT_EQ(Printed(kReceivers, OutputForm::kPlain),
            "number  name        attach\n"
            "     7  Bj\u00F6rn, \u041E\u043B\u044F  yes\n"
            "    12              no\n");
}

TEST(QuillonctlOutput, LinesEndInNoBlank) {
  EXPECT_EQ(Printed({{"a", "b"}, {Kind::kText, Kind::kText}, {{"x  ", ""}, {"", "y "}}},
                    OutputForm::kPlain),
            "a  b\n"
            "x\n"
            "   y\n");
}

TEST(QuillonctlOutput, NamesAndValuesAreTwoColumns) {
  EXPECT_EQ(Printed(OutputFields{{"enabled", "yes", Kind::kTruth}, {"port", "8080", Kind::kNumber}},
                    OutputForm::kPlain),
            "enabled  yes\n"
            "port     8080\n");
}

TEST(QuillonctlOutput, NamesReachTheTerminalSafely) {
  EXPECT_EQ(Printed(Names({"\x1B[2Jgone"}), OutputForm::kPlain), "Name\n?[2Jgone\n");
  EXPECT_EQ(Printed(Names({"Z\xFCrich"}), OutputForm::kPlain), "Name\nZ?rich\n");
}

TEST(QuillonctlOutput, HeadsAndComplaintsReachTheTerminalSafelyToo) {
  EXPECT_EQ(Printed(OutputFields{{"a\x1B", "b\x1B"}}, OutputForm::kPlain), "a?  b?\n");
  EXPECT_EQ(StandardErrorOf([] { Complain("no port \x1B[31m\nhere"); }),
            "quillonctl: no port  [31m here\n");
}

TEST(QuillonctlOutput, CsvQuotesWhatWouldEndAFieldOrALine) {
  struct Case {
    std::string text;
    std::string field;
  };
  const Case cases[] = {
      {"plain", "plain"},
      {"", ""},
      {"  blanks ", "  blanks "},
      {"a,b", "\"a,b\""},
      {"say \"x\"", "\"say \"\"x\"\"\""},
      {"\"", "\"\"\"\""},
      {"two\nlines", "\"two\nlines\""},
      {"cr\r", "\"cr\r\""},
      {"a;b\tc", "a;b\tc"},
      {"\x1B[2J", "\x1B[2J"},
      {"Z\xFCrich", "Z\xFCrich"},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Printed(Names({row.text}), OutputForm::kCsv), "Name\n" + row.field + "\n");
  }
}

TEST(QuillonctlOutput, CsvLinesHaveAFieldForEachColumn) {
  EXPECT_EQ(Printed(kReceivers, OutputForm::kCsv),
            "number,name,attach\n"
            "7,\"Bj\u00F6rn, \u041E\u043B\u044F\",yes\n"
            "12,,no\n");
}

TEST(QuillonctlOutput, JsonKeepsTheOrderOfTheNamesAndKnowsNumbersAndTruths) {
  EXPECT_EQ(Printed(kReceivers, OutputForm::kJson),
            "[\n"
            "  {\n"
            "    \"number\": 7,\n"
            "    \"name\": \"Bj\\u00f6rn, \\u041e\\u043b\\u044f\",\n"
            "    \"attach\": true\n"
            "  },\n"
            "  {\n"
            "    \"number\": 12,\n"
            "    \"name\": \"\",\n"
            "    \"attach\": false\n"
            "  }\n"
            "]\n");
  EXPECT_EQ(Printed(OutputFields{{"status", "Listening"}, {"port", "8080", Kind::kNumber}},
                    OutputForm::kJson),
            "{\n"
            "  \"status\": \"Listening\",\n"
            "  \"port\": 8080\n"
            "}\n");
}

TEST(QuillonctlOutput, JsonValueOfATextOrOfANumber) {
  struct Case {
    std::string text;
    Kind kind;
    std::string value;
  };
  const Case cases[] = {
      {"12", Kind::kText, "\"12\""},
      {"-12", Kind::kNumber, "-12"},
      {"1.5", Kind::kNumber, "1.5"},
      {"", Kind::kNumber, "\"\""},
      {"true", Kind::kNumber, "\"true\""},
      {"08080", Kind::kNumber, "\"08080\""},
      {"80 80", Kind::kNumber, "\"80 80\""},
      {"say \"x\"\n", Kind::kText, "\"say \\\"x\\\"\\n\""},
      {"\x1B[2J", Kind::kText, "\"\\u001b[2J\""},
      {"Z\xFCrich", Kind::kText, "\"Z\\ufffdrich\""},
      {"Z\xFCrich", Kind::kNumber, "\"Z\\ufffdrich\""},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Printed(OutputFields{{"x", row.text, row.kind}}, OutputForm::kJson),
              "{\n  \"x\": " + row.value + "\n}\n");
  }
}

TEST(QuillonctlOutput, EmptyTableIsItsHeadsOrAnEmptyArray) {
  EXPECT_EQ(Printed(Names({}), OutputForm::kPlain), "Name\n");
  EXPECT_EQ(Printed(Names({}), OutputForm::kCsv), "Name\n");
  EXPECT_EQ(Printed(Names({}), OutputForm::kJson), "[]\n");
}

}  // namespace
}  // namespace quillon
