// A database of a test's own with the table Samples, which has a column of every kind,
// and verbs that fill it, read it back past the layer under test, and walk it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "platform/failure.h"
#include "support/installation.h"

namespace quillon {

class DatabaseTest : public testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  DatabaseTest() {
    Sql("CREATE TABLE Samples ("
        " Id INTEGER, Name TEXT COLLATE NOCASE, Seen DATE, Active BOOLEAN,"
        " Size SINGLE, Figure NUMERIC, Ratio REAL);");
    connection.Open(ConnectionString("Reports.mdb"));
  }

  std::string ConnectionString(const std::string& file) const {
    return "Provider=SQLite;Data Source=" + installation.path() + "/" + file +
           ";Persist Security Info=False";
  }

  // Statements of another program on the same file, and what it reads there.
  void Sql(const std::string& statements) const { installation.Sql("Reports.mdb", statements); }
  Texts Stored(const std::string& select) const {
    return installation.Select("Reports.mdb", select);
  }

  // Rows Id 1, 2, ... with these names.
  void AddNames(const Texts& names) const {
    std::string statements;
    for (std::size_t i = 0; i < names.size(); ++i) {
      statements += "INSERT INTO Samples (Id, Name) VALUES (" + std::to_string(i + 1) + ", '" +
                    names[i] + "');";
    }
    Sql("BEGIN;" + statements + "COMMIT;");
  }

  Recordset OpenSamples(LockType lock = LockType::kOptimistic) {
    Recordset samples;
    samples.Open("Samples", connection, CursorType::kStatic, lock);
    return samples;
  }

  // The field's texts of all rows that are left.
  static Texts Walk(Recordset& rows, std::string_view field) {
    Texts texts;
    for (; !rows.Eof(); rows.MoveNext()) texts.push_back(rows.Field(field).AsText());
    return texts;
  }

  // The column `Result` of all rows that the select gives.
  Texts Results(const std::string& select) {
    Recordset rows = connection.Execute(select);
    return Walk(rows, "Result");
  }

  // The text of the DatabaseFailure that the action raises; "" where it raises none.
  template <typename Action>
  static std::string FailureText(Action action) {
    try {
      action();
    } catch (const DatabaseFailure& failure) {
      return failure.what();
    }
    return "";
  }

  Installation installation;
  Connection connection;
};

}  // namespace quillon
