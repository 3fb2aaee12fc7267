// Fields of CSV as values of a table, and back.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "quillondb/csv/values.h"

namespace quillon {
namespace {

InputColumn ColumnOf(std::string_view table, std::string_view name) {
  for (const InputColumn& column : FindInputTable(table).columns) {
    if (column.name == name) return column;
  }
  throw DatabaseFailure("no such column: " + std::string(name));
}

// The value, or why there is none, as messages show it.
std::string Read(std::string_view table, std::string_view column, std::string_view field) {
  try {
    return ShownValue(ReadField(ColumnOf(table, column), field));
  } catch (const ConversionFailure& failure) {
    return failure.what();
  }
}

struct Case {
  const char* column;
  const char* field;
  const char* expected;
};

TEST(CsvValues, FieldsAreReadByTheTypeOfTheirColumn) {
  const Case kCases[] = {
      {"RecNo", "1", "1"},
      {"RecNo", "2147483647", "2147483647"},
      {"IfIndex", "-2147483648", "-2147483648"},
      {"IfIndex", " 7 ", "7"},
      {"IfAlias", " to the roof ", "' to the roof '"},
      {"IfAlias", "1e3", "'1e3'"},
      {"IfAlias", "\u00FC\u20AC\U0001F600", "'\u00FC\u20AC\U0001F600'"},
      {"IsTrunk", "1", "1"},
      {"IsTrunk", "-1", "1"},
      {"IsTrunk", "True", "1"},
      {"IsTrunk", "YES", "1"},
      {"IsTrunk", "0", "0"},
      {"IsTrunk", "false", "0"},
      {"IsTrunk", " no", "0"},
      {"InOctetsDate", "2024-05-01 23:59:59", "2024-05-01 23:59:59"},
      {"InOctetsDate", "2024-02-29", "2024-02-29 00:00:00"},
      {"InErrorsTot24H", "0", "0"},
      {"InErrorsTot24H", "-1", "-1"},
      {"InErrorsTot24H", "12.5", "12.5"},
      {"InErrorsTot24H", ".5", "0.5"},
      {"InErrorsTot24H", "5e-324", "5e-324"},
  };
  for (const auto& [column, field, expected] : kCases) {
    EXPECT_EQ(Read("VLAN", column, field), expected) << column << ": " << field;
  }
}

TEST(CsvValues, WhatAColumnDoesNotTakeIsToldWithWhatToWrite) {
  const Case kCases[] = {
      {"RecNo", "0", "'0' is no whole number from 1 to 2147483647"},
      {"RecNo", "2147483648", "'2147483648' is no whole number from 1 to 2147483647"},
      {"RecNo", "99999999999999999999",
       "'99999999999999999999' is no whole number from 1 to "
       "2147483647"},
      {"RecNo", "1.5", "'1.5' is no whole number from 1 to 2147483647"},
      {"RecNo", "0x10", "'0x10' is no whole number from 1 to 2147483647"},
      {"RecNo", "", "the field is empty; it has to hold a value"},
      {"RecNo", "  ", "the field is empty; it has to hold a value"},
      {"IsTrunk", "2", "'2' is no truth value; write 1 or 0"},
      {"IsTrunk", "trunk", "'trunk' is no truth value; write 1 or 0"},
      {"InOctetsDate", "1.5.2024", "'1.5.2024' is no date; write YYYY-MM-DD HH:MM:SS"},
      {"InOctetsDate", "2024-02-30", "'2024-02-30' is no date; write YYYY-MM-DD HH:MM:SS"},
      {"InOctetsDate", "2024-05-01T10:00:00",
       "'2024-05-01T10:00:00' is no date; write YYYY-MM-DD HH:MM:SS"},
      {"InOctetsDate", "2024-05-01 24:00:00",
       "'2024-05-01 24:00:00' is no date; write YYYY-MM-DD HH:MM:SS"},
      {"InErrorsTot24H", "1,5", "'1,5' is no number; write one with a point, as 12.5"},
      {"InErrorsTot24H", "1 000", "'1 000' is no number; write one with a point, as 12.5"},
      {"InErrorsTot24H", "inf", "'inf' is no number; write one with a point, as 12.5"},
      {"InErrorsTot24H", "nan", "'nan' is no number; write one with a point, as 12.5"},
      {"InErrorsTot24H", "1e400x", "'1e400x' is no number; write one with a point, as 12.5"},
      {"InErrorsTot24H", "1e400", "'1e400' is out of range: too large, or too near to 0"},
      {"InErrorsTot24H", "-1e400", "'-1e400' is out of range: too large, or too near to 0"},
      {"InErrorsTot24H", "1e-400", "'1e-400' is out of range: too large, or too near to 0"},
      {"InErrorsTot24H", "12.5%", "'12.5%' is no number; write one with a point, as 12.5"},
      {"IfAlias", "caf\xE9", "'caf?' is no UTF-8; write it in that charset"},
  };
  for (const auto& [column, field, expected] : kCases) {
    EXPECT_EQ(Read("VLAN", column, field), expected) << column << ": " << field;
  }
}

// One beyond it would keep the sums of all ports from being made.
TEST(CsvValues, FiguresOfPortsHaveTheRangeInWhichTheyAreAddedUp) {
  for (const char* column : {"InErrorsTot24H", "OutErrorsTot24H", "InBroadCastPpm24H",
                             "InMultiCastPpm24H", "InHCOctetsMb24H", "OutHCOctetsMb24H"}) {
    EXPECT_EQ(Read("VLAN", column, "2147483647"), "2147483647") << column;
    EXPECT_EQ(Read("VLAN", column, "-2147483648"), "-2147483648") << column;
    EXPECT_EQ(Read("VLAN", column, "2147483647.5"),
              "'2147483647.5' is no number from -2147483648 to 2147483647")
        << column;
    EXPECT_EQ(Read("VLAN", column, "-3e9"), "'-3e9' is no number from -2147483648 to 2147483647")
        << column;
  }
}

// One beyond it would keep all storages out of the history.
TEST(CsvValues, FiguresOfStoragesHaveTheRangeInWhichTheyAreAddedUp) {
  const Case kCases[] = {
      {"FreeRawM", "1.7e38", "1.7e+38"},
      {"FreeRawM", "1.8e38", "'1.8e38' is no number from -1.701411733e+38 to 1.701411733e+38"},
      {"UsedRawM", "-1.8e38", "'-1.8e38' is no number from -1.701411733e+38 to 1.701411733e+38"},
      {"UsedProc", "99.5", "99.5"},
      {"UsedProc", "32767", "32767"},
      {"UsedProc", "32767.5", "'32767.5' is no number from -32768 to 32767"},
      {"UsedProc14Trend", "-0.25", "-0.25"},
      {"UsedProc14Trend", "9007199254740993", "9007199254740993"},
      {"UsedProc14Trend", "9223372036854775808", "9.223372036854776e+18"},
      {"UsedProc30Trend", "1e300", "1e+300"},
  };
  for (const auto& [column, field, expected] : kCases) {
    EXPECT_EQ(Read("HostDiskInfo", column, field), expected) << column << ": " << field;
  }
}

TEST(CsvValues, OnlyTextsInUtf8WithoutNulAreTexts) {
  const std::string_view kWrong[] = {
      "\x80",              // the middle of a character
      "\xC3",              // half of one
      "\xC3(",             //
      "\xE2\x82",          //
      "\xC0\xAF",          // more bytes than it takes
      "\xE0\x80\xAF",      //
      "\xF0\x80\x80\xAF",  //
      "\xED\xA0\x80",      // half of a pair of another encoding
      "\xED\xB0\x80",      //
      "\xED\xBF\xBF",      //
      "\xF4\x90\x80\x80",  // beyond the last character
      "\xF8\x88\x80\x80\x80",
      "\xFF",
  };
  for (const std::string_view text : kWrong) {
    EXPECT_NE(Read("VLAN", "DevName", text).find("is no UTF-8"), std::string::npos) << text;
  }
  for (const std::string_view text :
       {"\x7F\u0080", "\u07FF\u0800", "\uD7FF\uE000\uFFFF\U00010000", "\U0010FFFF"}) {
    EXPECT_EQ(ReadField(ColumnOf("VLAN", "DevName"), text), FieldValue(text)) << text;
  }
  EXPECT_EQ(Read("VLAN", "DevName", std::string_view("a\0b", 3)), "'a?b' holds a NUL; take it out");
}

TEST(CsvValues, AHardwareAddressHasTheFormThatSearchesLookFor) {
  const std::pair<const char*, const char*> kTaken[] = {
      {"02 1B 2C 3D 4E 5F", "'02 1B 2C 3D 4E 5F'"},
      {" aa bb cc dd ee ff ", "'aa bb cc dd ee ff'"},
      {"", "''"},
      {"  ", "''"}};
  for (const auto& [field, value] : kTaken) EXPECT_EQ(Read("MAC", "MacAddr", field), value);
  for (const std::string field : {"02:1b:2c:3d:4e:5f", "02-1B-2C-3D-4E-5F", "021B2C3D4E5F",
                                  "021b.2c3d.4e5f", "02 1B 2C 3D 4E", "02 1B 2C 3D 4E 5G",
                                  "02 1B 2C 3D 4E 5F 60", "0 21B 2C 3D 4E 5F", "unknown"}) {
    EXPECT_EQ(Read("MAC", "MacAddr", field),
              "'" + field +
                  "' is no hardware address; write six pairs of hexadecimal digits with a blank"
                  " between them, as 02 1B 2C 3D 4E 5F");
  }
}

TEST(CsvValues, TextsMayBeAsLongAsTheServiceReadsThem) {
  const std::string longest(kLongestText, 'x');
  EXPECT_EQ(ReadField(ColumnOf("VLAN", "IfAlias"), longest), FieldValue(longest));
  EXPECT_EQ(Read("VLAN", "IfAlias", longest + "x"),
            "a text of 262145 bytes; at most 262144 are read");
}

TEST(CsvValues, MessagesShowTheBeginningOfALongTextAndNothingThatMovesACursor) {
  EXPECT_EQ(Read("VLAN", "RecNo", std::string(100, '7')),
            "'" + std::string(40, '7') + "...' is no whole number from 1 to 2147483647");
  EXPECT_EQ(Read("VLAN", "RecNo", "\x1B[2J\n"), "'?[2J?' is no whole number from 1 to 2147483647");
}

TEST(CsvValues, TheTextOfAValueReadsAsTheValue) {
  const InputColumn number = ColumnOf("HostDiskInfo", "UsedProc14Trend");
  for (const double value : {0.1, 1.0 / 3, 1e300, 5e-324, -12.5, 9.3e18, 0.30000000000000004}) {
    EXPECT_EQ(ReadField(number, FieldText(value)), FieldValue(value)) << value;
  }
  for (const std::int64_t value : {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, INT64_MAX}) {
    EXPECT_EQ(ReadField(number, FieldText(value)), FieldValue(value)) << value;
  }
  const DateTime moment = MakeDateTime({2024, 5, 1, 23, 4, 5});
  EXPECT_EQ(FieldText(moment), "2024-05-01 23:04:05");
  EXPECT_EQ(ReadField(ColumnOf("MAC", "LastSeen"), FieldText(moment)), FieldValue(moment));
  EXPECT_EQ(FieldText(FieldValue()), "");
}

}  // namespace
}  // namespace quillon
