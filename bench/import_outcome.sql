-- What an import leaves in History.mdb, in few lines: two histories that hold the same give the
-- same. Sums of storages are left out, since the service adds them in single precision.
SELECT 'switch day', count(*), total(RecNo * IfIndex), total(InErrorsTot24H * IfIndex),
       total(OutErrorsTot24H * IfIndex), total(InBroadCastPpm24H * IfIndex),
       total(InMultiCastPpm24H * IfIndex), total(InHCOctetsMb24H * IfIndex),
       total(OutHCOctetsMb24H * IfIndex), total(IsTrunk * IfIndex)
FROM VLAN_Day01;
SELECT 'switch sums', count(*), min(substr(TrafficDate, 1, 10)) FROM VLAN_HistSum;
SELECT 'switch sum', substr(TrafficDate, 1, 10), IsTrunk, InErrorsTot24H, OutErrorsTot24H,
       InBroadCastPpm24H, InMultiCastPpm24H, InHCOctetsMb24H, OutHCOctetsMb24H, Ports,
       PortsInTraffic
FROM VLAN_HistSum ORDER BY substr(TrafficDate, 1, 10) DESC, IsTrunk LIMIT 2;
SELECT 'disk day', Type, count(*), total(RecNo * length(StorDescr)), total(TotalM), total(UsedM),
       total(FreeM), total(UsedProc * RecNo), total(Trend14d * RecNo), total(Trend30d * RecNo)
FROM Disk_Day01 GROUP BY Type ORDER BY Type;
SELECT 'disk sums', count(*), min(substr(StorageDate, 1, 10)) FROM Disk_HistSum;
SELECT 'disk sum', substr(StorageDate, 1, 10), NumWindows, NumUnix, NumPhysical, NumVirtual
FROM Disk_HistSum ORDER BY substr(StorageDate, 1, 10) DESC LIMIT 1;
SELECT 'control rows', substr(Switch.TrafficDate, 1, 10), substr(Disk.StorageDate, 1, 10)
FROM VLAN_HistCtrl AS Switch JOIN Disk_HistCtrl AS Disk ON Disk.rowid = Switch.rowid
ORDER BY Switch.rowid;
SELECT 'imported', substr(LastImport, 1, 10) FROM General_Info;
