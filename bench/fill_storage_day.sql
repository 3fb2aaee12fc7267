-- The disk day table of the newest day in History.mdb, with the storages of the Reports.mdb beside
-- it.
ATTACH 'Reports.mdb' AS Reports;
BEGIN;
INSERT INTO Disk_Day45
SELECT RecNo, DevName, StorDescr,
       CASE WHEN StorDescr = 'Physical' THEN 10
            WHEN StorDescr = 'Virtual' THEN 20
            WHEN StorDescr LIKE '_:%' THEN 30
            ELSE 40 END,
       FreeRawM + UsedRawM, UsedRawM, FreeRawM, UsedProc, UsedProc14Trend, UsedProc30Trend
FROM Reports.HostDiskInfo;
COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
