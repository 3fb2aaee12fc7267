// Tables and rows on their way between two processes.
#include "quillondb/jet/jet_message.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "quillondb/jet/reading_failure.h"

namespace quillon {
namespace {

JetRow RowOfAllKinds() {
  return {JetNull{},          true,    std::int64_t{-7}, 1.5F, -2.25,
          JetDate{45413.125}, "Größe", JetOpaque{},      false};
}

TEST(JetMessage, ATableArrivesAsItWas) {
  const JetTable arrived = TableOfMessage(TableMessage({"VLAN", {"RecNo", "", "Ü"}, 12}));
  EXPECT_EQ(arrived.name, "VLAN");
  EXPECT_EQ(arrived.columns, (std::vector<std::string>{"RecNo", "", "Ü"}));
  EXPECT_EQ(arrived.rows, 12);
}

TEST(JetMessage, EachKindOfValueArrivesAsItWas) {
  const JetRow row = RowOfAllKinds();
  const JetRow arrived = RowOfMessage(RowMessage(row));
  ASSERT_EQ(arrived.size(), row.size());
  for (std::size_t place = 0; place < row.size(); ++place) {
    EXPECT_EQ(arrived[place].index(), row[place].index()) << place;
  }
  EXPECT_TRUE(std::get<bool>(arrived[1]));
  EXPECT_EQ(std::get<std::int64_t>(arrived[2]), -7);
  EXPECT_EQ(std::get<float>(arrived[3]), 1.5F);
  EXPECT_EQ(std::get<double>(arrived[4]), -2.25);
  EXPECT_EQ(std::get<JetDate>(arrived[5]).days, 45413.125);
  EXPECT_EQ(std::get<std::string>(arrived[6]), "Größe");
  EXPECT_FALSE(std::get<bool>(arrived[8]));
}

TEST(JetMessage, APieceOfAMessageIsAFailureUnlessItEndsBetweenValues) {
  const std::string whole = RowMessage({std::string("abc"), std::int64_t{1}});
  const std::size_t kFirstValue = RowMessage({std::string("abc")}).size();
  for (std::size_t length = 1; length < whole.size(); ++length) {
    const std::string piece = whole.substr(0, length);
    if (length == kFirstValue) {
      EXPECT_EQ(RowOfMessage(piece).size(), 1u);
    } else {
      EXPECT_THROW(RowOfMessage(piece), ReadingFailure) << length;
    }
  }
}

TEST(JetMessage, AnUnknownKindOfValueIsAFailure) {
  EXPECT_THROW(RowOfMessage("\x08"), ReadingFailure);
}

}  // namespace
}  // namespace quillon
