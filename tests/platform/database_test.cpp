// Connections and tables opened as a whole, on real files: the types of fields, walks
// with changes, and the failures of files and tables. Selects are in database_select_test.
#include <chrono>
#include <filesystem>

#include "platform/database_fixture.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

using Type = Value::Type;

TEST_F(DatabaseTest, FieldHasTheTypeOfItsColumn) {
  Sql("INSERT INTO Samples VALUES"
      " (7, 'Core', '2024-05-01 03:00:00', 1, 2.5, 12, 0.25);");
  const Recordset samples = OpenSamples();
  EXPECT_EQ(samples.Field("Id").type(), Type::kInteger);
  EXPECT_EQ(samples.Field("Name").type(), Type::kText);
  EXPECT_EQ(samples.Field("Seen").type(), Type::kDate);
  EXPECT_EQ(samples.Field("Active").type(), Type::kBoolean);
  EXPECT_EQ(samples.Field("Size").type(), Type::kSingle);
  EXPECT_EQ(samples.Field("Figure").type(), Type::kInteger);
  EXPECT_EQ(samples.Field("Ratio").type(), Type::kReal);
  EXPECT_EQ(samples.Field("Seen").AsDate(), MakeDateTime({2024, 5, 1, 3}));
  EXPECT_TRUE(samples.Field("Active").AsBoolean());
}

TEST_F(DatabaseTest, NumberColumnHoldsIntegersAndReals) {
  Sql("INSERT INTO Samples (Figure) VALUES (3), (2.5), ('n/a'), ('');");
  Recordset samples = OpenSamples();
  const Type types[] = {Type::kInteger, Type::kReal, Type::kText, Type::kText};
  for (const Type type : types) {
    EXPECT_EQ(samples.Field("Figure").type(), type) << samples.Field("Figure").AsText();
    samples.MoveNext();
  }
}

TEST_F(DatabaseTest, TextInAnIntegerColumnStaysAText) {
  Sql("INSERT INTO Samples (Id) VALUES ('abc');");
  const Recordset samples = OpenSamples();
  EXPECT_EQ(samples.Field("Id").type(), Type::kText);
  EXPECT_EQ(samples.Field("Id").AsText(), "abc");
  EXPECT_THROW(samples.Field("Id").AsLong(), ConversionFailure);
}

TEST_F(DatabaseTest, BytesThatAreNoTextReadAsOne) {
  Sql("INSERT INTO Samples (Name, Seen, Id) VALUES (x'436F7265', x'FF', x'');");
  const Recordset samples = OpenSamples();
  EXPECT_EQ(samples.Field("Name").AsText(), "Core");
  EXPECT_EQ(samples.Field("Seen").AsText(), "\xFF");
  EXPECT_EQ(samples.Field("Id").AsText(), "");
  EXPECT_EQ(samples.Field("Id").type(), Type::kText);
}

TEST_F(DatabaseTest, SingleIsReadThroughA32BitFloat) {
  Sql("INSERT INTO Samples (Size) VALUES (16777217), (0.1);");
  Recordset samples = OpenSamples();
  EXPECT_EQ(samples.Field("Size").AsNumber(), 16777216);
  samples.MoveNext();
  EXPECT_EQ(samples.Field("Size").AsText(), "0.1");
  EXPECT_EQ(samples.Field("Size").AsNumber(), static_cast<double>(0.1f));
}

TEST_F(DatabaseTest, DateIsReadWithAndWithoutATime) {
  Sql("INSERT INTO Samples (Seen) VALUES ('2024-02-29'), ('2024-02-29 23:59:59');");
  Recordset samples = OpenSamples();
  EXPECT_EQ(samples.Field("Seen").AsDate(), MakeDateTime({2024, 2, 29}));
  samples.MoveNext();
  EXPECT_EQ(samples.Field("Seen").AsDate(), MakeDateTime({2024, 2, 29, 23, 59, 59}));
}

TEST_F(DatabaseTest, NullReadsFailWithTheFieldsName) {
  Sql("INSERT INTO Samples DEFAULT VALUES;");
  const Recordset samples = OpenSamples();
  for (const std::string name : {"Id", "Name", "Seen", "Active", "Size", "Figure", "Ratio"}) {
    EXPECT_TRUE(samples.Field(name).IsNull()) << name;
    try {
      samples.Field(name).AsText();
      ADD_FAILURE() << name << " was read";
    } catch (const ConversionFailure& failure) {
      EXPECT_NE(std::string(failure.what()).find(name), std::string::npos) << failure.what();
    }
  }
}

TEST_F(DatabaseTest, FieldIsFoundWithoutRegardToCase) {
  AddNames({"Core"});
  const Recordset samples = OpenSamples();
  for (const char* name : {"Name", "name", "NAME", "nAmE"}) {
    EXPECT_EQ(samples.Field(name).AsText(), "Core") << name;
  }
}

