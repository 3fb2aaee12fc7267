-- Reports.mdb: the newest statistics, written by the management product and only read here.
-- No index on a text or a metric: equal sort keys keep the stored order, and texts compare
-- by rules that the engine alone does not have.

-- One row a switch port, known by (RecNo, IfIndex).
CREATE TABLE VLAN (
  RecNo             INTEGER,              -- device, never 0
  DevName           TEXT COLLATE NOCASE,
  IpAddr            TEXT COLLATE NOCASE,
  VlanID            INTEGER,              -- -1 for none
  IfIndex           INTEGER,
  IfDescr           TEXT COLLATE NOCASE,  -- interface name
  IfSpeed           TEXT COLLATE NOCASE,  -- shown as it stands
  IfAlias           TEXT COLLATE NOCASE,
  IfAdmin           TEXT COLLATE NOCASE,  -- shown as it stands
  IfOper            TEXT COLLATE NOCASE,  -- shown as it stands
  IsTrunk           BOOLEAN,              -- trunk or access port
  InOctetsDate      DATE,                 -- when the figures of 24 hours were finished; today's
                                          -- rows make the lists and the day's copy
  LastUpdate        DATE,                 -- when the row was written; today's rows make the sums
  InHCOctetsMb24H   NUMERIC,              -- megabytes in 24 hours, -1 where unknown
  OutHCOctetsMb24H  NUMERIC,              -- megabytes in 24 hours, -1 where unknown
  InBroadCastPpm24H NUMERIC,              -- packets a minute, mean of 24 hours
  InMultiCastPpm24H NUMERIC,              -- packets a minute, mean of 24 hours, -1 where the
                                          -- device does not count them
  InErrorsTot24H    NUMERIC,              -- errors in 24 hours
  OutErrorsTot24H   NUMERIC               -- errors in 24 hours
);
-- IfIndex leads, so that no select of a device's ports is answered in the order of the ports:
-- rows of one RecNo come as they are stored.
CREATE INDEX VLAN_Port ON VLAN (IfIndex, RecNo);
CREATE INDEX VLAN_Device ON VLAN (RecNo);

-- One row an address seen on a port; a port's first stored row is the one shown with it.
CREATE TABLE MAC (
  RecNo    INTEGER,
  IfIndex  INTEGER,
  MacAddr  TEXT COLLATE NOCASE,  -- six pairs of hexadecimal digits with blanks: 02 1B 2C 3D 4E 5F
  IpAddr   TEXT COLLATE NOCASE,
  LastSeen DATE
);
CREATE INDEX MAC_Port ON MAC (IfIndex, RecNo);

-- One row a disk, memory or other storage of a server.
CREATE TABLE HostDiskInfo (
  RecNo           INTEGER,              -- device, never 0
  DevName         TEXT COLLATE NOCASE,
  StorDescr       TEXT COLLATE NOCASE,  -- Physical, Virtual, a volume (C:) or a mount point (/var)
  FreeRawM        NUMERIC,              -- megabytes
  UsedRawM        NUMERIC,              -- megabytes
  UsedProc        NUMERIC,              -- percent used
  UsedProc14Trend NUMERIC,              -- the product's own trend of 14 days, percent points
  UsedProc30Trend NUMERIC,              -- the product's own trend of 30 days, percent points
  LastUpdate      DATE                  -- day of the values; today's rows make the day's copy
);
