// Tables in another order than the stored one: the order of each kind of column, the walk behind a
// sort, and the texts that are no order.
#include "platform/database_fixture.h"

namespace quillon {
namespace {

class RecordsetSortTest : public DatabaseTest {
 protected:
  // Rows Id 1, 2, ... with these values, SQL literals, in a column.
  void AddValues(const std::string& column, const Texts& values) const {
    std::string statements;
    int id = 0;
    for (const std::string& value : values) {
      statements += "INSERT INTO Samples (Id, " + column + ") VALUES (" + std::to_string(++id) +
                    ", " + value + ");";
    }
    Sql("BEGIN;" + statements + "COMMIT;");
  }

  Recordset OpenReadOnly() { return OpenSamples(LockType::kReadOnly); }

  // Ids of all rows in that order.
  Texts Sorted(const std::string& order) {
    Recordset samples = OpenReadOnly();
    samples.Sort(order);
    return Walk(samples, "Id");
  }

  void ExpectOrder(const std::string& column, const Texts& ascending, const Texts& descending) {
    EXPECT_EQ(Sorted(column), ascending) << column;
    EXPECT_EQ(Sorted(column + " ASC"), ascending) << column;
    EXPECT_EQ(Sorted(column + " DESC"), descending) << column;
  }
};

TEST_F(RecordsetSortTest, NumbersAreOrderedByTheirValue) {
  const Texts values = {"10", "9", "-1", "1000", "0", "-20"};
  const Texts ascending = {"6", "3", "5", "2", "1", "4"};
  const Texts descending = {"4", "1", "2", "5", "3", "6"};
  for (const std::string column : {"Size", "Figure", "Ratio"}) {
    Sql("DELETE FROM Samples");
    AddValues(column, values);
    ExpectOrder(column, ascending, descending);
  }
  Sql("UPDATE Samples SET Figure = Id, Id = Ratio");
  Recordset samples = OpenReadOnly();
  samples.Sort("Id DESC");
  EXPECT_EQ(Walk(samples, "Figure"), descending);
}

TEST_F(RecordsetSortTest, FractionsStandBetweenWholeNumbers) {
  for (const std::string column : {"Size", "Figure", "Ratio"}) {
    Sql("DELETE FROM Samples");
    AddValues(column, {"2", "1.5", "-0.5", "1", "0", "1e3", "999.5"});
    ExpectOrder(column, {"3", "5", "4", "2", "1", "7", "6"}, {"6", "7", "1", "2", "4", "5", "3"});
  }
}

TEST_F(RecordsetSortTest, DatesAreOrderedByTheirMoment) {
  AddValues("Seen", {"'2024-05-01 03:10:00'", "'2023-12-31 23:59:59'", "'2024-05-01'",
                     "'2024-05-01 03:09:59'", "'1999-01-01 00:00:00'"});
  ExpectOrder("Seen", {"5", "2", "3", "4", "1"}, {"1", "4", "3", "2", "5"});
}

TEST_F(RecordsetSortTest, FalseComesBeforeTrue) {
  AddValues("Active", {"TRUE", "FALSE", "TRUE", "FALSE"});
  ExpectOrder("Active", {"2", "4", "1", "3"}, {"1", "3", "2", "4"});
}

TEST_F(RecordsetSortTest, TextsAreOrderedWithoutRegardToCase) {
  AddNames({"beta", "Alpha", "gamma", "BETA 2", "", " first", "alpha 1"});
  ExpectOrder("Name", {"5", "6", "2", "7", "1", "4", "3"}, {"3", "4", "1", "7", "2", "6", "5"});
}

TEST_F(RecordsetSortTest, TextsOfAllLettersIgnoreCase) {
  AddNames({"ä", "Ö", "Ä", "ö", "МОСКВА", "москва", "z", "Z"});
  ExpectOrder("Name", {"7", "8", "1", "3", "2", "4", "5", "6"},
              {"5", "6", "2", "4", "1", "3", "7", "8"});
}

TEST_F(RecordsetSortTest, EqualKeysKeepTheStoredOrderInBothDirections) {
  for (const std::string column : {"Size", "Figure", "Ratio", "Active"}) {
    Sql("DELETE FROM Samples");
    AddValues(column, {"1", "0", "1", "0", "1", "0", "1"});
    ExpectOrder(column, {"2", "4", "6", "1", "3", "5", "7"}, {"1", "3", "5", "7", "2", "4", "6"});
  }
  Sql("DELETE FROM Samples");
  AddNames({"x", "Core", "CORE", "X", "core"});
  ExpectOrder("Name", {"2", "3", "5", "1", "4"}, {"1", "4", "2", "3", "5"});
}

TEST_F(RecordsetSortTest, EqualKeysOfAnIndexedColumnKeepTheStoredOrder) {
  Sql("CREATE INDEX Samples_Figure ON Samples (Figure, Name)");
  Sql("INSERT INTO Samples (Id, Figure, Name) VALUES"
      " (1, 2, 'z'), (2, 1, 'y'), (3, 2, 'a'), (4, 1, 'x'), (5, 2, 'm')");
  ExpectOrder("Figure", {"2", "4", "1", "3", "5"}, {"1", "3", "5", "2", "4"});
}

TEST_F(RecordsetSortTest, ManyEqualKeysKeepTheStoredOrder) {
  constexpr int kRows = 5000;
  Sql("WITH RECURSIVE Number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Number WHERE n < " +
      std::to_string(kRows) + ") INSERT INTO Samples (Id, Figure) SELECT n, n % 3 FROM Number");
  Texts idsByFigure[3];
  for (int id = 1; id <= kRows; ++id) idsByFigure[id % 3].push_back(std::to_string(id));
  const auto idsOf = [&](const std::vector<int>& figures) {
    Texts ids;
    for (const int figure : figures) {
      const Texts& equal = idsByFigure[figure];
      ids.insert(ids.end(), equal.begin(), equal.end());
    }
    return ids;
  };
  ExpectOrder("Figure", idsOf({0, 1, 2}), idsOf({2, 1, 0}));
}

TEST_F(RecordsetSortTest, NullsAreTheSmallest) {
  struct Case {
    std::string column;
    std::string smaller;
    std::string larger;
  };
  const Case cases[] = {{"Size", "-5", "0"},   {"Figure", "-5", "0"},
                        {"Ratio", "-5", "0"},  {"Active", "FALSE", "TRUE"},
                        {"Name", "''", "'a'"}, {"Seen", "'1900-01-01'", "'2024-05-01'"}};
  for (const Case& row : cases) {
    Sql("DELETE FROM Samples");
    AddValues(row.column, {row.larger, "NULL", row.smaller, "NULL"});
    ExpectOrder(row.column, {"2", "4", "3", "1"}, {"1", "3", "2", "4"});
  }
}

TEST_F(RecordsetSortTest, ColumnIsFoundWithoutRegardToCase) {
  AddNames({"b", "c", "a"});
  for (const std::string column : {"Name", "name", "NAME", "nAmE"}) {
    EXPECT_EQ(Sorted(column + " DESC"), (Texts{"2", "1", "3"})) << column;
    EXPECT_EQ(Sorted(column), (Texts{"3", "1", "2"})) << column;
  }
}

TEST_F(RecordsetSortTest, StandsOnTheFirstRowAfterAWalk) {
  AddNames({"b", "c", "a"});
  Recordset samples = OpenReadOnly();
  EXPECT_EQ(Walk(samples, "Name"), (Texts{"b", "c", "a"}));
  samples.Sort("Name ASC");
  EXPECT_FALSE(samples.Eof());
  EXPECT_EQ(samples.Field("Name").AsText(), "a");
  EXPECT_EQ(samples.Field("Id").AsLong(), 3);
  EXPECT_EQ(Walk(samples, "Name"), (Texts{"a", "b", "c"}));
  EXPECT_TRUE(samples.Eof());
  EXPECT_THROW(samples.Field("Name"), DatabaseFailure);
}

TEST_F(RecordsetSortTest, SecondSortStartsFromTheStoredOrder) {
  Sql("INSERT INTO Samples (Id, Name, Figure) VALUES"
      " (1, 'b', 7), (2, 'c', 7), (3, 'a', 7), (4, 'd', 6)");
  Recordset samples = OpenReadOnly();
  samples.Sort("Name DESC");
  samples.MoveNext();
  samples.Sort("Figure ASC");
  EXPECT_EQ(Walk(samples, "Id"), (Texts{"4", "1", "2", "3"}));
  samples.Sort("Figure DESC");
  EXPECT_EQ(Walk(samples, "Id"), (Texts{"1", "2", "3", "4"}));
}

TEST_F(RecordsetSortTest, CountsTheSameRowsBeforeAndAfter) {
  AddNames({"b", "c", "a"});
  Recordset samples = OpenReadOnly();
  EXPECT_EQ(samples.RecordCount(), 3);
  samples.Sort("Name DESC");
  EXPECT_EQ(samples.RecordCount(), 3);
  Walk(samples, "Name");
  EXPECT_EQ(samples.RecordCount(), 3);
}

TEST_F(RecordsetSortTest, EmptyTableIsAtItsEnd) {
  Recordset samples = OpenReadOnly();
  samples.Sort("Name DESC");
  EXPECT_TRUE(samples.Eof());
  EXPECT_EQ(samples.RecordCount(), 0);
  EXPECT_THROW(samples.Field("Name"), DatabaseFailure);
}

TEST_F(RecordsetSortTest, HasTheRowsOfTheOpening) {
  AddNames({"b", "c", "a"});
  Recordset samples = OpenReadOnly();
  Sql("INSERT INTO Samples (Id, Name) VALUES (4, 'added');"
      "DELETE FROM Samples WHERE Name = 'b'; UPDATE Samples SET Name = 'z' WHERE Name = 'a';");
  samples.Sort("Name ASC");
  Sql("DELETE FROM Samples");
  EXPECT_EQ(samples.RecordCount(), 3);
  EXPECT_EQ(Walk(samples, "Name"), (Texts{"a", "b", "c"}));
}

TEST_F(RecordsetSortTest, SortedRowsHaveAllTheirFieldsWithTheirTypes) {
  Sql("INSERT INTO Samples VALUES (7, 'Core', '2024-05-01 03:00:00', 1, 2.5, 12, 0.25),"
      " (8, 'Edge', NULL, 0, 0.1, 13, 0.5)");
  Recordset samples = OpenReadOnly();
  samples.Sort("Figure DESC");
  EXPECT_EQ(samples.Field("Name").AsText(), "Edge");
  EXPECT_EQ(samples.Field("Size").type(), Value::Type::kSingle);
  EXPECT_EQ(samples.Field("Size").AsText(), "0.1");
  EXPECT_TRUE(samples.Field("Seen").IsNull());
  samples.MoveNext();
  EXPECT_EQ(samples.Field("Name").AsText(), "Core");
  EXPECT_EQ(samples.Field("Seen").AsDate(), MakeDateTime({2024, 5, 1, 3}));
  EXPECT_TRUE(samples.Field("Active").AsBoolean());
}

TEST_F(RecordsetSortTest, TextThatIsNoOrderIsRefused) {
  AddNames({"b", "c", "a"});
  Sql("CREATE TABLE Others (Colour TEXT)");
  const std::string refused[] = {
      "",
      " ",
      "ASC",
      " ASC",
      " DESC",
      "Colour",
      "Colour ASC",
      "Others.Colour ASC",
      "Name SIDEWAYS",
      "Name  ASC",
      "Name ASC ",
      "Name asc",
      " Name ASC",
      "Name ASC DESC",
      "Name ASC, Id DESC",
      "Name, Id",
      "Name ASC,",
      "Name; DELETE FROM Samples",
      "Name ASC; DELETE FROM Samples",
      "Name ASC --",
      "Name -- ASC",
      "Name COLLATE BINARY ASC",
      "Name ASC NULLS LAST",
      "Name ASC LIMIT 1",
      "lower(Name) ASC",
      "-Id ASC",
      "Id+1",
      "1 ASC",
      "rowid DESC",
      "_rowid_",
      "Samples.Name",
      "(SELECT 1)",
      "'Name'",
      "Name\" ASC",
  };
  for (const std::string& order : refused) {
    Recordset samples = OpenReadOnly();
    EXPECT_NE(FailureText([&] { samples.Sort(order); }), "") << order;
    samples.Sort("Name ASC");
    EXPECT_EQ(Walk(samples, "Name"), (Texts{"a", "b", "c"})) << order;
  }
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"b", "c", "a"}));
}