TEST_F(DatabaseTest, UnknownFieldFails) {
  AddNames({"Core"});
  Recordset samples = OpenSamples();
  const std::string reading = FailureText([&] { samples.Field("Colour"); });
  EXPECT_NE(reading.find("Colour"), std::string::npos) << reading;
  EXPECT_THROW(
      {
        samples.SetField("Colour", Value::Text("red"));
        samples.Update();
      },
      DatabaseFailure);
}

TEST_F(DatabaseTest, WalkGoesInStoredOrderAndEnds) {
  AddNames({"b", "c", "a"});
  Recordset samples = OpenSamples();
  EXPECT_EQ(samples.RecordCount(), 3);
  EXPECT_EQ(Walk(samples, "Name"), (Texts{"b", "c", "a"}));
  EXPECT_TRUE(samples.Eof());
  EXPECT_THROW(samples.Field("Name"), DatabaseFailure);
}

TEST_F(DatabaseTest, EmptyTableIsAtItsEndAtOnce) {
  const Recordset samples = OpenSamples();
  EXPECT_TRUE(samples.Eof());
  EXPECT_EQ(samples.RecordCount(), 0);
}

TEST_F(DatabaseTest, WalkUpdatesEachRow) {
  AddNames({"a", "b", "c"});
  Recordset samples = OpenSamples();
  for (; !samples.Eof(); samples.MoveNext()) {
    samples.SetField("Figure", Value::Integer(samples.Field("Id").AsLong() * 10));
    samples.SetField("name", Value::Text(samples.Field("Name").AsText() + "'s"));
    samples.Update();
  }
  EXPECT_EQ(Stored("SELECT Id, Name, Figure FROM Samples"),
            (Texts{"1|a's|10", "2|b's|20", "3|c's|30"}));
}

TEST_F(DatabaseTest, UpdatedFieldReadsWithItsNewValue) {
  AddNames({"a"});
  Recordset samples = OpenSamples();
  samples.SetField("Name", Value::Text("z"));
  samples.Update();
  EXPECT_EQ(samples.Field("Name").AsText(), "z");
  EXPECT_EQ(samples.Field("Id").AsLong(), 1);
}

TEST_F(DatabaseTest, EachKindOfValueIsStoredInItsForm) {
  Recordset samples = OpenSamples();
  samples.AddNew();
  samples.SetField("Id", Value::Integer(5));
  samples.SetField("Name", Value::Integer(100));
  samples.SetField("Seen", Value::Date(MakeDateTime({2024, 5, 1, 3, 4, 5})));
  samples.SetField("Active", Value::Boolean(true));
  samples.SetField("Size", Value::Single(0.5f));
  samples.SetField("Figure", Value::Real(2.25));
  samples.SetField("Ratio", Value());
  samples.Update();
  EXPECT_EQ(Stored("SELECT *, typeof(Name), typeof(Seen) FROM Samples"),
            (Texts{"5|100|2024-05-01 03:04:05|1|0.5|2.25|NULL|text|text"}));
}

TEST_F(DatabaseTest, NewRowIsStoredByUpdateWithNullsInTheOtherFields) {
  AddNames({"a"});
  Recordset samples = OpenSamples();
  samples.AddNew();
  samples.SetField("Name", Value::Text("new"));
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a"}));
  samples.Update();
  EXPECT_EQ(Stored("SELECT Id, Name, Seen FROM Samples"), (Texts{"1|a|NULL", "NULL|new|NULL"}));
}

TEST_F(DatabaseTest, WalkDeletesTheRowsItPicks) {
  AddNames({"a", "b", "c", "d"});
  Recordset samples = OpenSamples();
  for (; !samples.Eof(); samples.MoveNext()) {
    if (samples.Field("Id").AsLong() % 2 == 1) samples.Delete();
  }
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"b", "d"}));
}

TEST_F(DatabaseTest, WalkEmptiesATable) {
  AddNames({"a", "b", "c"});
  Recordset samples = OpenSamples();
  for (; !samples.Eof(); samples.MoveNext()) samples.Delete();
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), Texts{});
}

TEST_F(DatabaseTest, RowAddedDuringAWalkDoesNotAppear) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples();
  Recordset others = OpenSamples();
  Texts seen;
  for (; !samples.Eof(); samples.MoveNext()) {
    seen.push_back(samples.Field("Name").AsText());
    others.AddNew();
    others.SetField("Name", Value::Text("later"));
    others.Update();
    Sql("INSERT INTO Samples (Name) VALUES ('foreign')");
  }
  EXPECT_EQ(seen, (Texts{"a", "b"}));
  EXPECT_EQ(Stored("SELECT Count(*) FROM Samples"), (Texts{"6"}));
}

TEST_F(DatabaseTest, RowsDeletedDuringAWalkArePassedOver) {
  AddNames({"a", "b", "c", "d"});
  Recordset samples = OpenSamples();
  Sql("DELETE FROM Samples WHERE Name IN ('b', 'd')");
  EXPECT_EQ(Walk(samples, "Name"), (Texts{"a", "c"}));
}

TEST_F(DatabaseTest, WrittenRowIsSeenByOthersAtOnce) {
  AddNames({"a"});
  Recordset samples = OpenSamples();
  samples.SetField("Name", Value::Text("changed"));
  samples.Update();
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"changed"}));
  Sql("INSERT INTO Samples (Name) VALUES ('foreign')");
}

