// What SQL offers to somebody who can close a quote. A "*" becomes "%" and a "+" a blank before a
// text reaches a select, so these do without.
#include <algorithm>
#include <cstddef>

#include "support/hostile_texts.h"

namespace quillon {
namespace {

using Texts = std::vector<std::string>;

void Add(Texts& texts, const Texts& others) {
  texts.insert(texts.end(), others.begin(), others.end());
}

// What ends the literal, or fails to.
Texts Quotes() {
  return {"'",
          "''",
          "'''",
          "\"",
          "\\'",
          "\\' OR 1=1 --",
          "%'",
          "' --",
          "'--",
          "' /",
          "' /%",
          "' /- no end",
          "';",
          "';;;;",
          "' ;--",
          "'\t--",
          "' OR '1'='1",
          "' OR 'a' LIKE '%",
          "' OR 1=1 --",
          "' OR NOT 0 --",
          "' OR 1 /",
          "%' AND 1=0 --",
          "' AND 1=1 OR 'x'='x",
          "x' OR DevName IS NULL OR 'x'='",
          "x' OR RecNo>0 --",
          "x') OR ('a'='a",
          "x')) --",
          "((((((((",
          "' || '%",
          "' || DevName || '",
          "' COLLATE NOCASE OR '",
          "' COLLATE nothing --",
          "' ESCAPE '%",
          "' ESCAPE '' --",
          "' IN ('a') OR '",
          "' BETWEEN '' AND '",
          "' IS NOT NULL --",
          "' NOTNULL --",
          "' GLOB 'a",
          "' REGEXP 'a",
          "' MATCH 'a",
          "' -> 'a",
          "' ->> '$.a",
          "x'41' OR '",
          "' OR x'41'='A",
          "' OR ?1 IS NULL --",
          "' OR :a IS NULL --",
          "' OR @a IS NULL --",
          "' OR $a IS NULL --",
          "' OR [DevName]=`DevName` --",
          "' OR \"DevName\"=DevName --",
          "' OR VLAN.rowid=1 --",
          "' OR _rowid_ OR oid --",
          "' OR main.VLAN.DevName='a' --",
          "' OR temp.VLAN.DevName='a' --",
          "' OR Colour=1 --",
          "' OR CURRENT_TIMESTAMP>0 --",
          "' OR RAISE(ABORT, 'x') --",
          "' OR TRUE --",
          "' LIMIT 1 --",
          "' LIMIT -1 OFFSET 9223372036854775807 --",
          "' ORDER BY 1 --",
          "' ORDER BY 99 --",
          "' ORDER BY Colour --",
          "' ORDER BY RecNo",
          "' GROUP BY RecNo --",
          "' GROUP BY RecNo HAVING 0 --",
          "' WINDOW w AS (ORDER BY RecNo) --",
          "' INDEXED BY VLAN_Device --",
          "' UNION",
          "' VALUES (1) --"};
}

// A second statement, or one in the place of the select.
Texts OtherStatements() {
  const Texts statements = {
      "DELETE FROM VLAN",
      "DELETE FROM MAC WHERE 1",
      "UPDATE VLAN SET DevName='gone'",
      "INSERT INTO VLAN (RecNo) VALUES (1)",
      "REPLACE INTO MAC (RecNo) VALUES (1)",
      "INSERT INTO MAC SELECT 1,1,1,1,1",
      "DROP TABLE VLAN",
      "DROP INDEX VLAN_Device",
      "ALTER TABLE VLAN RENAME TO Gone",
      "ALTER TABLE VLAN ADD COLUMN Gone",
      "ALTER TABLE VLAN DROP COLUMN IfAlias",
      "CREATE TABLE Other (A)",
      "CREATE TEMP TABLE Other AS SELECT 1",
      "CREATE VIEW Other AS SELECT 1",
      "CREATE INDEX Other ON VLAN (DevName)",
      "CREATE TRIGGER t AFTER INSERT ON VLAN BEGIN DELETE FROM MAC; END",
      "CREATE VIRTUAL TABLE Other USING fts5(a)",
      "CREATE VIRTUAL TABLE Other USING rtree(a,b,c)",
      "ATTACH 'Quillon.mdb' AS other",
      "ATTACH 'Other.mdb' AS other",
      "ATTACH ':memory:' AS other",
      "ATTACH 'file:Quillon.mdb?mode=rwc' AS other",
      "DETACH main",
      "PRAGMA user_version=5",
      "PRAGMA journal_mode=DELETE",
      "PRAGMA writable_schema=ON",
      "PRAGMA hard_heap_limit=0",
      "PRAGMA temp_store_directory='.'",
      "PRAGMA table_info(VLAN)",
      "PRAGMA query_only=OFF",
      "VACUUM",
      "VACUUM INTO 'Copy.mdb'",
      "REINDEX",
      "ANALYZE",
      "BEGIN EXCLUSIVE",
      "COMMIT",
      "ROLLBACK",
      "SAVEPOINT here",
      "EXPLAIN SELECT 1",
      "SELECT 1",
      "SELECT load_extension('x')",
      "WITH x AS (SELECT 1) DELETE FROM VLAN",
  };
  Texts texts;
  for (const std::string& statement : statements) {
    texts.push_back("x'; " + statement + "; --");
  }
  for (const char* tail :
       {"x' ; DROP TABLE VLAN --'", "x'; DROP TABLE VLAN", "'; DELETE FROM VLAN"})
    texts.emplace_back(tail);
  return texts;
}

// As many columns as any of the tables has, and more; of tables and of values.
Texts Unions() {
  Texts texts;
  for (int columns = 1; columns <= 24; ++columns) {
    const std::string list = Repeated("1,", columns - 1) + "1";
    texts.push_back("x' UNION SELECT " + list + " --");
    texts.push_back("x' UNION ALL SELECT " + list + " FROM MAC --");
    if (columns % 4 == 1) texts.push_back("x' UNION VALUES (" + list + ") --");
  }
  Add(texts, {"x' UNION SELECT MacAddr FROM MAC --",
              "x' UNION SELECT DevName||IpAddr||IfAlias FROM VLAN --", "x' UNION SELECT NULL --",
              "x' UNION SELECT -1 ORDER BY 1 --", "x' UNION SELECT 9e999 ORDER BY 1 DESC --",
              "x' UNION SELECT x'00ff' ORDER BY 1 DESC --",
              "x' UNION SELECT '<script>alert(1)</script>' ORDER BY 1 DESC --",
              "x' UNION SELECT 'a\tb' ORDER BY 1 DESC --", "x' INTERSECT SELECT 1 --",
              "x' EXCEPT SELECT 1 --", "x' UNION SELECT Pass FROM Settings_SmtpServer --",
              "x' UNION SELECT Pass FROM main.Settings_SmtpServer --",
              "x' UNION SELECT Pass FROM other.Settings_SmtpServer --",
              "x' UNION SELECT RecNo FROM Disk_Day01 --",
              "x' UNION SELECT 1" + Repeated(" UNION SELECT 1", 490) + " --",
              "x' UNION SELECT 1" + Repeated(" UNION SELECT 1", 600) + " --",
              "x' UNION ALL SELECT RecNo FROM VLAN" +
                  Repeated(" UNION ALL SELECT RecNo FROM VLAN", 400) + " ORDER BY 1 --"});
  return texts;
}

// Whatever is not one of the file's own tables.
Texts OtherTables() {
  const Texts tables = {"sqlite_master",
                        "sqlite_schema",
                        "main.sqlite_master",
                        "temp.sqlite_master",
                        "sqlite_temp_master",
                        "sqlite_temp_schema",
                        "sqlite_sequence",
                        "sqlite_stat1",
                        "SQLITE_MASTER",
                        "\"sqlite_master\"",
                        "[sqlite_schema]",
                        "sqlite_dbpage",
                        "sqlite_stmt",
                        "sqlite_memstat",
                        "dbstat",
                        "bytecode('SELECT 1')",
                        "tables_used('SELECT 1')",
                        "pragma_database_list",
                        "pragma_table_info('VLAN')",
                        "pragma_table_list",
                        "pragma_function_list",
                        "pragma_compile_options",
                        "pragma_journal_mode('DELETE')",
                        "pragma_wal_checkpoint",
                        "PRAGMA_USER_VERSION",
                        "json_each('[1,2]')",
                        "json_tree('{}')",
                        "generate_series(1,1000000000)",
                        "fts3tokenize('simple','a')",
                        "fsdir('/')",
                        "csv('/etc/passwd')",
                        "zipfile('a.zip')",
                        "completion('S')",
                        "carray(1,1)",
                        "VLAN(1)"};
  Texts texts;
  for (const std::string& table : tables) {
    texts.push_back("x' UNION SELECT 1 FROM " + table + " --");
    texts.push_back("%' AND EXISTS(SELECT 1 FROM " + table + ") --");
  }
  Add(texts, {"x' UNION SELECT sql FROM sqlite_master --",
              "x' UNION SELECT name||sql FROM sqlite_schema ORDER BY 1 DESC --",
              "%' AND (SELECT count(sql) FROM sqlite_master)>0 --",
              "%' AND EXISTS(SELECT 1 FROM VLAN JOIN sqlite_master) --",
              "%' AND RecNo IN sqlite_master --",
              "%' AND RecNo IN (WITH a AS (SELECT sql FROM sqlite_master) SELECT 1 FROM a) --"});
  return texts;
}

Texts Functions() {
  const Texts calls = {"load_extension('/lib/evil.so')",
                       "load_extension('/lib/evil.so','entry')",
                       "readfile('/etc/passwd')",
                       "writefile('Other.mdb','x')",
                       "edit('x')",
                       "fts3_tokenizer('simple')",
                       "fts5(1)",
                       "match('a','b')",
                       "sqlite_version()",
                       "sqlite_source_id()",
                       "sqlite_compileoption_get(1)",
                       "sqlite_log(1,'x')",
                       "randomblob(1000000000)",
                       "zeroblob(1000000000)",
                       "zeroblob(1000)",
                       "hex(zeroblob(100))",
                       "quote(DevName)",
                       "printf('%.100000000d',1)",
                       "printf('%s%s%s%n')",
                       "format('%.100000000d',1,2)",
                       "Format('%.100000000c')",
                       "Format(1,2,3)",
                       "replace(DevName,'a','aaaaaaaa')",
                       "group_concat(DevName)",
                       "total(RecNo)",
                       "sum(RecNo)",
                       "max(1,2)",
                       "count()",
                       "count(DISTINCT RecNo)",
                       "count(1) OVER ()",
                       "row_number() OVER ()",
                       "ntile(1000000000) OVER ()",
                       "glob('a','b')",
                       "json('{}')",
                       "json_extract('{\"a\":1}','$.a')",
                       "json_group_array(RecNo)",
                       "char(65,66)",
                       "unicode('a')",
                       "instr('a','b')",
                       "abs(-9223372036854775808)",
                       "pow(2,1000)",
                       "random()",
                       "changes()",
                       "last_insert_rowid()",
                       "likelihood(1,0.5)",
                       "unlikely(1)",
                       "coalesce(1,2)",
                       "iif(1,2,3)",
                       "date('now')",
                       "strftime('%s','now')",
                       "sqlite_offset(RecNo)",
                       "rtreecheck('VLAN')",
                       "unknown_function()"};
  Texts texts;
  for (const std::string& call : calls) texts.push_back("%' AND " + call + " IS NOT NULL --");
  return texts;
}

// What recurs, nests or repeats; refused, or done with soon.
Texts Structures() {
  return {
      "%' AND 1 IN (WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i FROM n) SELECT i FROM n) "
      "--",
      "%' AND 1 IN (WITH n(i) AS (SELECT 1 UNION SELECT i-1 FROM n) SELECT i FROM n LIMIT 5) --",
      "%' AND EXISTS(WITH a AS (SELECT 1 FROM a) SELECT 1 FROM a) --",
      "%' AND EXISTS(WITH a AS (SELECT 1 FROM b), b AS (SELECT 1 FROM a) SELECT 1 FROM a) --",
      "%' AND EXISTS(WITH VLAN AS (SELECT 1 x) SELECT x FROM VLAN) --",
      "%' AND EXISTS(WITH sqlite_master AS (SELECT 1 x) SELECT x FROM sqlite_master) --",
      "%' AND " + Repeated("(", 40) + "1" + Repeated(")", 40) + " --",
      "%' AND " + Repeated("(", 30'000) + "1" + Repeated(")", 30'000) + " --",
      "%' AND " + Repeated("(SELECT ", 20) + "1" + Repeated(")", 20) + " --",
      "%' AND " + Repeated("(SELECT ", 5'000) + "1" + Repeated(")", 5'000) + " --",
      "%' AND EXISTS" + Repeated("(SELECT 1 FROM ", 15) + "VLAN" + Repeated(")", 15) + " --",
      "%' AND " + Repeated("NOT ", 15'000) + "1 --",
      "%' AND " + Repeated("-", 50) + "1 --",
      "%' AND " + Repeated("~", 60'000) + "1 --",
      "%' AND 1" + Repeated(" AND 1", 900) + " --",
      "%' AND 1" + Repeated(" AND 1", 9'000) + " --",
      "%' OR RecNo=1" + Repeated(" OR RecNo=1", 800) + " --",
      "%' AND RecNo" + Repeated("||1", 15'000) + " --",
      "%' AND RecNo IN (1" + Repeated(",1", 30'000) + ") --",
      "%' AND RecNo IN ('a'" + Repeated(",'a'", 15'000) + ") --",
      "%' AND (1,2)=(1,2) --",
      "%' AND (RecNo,IfIndex) IN (SELECT RecNo,IfIndex FROM MAC) --",
      "%' AND (1" + Repeated(",1", 5'000) + ")=(1" + Repeated(",1", 5'000) + ") --",
      "%' AND EXISTS(SELECT 1" + Repeated(",1", 1'900) + ") --",
      "%' AND EXISTS(SELECT 1" + Repeated(",1", 25'000) + ") --",
      "%' AND EXISTS(VALUES (1)" + Repeated(",(1)", 9'000) + ") --",
      "%' AND CASE" + Repeated(" WHEN RecNo THEN 1", 2'000) + " END --",
      "%' AND " + Repeated("CASE WHEN 1 THEN ", 80) + "1" + Repeated(" END", 80) + " --",
      "%' AND RecNo BETWEEN 1 AND " + Repeated("RecNo BETWEEN 1 AND ", 40) + "1 --",
      "%' AND EXISTS(SELECT 1 FROM VLAN" + Repeated(",VLAN", 70) + ") --",
      "%' AND EXISTS(SELECT 1 FROM VLAN a NATURAL JOIN VLAN b NATURAL JOIN MAC c) --",
      "%' AND EXISTS(SELECT 1 FROM VLAN a FULL JOIN MAC b ON a.RecNo=b.RecNo) --",
      "%' AND EXISTS(SELECT DISTINCT a.RecNo FROM VLAN a,MAC b ORDER BY a.DevName) --",
      "%' AND DevName LIKE '" + Repeated("%", 20'000) + "' --",
      "%' AND 9223372036854775807 > -9223372036854775808 --",
      "%' AND 1e309 > 1e308 AND -1e309 < 0 --",
      "%' AND " + Repeated("9", 60'000) + " --",
      "%' AND 0x" + Repeated("F", 40) + " --",
      "%' AND RecNo/0 IS NULL AND RecNo<<99 IS NOT NULL --",
      "%' AND CAST('9e9999999' AS INTEGER) --",
      "%' AND CAST(RecNo AS nothing) --",
      "%' AND Format('2024-05-01','%s%n%x')='%s' --",
      "%' AND Format('2024-05-01',DevName)=Format(NULL,NULL) --",
      "%' AND like('a','b') OR like('a','b','c') OR like('a','b','') --",
      "%' AND '" + Repeated("a", 60'000) + "'=DevName --",
      "%' AND \"" + Repeated("a", 60'000) + "\"=DevName --",
      "%' AND " + Repeated("a", 60'000) + "=DevName --",
      "%' -- " + Repeated("c", 60'000),
      "%' /" + Repeated("-", 60'000),
  };
}

}  // namespace

std::string Repeated(const std::string& piece, int count) {
  std::string text;
  text.reserve(piece.size() * static_cast<std::size_t>(std::max(count, 0)));
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

std::vector<std::string> ForbiddenSql() {
  Texts texts = OtherStatements();
  for (const Texts& others : {OtherTables(), Functions()}) Add(texts, others);
  return texts;
}

std::vector<std::string> HostileSql() {
  Texts texts = ForbiddenSql();
  for (const Texts& others : {Quotes(), Unions(), Structures()}) Add(texts, others);
  return texts;
}

}  // namespace quillon
