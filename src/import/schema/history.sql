-- History.mdb: the marks of the daily cycle, the two rotations and the sums of each day.
-- The day tables that the rotations name are made from vlan_day.sql and disk_day.sql.

-- Exactly one row. A null in any field keeps the import from ever running.
CREATE TABLE General_Info (
  LastReport  DATE,                 -- when the management product last finished its report
  LastImport  DATE,                 -- when the service last finished an import
  ReportStart TEXT COLLATE NOCASE,  -- the period as pages show it: 2024-05-01&nbsp;&nbsp03:00
  ReportEnd   TEXT COLLATE NOCASE
);

-- One row a switch day table. The first row in stored order that is more than 45 days old is
-- the next one to be filled.
CREATE TABLE VLAN_HistCtrl (
  TrafficDate DATE,                -- day held by the table: moment of its import less 23 hours
  HistTable   TEXT COLLATE NOCASE  -- name of a switch day table
);

-- The same for the disk day tables.
CREATE TABLE Disk_HistCtrl (
  StorageDate DATE,                -- day held by the table: moment of its import less 23 hours
  HistTable   TEXT COLLATE NOCASE  -- name of a disk day table
);

-- Two rows a day, access and trunk ports, for 1200 days.
CREATE TABLE VLAN_HistSum (
  TrafficDate       DATE,     -- moment of the import less 24 hours
  IsTrunk           BOOLEAN,
  InErrorsTot24H    INTEGER,  -- the figures are sums over the ports that were written that day
  OutErrorsTot24H   INTEGER,
  InBroadCastPpm24H INTEGER,
  InMultiCastPpm24H INTEGER,
  InHCOctetsMb24H   INTEGER,
  OutHCOctetsMb24H  INTEGER,
  Ports             INTEGER,  -- all ports of the class, whatever their day
  PortsInTraffic    INTEGER   -- ports of the day with incoming traffic
);

-- One row a day over all storages, for 1200 days. Sizes in megabytes.
CREATE TABLE Disk_HistSum (
  StorageDate    DATE,  -- moment of the import less 24 hours
  TotalMWindows  SINGLE,
  UsedMWindows   SINGLE,
  TotalMUnix     SINGLE,
  UsedMUnix      SINGLE,
  TotalMPhysical SINGLE,
  UsedMPhysical  SINGLE,
  TotalMVirtual  SINGLE,
  UsedMVirtual   SINGLE,
  NumWindows     INTEGER,  -- storages of the kind
  NumUnix        INTEGER,
  NumPhysical    INTEGER,
  NumVirtual     INTEGER
);
