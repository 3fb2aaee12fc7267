-- Rows of a large network for Reports.mdb, :ports of them in VLAN and somewhat more in MAC.
-- Half of the ports are access ports of today, a quarter trunks of today, the others access
-- ports of earlier days. Figures look random, but are the same each time.
BEGIN;
DELETE FROM VLAN;
DELETE FROM MAC;

INSERT INTO VLAN
WITH RECURSIVE Number(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM Number WHERE n + 1 < :ports)
SELECT n / 48 + 1,
       printf('switch-%05d.example', n / 48 + 1),
       printf('10.%d.%d.%d', n / 48 / 65536 % 256, n / 48 / 256 % 256, n / 48 % 256),
       CASE WHEN n % 11 = 0 THEN -1 ELSE n % 400 + 1 END,
       n % 48 + 1,
       printf('GigabitEthernet0/%d', n % 48 + 1),
       '1 G',
       printf('Room %d.%d, socket %d', n % 9, n % 300, n % 4),
       'up',
       CASE WHEN n % 13 = 0 THEN 'down' ELSE 'up' END,
       n % 4 = 1,
       datetime('now', 'localtime', CASE WHEN n % 4 = 3 THEN printf('-%d days', n % 5 + 1)
                                         ELSE '-0 days' END),
       datetime('now', 'localtime'),
       n * 7919 % 1000003,
       n * 104729 % 1000003,
       n * 1299709 % 5003,
       CASE WHEN n % 17 = 0 THEN -1 ELSE n * 15485863 % 5003 END,
       n * 32452843 % 3000017,
       n * 49979687 % 3000017
FROM Number;

INSERT INTO MAC
SELECT RecNo, IfIndex,
       printf('02 1B %02X %02X %02X %02X', RecNo / 256 % 256, RecNo % 256, IfIndex, 7),
       printf('10.%d.%d.%d', 100 + RecNo / 256 % 100, RecNo % 256, IfIndex),
       LastUpdate
FROM VLAN;

-- A telephone in front of the computer: a second address.
INSERT INTO MAC
SELECT RecNo, IfIndex, MacAddr, IpAddr, datetime('now', 'localtime', '-9 days')
FROM MAC WHERE IfIndex % 7 = 0;
COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
