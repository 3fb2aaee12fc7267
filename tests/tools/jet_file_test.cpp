// Real Jet 4 files, whole and damaged.
#include "quillondb/jet/jet_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>

#include "platform/failure.h"
#include "platform/files.h"
#include "quillondb/jet/field_conversion.h"
#include "support/temporary_folder.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPeople = JET_SAMPLES "/node-adodb/examples/node-adodb.mdb";
constexpr const char* kFruit = JET_SAMPLES "/mdb/test/fruit.mdb";
constexpr const char* kStates = JET_SAMPLES "/database-js-adodb/test.mdb";

class JetFileTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    for (const char* sample : {kPeople, kFruit, kStates}) {
      ASSERT_TRUE(fs::exists(sample)) << sample << " is missing: the build unpacks it";
    }
  }

  // A file of these bytes.
  std::string Write(const std::string& bytes) const {
    std::ofstream(path(), std::ios::binary) << bytes;
    return path();
  }

  std::string path() const { return folder_.path() + "/old.mdb"; }

  static JetTable TableOf(JetFile& file, const std::string& name) {
    for (const JetTable& table : file.Tables()) {
      if (table.name == name) return table;
    }
    throw std::runtime_error("no table " + name);
  }

  static std::vector<JetRow> RowsOf(JetFile& file, const std::string& name) {
    std::vector<JetRow> rows;
    file.ReadRows(TableOf(file, name), [&](const JetRow& row) { rows.push_back(row); });
    return rows;
  }

  // Reads all of the file: the number of its rows, or -1 where that failed, by name.
  static std::int64_t RowsOfAll(const std::string& path) {
    std::int64_t rows = 0;
    try {
      JetFile file(path);
      for (const JetTable& table : file.Tables()) {
        file.ReadRows(table, [&](const JetRow&) { ++rows; });
      }
    } catch (const FileFailure& failure) {
      EXPECT_EQ(std::string(failure.what()).find(path), 0u) << failure.what();
      return -1;
    }
    return rows;
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(JetFileTest, TablesAreTheUsersWithColumnsAndCounts) {
  JetFile file(kPeople);
  const std::vector<JetTable> tables = file.Tables();
  ASSERT_EQ(tables.size(), 1u);
  EXPECT_EQ(tables[0].name, "Users");
  EXPECT_EQ(tables[0].rows, 3);
  EXPECT_EQ(tables[0].columns, (std::vector<std::string>{"UserId", "UserName", "UserSex",
                                                         "UserBirthday", "UserMarried"}));
}

TEST_F(JetFileTest, FieldsAreNumbersTextsDatesAndTruths) {
  JetFile file(kPeople);
  const std::vector<JetRow> rows = RowsOf(file, "Users");
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(std::get<std::int64_t>(rows[1][0]), 2);
  EXPECT_EQ(std::get<std::string>(rows[2][1]), "张三");
  EXPECT_EQ(ConvertField(rows[0][3], "DATE"), StoredField("1989-01-25 00:00:00"));
  EXPECT_TRUE(std::get<bool>(rows[0][4]));
  EXPECT_FALSE(std::get<bool>(rows[1][4]));
}

TEST_F(JetFileTest, FilesOfOtherProgramsAreReadWhole) {
  struct Case {
    const char* path;
    std::size_t tables;
    std::int64_t rows;
  };
  for (const Case& each : {Case{kPeople, 1, 3}, Case{kFruit, 5, 84}, Case{kStates, 1, 51}}) {
    EXPECT_EQ(JetFile(each.path).Tables().size(), each.tables) << each.path;
    EXPECT_EQ(RowsOfAll(each.path), each.rows) << each.path;
  }
}

TEST_F(JetFileTest, ADateBefore1899IsReadAsWell) {
  std::string bytes = ReadFileBytes(kPeople);
  const double birthday = 32533;  // of the first row
  const double longAgo = -36500.25;
  std::string image(reinterpret_cast<const char*>(&birthday), sizeof birthday);
  const std::size_t place = bytes.find(image);
  ASSERT_NE(place, std::string::npos);
  bytes.replace(place, sizeof longAgo, reinterpret_cast<const char*>(&longAgo), sizeof longAgo);
  JetFile file(Write(bytes));
  EXPECT_EQ(ConvertField(RowsOf(file, "Users")[0][3], "DATE"), StoredField("1800-01-23 06:00:00"));
}

TEST_F(JetFileTest, AnEncryptedFileIsRefused) {
  constexpr std::size_t kKeyPlace = 0x3e;
  std::string bytes = ReadFileBytes(kPeople);
  bytes[kKeyPlace] = static_cast<char>(bytes[kKeyPlace] + 1);
  JetFile file(Write(bytes));
  try {
    file.Tables();
    ADD_FAILURE();
  } catch (const FileFailure& failure) {
    EXPECT_EQ(std::string(failure.what()).find(path() + ": the file is encrypted"), 0u)
        << failure.what();
  }
}

TEST_F(JetFileTest, AFileThatChangesWhileItIsReadIsRefused) {
  JetFile file(Write(ReadFileBytes(kPeople)));
  const JetTable users = TableOf(file, "Users");
  fs::last_write_time(path(), fs::last_write_time(path()) + std::chrono::seconds(2));
  try {
    file.ReadRows(users, [](const JetRow&) {});
    ADD_FAILURE();
  } catch (const FileFailure& failure) {
    EXPECT_NE(std::string(failure.what()).find("changed while it was read"), std::string::npos);
  }
}

TEST_F(JetFileTest, AFileThatIsCutOffIsAFailureOrAllOfItsRows) {
  const std::string whole = ReadFileBytes(kPeople);
  constexpr std::size_t kStep = 4096;  // elsewhere the header's check sees it
  for (std::size_t size = 0; size < whole.size(); size += kStep) {
    const std::int64_t rows = RowsOfAll(Write(whole.substr(0, size)));
    EXPECT_TRUE(rows == -1 || rows == 3) << size << ": " << rows;
  }
}

TEST_F(JetFileTest, RandomDamageNeverEndsMoreThanTheReading) {
  const std::string whole = ReadFileBytes(kPeople);
  std::mt19937 random(7);
  std::uniform_int_distribution<std::size_t> place(0, whole.size() - 1);
  std::uniform_int_distribution<int> byte(0, 255);
  int failures = 0;
  for (int round = 0; round < 60; ++round) {
    std::string bytes = whole;
    for (int hit = 0; hit < 2000; ++hit) bytes[place(random)] = static_cast<char>(byte(random));
    failures += RowsOfAll(Write(bytes)) == -1 ? 1 : 0;
  }
  EXPECT_GT(failures, 0);
}

TEST_F(JetFileTest, AFailureOfTheHandlerIsNotTakenForTheFiles) {
  JetFile file(kPeople);
  EXPECT_THROW(file.ReadRows(TableOf(file, "Users"),
                             [](const JetRow&) { throw DatabaseFailure("the disk is full"); }),
               DatabaseFailure);
}

}  // namespace
}  // namespace quillon
