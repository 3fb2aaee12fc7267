// Selects in the order of a column: the engine sorts row ids alone, and nothing of it shows.
#include "platform/select_source.h"

#include "platform/database_fixture.h"

namespace quillon {
namespace {

class SortedSelectTest : public DatabaseTest {
 protected:
  SortedSelectTest() {
    Sql("INSERT INTO Samples (Id, Name, Figure) VALUES"
        " (3, 'c', 1), (1, 'a', 2), (2, 'b', 1), (5, 'e', 2), (4, 'd', 1);");
  }

  Texts Names(const std::string& select) {
    Recordset rows = connection.Execute(select);
    return Walk(rows, "Name");
  }
};

TEST_F(SortedSelectTest, RowsComeInTheOrderThatTheTextSays) {
  struct Case {
    std::string rest;
    Texts names;
  };
  const Case cases[] = {
      {"ORDER BY Figure", {"c", "b", "d", "a", "e"}},
      {"ORDER BY Figure ASC", {"c", "b", "d", "a", "e"}},
      {"ORDER BY Figure DESC", {"a", "e", "c", "b", "d"}},
      {"WHERE Id > 2 ORDER BY Name DESC", {"e", "d", "c"}},
      // These mean something else for a select of ids, and run as they are.
      {"ORDER BY 1", {"a", "b", "c", "d", "e"}},
      {"ORDER BY 1 DESC --'", {"e", "d", "c", "b", "a"}},
      {"ORDER BY Figure, Name DESC", {"d", "c", "b", "e", "a"}},
      {"ORDER BY Figure DESC LIMIT 2", {"a", "e"}},
      {"WHERE Name <> ' ORDER BY Id' ORDER BY Id", {"a", "b", "c", "d", "e"}},
      {"UNION SELECT * FROM Samples ORDER BY Id", {"a", "b", "c", "d", "e"}},
      {"GROUP BY Figure ORDER BY Figure LIMIT 0", {}},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Names("SELECT * FROM Samples " + row.rest), row.names) << row.rest;
  }
}

// The engine sorts the first 128 ids by themselves, and the others only for a walk that comes to
// them.
TEST_F(SortedSelectTest, LongWalkGoesOnInTheSameOrder) {
  for (const int count : {127, 128, 129, 300}) {
    Sql("DELETE FROM Samples;");
    Texts names;
    Texts expected;
    for (int number = 1; number <= count; ++number) {
      names.push_back(std::to_string(1000 + number));
      expected.push_back(std::to_string(1001 + count - number));
    }
    AddNames(names);
    EXPECT_EQ(Names("SELECT * FROM Samples ORDER BY Id DESC"), expected) << count;
    EXPECT_EQ(Names("SELECT Id, Name FROM Samples WHERE Id > 0 ORDER BY Id DESC"), expected)
        << count;
    EXPECT_EQ(Names("SELECT * FROM Samples ORDER BY Active"), names) << count;
  }
}

TEST_F(SortedSelectTest, ColumnsOfAListAreThoseOfTheText) {
  Recordset rows = connection.Execute("SELECT Name, Figure FROM Samples ORDER BY Name DESC");
  EXPECT_EQ(rows.Field("Name").AsText(), "e");
  EXPECT_EQ(rows.Field("Figure").AsText(), "2");
  EXPECT_EQ(FailureText([&] { rows.Field("Id"); }), "Reports.mdb: no such field: Id");
  Recordset named = connection.Execute("SELECT Name AS n FROM Samples ORDER BY Name DESC");
  EXPECT_EQ(named.Field("n").AsText(), "e");
}

// None of these is a plain list of columns of a plain table, so each runs as it is.
TEST_F(SortedSelectTest, OtherThanPlainColumnsAreInOrderToo) {
  const std::string selects[] = {
      "SELECT 'x', Name FROM Samples ORDER BY Name DESC",
      "SELECT Name, 'x' FROM Samples ORDER BY Name DESC",
      "SELECT Name,Id FROM Samples ORDER BY Name DESC",
      "SELECT (Name) AS Name FROM Samples ORDER BY Name DESC",
      "SELECT Name FROM (SELECT * FROM Samples) ORDER BY Name DESC",
      "SELECT Name FROM \"Samples\" ORDER BY Name DESC",
      "SELECT Name FROM Samples, (SELECT Count(*) FROM Samples) ORDER BY Name DESC",
  };
  for (const std::string& select : selects) {
    EXPECT_EQ(Names(select), (Texts{"e", "d", "c", "b", "a"})) << select;
  }
}

TEST_F(SortedSelectTest, FailureTellsOfTheSelectAsItCame) {
  EXPECT_EQ(FailureText([&] { Names("SELECT * FROM Samples ORDER BY Missing"); }),
            "Reports.mdb: no such column: Missing");
  EXPECT_EQ(FailureText([&] { Names("SELECT * FROM Missing ORDER BY Id"); }),
            "Reports.mdb: no such table: Missing");
}

TEST_F(SortedSelectTest, WalkThatHasEndedHoldsNoReadOpen) {
  Recordset rows = connection.Execute("SELECT * FROM Samples ORDER BY Id");
  EXPECT_EQ(Walk(rows, "Id"), (Texts{"1", "2", "3", "4", "5"}));
  EXPECT_TRUE(rows.Eof());
  EXPECT_EQ(Stored("PRAGMA wal_checkpoint(TRUNCATE)"), (Texts{"0|0|0"}));
}

TEST_F(SortedSelectTest, PathOfTheDatabaseMayHoldASemicolon) {
  installation.Write("WebReports/one;two.mdb", installation.Read("Reports.mdb"));
  Connection other;
  other.Open(ConnectionString("WebReports/one;two.mdb"));
  EXPECT_FALSE(other.Execute("SELECT Count(*) AS total FROM VLAN").Eof());
}

}  // namespace
}  // namespace quillon
