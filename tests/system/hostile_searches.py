"""Texts that no honest user types into a search form: what closes the quote of a select, what odd
bytes and sizes there are, and what keeps the engine at work."""
import random

MUCH = 55_000  # bytes; one read of the service takes 64 KiB

_STATEMENTS = (
    "DELETE FROM VLAN", "INSERT INTO MAC (RecNo) VALUES (1)", "DROP TABLE VLAN",
    "CREATE TEMP TABLE Other AS SELECT 1", "ATTACH 'Quillon.mdb' AS other",
    "ATTACH '/tmp/quillon-other.mdb' AS other", "PRAGMA user_version=5",
    "PRAGMA journal_mode=DELETE", "PRAGMA temp_store_directory='.'",
    "VACUUM INTO 'Copy.mdb'", "BEGIN EXCLUSIVE", "SELECT 1")
_TABLES = (
    "sqlite_master", "SQLITE_TEMP_MASTER", "dbstat", "pragma_database_list", "json_each('[1]')",
    "fsdir('/')", "csv('/etc/passwd')", "Settings_SmtpServer")
_CALLS = (
    "load_extension('/lib/evil.so')", "readfile('/etc/passwd')", "writefile('Other.mdb','x')",
    "edit('x')", "zeroblob(1000000000)", "printf('%.100000000d',1)", "Format('%.100000000c')",
    "fts3_tokenizer('simple')")
_STRUCTURES = (
    "EXISTS(WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i FROM n) SELECT i FROM n)",
    "(" * 20_000 + "1" + ")" * 20_000,
    "1" + " AND 1" * 5_000,
    "RecNo IN (1" + ",1" * 20_000 + ")",
    "EXISTS(SELECT 1" + ",1" * 20_000 + ")",
    "EXISTS(SELECT 1 FROM VLAN" + ",VLAN" * 70 + ")",
    "9" * MUCH)
_QUOTES = (
    "'", "''", "\"", "\\'", "' --", "';", "' OR '1'='1", "' OR 1=1 --", "%' AND 0 --",
    "x' UNION SELECT 1 --", "x' UNION SELECT " + 18 * "1," + "1 --", "' ORDER BY 99 --",
    "x' UNION SELECT DevName||IpAddr FROM VLAN ORDER BY 1 DESC --",
    "x' UNION SELECT sql FROM sqlite_master ORDER BY 1 DESC --", "' GROUP BY RecNo --",
    "%' AND 1 \0 AND 0 --", "' || DevName || '", "' LIMIT -1 OFFSET 9223372036854775807 --")
SQL = (*_QUOTES,
       *(f"x'; {statement}; --" for statement in _STATEMENTS),
       *(f"x' UNION SELECT 1 FROM {table} --" for table in _TABLES),
       *(f"%' AND {call} IS NOT NULL --" for call in _CALLS),
       *(f"%' AND {structure} --" for structure in _STRUCTURES))

ODD = (
    "", "*", "[", "[!", "[a-", "\0", "a\0b", "\x1b[2J", "\xff\xfe\xc0\x80", "\xe4\xf6\xfc",
    "<script>alert(1)</script>", "'><b>", "%s%n%x", "{0}", "../../../../etc/passwd", "/dev/zero",
    "..\\..\\Quillon.mdb", "~new.htm", "a\r\nSet-Cookie: x=y", "a\r\n\r\n<html>", "a\rb", "a\nb",
    "DeviceName=b", "a\r\nOrderBy=usedbytes-asc", "login.cgi", "-", "nothing",
    "usedbytes", "usedbytes-", "usedbytes-asc, DevName", "UsedM; DROP TABLE Disk_Day01", "1-desc",
    MUCH * "a", MUCH * "%", MUCH * "*", MUCH * "?", MUCH * "'", MUCH * "\xe4", MUCH // 5 * "[a-z]",
    f"[{MUCH * 'a'}]", random.Random(1).randbytes(2_000).replace(b"\r", b"").decode("latin-1"))

_JOIN = " FROM " + ",".join(f"VLAN {letter}" for letter in "abcdefgh")
_LONG = f"(SELECT t||t||t||t u FROM (SELECT '{1_000 * 'x'}' t) LIMIT 1)"
BUSY = (
    f"%' AND (SELECT count(1){_JOIN})<0 --",
    f"%' AND EXISTS(SELECT 1{_JOIN},{_LONG} WHERE u=u||a.DevName COLLATE NOCASE) --",
    f"%' AND EXISTS(WITH j AS MATERIALIZED (SELECT u{_JOIN},{_LONG}) SELECT 1 FROM j) --",
    "%' AND EXISTS(WITH a0 AS (SELECT 1 x)" + "".join(
        f",a{n} AS (SELECT 1 x FROM a{n - 1},a{n - 1} b)" for n in range(1, 40))
    + " SELECT 1 FROM a39) --")
