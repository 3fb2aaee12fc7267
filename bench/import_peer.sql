-- The daily import as a few large statements in History.mdb, each a transaction of its own: what
-- the same work costs where nobody has to be served meanwhile.
ATTACH 'Reports.mdb' AS Reports;
PRAGMA synchronous = NORMAL;

-- The ports of the day.
DELETE FROM VLAN_Day01;
INSERT INTO VLAN_Day01
SELECT RecNo, IfIndex, InErrorsTot24H, OutErrorsTot24H, InBroadCastPpm24H, InMultiCastPpm24H,
       InHCOctetsMb24H, OutHCOctetsMb24H, IsTrunk
FROM Reports.VLAN WHERE substr(InOctetsDate, 1, 10) = date('now', 'localtime');
UPDATE VLAN_HistCtrl SET TrafficDate = datetime('now', 'localtime', '-23 hours')
WHERE HistTable = 'VLAN_Day01';

-- Their sums, access and trunk.
DELETE FROM VLAN_HistSum WHERE substr(TrafficDate, 1, 10) < date('now', 'localtime', '-1200 days');
INSERT INTO VLAN_HistSum
SELECT datetime('now', 'localtime', '-24 hours'), FALSE,
       sum(IsToday * InErrorsTot24H), sum(IsToday * OutErrorsTot24H),
       sum(IsToday * InBroadCastPpm24H), sum(IsToday * InMultiCastPpm24H),
       sum(IsToday * InHCOctetsMb24H), sum(IsToday * OutHCOctetsMb24H),
       count(*), sum(IsToday AND InHCOctetsMb24H > 0)
FROM (SELECT *, substr(LastUpdate, 1, 10) = date('now', 'localtime') AS IsToday
      FROM Reports.VLAN WHERE IsTrunk = FALSE);
INSERT INTO VLAN_HistSum
SELECT datetime('now', 'localtime', '-24 hours'), TRUE,
       sum(IsToday * InErrorsTot24H), sum(IsToday * OutErrorsTot24H),
       sum(IsToday * InBroadCastPpm24H), sum(IsToday * InMultiCastPpm24H),
       sum(IsToday * InHCOctetsMb24H), sum(IsToday * OutHCOctetsMb24H),
       count(*), sum(IsToday AND InHCOctetsMb24H > 0)
FROM (SELECT *, substr(LastUpdate, 1, 10) = date('now', 'localtime') AS IsToday
      FROM Reports.VLAN WHERE IsTrunk = TRUE);

-- The storages of the day.
DELETE FROM Disk_Day01;
INSERT INTO Disk_Day01
SELECT RecNo, DevName, StorDescr,
       CASE WHEN StorDescr = 'Physical' COLLATE BINARY THEN 10
            WHEN StorDescr = 'Virtual' COLLATE BINARY THEN 20
            WHEN substr(StorDescr, 2, 1) = ':' THEN 30
            ELSE 40 END,
       FreeRawM + UsedRawM, UsedRawM, FreeRawM, UsedProc, UsedProc14Trend, UsedProc30Trend
FROM Reports.HostDiskInfo
WHERE substr(LastUpdate, 1, 10) = date('now', 'localtime') AND FreeRawM + UsedRawM > 0;
UPDATE Disk_HistCtrl SET StorageDate = datetime('now', 'localtime', '-23 hours')
WHERE HistTable = 'Disk_Day01';

-- Their trends: the tables of 14 and 30 days before.
UPDATE Disk_Day01 AS Day
SET Trend14d = UsedProc - ifnull((SELECT round(UsedProc) FROM Disk_Day32 AS Old
                                  WHERE Old.RecNo = Day.RecNo AND Old.StorDescr = Day.StorDescr
                                  LIMIT 1), 0),
    Trend30d = UsedProc - ifnull((SELECT round(UsedProc) FROM Disk_Day16 AS Old
                                  WHERE Old.RecNo = Day.RecNo AND Old.StorDescr = Day.StorDescr
                                  LIMIT 1), 0);

-- Their sums.
DELETE FROM Disk_HistSum WHERE substr(StorageDate, 1, 10) < date('now', 'localtime', '-1200 days');
INSERT INTO Disk_HistSum
SELECT datetime('now', 'localtime', '-24 hours'),
       total(TotalM) FILTER (WHERE Type = 30), total(UsedM) FILTER (WHERE Type = 30),
       total(TotalM) FILTER (WHERE Type = 40), total(UsedM) FILTER (WHERE Type = 40),
       total(TotalM) FILTER (WHERE Type = 10), total(UsedM) FILTER (WHERE Type = 10),
       total(TotalM) FILTER (WHERE Type = 20), total(UsedM) FILTER (WHERE Type = 20),
       count(*) FILTER (WHERE Type = 30), count(*) FILTER (WHERE Type = 40),
       count(*) FILTER (WHERE Type = 10), count(*) FILTER (WHERE Type = 20)
FROM Disk_Day01;

UPDATE General_Info SET LastImport = datetime('now', 'localtime');
