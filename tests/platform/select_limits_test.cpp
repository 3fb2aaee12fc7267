// What a select may ask of the engine: time, memory, and the size of a value.
#include "platform/select_limits.h"

#include <sqlite3.h>

#include <chrono>
#include <thread>

#include "platform/database_fixture.h"

namespace quillon {
namespace {

class SelectLimitsTest : public DatabaseTest {
 protected:
  // A thousand names of a hundred characters each.
  void AddLongNames() const {
    Texts names;
    for (int number = 1000; number < 2000; ++number) {
      names.push_back(std::to_string(number) + std::string(96, 'x'));
    }
    AddNames(names);
  }

  std::string Failure(const std::string& select, SelectTime time = SelectTime::kLimited) {
    return FailureText([&] { connection.Execute(select, time); });
  }
};

TEST_F(SelectLimitsTest, SelectsOfAConnectionHaveTheirTimeTogether) {
  AddLongNames();
  const std::string endless =
      "SELECT Count(*) AS Result FROM Samples a, Samples b, Samples c, Samples d";
  const std::string squares = "SELECT Count(*) AS Result FROM Samples a, Samples b";
  EXPECT_EQ(Results(squares), Texts{"1000000"});
  EXPECT_EQ(Failure(endless), "Reports.mdb: the select took too long");
  EXPECT_EQ(Failure(squares), "Reports.mdb: the select took too long");
  // One without foreign text is not counted, and a new connection begins anew.
  EXPECT_EQ(Failure(squares, SelectTime::kUnlimited), "");
  EXPECT_EQ(Failure(squares), "Reports.mdb: the select took too long");
  Connection other;
  other.Open(ConnectionString("Reports.mdb"));
  EXPECT_EQ(other.Execute(squares).Field("Result").AsText(), "1000000");
}

TEST_F(SelectLimitsTest, SelectWithATimeOfItsOwnHasAllOfIt) {
  AddLongNames();
  const std::string endless =
      "SELECT Count(*) AS Result FROM Samples a, Samples b, Samples c, Samples d";
  const std::string squares = "SELECT Count(*) AS Result FROM Samples a, Samples b";
  EXPECT_EQ(Failure(endless, SelectTime::kOfItsOwn), "Reports.mdb: the select took too long");
  EXPECT_EQ(Failure(squares, SelectTime::kOfItsOwn), "");
}

// Without the limit of time, which a slow machine reaches first.
TEST_F(SelectLimitsTest, SelectThatFillsTheMemoryIsRefused) {
  AddLongNames();
  for (const std::string filling :
       {"SELECT Count(*) FROM (SELECT DISTINCT a.Name || b.Name FROM Samples a, Samples b)",
        "SELECT a.Name || b.Name AS Result FROM Samples a, Samples b ORDER BY b.Name || a.Name"}) {
    EXPECT_EQ(Failure(filling, SelectTime::kUnlimited), "Reports.mdb: out of memory") << filling;
  }
  EXPECT_EQ(Results("SELECT Count(*) AS Result FROM Samples"), Texts{"1000"});
}

TEST_F(SelectLimitsTest, SelectThatExplodesWhileItIsParsedIsRefused) {
  std::string select = "WITH t0 AS (SELECT 1 AS x)";
  for (int number = 1; number <= 30; ++number) {
    const std::string before = "t" + std::to_string(number - 1);
    select += ", t" + std::to_string(number) + " AS (SELECT 1 AS x FROM " + before + " a, " +
              before + " b)";
  }
  EXPECT_NE(Failure(select + " SELECT x FROM t30"), "");
  EXPECT_EQ(Results("SELECT Count(*) AS Result FROM Samples"), Texts{"0"});
}

TEST_F(SelectLimitsTest, ValueBeyondAQuarterOfAMegabyteIsRefused) {
  const std::string longest(std::size_t{256} * 1024, 'a');
  EXPECT_EQ(Results("SELECT '" + longest + "' AS Result"), Texts{longest});
  EXPECT_EQ(Failure("SELECT '" + longest + "a' AS Result"), "Reports.mdb: string or blob too big");
  EXPECT_EQ(Failure("SELECT '" + longest + "' || 'a' AS Result"),
            "Reports.mdb: string or blob too big");
}

TEST_F(SelectLimitsTest, SelectOfTooManyWordsIsRefused) {
  const auto naming = [](int columns) {
    std::string select = "SELECT Id AS Result";
    for (int count = 2; count <= columns; ++count) select += ",Id";
    return select + " FROM Samples";  // five words beside the further columns
  };
  AddNames({"a"});
  EXPECT_EQ(Results(naming(95)), Texts{"1"});
  EXPECT_EQ(Failure(naming(96)), "Reports.mdb: the select is too long");
}

TEST(CountWords, TakesATextApartAsTheEngineDoes) {
  struct Case {
    std::string text;
    int words;
  };
  const Case cases[] = {
      {"", 0},
      {"SELECT * FROM VLAN", 3},
      {"a.b=c_1+$d,1.5", 6},
      {"x LIKE 'many words in one' AND y", 5},
      {"'it''s' \"a b\" `c d` [e f] g", 6},
      {"a -- b c\nd", 2},
      {"a -- b c", 1},
      {"a /* b ' c */ d", 2},
      {"a /* b", 1},
      {"a /*/ b */ c", 2},
      {"'a -- b' c", 2},
      {"'/*' a '*/' b", 4},
      {"[a ' b] c ' d", 3},
      {"\"' a\" b", 2},
      {"a ' b c", 2},
      {"a - b / c", 3},
      {"B\xC3\xBCro x'00'", 3},
  };
  for (const Case& row : cases) EXPECT_EQ(CountWords(row.text), row.words) << row.text;
}

// What the engine cannot interrupt asks by itself.
TEST_F(SelectLimitsTest, LongStepIsToldThatItIsTooLate) {
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &handle), SQLITE_OK);
  {
    SelectLimits limits(handle);
    EXPECT_FALSE(limits.StopIfOver());
    const SelectLimits::Stretch stretch(limits);
    EXPECT_FALSE(limits.StopIfOver());
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    EXPECT_TRUE(limits.StopIfOver());
  }
  sqlite3_close(handle);
}

TEST_F(SelectLimitsTest, LikeOfTwoLongTextsIsRefused) {
  const auto like = [](std::size_t text, std::size_t pattern) {
    return "SELECT '" + std::string(text, 'a') + "' LIKE '%" + std::string(pattern, 'a') +
           "%' AS Result";
  };
  EXPECT_EQ(Results(like(2000, 2000)), Texts{"1"});
  EXPECT_EQ(Results(like(50'000, 79)), Texts{"1"});
  EXPECT_EQ(Results(like(2000, 50'000)), Texts{"0"});
  EXPECT_EQ(Failure(like(2001, 2001)), "Reports.mdb: the texts of LIKE are too long");
  EXPECT_EQ(Failure(like(50'000, 80)), "Reports.mdb: the texts of LIKE are too long");
  // Without a run in front of it, the pattern stands at one place alone.
  const std::string name(200'000, 'a');
  EXPECT_EQ(Results("SELECT '" + name + "' LIKE '" + name + "' AS Result"), Texts{"1"});
}

}  // namespace
}  // namespace quillon
