-- A history that has seen no day: marks of the past, so that the first report is imported, and
-- rotations whose rows are all free.

INSERT INTO General_Info (LastReport, LastImport, ReportStart, ReportEnd)
VALUES ('2000-01-01 00:00:00', '2000-01-01 00:00:00', '', '');

INSERT INTO VLAN_HistCtrl (TrafficDate, HistTable)
WITH RECURSIVE Number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Number WHERE n < 45)
SELECT '2000-01-01 00:00:00', printf('VLAN_Day%02d', n) FROM Number;

INSERT INTO Disk_HistCtrl (StorageDate, HistTable)
WITH RECURSIVE Number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Number WHERE n < 45)
SELECT '2000-01-01 00:00:00', printf('Disk_Day%02d', n) FROM Number;
