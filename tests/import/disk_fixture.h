// The house of an import with verbs for the day tables of storages, and another program that
// reads and writes History.mdb while an import waits.
#pragma once

#include <string>

#include "import/import_fixture.h"

namespace quillon {

class DiskImportTest : public ImportTest {
 protected:
  static inline const std::string kDay = "Disk_Day01";  // the first day table

  void AddDayRow(const std::string& table, const Columns& differing = {}) const {
    HistorySql(InsertStorageOfDay(table, differing));
  }

  // So many Windows disks in a day table, RecNo 1, 2, ...
  void AddDayRows(const std::string& table, int count, int type = 30) const {
    HistorySql("INSERT INTO " + table +
               " (RecNo, StorDescr, Type, TotalM, UsedM, UsedProc, Trend14d, Trend30d)" +
               NumbersUpTo(count) + "SELECT n, 'C:', " + std::to_string(type) +
               ", 2, 1, 40, 77, 88 FROM Number");
  }

  // So many storages of today in HostDiskInfo, RecNo 1, 2, ... with that free space, none used.
  void AddStorages(int count, int freeRawM) const {
    ReportsSql("INSERT INTO HostDiskInfo (RecNo, StorDescr, FreeRawM, UsedRawM, LastUpdate)" +
               NumbersUpTo(count) + "SELECT n, 'C:', " + std::to_string(freeRawM) +
               ", 0, '2024-05-02 03:10:00' FROM Number");
  }

  // Lets the control row of a table name another one.
  void RenameInControl(const std::string& named, const std::string& other) const {
    HistorySql("UPDATE Disk_HistCtrl SET HistTable = '" + other + "' WHERE HistTable = '" + named +
               "'");
  }

  // Lets the other program read that in the next wait, and then write.
  void VisitNextWait(const std::string& select) {
    house.loop.Post([this, select] {
      seenInWait = History(select);
      HistorySql("UPDATE General_Info SET ReportStart = 'of the other program'");
    });
  }
  bool OtherProgramWrote() const {
    return History("SELECT ReportStart FROM General_Info") == Lines{"of the other program"};
  }

  Lines seenInWait;
};

}  // namespace quillon
