// quillondb check on the receivers of mails: what keeps a mail or a report from coming.
#include "tools/quillondb_fixture.h"

namespace quillon {
namespace {

class QuillondbReceivers : public Quillondb {
 protected:
  // A daily receiver of one list, who differs in these assignments.
  void AddReceiver(const std::string& assignments) const {
    Sql("Quillon.mdb",
        "INSERT INTO Settings_RepReceiver VALUES ('Anna', 'anna@example.org', 1, '',"
        " 'Access InVolume', 'None', 'None', 'None', 'None', FALSE, NULL, NULL, NULL, TRUE, TRUE);"
        "UPDATE Settings_RepReceiver SET " +
            assignments + " WHERE rowid = last_insert_rowid()");
  }
  // What the check says of such a receiver alone.
  std::string FindingsOf(const std::string& assignments) const {
    Sql("Quillon.mdb", "DELETE FROM Settings_RepReceiver");
    AddReceiver(assignments);
    return Run("check {}").out;
  }
};

TEST_F(QuillondbReceivers, OrdinaryOnesAreFound) {
  CreateForCheck();
  const char* const kOrdinary[] = {
      "Name = Name",
      "TimeSchedule = 2, WeekDay = 'Sunday'",
      "TimeSchedule = 3, WeekDay = NULL",
      "Top10Rep1 = 'None', Top10Rep5 = 'Trunk port summary, Summary'",
      "PortRep = TRUE, PortRepRecNo = 7, PortRepIfIndex = 4, PortRepDetails = FALSE",
      // A row without a name is read and gets nothing.
      "Name = '', TimeSchedule = 9, Top10Rep1 = 'nothing'",
  };
  for (const char* ordinary : kOrdinary) EXPECT_EQ(FindingsOf(ordinary), "ok\n") << ordinary;
}

TEST_F(QuillondbReceivers, WhatKeepsAMailOrReportBackIsFound) {
  CreateForCheck();
  const std::string schedule =
      "that mail never goes out; write 1 for daily, 2 for weekly, 3 for monthly\n";
  const std::string choice =
      "no report is called that; write None, or a choice such as Access InVolume\n";
  const std::string null = "; nobody gets mail until it holds a value, or its row is deleted\n";
  const std::pair<const char*, std::string> kWrong[] = {
      {"Recipient = 'anna'",
       "Recipient in Settings_RepReceiver is 'anna'; no mail can go there; write one mail "
       "address\n"},
      {"Recipient = 'änn@example.org'",
       "Recipient in Settings_RepReceiver is 'änn@example.org'; no mail can go there; write one "
       "mail address\n"},
      {"Recipient = NULL", "Recipient in Settings_RepReceiver is null" + null},
      {"Top10Rep3 = NULL", "Top10Rep3 in Settings_RepReceiver is null" + null},
      {"PortRep = TRUE, PortRepRecNo = 7, PortRepDetails = TRUE",
       "PortRepIfIndex in Settings_RepReceiver is null" + null},
      {"TimeSchedule = 2, WeekDay = NULL", "WeekDay in Settings_RepReceiver is null" + null},
      {"TimeSchedule = 0", "TimeSchedule in Settings_RepReceiver is '0'; " + schedule},
      {"TimeSchedule = 2, WeekDay = 'monday'",
       "WeekDay in Settings_RepReceiver is 'monday'; the weekday of the weekly receiver before it"
       " counts; write Monday to Sunday\n"},
      {"Top10Rep2 = 'none'", "Top10Rep2 in Settings_RepReceiver is 'none'; " + choice},
      {"Top10Rep2 = 'Access inerrors'",
       "Top10Rep2 in Settings_RepReceiver is 'Access inerrors'; " + choice},
  };
  for (const auto& [wrong, finding] : kWrong) {
    EXPECT_EQ(FindingsOf(wrong), "Quillon.mdb: " + finding) << wrong;
  }
}

TEST_F(QuillondbReceivers, SameMistakeOfSeveralIsToldOnce) {
  CreateForCheck();
  for (int receiver = 0; receiver < 3; ++receiver) AddReceiver("Top10Rep1 = 'disks'");
  EXPECT_EQ(Run("check {}").out,
            "Quillon.mdb: Top10Rep1 in Settings_RepReceiver is 'disks'; no report is called that;"
            " write None, or a choice such as Access InVolume\n");
}

}  // namespace
}  // namespace quillon
