-- One day table of :ports ports, those of fill_reports.sql; {day} is its number, two digits. Each
-- port has all its figures on each day, and other ones than on the day before.
INSERT INTO VLAN_Day{day}
WITH RECURSIVE Number(n) AS (SELECT 0 UNION ALL SELECT n + 1 FROM Number WHERE n + 1 < :ports)
SELECT n / 48 + 1, n % 48 + 1,
       (n + {day}) * 7919 % 1000003, (n + {day}) * 104729 % 1000003,
       (n + {day}) * 1299709 % 5003, (n + {day}) * 15485863 % 5003,
       (n + {day}) * 32452843 % 3000017, (n + {day}) * 49979687 % 3000017,
       n % 4 = 1
FROM Number;
