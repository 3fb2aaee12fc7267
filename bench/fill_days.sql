-- The control rows and the daily sums of History.mdb for days without a gap, of which the newest
-- is :newest days old. As many sums as are kept, of which those of the oldest day go next.
BEGIN;
UPDATE VLAN_HistCtrl
SET TrafficDate = datetime('now', 'localtime', printf('-%d days', 45 - rowid + :newest));
UPDATE Disk_HistCtrl
SET StorageDate = datetime('now', 'localtime', printf('-%d days', 45 - rowid + :newest));

INSERT INTO VLAN_HistSum
WITH RECURSIVE Age(n) AS (
  SELECT 1199 + :newest UNION ALL SELECT n - 1 FROM Age WHERE n > :newest)
SELECT datetime('now', 'localtime', printf('-%d days', n)), column1,
       n * 7919 % 5003, n * 15485863 % 5003, n * 104729 % 1000003, n * 1299709 % 1000003,
       n * 32452843 % 3000017, n * 49979687 % 3000017, n, n / 2
FROM Age CROSS JOIN (VALUES (FALSE), (TRUE));

INSERT INTO Disk_HistSum
WITH RECURSIVE Age(n) AS (
  SELECT 1199 + :newest UNION ALL SELECT n - 1 FROM Age WHERE n > :newest)
SELECT datetime('now', 'localtime', printf('-%d days', n)),
       2.0 * n, n, 2.0 * n, n, 2.0 * n, n, 2.0 * n, n, n, n, n, n
FROM Age;
COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
