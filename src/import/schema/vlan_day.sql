-- One switch day table of History.mdb: the figures of VLAN as they stood on one day, -1 included.

CREATE TABLE {table} (
  RecNo             INTEGER,
  IfIndex           INTEGER,
  InErrorsTot24H    NUMERIC,  -- errors in 24 hours
  OutErrorsTot24H   NUMERIC,  -- errors in 24 hours
  InBroadCastPpm24H NUMERIC,  -- packets a minute
  InMultiCastPpm24H NUMERIC,  -- packets a minute
  InHCOctetsMb24H   NUMERIC,  -- megabytes in 24 hours
  OutHCOctetsMb24H  NUMERIC,  -- megabytes in 24 hours
  IsTrunk           BOOLEAN
);
-- In the order in which the rows come, device by device: a row that is added or deleted touches
-- the page of the one before.
CREATE INDEX {table}_Port ON {table} (RecNo, IfIndex);