TEST_F(RecordsetSortTest, TableOpenedForChangeIsNotSorted) {
  AddNames({"b", "c", "a"});
  Recordset samples = OpenSamples(LockType::kOptimistic);
  EXPECT_NE(FailureText([&] { samples.Sort("Name ASC"); }), "");
  EXPECT_EQ(Walk(samples, "Name"), (Texts{"b", "c", "a"}));
}

TEST_F(RecordsetSortTest, SelectIsNotSorted) {
  AddNames({"b", "c", "a"});
  Recordset rows = connection.Execute("SELECT * FROM Samples");
  EXPECT_NE(FailureText([&] { rows.Sort("Name ASC"); }), "");
  EXPECT_EQ(Walk(rows, "Name"), (Texts{"b", "c", "a"}));
}

TEST_F(RecordsetSortTest, SortedTableRefusesChanges) {
  AddNames({"b", "c", "a"});
  Recordset samples = OpenReadOnly();
  samples.Sort("Name ASC");
  EXPECT_NE(FailureText([&] {
              samples.SetField("Name", Value::Text("z"));
              samples.Update();
            }),
            "");
  EXPECT_NE(FailureText([&] { samples.Delete(); }), "");
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"b", "c", "a"}));
}

TEST_F(RecordsetSortTest, ClosedRecordsetIsNotSorted) {
  Recordset closed;
  EXPECT_NE(FailureText([&] { closed.Sort("Name ASC"); }), "");
  Recordset samples = OpenReadOnly();
  samples.Close();
  EXPECT_NE(FailureText([&] { samples.Sort("Name ASC"); }), "");
}

}  // namespace
}  // namespace quillon
