// Who gets report mails, and on which days.
#include "production/report_receivers.h"

#include "platform/failure.h"
#include "production/mail_fixture.h"

namespace quillon {
namespace {

// A week from Sunday on.
constexpr const char* kDays[] = {"2024-05-05", "2024-05-06", "2024-05-07", "2024-05-08",
                                 "2024-05-09", "2024-05-10", "2024-05-11"};
constexpr const char* kNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                  "Thursday", "Friday", "Saturday"};

class ReportReceivers : public MailTest {
 protected:
  static Columns Schedule(int number, const std::string& weekDay = "") {
    return {{"TimeSchedule", std::to_string(number)}, {"WeekDay", "'" + weekDay + "'"}};
  }

  void Read() { ReadRepReceivers(site.settings, site.clock.Now(), RepReceiver); }
  void ReadOn(const std::string& day) {
    ReadRepReceivers(site.settings, ParseDateTime(day + " 12:00:00").value(), RepReceiver);
  }
  // The entries from the first one on, "y" for one who is due and "n" for one who is not.
  std::string Due(int count) {
    std::string due;
    for (int entry = 1; entry <= count; ++entry) due += RepReceiver[entry].SendToday ? 'y' : 'n';
    return due;
  }
  std::string DueOn(const std::string& day, int count) {
    ReadOn(day);
    return Due(count);
  }
  Lines Names(int count) {
    Lines names;
    for (int entry = 1; entry <= count; ++entry) names.push_back(RepReceiver[entry].Name);
    return names;
  }
};

TEST_F(ReportReceivers, WithoutARowAllEntriesAreFree) {
  for (RepReceiverEntry& receiver : RepReceiver) receiver.Name = "before";
  Read();
  EXPECT_EQ(Names(100), Lines(100, ""));
}

TEST_F(ReportReceivers, AnEntryHasTheFieldsOfItsRow) {
  AddReceiver({{"Name", "'Berta'"},
               {"Recipient", "'berta@example.org'"},
               {"Top10Rep1", "'Access InVolume'"},
               {"Top10Rep2", "'Trunk Summary'"},
               {"Top10Rep3", "'anything'"},
               {"Top10Rep4", "''"},
               {"Top10Rep5", "'None'"},
               {"PortRep", "TRUE"},
               {"PortRepRecNo", "2000000007"},
               {"PortRepIfIndex", "436207616"},
               {"PortRepDetails", "TRUE"},
               {"AttachReport", "TRUE"},
               {"IncludeUrl", "FALSE"}});
  AddReceiver({{"Name", "'Cleo'"}, {"AttachReport", "FALSE"}, {"IncludeUrl", "TRUE"}});
  Read();
  const RepReceiverEntry& berta = RepReceiver[1];
  EXPECT_EQ(berta.Name, "Berta");
  EXPECT_EQ(berta.Recipient, "berta@example.org");
  EXPECT_TRUE(berta.SendToday);
  EXPECT_EQ(Lines(berta.Top10Rep.begin(), berta.Top10Rep.end()),
            (Lines{"Access InVolume", "Trunk Summary", "anything", "", "None"}));
  EXPECT_TRUE(berta.PortRep);
  EXPECT_EQ(berta.PortRepRecNo, 2000000007);
  EXPECT_EQ(berta.PortRepIfIndex, 436207616);
  EXPECT_TRUE(berta.PortRepDetails);
  EXPECT_TRUE(berta.AttachReport);
  EXPECT_FALSE(berta.IncludeUrl);
  const RepReceiverEntry& cleo = RepReceiver[2];
  EXPECT_EQ(cleo.Name, "Cleo");
  EXPECT_FALSE(cleo.PortRep);
  EXPECT_FALSE(cleo.AttachReport);
  EXPECT_TRUE(cleo.IncludeUrl);
  EXPECT_EQ(RepReceiver[3].Name, "");
}

TEST_F(ReportReceivers, AWantedPortWithoutDetailsHasNone) {
  AddReceiver(PortReport(11, 4, true));
  Read();
  EXPECT_TRUE(RepReceiver[1].PortRepDetails);
  Settings("DELETE FROM Settings_RepReceiver;" + InsertReceiver(PortReport(12, 5, false)));
  Read();
  EXPECT_EQ(RepReceiver[1].PortRepRecNo, 12);
  EXPECT_EQ(RepReceiver[1].PortRepIfIndex, 5);
  EXPECT_FALSE(RepReceiver[1].PortRepDetails);
}

TEST_F(ReportReceivers, EntriesAreInStoredOrder) {
  for (const char* name : {"Zoe", "Anna", "Mia", "anna"}) AddReceiverNamed(name);
  Read();
  EXPECT_EQ(Names(5), (Lines{"Zoe", "Anna", "Mia", "anna", ""}));
}

TEST_F(ReportReceivers, ARowWithoutANameTakesItsEntry) {
  for (const char* name : {"Anna", "", "Berta"}) AddReceiverNamed(name);
  Read();
  EXPECT_EQ(Names(4), (Lines{"Anna", "", "Berta", ""}));
}

TEST_F(ReportReceivers, NamesAndAddressesAreDatabaseText) {
  AddReceiver({{"Name", "'Łucja Müller'"}, {"Recipient", "'müller@bücher.example'"}});
  Read();
  EXPECT_EQ(RepReceiver[1].Name, "Łucja Müller");
  EXPECT_EQ(RepReceiver[1].Recipient, "müller@bücher.example");
}

TEST_F(ReportReceivers, ADailyMailIsAlwaysDue) {
  AddReceiver(Schedule(1));
  AddReceiver(Schedule(1, "Monday"));
  for (const char* day : kDays) EXPECT_EQ(DueOn(day, 2), "yy") << day;
}

TEST_F(ReportReceivers, AWeeklyMailIsDueOnItsWeekday) {
  for (const char* name : kNames) AddReceiver(Schedule(2, name));
  for (std::size_t day = 0; day < std::size(kDays); ++day) {
    std::string due(7, 'n');
    due[day] = 'y';
    EXPECT_EQ(DueOn(kDays[day], 7), due) << kDays[day];
  }
}

TEST_F(ReportReceivers, AMonthlyMailIsDueOnTheFirst) {
  AddReceiver(Schedule(3));
  AddReceiver(Schedule(3, "Thursday"));
  for (const char* day : {"2024-05-01", "2024-06-01", "2024-01-01", "2024-02-01"}) {
    EXPECT_EQ(DueOn(day, 2), "yy") << day;
  }
  for (const char* day :
       {"2024-05-02", "2024-05-10", "2024-05-11", "2024-05-21", "2024-05-31", "2024-02-29"}) {
    EXPECT_EQ(DueOn(day, 2), "nn") << day;
  }
}

TEST_F(ReportReceivers, TheDayIsThatOfTheClockUntilMidnight) {
  AddReceiver(Schedule(2, "Friday"));
  AddReceiver(Schedule(3));
  site.clock.Set("2024-05-31 23:59:59");
  Read();
  EXPECT_EQ(Due(2), "yn");
  site.clock.Set("2024-06-01 00:00:00");
  Read();
  EXPECT_EQ(Due(2), "ny");
}

TEST_F(ReportReceivers, AnotherScheduleIsNeverDue) {
  for (const int number : {0, 4, -1, 12}) AddReceiver(Schedule(number, "Thursday"));
  for (const char* day : kDays) EXPECT_EQ(DueOn(day, 4), "nnnn") << day;
  EXPECT_EQ(DueOn("2024-08-01", 4), "nnnn") << "a Thursday and a first";
}

TEST_F(ReportReceivers, NobodyIsDueWhoWasDueTheDayBefore) {
  AddReceiver(Schedule(2, "Thursday"));
  EXPECT_EQ(DueOn("2024-05-02", 1), "y");
  EXPECT_EQ(DueOn("2024-05-03", 1), "n");
}

TEST_F(ReportReceivers, AnUnknownWeekdayIsThatOfTheWeeklyRowBefore) {
  AddReceiver(Schedule(2, "Thursday"));
  AddReceiver(Schedule(2, "Donnerstag"));
  AddReceiver(Schedule(2, ""));
  AddReceiver(Schedule(2, "Friday"));
  AddReceiver(Schedule(2, "Thu"));
  EXPECT_EQ(DueOn("2024-05-02", 5), "yyynn");
  EXPECT_EQ(DueOn("2024-05-03", 5), "nnnyy");
}

TEST_F(ReportReceivers, BeforeTheFirstKnownWeekdayNobodyIsDue) {
  AddReceiver(Schedule(2, "nothing"));
  AddReceiver(Schedule(2, "Saturday"));
  std::string due;
  for (const char* day : kDays) due += DueOn(day, 1);
  EXPECT_EQ(due, "nnnnnnn") << "also where the run before has ended with Saturday";
}

TEST_F(ReportReceivers, NamesOfWeekdaysAreExact) {
  AddReceiver(Schedule(2, "Thursday"));
  for (const char* name : {"friday", "FRIDAY", " Friday", "Friday ", "Fri"}) {
    AddReceiver(Schedule(2, name));
  }
  EXPECT_EQ(DueOn("2024-05-02", 6), "yyyyyy");
  EXPECT_EQ(DueOn("2024-05-03", 6), "nnnnnn");
}

TEST_F(ReportReceivers, OnlyWeeklyRowsChangeTheWeekday) {
  AddReceiver(Schedule(2, "Thursday"));
  AddReceiver(Schedule(1, "Friday"));
  AddReceiver(Schedule(3, "Friday"));
  AddReceiver(Schedule(4, "Friday"));
  AddReceiver(Schedule(2, "nothing"));
  EXPECT_EQ(DueOn("2024-05-02", 5), "yynny");
  EXPECT_EQ(DueOn("2024-05-03", 5), "nynnn");
}

TEST_F(ReportReceivers, AWeeklyRowWithoutANameChangesTheWeekdayToo) {
  AddReceiver(Schedule(2, "Thursday"));
  AddReceiverNamed("", Schedule(2, "Friday"));
  AddReceiver(Schedule(2, "nothing"));
  EXPECT_EQ(DueOn("2024-05-03", 3), "nyy");
}

TEST(WeekdayNumbers, CountFromSundayAndAnyOtherTextIsNone) {
  for (unsigned day = 0; day < std::size(kNames); ++day) {
    EXPECT_EQ(WeekdayNumber(kNames[day]), day + 1);
  }
  for (const char* text : {"", "monday", "MONDAY", "Mon", "Monday ", "Mondays", "Montag", "1"}) {
    EXPECT_EQ(WeekdayNumber(text), 0u) << text;
  }
}

TEST_F(ReportReceivers, AHundredRowsFillAllEntries) {
  AddReceivers(100);
  Read();
  EXPECT_EQ(RepReceiver[1].Name, "R1");
  EXPECT_EQ(RepReceiver[100].Name, "R100");
  EXPECT_EQ(Due(100), std::string(100, 'y'));
}

TEST_F(ReportReceivers, AHundredAndFirstRowFails) {
  AddReceivers(100);
  AddReceiverNamed("");
  EXPECT_THROW(Read(), IndexFailure);
}

TEST_F(ReportReceivers, ANullFailsWhereTheFieldIsRead) {
  for (const char* field :
       {"Name", "Recipient", "TimeSchedule", "Top10Rep1", "Top10Rep2", "Top10Rep3", "Top10Rep4",
        "Top10Rep5", "PortRep", "AttachReport", "IncludeUrl"}) {
    Settings("DELETE FROM Settings_RepReceiver;" + InsertReceiver({{field, "NULL"}}));
    EXPECT_THROW(Read(), FieldFailure) << field;
  }
  for (const char* field : {"PortRepRecNo", "PortRepIfIndex", "PortRepDetails"}) {
    Settings("DELETE FROM Settings_RepReceiver;" +
             InsertReceiver(With(PortReport(11, 4, true), {{field, "NULL"}})));
    EXPECT_THROW(Read(), FieldFailure) << field;
  }
  Settings("DELETE FROM Settings_RepReceiver;" +
           InsertReceiver({{"TimeSchedule", "2"}, {"WeekDay", "NULL"}}));
  EXPECT_THROW(Read(), FieldFailure) << "WeekDay";
}

TEST_F(ReportReceivers, ANullIsNoMatterWhereTheFieldIsNotNeeded) {
  AddReceiver({{"WeekDay", "NULL"},
               {"PortRepRecNo", "NULL"},
               {"PortRepIfIndex", "NULL"},
               {"PortRepDetails", "NULL"}});
  AddReceiver({{"TimeSchedule", "3"}, {"WeekDay", "NULL"}});
  EXPECT_EQ(DueOn("2024-06-01", 2), "yy");
}

TEST_F(ReportReceivers, AFailureLeavesNoNameOfTheRunBefore) {
  AddReceivers(3);
  Read();
  Settings("DELETE FROM Settings_RepReceiver;" + InsertReceiver({{"Name", "NULL"}}));
  EXPECT_THROW(Read(), FieldFailure);
  EXPECT_EQ(Names(100), Lines(100, ""));
}

}  // namespace
}  // namespace quillon
