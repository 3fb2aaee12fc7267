-- :addresses addresses in MAC, spread over the :ports ports of fill_reports.sql, in place of those
-- that it made. One in a hundred ends in 2A. The first thousand are the oldest and the only ones of
-- 172.31: nine in ten of them were seen on ports that are gone.
BEGIN;
DELETE FROM MAC;

INSERT INTO MAC
WITH RECURSIVE Number(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM Number WHERE n + 1 < :addresses),
Address AS (
  SELECT n,
         n % :ports AS port,
         n < 1000 AS isOld,
         n < 1000 AND n % 10 < 9 AS isGone
  FROM Number)
SELECT port / 48 + CASE WHEN isGone THEN 1000001 ELSE 1 END,
       port % 48 + 1,
       printf('02 1B %02X %02X %02X %02X', n / 6553600 % 256, n / 25600 % 256, n / 100 % 256,
              n % 100),
       CASE WHEN isOld THEN printf('172.31.%d.%d', n / 256, n % 256)
                       ELSE printf('10.%d.%d.%d', 100 + n / 65536, n / 256 % 256, n % 256) END,
       datetime('now', 'localtime',
                printf('-%d seconds', CASE WHEN isOld THEN 4320000 + n
                                                      ELSE n * 7919 % 3456000 END))
FROM Address;
COMMIT;
PRAGMA wal_checkpoint(TRUNCATE);
