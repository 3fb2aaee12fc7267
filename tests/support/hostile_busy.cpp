// Texts that make much work of little: what is large grows inside the engine, by joining a table
// with itself and texts with their copies.
#include <cstddef>
#include <functional>
#include <utility>

#include "support/hostile_texts.h"

namespace quillon {
namespace {

// Behind "%' AND": whether the conditions hold, and what stands behind is cut off.
std::string And(const std::string& condition) {
  return "%' AND " + condition + " --";
}
std::string AndExists(const std::string& select) {
  return And("EXISTS(" + select + ")");
}

// Pieces with their numbers, joined, up to so many bytes.
std::string Listed(const std::function<std::string(int)>& piece, const std::string& separator,
                   std::size_t bytes = 50'000) {
  std::string list = piece(0);
  for (int number = 1; list.size() < bytes; ++number) list += separator + piece(number);
  return list;
}

// The same as a tree of few levels, which no limit on the depth of an expression stops.
std::string Balanced(const std::function<std::string(int)>& piece, const std::string& word) {
  std::string groups;
  int number = 0;
  while (groups.size() < 50'000) {
    std::string group = piece(number++);
    for (int i = 1; i < 40; ++i) group += word + piece(number++);
    groups += (groups.empty() ? "(" : word + "(") + group + ")";
  }
  return groups;
}

// A table of one row, whose column `a` is `seed` 4, 16, 64, ... times.
std::string Grown(const std::string& seed, int levels) {
  std::string select = "SELECT '" + seed + "' a";
  for (int level = 0; level < levels; ++level) {
    select = "SELECT a||a||a||a a FROM (" + select + " LIMIT 1)";
  }
  return "(" + select + " LIMIT 1)";
}

// 14 KB, which is much for a name, and nearly a megabyte.
const std::string kLong = Grown(std::string(900, 'x'), 2);
const std::string kLonger = Grown(std::string(240, 'x'), 6);

std::string Numbered(const std::string& before, int number, const std::string& behind = "") {
  return before + std::to_string(number) + behind;
}

std::string Tables(int count) {
  std::string tables = "VLAN v0";
  for (int number = 1; number < count; ++number) tables += Numbered(",VLAN v", number);
  return tables;
}

// Common table expressions, each of which names the one before so often.
std::string Expansion(int tables, const std::string& kind) {
  std::string text = "WITH a0 AS (SELECT 1 x)";
  for (int table = 1; table < tables; ++table) {
    const std::string before = Numbered("a", table - 1);
    text +=
        Numbered(",a", table, " AS " + kind + "(SELECT 1 x FROM " + before + "," + before + " b)");
  }
  return text + Numbered(" SELECT 1 FROM a", tables - 1);
}

}  // namespace

std::vector<BusyText> TextsOfEndlessSteps() {
  const std::string join = " FROM Many a,Many b,Many c,Many d";
  return {
      {"count of a join", And("(SELECT count(1)" + join + ")<0")},
      {"comparisons of long texts",
       AndExists("SELECT 1" + join + "," + kLong + " x WHERE x.a=x.a||a.n COLLATE NOCASE")},
      {"groups of a join", And("(SELECT 1" + join + " GROUP BY a.n HAVING count(1)<0)")},
      {"windows over a join",
       And("(SELECT q FROM (SELECT count(1) OVER (ORDER BY a.n) q" + join + ") WHERE q<0)")},
      {"materialized join",
       AndExists("WITH j AS MATERIALIZED (SELECT a.n||b.n q" + join + ") SELECT 1 FROM j")},
  };
}

std::vector<BusyText> TextsOfLongCalls() {
  std::vector<BusyText> texts;
  for (const std::string& table : {kLong, kLonger}) {
    const auto add = [&](const std::string& name, const std::string& condition) {
      texts.push_back({name, AndExists("SELECT 1 FROM " + table + " WHERE " + condition)});
    };
    // One after the other, without a step back at which the engine would look up.
    const auto addMany = [&](const std::string& name, const std::string& before,
                             const std::string& behind) {
      add(name, Balanced([&](int n) { return Numbered(before, n, behind); }, " OR "));
    };
    const auto grown = [](int number) { return Numbered("a||", number); };
    for (const std::string collation : {"NOCASE", "RTRIM", "BINARY"}) {
      add("list by " + collation, "a COLLATE " + collation + " IN (" + Listed(grown, ",") + ")");
    }
    addMany("comparisons", "a=a||", " COLLATE NOCASE");
    addMany("LIKE of a long text", "a LIKE 'y%", "'");
    addMany("LIKE of a long pattern", "'y' LIKE a||", "");
    addMany("LIKE of both", "a LIKE '%'||a||'", "'");
    addMany("dates of a long pattern", "Format('2024-05-01',a||", ")=1");
    addMany("numbers of a long text", "CAST(9||a||", " AS NUMERIC)=1");
    add("rows", "(a COLLATE NOCASE" + Repeated(",a COLLATE NOCASE", 900) + ")>(a" +
                    Repeated(",a", 900) + ")");
  }
  return texts;
}

std::vector<BusyText> TextsOfFewWords() {
  std::vector<BusyText> texts;
  const std::string join = "SELECT 1 FROM Many a,Many b,Many c,(SELECT t,t" + Repeated("||t", 15);
  // Beside a join, t is the seed so often that it has that size, and u is 16 of it.
  const auto add = [&](const std::string& name, int size, const std::string& seed,
                       const std::string& condition) {
    const std::string value = Repeated(seed, size / static_cast<int>(seed.size()));
    texts.push_back(
        {name, AndExists(join + " u FROM (SELECT '" + value + "' t) LIMIT 1) WHERE " + condition)});
  };
  // Longer values than the engine takes, and shorter ones.
  for (const int size : {55'000, 900}) {
    add("comparisons", size, "x", "u||b.n=u||a.n COLLATE NOCASE");
    add("LIKE of many lists", size, "[!ab-cde-f]", "'x' LIKE u||b.n");
    add("LIKE of many open lists", size, "[", "a.n LIKE u||b.n");
    add("dates of many fields", size, "YYYYMMDD", "Format('2024-05-01',u||b.n)=1");
  }
  add("LIKE anywhere in a long text", 55'000, "x", "u||a.n LIKE '%[!x-z]y'");
  add("LIKE of many runs", 55'000, "%", "a.n LIKE u||b.n||'y'");
  add("LIKE that nearly fits", 1'900, "x", "t||a.n LIKE '%'||t||'y'");
  return texts;
}

std::vector<BusyText> TextsOfLongPlanning() {
  std::mt19937 random(7);
  const auto any = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  const auto compared = [&](const std::string& sign) {
    return [&random, &any, sign](int) {
      return Numbered("v", any(60), ".RecNo" + sign + Numbered("v", any(60), ".RecNo"));
    };
  };
  const std::string from = "SELECT 1 FROM " + Tables(60) + " WHERE ";
  const auto eitherWay = [&](int) {
    return Numbered("(v", any(60), ".RecNo=1 OR v") + Numbered("", any(60), ".IfIndex=2)");
  };
  // So many, between the columns that have indexes: the worst there is for the planner.
  const auto indexed = [](int count) {
    std::string conditions;
    for (int n = 0; n < count; ++n) {
      conditions += Numbered(n == 0 ? "v" : " AND v", n % 60, n % 2 == 0 ? ".RecNo" : ".IfIndex");
      const int other = (n * 13 + 1 + n / 60) % 60;
      conditions += Numbered("=v", other, n / 2 % 2 == 0 ? ".RecNo" : ".IfIndex");
    }
    return conditions;
  };
  std::string shared = "SELECT 1 FROM VLAN v0";
  for (int table = 1; table < 60; ++table) {
    shared += Numbered(" JOIN VLAN v", table, " USING(RecNo,IfIndex)");
  }
  std::string byColumns = "EXISTS(SELECT 1 FROM VLAN";
  for (int table = 0; table < 60; ++table) {
    byColumns += Numbered(" JOIN VLAN b", table, " USING(RecNo,IfIndex,DevName,IpAddr)");
  }
  byColumns += ")";
  const auto window = [](int n) { return Numbered("count(1) OVER (ORDER BY ", n, ")"); };
  const auto partition = [](int n) { return Numbered("count(1) OVER (PARTITION BY ", n, ")"); };
  const auto aggregate = [](int n) { return Numbered("count(0||0||", n, ")"); };
  const auto subselect = [](int) { return "(SELECT 1 FROM VLAN" + Repeated(",VLAN", 60) + ")"; };
  const auto calculated = [](int n) { return Numbered("WHEN (0||", n, ") THEN (1||0)"); };
  const std::string arm = "SELECT 1" + Repeated(",1", 120);
  return {
      {"inequalities between many tables", AndExists(from + Balanced(compared(">"), " AND "))},
      {"equations between many tables", AndExists(from + Balanced(compared("="), " AND "))},
      {"some equations by indexes", AndExists(from + indexed(45))},
      {"more equations by indexes", AndExists(from + indexed(150))},
      {"yet more equations by indexes", AndExists(from + indexed(200))},
      {"equations beside shared columns", AndExists(shared + " WHERE " + indexed(45))},
      {"choices between many tables", AndExists(from + Balanced(eitherWay, " AND "))},
      {"a join of many tables by their columns", And(byColumns)},
      {"many such joins", And(byColumns + Repeated(" AND " + byColumns, 17))},
      {"tables joined by all that they share",
       AndExists("SELECT 1 FROM VLAN" + Repeated(" NATURAL JOIN VLAN NATURAL JOIN MAC", 20))},
      {"many windows", AndExists("SELECT " + Listed(window, ",") + " FROM VLAN")},
      {"many partitions", AndExists("SELECT " + Listed(partition, ",", 14'000) + " FROM VLAN")},
      {"many aggregates", "%' GROUP BY RecNo HAVING 1 IN (" + Listed(aggregate, ",") + ") --"},
      {"many subselects of many tables", And("1 IN (" + Listed(subselect, ",") + ")")},
      {"many calculated values", And("CASE RecNo " + Listed(calculated, " ") + " END")},
      {"many sort keys over many selects", AndExists(arm + Repeated(" UNION ALL " + arm, 180) +
                                                     " ORDER BY 0>9" + Repeated(",0>9", 1'500))},
      {"expansion", AndExists(Expansion(40, ""))},
      {"expansion of materialized tables", AndExists(Expansion(40, "MATERIALIZED "))},
      {"expansion of other tables", AndExists(Expansion(40, "NOT MATERIALIZED "))},
  };
}

std::vector<std::string> GreedyTexts() {
  const std::string rows = Grown(std::string(900, 'x'), 1) + " x,Many p,Many q";
  const std::string different = "a||p.n||q.n";
  return {
      And("'x' IN (SELECT " + different + " FROM " + rows + ")"),
      And("(SELECT count(DISTINCT " + different + ") FROM " + rows + ")<0"),
      And("(SELECT " + different + " d FROM " + rows + " GROUP BY d)<''"),
      AndExists("SELECT " + different + " FROM " + rows + " UNION SELECT 'a' ORDER BY 1 DESC"),
      AndExists("WITH j AS MATERIALIZED (SELECT a FROM " + rows + ") SELECT 1 FROM j"),
      AndExists("SELECT 1 FROM (SELECT a,count(1) OVER (ORDER BY p.n) c FROM " + rows + ")"),
      "x' UNION SELECT a FROM " + kLong + " ORDER BY 1 DESC --",
      "x' UNION SELECT a||1 FROM " + kLonger + " --",
      AndExists(Expansion(60, "")),
      AndExists(Expansion(60, "MATERIALIZED ")),
      AndExists(Expansion(60, "NOT MATERIALIZED ")),
      std::string(60'000, '%'),
      std::string(60'000, '*'),
      std::string(60'000, '\xE4'),
      Repeated("[a-z]", 12'000),
      "[" + Repeated("a-z", 20'000) + "]",
      "%' OR '' LIKE '" + Repeated("[a]", 15'000) + "' --",
  };
}

}  // namespace quillon
