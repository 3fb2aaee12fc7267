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

}  // namespace
}  // namespace quillon