TEST_F(DatabaseTest, ReadOnlyLockRefusesChanges) {
  AddNames({"a", "b"});
  Recordset samples = OpenSamples(LockType::kReadOnly);
  EXPECT_THROW(
      {
        samples.SetField("Name", Value::Text("z"));
        samples.Update();
      },
      DatabaseFailure);
  EXPECT_THROW(samples.Delete(), DatabaseFailure);
  EXPECT_THROW(
      {
        samples.AddNew();
        samples.SetField("Name", Value::Text("z"));
        samples.Update();
      },
      DatabaseFailure);
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a", "b"}));
}

TEST_F(DatabaseTest, MissingFileFailsAndIsNotCreated) {
  Connection other;
  const std::string text = FailureText([&] { other.Open(ConnectionString("Missing.mdb")); });
  EXPECT_NE(text.find("Missing.mdb"), std::string::npos) << text;
  EXPECT_FALSE(installation.Exists("Missing.mdb"));
}

TEST_F(DatabaseTest, PathThatIsTooLongForTheEngineFailsWithTheFilesName) {
  const std::string folder = installation.path() + "/" + std::string(200, 'a') + "/" +
                             std::string(200, 'b') + "/" + std::string(200, 'c');
  std::filesystem::create_directories(folder);
  std::filesystem::copy(installation.path() + "/Reports.mdb", folder + "/Far.mdb");
  Connection other;
  const std::string text =
      FailureText([&] { other.Open("Provider=SQLite;Data Source=" + folder + "/Far.mdb"); });
  EXPECT_TRUE(text.starts_with("Far.mdb: ")) << text;
}

TEST_F(DatabaseTest, ConnectionStringMayEndWithThePathAndHasToHaveOne) {
  Connection other;
  other.Open("Provider=SQLite;Data Source=" + installation.path() + "/Reports.mdb");
  EXPECT_TRUE(other.Execute("SELECT Id FROM Samples").Eof());
  EXPECT_EQ(FailureText([&] { other.Open("Provider=SQLite"); }),
            "no data source in the connection string \"Provider=SQLite\"");
}

TEST_F(DatabaseTest, FileThatIsNoDatabaseFailsWithItsName) {
  installation.Write("Letter.mdb", std::string(8192, 'x'));
  Connection other;
  const std::string text = FailureText([&] { other.Open(ConnectionString("Letter.mdb")); });
  EXPECT_NE(text.find("Letter.mdb"), std::string::npos) << text;
  EXPECT_EQ(installation.Read("Letter.mdb"), std::string(8192, 'x'));
}

TEST_F(DatabaseTest, EmptyFileFailsAndStaysEmpty) {
  installation.Write("Empty.mdb", "");
  EXPECT_THROW(
      {
        Connection other;
        other.Open(ConnectionString("Empty.mdb"));
        Recordset rows;
        rows.Open("VLAN", other, CursorType::kStatic, LockType::kOptimistic);
      },
      DatabaseFailure);
  EXPECT_EQ(std::filesystem::file_size(installation.path() + "/Empty.mdb"), 0u);
}

TEST_F(DatabaseTest, MissingTableFailsWithFileAndTable) {
  Recordset rows;
  EXPECT_EQ(FailureText([&] {
              rows.Open("Samplers", connection, CursorType::kStatic, LockType::kOptimistic);
            }),
            "Reports.mdb: no such table: Samplers");
}

TEST_F(DatabaseTest, TableNameIsNoPieceOfSql) {
  AddNames({"a"});
  Recordset rows;
  for (const char* name : {"Samples; DELETE FROM Samples", "Samples\" --", "(SELECT 1)", ""}) {
    EXPECT_THROW(rows.Open(name, connection, CursorType::kStatic, LockType::kOptimistic),
                 DatabaseFailure)
        << name;
  }
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a"}));
}

TEST_F(DatabaseTest, ConnectionOpensAgainAfterClose) {
  AddNames({"a"});
  connection.Close();
  EXPECT_THROW(connection.Execute("SELECT Name AS Result FROM Samples"), DatabaseFailure);
  connection.Open(ConnectionString("Reports.mdb"));
  EXPECT_EQ(Results("SELECT Name AS Result FROM Samples"), (Texts{"a"}));
}

TEST_F(DatabaseTest, LockedDatabaseIsReadButFailsAWriteAfterFiveSeconds) {
  AddNames({"a"});
  const OtherWriter other(installation.path() + "/Reports.mdb");
  const auto start = std::chrono::steady_clock::now();
  const std::string text = FailureText([&] {
    Recordset samples = OpenSamples();
    EXPECT_EQ(samples.Field("Name").AsText(), "a");
    samples.SetField("Name", Value::Text("z"));
    samples.Update();
  });
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_NE(text.find("Reports.mdb"), std::string::npos) << text;
  EXPECT_GE(waited, std::chrono::seconds(4));
  EXPECT_LE(waited, std::chrono::seconds(12));
}

}  // namespace
}  // namespace quillon
