// The house of an import beside other programs: what they see of the history and whether they can
// write it while an import waits, and statements that prepare the day tables.
#pragma once

#include <chrono>
#include <string>

#include "import/import_fixture.h"
#include "support/other_writer.h"
#include "support/refusal.h"

namespace quillon {

class HistoryTest : public ImportTest {
 protected:
  // Another program that has opened the history.
  OtherWriter OtherProgram() const {
    return OtherWriter::Idle(house.installation.path() + "/History.mdb");
  }
  // Whether it can write a row of the history now.
  static bool CanWrite(OtherWriter& other) {
    return other.Run("UPDATE General_Info SET LastReport = LastReport");
  }
  bool OthersCanWrite() const {
    OtherWriter other = OtherProgram();
    return CanWrite(other);
  }

  // Notes what the select gives in the waits, first row only, repetitions left out.
  void WatchWaits(const std::string& select) {
    house.loop.OnTurn([this, select] {
      const std::string state = History(select)[0];
      if (seenInWaits.empty() || seenInWaits.back() != state) seenInWaits.push_back(state);
    });
  }

  // Lets the other program write in every slice of every wait, and counts how often it could not.
  void WriteInWaits(OtherWriter& other) {
    house.loop.OnTurn([this, &other] {
      ++slices;
      if (!CanWrite(other)) ++refusedWrites;
    });
  }

  // An event ends the other program's writing when the import has been waiting that long.
  void EndAfter(std::chrono::seconds wait, OtherWriter& other) {
    house.loop.OnTurn([this, wait, &other] {
      if (house.clock.slept() >= wait && other.isWriting()) {
        house.loop.Post([&other] { other.End(); });
      }
    });
  }

  Lines seenInWaits;
  int slices = 0;
  int refusedWrites = 0;
};

// Rows RecNo 1, 2, ... of a day table.
inline std::string InsertDayRows(const std::string& table, int count) {
  return "INSERT INTO " + table + " (RecNo)" + NumbersUpTo(count) + "SELECT n FROM Number;";
}

}  // namespace quillon
