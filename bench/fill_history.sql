-- What imports of every day up to yesterday have left in History.mdb, for the network of the
-- Reports.mdb beside it. The tables of the oldest day, which is the next one to go, are full, and
-- so are those that the trends of 14 and 30 days are taken from.
ATTACH 'Reports.mdb' AS Reports;
BEGIN;

UPDATE General_Info SET LastReport = datetime('now', 'localtime', '-1 day'),
                        LastImport = datetime('now', 'localtime', '-1 day');

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

COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
