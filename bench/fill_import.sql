-- What an import wants beyond the ports of fill_reports.sql: :storages storages in HostDiskInfo,
-- all of today and a quarter of each class, where every other server runs Windows; and figures of
-- ports whose sums fit into 32 bits. Figures look random, but are the same each time.
BEGIN;
UPDATE VLAN SET InHCOctetsMb24H = InHCOctetsMb24H % 2003,
                OutHCOctetsMb24H = OutHCOctetsMb24H % 2003,
                InBroadCastPpm24H = InBroadCastPpm24H % 2003,
                InMultiCastPpm24H = InMultiCastPpm24H % 2003,
                InErrorsTot24H = InErrorsTot24H % 2003,
                OutErrorsTot24H = OutErrorsTot24H % 2003;

DELETE FROM HostDiskInfo;

INSERT INTO HostDiskInfo
WITH RECURSIVE Number(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM Number WHERE n + 1 < :storages),
Storage AS (
  SELECT n / 4 AS server,
         n % 4 AS place,
         1000 * (n * 7919 % 997 + 1) AS size,
         n * 104729 % 101 AS used
  FROM Number)
SELECT server + 100001, -- behind the switches
       printf('server-%05d.example', server + 1),
       CASE place WHEN 0 THEN 'Physical'
                  WHEN 1 THEN 'Virtual'
                  WHEN 2 THEN CASE WHEN server % 2 = 0 THEN 'C:' ELSE '/' END
                  ELSE CASE WHEN server % 2 = 0 THEN 'D:' ELSE '/var' END END,
       size / 100 * (100 - used),
       size / 100 * used,
       used,
       used % 5,
       used % 7,
       datetime('now', 'localtime')
FROM Storage;
COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
