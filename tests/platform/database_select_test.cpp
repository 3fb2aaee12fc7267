// Selects from anywhere: they read the file's own tables in the dialect of the reports,
// and can neither change anything nor hold the service up.
#include <chrono>

#include "platform/database_fixture.h"

namespace quillon {
namespace {

class DatabaseSelectTest : public DatabaseTest {
 protected:
  // Runs the select to its end, so that a failure of any step shows.
  void RunToEnd(const std::string& select) {
    for (Recordset rows = connection.Execute(select); !rows.Eof(); rows.MoveNext()) {
    }
  }

  bool IsRefused(const std::string& select) {
    return !FailureText([&] { RunToEnd(select); }).empty();
  }

  // A table Big of so many rows, whose Id counts from 1 and whose Key is Id modulo 3.
  void FillBig(int rows) const {
    Sql("CREATE TABLE Big (Id INTEGER, Key NUMERIC, Wide TEXT COLLATE NOCASE);"
        "WITH RECURSIVE Number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Number WHERE n < " +
        std::to_string(rows) +
        ")"
        "INSERT INTO Big SELECT n, n % 3, printf('%0200d', n) FROM Number;");
  }
};

TEST_F(DatabaseSelectTest, GivesTypedFieldsByName) {
  Sql("INSERT INTO Samples VALUES (7, 'Core', '2024-05-01 03:00:00', 0, 2.5, 12, 0.25);");
  const Recordset rows = connection.Execute("SELECT * FROM Samples");
  EXPECT_EQ(rows.Field("SEEN").type(), Value::Type::kDate);
  EXPECT_EQ(rows.Field("active").type(), Value::Type::kBoolean);
  EXPECT_EQ(rows.Field("Size").type(), Value::Type::kSingle);
  EXPECT_EQ(rows.Field("Figure").AsLong(), 12);
  EXPECT_THROW(rows.Field("Colour"), DatabaseFailure);
}

TEST_F(DatabaseSelectTest, CountsUnderANameOfItsOwn) {
  AddNames({"a", "b"});
  const Recordset rows = connection.Execute("SELECT Count(Id) as total FROM Samples");
  EXPECT_EQ(rows.Field("total").AsText(), "2");
}

TEST_F(DatabaseSelectTest, FirstOfTwoColumnsOfOneNameIsMeant) {
  AddNames({"a", "b"});
  Recordset rows = connection.Execute("SELECT Id, Name AS id, Name FROM Samples");
  for (const std::string id : {"1", "1", "1"}) EXPECT_EQ(rows.Field("Id").AsText(), id);
  EXPECT_EQ(rows.Field("Name").AsText(), "a");
  EXPECT_EQ(rows.Field("id").AsText(), "1");
}

TEST_F(DatabaseSelectTest, FieldsAreFoundInAnyOrderAndCase) {
  AddNames({"a"});
  Recordset rows = connection.Execute("SELECT Id, Name, Seen FROM Samples");
  for (const std::string name : {"Name", "Id", "NAME", "name", "Seen", "Id"}) {
    const std::string expected = name == "Id" ? "1" : name == "Seen" ? "" : "a";
    EXPECT_EQ(rows.Field(name).IsNull() ? "" : rows.Field(name).AsText(), expected) << name;
  }
}

TEST_F(DatabaseSelectTest, WithoutRowsIsAtItsEnd) {
  const Recordset rows = connection.Execute("SELECT * FROM Samples");
  EXPECT_TRUE(rows.Eof());
  EXPECT_THROW(rows.Field("Name"), DatabaseFailure);
}

TEST_F(DatabaseSelectTest, RunsWhileAnotherIsBeingWalked) {
  AddNames({"a", "b", "c"});
  Texts pairs;
  for (Recordset rows = connection.Execute("SELECT Id, Name FROM Samples"); !rows.Eof();
       rows.MoveNext()) {
    const Texts found =
        Results("SELECT Name AS Result FROM Samples WHERE Id=" + rows.Field("Id").AsText());
    pairs.push_back(rows.Field("Name").AsText() + found.at(0));
  }
  EXPECT_EQ(pairs, (Texts{"aa", "bb", "cc"}));
}

TEST_F(DatabaseSelectTest, HalfReadDoesNotKeepOthersFromWriting) {
  AddNames({"a", "b", "c"});
  Recordset rows = connection.Execute("SELECT Name FROM Samples");
  Sql("INSERT INTO Samples (Name) VALUES ('d')");
  EXPECT_EQ(rows.Field("Name").AsText(), "a");
  rows.Close();
  EXPECT_EQ(Results("SELECT Count(*) AS Result FROM Samples"), (Texts{"4"}));
}

TEST_F(DatabaseSelectTest, RowsOfASelectCannotBeChanged) {
  AddNames({"a"});
  Recordset rows = connection.Execute("SELECT * FROM Samples");
  EXPECT_THROW(
      {
        rows.SetField("Name", Value::Text("z"));
        rows.Update();
      },
      DatabaseFailure);
  EXPECT_THROW(rows.Delete(), DatabaseFailure);
  EXPECT_EQ(Stored("SELECT Name FROM Samples"), (Texts{"a"}));
}

TEST_F(DatabaseSelectTest, RowsOfASelectAreNeitherStoredNorCounted) {
  AddNames({"a"});
  Recordset rows = connection.Execute("SELECT * FROM Samples");
  EXPECT_EQ(FailureText([&] { rows.Update(); }), "Reports.mdb: the recordset is read-only");
  EXPECT_EQ(FailureText([&] { rows.AddNew(); }), "Reports.mdb: the recordset is read-only");
  EXPECT_EQ(rows.RecordCount(), -1);
}

TEST_F(DatabaseSelectTest, WhatIsNoSelectOfTheOwnTablesIsRefused) {
  AddNames({"a", "b"});
  const std::string other = installation.path() + "/Quillon.mdb";
  const std::string copy = installation.path() + "/Copy.mdb";
  const Texts before = Stored("SELECT name FROM sqlite_master");
  const std::string refused[] = {
      "",
      "   ",
      "nonsense",
      "SELECT Name FROM Samples WHERE Name='O'Neil'",
      "SELECT Name FROM Samples ORDER BY Colour",
      "UPDATE Samples SET Name='x'",
      "DELETE FROM Samples",
      "INSERT INTO Samples (Id) VALUES (9)",
      "REPLACE INTO Samples (Id) VALUES (9)",
      "WITH x AS (SELECT 1) DELETE FROM Samples",
      "DROP TABLE Samples",
      "ALTER TABLE Samples RENAME TO Gone",
      "CREATE TABLE Other (A)",
      "CREATE TEMP TABLE Other AS SELECT 1",
      "CREATE VIEW Other AS SELECT 1",
      "BEGIN",
      "BEGIN EXCLUSIVE",
      "SAVEPOINT here",
      "REINDEX",
      "ANALYZE",
      "VACUUM",
      "VACUUM INTO '" + copy + "'",
      "ATTACH '" + other + "' AS other",
      "DETACH main",
      "PRAGMA user_version=5",
      "PRAGMA table_info(Samples)",
      "PRAGMA journal_mode=DELETE",
      "SELECT * FROM pragma_table_info('Samples')",
      "SELECT * FROM pragma_database_list",
      "SELECT Name FROM Samples; DELETE FROM Samples",
      "SELECT Name FROM Samples; SELECT Name FROM Samples",
      "SELECT Name FROM Samples WHERE Name='' ; DROP TABLE Samples --'",
      "SELECT load_extension('/lib/evil.so')",
      "SELECT readfile('/etc/hostname')",
      "SELECT * FROM sqlite_master",
      "SELECT * FROM sqlite_schema",
      "SELECT * FROM sqlite_temp_master",
      "SELECT Name FROM Samples UNION SELECT sql FROM sqlite_master",
      "SELECT (SELECT Count(*) FROM sqlite_master) FROM Samples",
      "SELECT * FROM json_each('[1,2]')",
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<9) SELECT i FROM n",
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT Count(*) FROM n",
  };
  for (const std::string& select : refused) {
    EXPECT_TRUE(IsRefused(select)) << select;
    EXPECT_EQ(Results("SELECT Name AS Result FROM Samples"), (Texts{"a", "b"})) << select;
  }
  EXPECT_EQ(Stored("SELECT name FROM sqlite_master"), before);
  EXPECT_FALSE(installation.Exists("Copy.mdb"));
}

TEST_F(DatabaseSelectTest, FailureNamesTheFileInOneLine) {
  const std::string text = FailureText([&] { RunToEnd("SELECT * FROM Samplers"); });
  EXPECT_EQ(text, "Reports.mdb: no such table: Samplers");
  const std::string column =
      FailureText([&] { RunToEnd("SELECT * FROM Samples ORDER BY Colour DESC"); });
  EXPECT_NE(column.find("Reports.mdb"), std::string::npos) << column;
  EXPECT_NE(column.find("Colour"), std::string::npos) << column;
}

TEST_F(DatabaseSelectTest, RunawayIsStoppedAfterTwoSeconds) {
  FillBig(3000);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(IsRefused("SELECT Count(*) FROM Big a, Big b, Big c, Big d"));
  const auto worked = std::chrono::steady_clock::now() - start;
  EXPECT_GE(worked, std::chrono::milliseconds(1500));
  EXPECT_LE(worked, std::chrono::seconds(6));
  Connection other;
  other.Open(ConnectionString("Reports.mdb"));
  EXPECT_EQ(other.Execute("SELECT Count(*) AS Result FROM Big").Field("Result").AsText(), "3000");
}

TEST_F(DatabaseSelectTest, SingleFunctionCannotHoldTheServiceUpEither) {
  AddNames({"a"});
  const std::string selects[] = {
      "SELECT hex(zeroblob(1000)) GLOB '*0*0*0*1'",
      "SELECT instr(hex(zeroblob(500000)), hex(zeroblob(250000)) || '1')",
      "SELECT replace(hex(zeroblob(500000)), hex(zeroblob(250000)) || '1', 'x')",
      "SELECT hex(zeroblob(500000)) LIKE '%" + std::string(5000, '0') + "1%'",
      "SELECT hex(zeroblob(100000)) LIKE '%" + std::string(20000, '_') + "1%'",
  };
  for (const std::string& select : selects) {
    const auto start = std::chrono::steady_clock::now();
    FailureText([&] { RunToEnd(select); });  // an answer will do as well
    EXPECT_LE(std::chrono::steady_clock::now() - start, std::chrono::seconds(4))
        << select.substr(0, 70);
  }
  EXPECT_EQ(Results("SELECT Name AS Result FROM Samples"), (Texts{"a"}));
}

TEST_F(DatabaseSelectTest, HugeValueIsRefused) {
  AddNames({"a"});
  const std::string refused[] = {
      "SELECT hex(zeroblob(100000000))",
      "SELECT zeroblob(1000000000)",
      "SELECT randomblob(100000000)",
      "SELECT printf('%.*c', 100000000, 'x')",
      "SELECT replace(hex(zeroblob(2000000)), '00', 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx')",
  };
  for (const std::string& select : refused) {
    EXPECT_TRUE(IsRefused(select)) << select;
    EXPECT_EQ(Results("SELECT Name AS Result FROM Samples"), (Texts{"a"})) << select;
  }
}

TEST_F(DatabaseSelectTest, EqualSortKeysKeepTheStoredOrder) {
  FillBig(5000);
  for (const std::string order : {"Key DESC", "Key ASC", "Key"}) {
    Recordset rows = connection.Execute("SELECT * FROM Big WHERE Key >= 0 ORDER BY " + order);
    int count = 0;
    for (long lastKey = -1, lastId = 0; !rows.Eof(); rows.MoveNext(), ++count) {
      const long id = rows.Field("Id").AsLong();
      const long key = rows.Field("Key").AsLong();
      ASSERT_TRUE(key != lastKey || id > lastId) << order << ": " << id << " after " << lastId;
      lastKey = key;
      lastId = id;
    }
    EXPECT_EQ(count, 5000) << order;
  }
}

TEST_F(DatabaseSelectTest, EqualTextsKeepTheStoredOrder) {
  AddNames({"beta", "Alpha", "BETA", "alpha", "Beta"});
  EXPECT_EQ(Results("SELECT Name AS Result FROM Samples ORDER BY Name"),
            (Texts{"Alpha", "alpha", "beta", "BETA", "Beta"}));
  EXPECT_EQ(Results("SELECT Name AS Result FROM Samples ORDER BY Name DESC"),
            (Texts{"beta", "BETA", "Beta", "Alpha", "alpha"}));
}

TEST_F(DatabaseSelectTest, PortsOfADeviceKeepTheStoredOrder) {
  Sql("INSERT INTO VLAN (RecNo, IfIndex, DevName) VALUES"
      " (2, 9, 'a'), (1, 3, 'b'), (2, 5, 'c'), (1, 1, 'd'), (1, 2, 'e');");
  EXPECT_EQ(Results("SELECT DevName AS Result, RecNo FROM VLAN ORDER BY RecNo"),
            (Texts{"b", "d", "e", "a", "c"}));
  EXPECT_EQ(Results("SELECT DevName AS Result FROM VLAN WHERE RecNo=1"), (Texts{"b", "d", "e"}));
}

TEST_F(DatabaseSelectTest, AddressesOfAPortComeInStoredOrder) {
  Sql("INSERT INTO MAC (RecNo, IfIndex, MacAddr) VALUES"
      " (1, 1, 'cc'), (1, 2, 'zz'), (1, 1, 'aa'), (1, 1, 'bb');");
  EXPECT_EQ(Results("SELECT MacAddr AS Result FROM MAC WHERE RecNo=1 AND IfIndex=1"),
            (Texts{"cc", "aa", "bb"}));
}

TEST_F(DatabaseSelectTest, BooleansAreComparedWithTheWordsTrueAndFalse) {
  Sql("INSERT INTO Samples (Name, Active) VALUES ('on', 1), ('off', 0), ('unset', NULL);");
  const std::string select = "SELECT Name AS Result FROM Samples WHERE Active=";
  EXPECT_EQ(Results(select + "True"), (Texts{"on"}));
  EXPECT_EQ(Results(select + "False"), (Texts{"off"}));
  EXPECT_EQ(Results(select + "false"), (Texts{"off"}));
}

TEST_F(DatabaseSelectTest, FormatGivesADateByItsPattern) {
  Sql("INSERT INTO Samples (Id, Seen) VALUES"
      " (1, '2024-05-01 03:04:05'), (2, '1999-12-31'), (3, NULL);");
  struct Case {
    std::string pattern;
    Texts texts;
  };
  const Case cases[] = {
      {"YYYY-MM-DD", {"2024-05-01", "1999-12-31", ""}},
      {"DD/MM/YYYY", {"01/05/2024", "31/12/1999", ""}},
      {"MM/DD/YYYY", {"05/01/2024", "12/31/1999", ""}},
      {"YYYY", {"2024", "1999", ""}},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Results("SELECT Format(Seen,'" + row.pattern + "') AS Result FROM Samples"),
              row.texts)
        << row.pattern;
  }
}

