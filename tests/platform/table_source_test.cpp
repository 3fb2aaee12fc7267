// Changes of a table's rows: what belongs to which row, and the form in which it is stored.
#include "platform/table_source.h"

#include "platform/database_fixture.h"

namespace quillon {
namespace {

using TableSourceTest = DatabaseTest;

TEST_F(TableSourceTest, ChangeThatIsNotStoredIsGivenUpWithItsRow) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples();
  samples.SetField("Name", Value::Text("changed"));
  samples.MoveNext();
  samples.Update();
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a", "b"}));
}

TEST_F(TableSourceTest, NewRowThatIsNotStoredIsGivenUpByTheWalk) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples();
  samples.AddNew();
  samples.SetField("Name", Value::Text("new"));
  samples.MoveNext();
  samples.SetField("Name", Value::Text("second"));
  samples.Update();
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a", "second"}));
}

TEST_F(TableSourceTest, UpdateOfARowThatAnotherProgramDeletedFails) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples();
  Sql("DELETE FROM Samples WHERE Name = 'a'");
  samples.SetField("Name", Value::Text("changed"));
  EXPECT_EQ(FailureText([&] { samples.Update(); }), "Reports.mdb: the row is gone");
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"b"}));
}

TEST_F(TableSourceTest, ValueIsStoredByTheDeclarationOfItsColumn) {
  AddNames({"a"});
  Recordset samples = OpenSamples();
  samples.SetField("Size", Value::Real(0.1));
  samples.SetField("Name", Value::Real(1));
  samples.SetField("Figure", Value::Integer(9007199254740993));
  samples.Update();
  EXPECT_EQ(Stored("SELECT Size = 0.10000000149011612, Name, Figure FROM Samples"),
            (Texts{"1|1|9007199254740993"}));
}

TEST_F(TableSourceTest, EmptyTextStaysATextAndFalseANumber) {
  Recordset samples = OpenSamples();
  samples.AddNew();
  samples.SetField("Name", Value::Text(""));
  samples.SetField("Active", Value::Boolean(false));
  samples.Update();
  EXPECT_EQ(Stored("SELECT typeof(Name), length(Name), typeof(Active), Active FROM Samples"),
            (Texts{"text|0|integer|0"}));
}

TEST_F(TableSourceTest, RowThatIsNotThereIsNeitherChangedNorDeleted) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples();
  samples.Delete();
  EXPECT_EQ(FailureText([&] { samples.Delete(); }), "Reports.mdb: no current row");
  EXPECT_EQ(FailureText([&] { samples.SetField("Name", Value::Text("x")); }),
            "Reports.mdb: no current row");
  samples.MoveNext();
  samples.MoveNext();
  EXPECT_EQ(FailureText([&] { samples.Delete(); }), "Reports.mdb: no current row");
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"b"}));
}

TEST_F(TableSourceTest, RowsOfALoopMayDifferInTheFieldsThatTheySet) {
  Recordset samples = OpenSamples();
  const std::vector<Texts> rows = {{"Id", "Name"}, {"Id", "Name"}, {"Name", "Id"}, {"Id"}, {}};
  for (const Texts& fields : rows) {
    samples.AddNew();
    for (const std::string& field : fields) {
      samples.SetField(field, field == "Id" ? Value::Integer(7) : Value::Text("x"));
    }
    samples.Update();
  }
  EXPECT_EQ(Stored("SELECT Id, Name FROM Samples"),
            (Texts{"7|x", "7|x", "7|x", "7|NULL", "NULL|NULL"}));
}

TEST_F(TableSourceTest, ChangesOfALoopMayDifferInTheFieldsThatTheySet) {
  AddNames({"a", "b", "c"});
  Recordset samples = OpenSamples();
  for (const std::string field : {"Name", "Id", "Name"}) {
    samples.SetField(field, Value::Text("9"));
    samples.Update();
    samples.MoveNext();
  }
  EXPECT_EQ(Stored("SELECT Id, Name FROM Samples"), (Texts{"1|9", "9|b", "3|9"}));
}

TEST_F(TableSourceTest, LastOfTwoSettingsOfAFieldIsStored) {
  Recordset samples = OpenSamples();
  samples.AddNew();
  samples.SetField("Name", Value::Text("first"));
  samples.SetField("NAME", Value::Text("second"));
  samples.Update();
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"second"}));
}

TEST_F(TableSourceTest, RowsAreDeletedInOneStrokeAndTheWalkStandsBehindThem) {
  AddNames({"a", "b", "c", "d", "e"});
  Recordset samples = OpenSamples();
  samples.MoveNext();
  EXPECT_EQ(samples.DeleteRows(3), 3);
  EXPECT_EQ(samples.Field("Name").AsText(), "e");
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a", "e"}));
}

TEST_F(TableSourceTest, StrokeBeyondTheLastRowDeletesWhatIsThere) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples();
  EXPECT_EQ(samples.DeleteRows(101), 2);
  EXPECT_TRUE(samples.Eof());
  EXPECT_EQ(samples.DeleteRows(101), 0);
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), Texts{});
}

TEST_F(TableSourceTest, StrokeLeavesRowsThatWereAddedMeanwhile) {
  AddNames({"a", "b", "c"});
  Sql("DELETE FROM Samples WHERE Name = 'b'");
  Recordset samples = OpenSamples();
  Sql("INSERT INTO Samples (rowid, Name) VALUES (2, 'between'), (4, 'behind')");
  EXPECT_EQ(samples.DeleteRows(101), 2);
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"between", "behind"}));
}

TEST_F(TableSourceTest, StrokeDeletesTheRowsBeforeOneThatIsRefused) {
  AddNames({"a", "b", "c"});
  Sql("CREATE TRIGGER Refusal BEFORE DELETE ON Samples WHEN OLD.Name = 'b'"
      " BEGIN SELECT RAISE(ABORT, 'refused'); END");
  Recordset samples = OpenSamples();
  EXPECT_EQ(FailureText([&] { samples.DeleteRows(101); }), "Reports.mdb: refused");
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"b", "c"}));
}

TEST_F(TableSourceTest, StrokeIsRefusedByAReadOnlyLock) {
  AddNames({"a"});
  Recordset samples = OpenSamples(LockType::kReadOnly);
  EXPECT_NE(FailureText([&] { samples.DeleteRows(1); }), "");
  Recordset rows = connection.Execute("SELECT * FROM Samples");
  EXPECT_NE(FailureText([&] { rows.DeleteRows(1); }), "");
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a"}));
}

}  // namespace
}  // namespace quillon
