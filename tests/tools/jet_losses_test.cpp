// The list of what did not come over.
#include <gtest/gtest.h>

#include "quillondb/jet/losses.h"

namespace quillon {
namespace {

using Lines = std::vector<std::string>;

TEST(JetLosses, LinesStandTableByTableInTheirOrder) {
  JetLosses losses;
  EXPECT_TRUE(losses.empty());
  losses.AddField("VLAN", 7, "IfIndex", "it is null");
  losses.AddTable("MAC", "the column X has no place here");
  losses.AddField("VLAN", 2, "RecNo", "\"x\" is no number");
  EXPECT_FALSE(losses.empty());
  EXPECT_EQ(losses.Lines(),
            (Lines{"MAC: the column X has no place here", "VLAN, row 7, IfIndex: it is null",
                   "VLAN, row 2, RecNo: \"x\" is no number"}));
}

TEST(JetLosses, TheRestOfATableWithManyIsCounted) {
  JetLosses losses;
  for (int row = 1; row <= 20; ++row) losses.AddField("VLAN", row, "RecNo", "it is null");
  EXPECT_EQ(losses.Lines().size(), 20u);
  losses.AddField("VLAN", 21, "RecNo", "it is null");
  losses.AddField("VLAN", 22, "RecNo", "it is null");
  EXPECT_EQ(losses.Lines().size(), 21u);
  EXPECT_EQ(losses.Lines().back(), "VLAN: and 2 more");
}

TEST(JetLosses, NamesOutOfAFileCannotSteerTheTerminal) {
  JetLosses losses;
  losses.AddTable("A\033[2J", "the table has no place here");
  EXPECT_EQ(losses.Lines(), (Lines{"A?[2J: the table has no place here"}));
}

}  // namespace
}  // namespace quillon
