-- One disk day table of History.mdb: the storages of HostDiskInfo as they stood on one day.

CREATE TABLE {table} (
  RecNo     INTEGER,
  DevName   TEXT COLLATE NOCASE,
  StorDescr TEXT COLLATE NOCASE,
  Type      INTEGER,  -- 10 physical memory, 20 virtual memory, 30 Windows disk, 40 Unix disk
  TotalM    SINGLE,   -- megabytes
  UsedM     SINGLE,   -- megabytes
  FreeM     SINGLE,   -- megabytes
  UsedProc  NUMERIC,  -- percent used
  Trend14d  NUMERIC,  -- change of UsedProc over 14 days, percent points
  Trend30d  NUMERIC   -- change of UsedProc over 30 days, percent points
);
CREATE INDEX {table}_Device ON {table} (RecNo);
