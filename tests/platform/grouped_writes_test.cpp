// Rows that go into the file together.
#include "platform/database_fixture.h"
#include "support/file_size_limit.h"
#include "support/other_writer.h"

namespace quillon {
namespace {

class GroupedWritesTest : public DatabaseTest {
 protected:
  static void Add(Recordset& samples, const std::string& name) {
    samples.AddNew();
    samples.SetField("Name", Value::Text(name));
    samples.Update();
  }
  Texts Names() const { return Stored("SELECT Name FROM Samples"); }
};

TEST_F(GroupedWritesTest, OthersSeeTheRowsWhenTheyAreCommitted) {
  Recordset samples = OpenSamples();
  ASSERT_TRUE(connection.BeginWrites());
  Add(samples, "a");
  Add(samples, "b");
  EXPECT_EQ(Names(), Texts{});
  connection.CommitWrites();
  EXPECT_EQ(Names(), (Texts{"a", "b"}));
}

TEST_F(GroupedWritesTest, NobodyElseWritesMeanwhile) {
  Recordset samples = OpenSamples();
  ASSERT_TRUE(connection.BeginWrites());
  Connection other;
  other.Open(ConnectionString("Reports.mdb"));
  EXPECT_FALSE(other.BeginWrites());
  connection.CommitWrites();
  EXPECT_TRUE(other.BeginWrites());
}

TEST_F(GroupedWritesTest, BeginSaysAtOnceThatAnotherProgramIsWriting) {
  OtherWriter writer(installation.path() + "/Reports.mdb");
  EXPECT_FALSE(connection.BeginWrites());
  writer.End();
  EXPECT_TRUE(connection.BeginWrites());
}

TEST_F(GroupedWritesTest, WhatIsNotCommittedGoesWithTheConnection) {
  {
    Recordset samples = OpenSamples();
    ASSERT_TRUE(connection.BeginWrites());
    Add(samples, "a");
  }
  connection.Close();
  EXPECT_EQ(Names(), Texts{});
}

TEST_F(GroupedWritesTest, RowsAreStoredOneByOneBehindACommit) {
  Recordset samples = OpenSamples();
  ASSERT_TRUE(connection.BeginWrites());
  connection.CommitWrites();
  connection.CommitWrites();  // there is nothing to commit
  Add(samples, "a");
  EXPECT_EQ(Names(), Texts{"a"});
}

TEST_F(GroupedWritesTest, SecondBeginOfAConnectionFails) {
  ASSERT_TRUE(connection.BeginWrites());
  EXPECT_NE(FailureText([&] { connection.BeginWrites(); }), "");
}

TEST_F(GroupedWritesTest, FullDiskFailsAndLeavesTheFileAsItWas) {
  AddNames({"a"});
  {
    Recordset samples = OpenSamples();
    ASSERT_TRUE(connection.BeginWrites());
    for (int row = 0; row < 1000; ++row) Add(samples, std::string(1000, 'x'));
    const FileSizeLimit limit(100000);
    EXPECT_NE(FailureText([&] { connection.CommitWrites(); }), "");
  }
  connection.Close();
  EXPECT_EQ(Names(), Texts{"a"});
  EXPECT_EQ(Stored("PRAGMA integrity_check"), Texts{"ok"});
}

TEST_F(GroupedWritesTest, CommitIsNothingOnceTheConnectionIsClosed) {
  connection.Close();
  connection.CommitWrites();
  EXPECT_EQ(FailureText([&] { connection.BeginWrites(); }), "the connection is closed");
}

}  // namespace
}  // namespace quillon
