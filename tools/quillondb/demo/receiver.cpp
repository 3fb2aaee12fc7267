// The receiver is known again by its address.
#include "quillondb/demo/receiver.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "import/schema/sqlite_file.h"
#include "quillondb/demo/network.h"
#include "quillondb/installation.h"

namespace quillon {
namespace {

constexpr std::string_view kRecipient = "demonstration@localhost";

// Of a port whose users are at work, so that its charts show the weeks.
constexpr std::string_view kPortAlias = "Büro Empfang 2";

void RemoveReceiver(const SqliteFile& settings) {
  settings.Prepare("DELETE FROM Settings_RepReceiver WHERE Recipient = ?").Run(kRecipient);
}

void AddReceiver(const SqliteFile& settings) {
  const std::vector<DemoPort> ports = DemoNetwork();
  const auto port = std::ranges::find(ports, kPortAlias, &DemoPort::alias);
  settings
      .Prepare(
          "INSERT INTO Settings_RepReceiver (Name, Recipient, TimeSchedule, WeekDay,"
          " Top10Rep1, Top10Rep2, Top10Rep3, Top10Rep4, Top10Rep5,"
          " PortRep, PortRepRecNo, PortRepIfIndex, PortRepDetails, AttachReport, IncludeUrl)"
          " VALUES ('Demonstration', ?, 1, 'Monday',"
          " 'Access InVolume', 'Access InErrors', 'Trunk OutVolume', 'Access Summary', 'None',"
          " TRUE, ?, ?, TRUE, TRUE, TRUE)")
      .Run(kRecipient, port->recNo, port->ifIndex);
}

void UseMailServer(const SqliteFile& settings, int port) {
  settings.Prepare("UPDATE Settings_SmtpServer SET MailServer = '127.0.0.1', MailPort = ?")
      .Run(port);
}

}  // namespace

void SetDemoReceiver(const std::string& directory, int mailPort) {
  RequireDatabases(directory);
  const SqliteFile settings = SqliteFile::Open(directory + "/Quillon.mdb");
  SqliteTransaction transaction(settings);
  RemoveReceiver(settings);
  if (mailPort != 0) {
    AddReceiver(settings);
    UseMailServer(settings, mailPort);
  }
  transaction.Commit();
}

}  // namespace quillon
