-- What imports of every day up to yesterday have left in History.mdb, for the network of the
-- Reports.mdb beside it. The tables of the oldest day, which is the next one to go, are full, and
-- so are those that the trends of 14 and 30 days are taken from.
ATTACH 'Reports.mdb' AS Reports;
BEGIN;

UPDATE General_Info SET LastReport = datetime('now', 'localtime', '-1 day'),
                        LastImport = datetime('now', 'localtime', '-1 day');

-- 46 days to 2 days old, since an import is stamped with the day before it.
UPDATE VLAN_HistCtrl
SET TrafficDate = datetime('now', 'localtime', printf('-%d days', 47 - rowid));
UPDATE Disk_HistCtrl
SET StorageDate = datetime('now', 'localtime', printf('-%d days', 47 - rowid));

INSERT INTO VLAN_Day01
SELECT RecNo, IfIndex, InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H, InMultiCastPpm24H,
       InHCOctetsMb24H, OutHCOctetsMb24H, IsTrunk
FROM Reports.VLAN;

INSERT INTO Disk_Day01
SELECT RecNo, DevName, StorDescr, 40, FreeRawM + UsedRawM, UsedRawM, FreeRawM, UsedProc, 0, 0
FROM Reports.HostDiskInfo;
INSERT INTO Disk_Day32
SELECT RecNo, DevName, StorDescr, Type, TotalM, UsedM, FreeM, (UsedProc + RecNo) % 101, 0, 0
FROM Disk_Day01;
INSERT INTO Disk_Day16
SELECT RecNo, DevName, StorDescr, Type, TotalM, UsedM, FreeM, (UsedProc + 3 * RecNo) % 101, 0, 0
FROM Disk_Day01;

-- As many sums as are kept, of which those of the oldest day go.
INSERT INTO VLAN_HistSum
WITH RECURSIVE Age(n) AS (SELECT 1201 UNION ALL SELECT n - 1 FROM Age WHERE n > 2)
SELECT datetime('now', 'localtime', printf('-%d days', n)), column1,
       n * 7919 % 5003, n * 15485863 % 5003, n * 104729 % 1000003, n * 1299709 % 1000003,
       n * 32452843 % 3000017, n * 49979687 % 3000017, n, n / 2
FROM Age CROSS JOIN (VALUES (FALSE), (TRUE));

INSERT INTO Disk_HistSum
WITH RECURSIVE Age(n) AS (SELECT 1201 UNION ALL SELECT n - 1 FROM Age WHERE n > 2)
SELECT datetime('now', 'localtime', printf('-%d days', n)),
       2.0 * n, n, 2.0 * n, n, 2.0 * n, n, 2.0 * n, n, n, n, n, n
FROM Age;

COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