TEST_F(DatabaseSelectTest, FormatLeavesATextThatIsNoDateAndPrintsNothingByANull) {
  Sql("INSERT INTO Samples (Seen) VALUES ('soon'), ('2024-13-01'), ('2024-05-01');");
  EXPECT_EQ(Results("SELECT Format(Seen,'DD.MM.') AS Result FROM Samples"),
            (Texts{"soon", "2024-13-01", "01.05."}));
  EXPECT_EQ(Results("SELECT Format(Seen,NULL) AS Result FROM Samples"),
            (Texts{"soon", "2024-13-01", ""}));
}

TEST_F(DatabaseSelectTest, FormatWithOtherThanTwoArgumentsIsRefused) {
  AddNames({"a"});
  for (const std::string arguments : {"", "'%1000d'", "Name", "Seen,'YYYY','MM'"}) {
    EXPECT_EQ(FailureText([&] { Results("SELECT Format(" + arguments + ") FROM Samples"); }),
              "Reports.mdb: Format takes a date and a pattern")
        << arguments;
  }
}

TEST_F(DatabaseSelectTest, DayIsComparedAsText) {
  Sql("INSERT INTO Samples (Name, Seen) VALUES"
      " ('first', '2024-05-02 00:00:00'), ('last', '2024-05-02 23:59:59'),"
      " ('bare', '2024-05-02'), ('before', '2024-05-01 23:59:59'),"
      " ('after', '2024-05-03 00:00:00'), ('never', NULL);");
  EXPECT_EQ(Results("SELECT Name AS Result FROM Samples"
                    " WHERE Format(Seen,'YYYY-MM-DD') = '2024-05-02'"),
            (Texts{"first", "last", "bare"}));
}

TEST_F(DatabaseSelectTest, TextsCompareWithoutRegardToCaseForAllLetters) {
  struct Case {
    std::string stored;
    std::string asked;
  };
  const Case cases[] = {{"Core", "cORE"},     {"Ä", "ä"},         {"zürich", "ZÜRICH"},
                        {"МОСКВА", "москва"}, {"αθηνα", "ΑΘΗΝΑ"}, {"ØRSTED", "ørsted"},
                        {"Łódź", "ŁÓDŹ"}};
  for (const Case& row : cases) {
    Sql("DELETE FROM Samples");
    AddNames({row.stored, row.asked, row.asked + "x"});
    const std::string name = "'" + row.asked + "'";
    EXPECT_EQ(Results("SELECT Name AS Result FROM Samples WHERE Name=" + name),
              (Texts{row.stored, row.asked}));
    EXPECT_EQ(Results("SELECT Name AS Result FROM Samples WHERE Name<>" + name),
              (Texts{row.asked + "x"}));
    EXPECT_EQ(Results("SELECT DISTINCT Name AS Result FROM Samples").size(), 2u) << row.stored;
    EXPECT_EQ(Results("SELECT Id AS Result FROM Samples WHERE Name LIKE " + name),
              (Texts{"1", "2"}));
  }
}

TEST_F(DatabaseSelectTest, LettersWithDifferentMarksDiffer) {
  AddNames({"Ä", "A", "a"});
  EXPECT_EQ(Results("SELECT Name AS Result FROM Samples WHERE Name='ä'"), (Texts{"Ä"}));
}

TEST_F(DatabaseSelectTest, LikeTakesBracketListsAndNeverMatchesANull) {
  AddNames({"port 1", "port 2", "PORT 9", "100%"});
  Sql("INSERT INTO Samples (Id, Name) VALUES (5, NULL), (6, '');");
  const auto like = [&](const std::string& pattern) {
    return Results("SELECT Id AS Result FROM Samples WHERE Name LIKE '" + pattern + "'");
  };
  EXPECT_EQ(like("%"), (Texts{"1", "2", "3", "4", "6"}));
  EXPECT_EQ(like("port%"), (Texts{"1", "2", "3"}));
  EXPECT_EQ(like("port [1-2]"), (Texts{"1", "2"}));
  EXPECT_EQ(like("port [!1]"), (Texts{"2", "3"}));
  EXPECT_EQ(like("%[%]"), (Texts{"4"}));
  EXPECT_EQ(like(""), (Texts{"6"}));
}

}  // namespace
}  // namespace quillon
