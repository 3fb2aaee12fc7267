// quillondb: creates, fills, judges, saves and hands over the databases of an installation. Here is
// the command line alone; each command stands in a file of its own.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "exit_codes.h"
#include "installation_owner.h"
#include "platform/clock.h"
#include "platform/terminal_text.h"
#include "quillondb/backup/backup.h"
#include "quillondb/backup/restore.h"
#include "quillondb/check/check.h"
#include "quillondb/csv/columns.h"
#include "quillondb/demo/demo.h"
#include "quillondb/demo/receiver.h"
#include "quillondb/export_table.h"
#include "quillondb/installation.h"
#include "quillondb/jet/import_jet.h"
#include "quillondb/jet/sync_jet.h"
#include "quillondb/load_table.h"
#include "quillondb/report_marks.h"
#include "service/version.h"

namespace quillon {
namespace {

struct Arguments;

using Action = int (*)(const Arguments& arguments);

struct Arguments {
  Action action = nullptr;  // of the command
  std::string directory;
  bool replace = false;
  bool brief = false;
  bool dryRun = false;
  std::string backup;  // the directory of a backup
  std::string table;
  std::string file;  // of CSV
  JetFileNames jet;
  int port = 0;      // of the listener; 0 leaves the setting as it is
  int mailPort = 0;  // of a mail server on this machine; 0 for a demonstration without mails
};

// Names of files and texts out of databases may hold anything.
void Say(const std::string& line) {
  std::cout << TerminalText(line) << std::endl;
}

// What root makes in an installation that is somebody else's is that user's.
int Create(const Arguments& arguments) {
  BecomeOwner(arguments.directory);
  CreateInstallation(arguments.directory);
  Say("Created an installation in " + arguments.directory);
  return kExitDone;
}

int Demo(const Arguments& arguments) {
  BecomeOwner(arguments.directory);
  Say(FillDemo(arguments.directory, arguments.replace, SystemClock().Now()));
  if (arguments.port != 0) SetListenerPort(arguments.directory, arguments.port);
  SetDemoReceiver(arguments.directory, arguments.mailPort);
  return kExitDone;
}

int Check(const Arguments& arguments) {
  const auto check = arguments.brief ? CheckInBrief : CheckInstallation;
  if (check(arguments.directory, Say)) {
    Say("ok");
    return kExitDone;
  }
  std::cerr << "quillondb: " << TerminalText(arguments.directory) << " needs the repairs listed\n";
  return kExitFailed;
}

int ReportDone(const Arguments& arguments) {
  BecomeOwner(arguments.directory);
  MarkReportDone(arguments.directory, SystemClock().Now());
  Say("The report of today is marked as done");
  return kExitDone;
}

int Load(const Arguments& arguments) {
  const auto rows = LoadTable(arguments.directory, arguments.table, arguments.file);
  Say("Loaded " + RowsText(rows, arguments.table) +
      "; when all tables are loaded, 'quillondb report-done' tells the service that the report is "
      "complete");
  return kExitDone;
}

int Export(const Arguments& arguments) {
  const auto rows = ExportTable(arguments.directory, arguments.table, arguments.file);
  // Standard output may be the file.
  std::cerr << "Exported " << RowsText(rows, arguments.table) << "\n";
  return kExitDone;
}

int BackUp(const Arguments& arguments) {
  Say(BackUpInstallation(arguments.directory, arguments.backup, SystemClock().Now(), Say));
  return kExitDone;
}

int Restore(const Arguments& arguments) {
  Say(RestoreInstallation(arguments.backup, arguments.directory, arguments.replace, Say));
  return kExitDone;
}

int ImportJetDatabases(const Arguments& arguments) {
  BecomeOwner(arguments.directory);
  ImportJetFiles({arguments.directory, arguments.replace, arguments.dryRun}, arguments.jet,
                 std::cout);
  return kExitDone;
}

int SyncJetDatabase(const Arguments& arguments) {
  BecomeOwner(arguments.directory);
  SyncJetFile({arguments.directory, arguments.dryRun}, arguments.jet.reports, SystemClock().Now(),
              std::cout);
  return kExitDone;
}

// A complaint about an empty text, as the parser wants it; empty where there is none.
std::string RefuseEmpty(const std::string& name) {
  return name.empty() ? "it is empty; name a file or directory" : "";
}

CLI::App* Add(CLI::App& app, Arguments& arguments, const char* name, const char* help,
              Action action) {
  CLI::App* const command = app.add_subcommand(name, help);
  command->callback([&arguments, action] { arguments.action = action; });
  return command;
}

// What stands in front of the directory on the command line is added before it.
void AddDirectory(CLI::App& command, Arguments& arguments) {
  command.add_option("DIR", arguments.directory, "The installation directory")
      ->required()
      ->check(RefuseEmpty);
}

void AddInstallation(CLI::App& app, Arguments& arguments) {
  AddDirectory(*Add(app, arguments, "create",
                    "Make the directory with new databases, folders and a Morvane.ini", Create),
               arguments);
  CLI::App* const demo =
      Add(app, arguments, "demo", "Fill the databases with a network of 30 switches and 15 servers",
          Demo);
  AddDirectory(*demo, arguments);
  demo->add_flag("--replace", arguments.replace, "Empty the statistics and the history first");
  demo->add_option("--port", arguments.port, "Let the site listen on this port")
      ->check(CLI::Range(1, 65535));
  demo->add_option("--mail-port", arguments.mailPort,
                   "Mail the reports of each day to a mail server on this port of 127.0.0.1")
      ->check(CLI::Range(1, 65535));
  CLI::App* const check =
      Add(app, arguments, "check", "Say what is missing or wrong in an installation", Check);
  AddDirectory(*check, arguments);
  check->add_flag("--brief", arguments.brief, "In ten lines at most");
}

void AddStatistics(CLI::App& app, Arguments& arguments) {
  const auto add = [&](const char* name, const char* help, const char* fileHelp, Action action) {
    CLI::App* const command = Add(app, arguments, name, help, action);
    command->add_option("--table", arguments.table, "VLAN, MAC or HostDiskInfo")
        ->required()
        ->check(CLI::IsMember(InputTableNames(), CLI::ignore_case));
    command->add_option("FILE", arguments.file, fileHelp)->required()->check(RefuseEmpty);
    AddDirectory(*command, arguments);
  };
  add("load", "Replace a table of statistics by a CSV file", "The CSV file; - for standard input",
      Load);
  add("export", "Write a table of statistics into a CSV file",
      "The CSV file; - for standard output", Export);
  AddDirectory(*Add(app, arguments, "report-done", "Set the marks of a report that has just ended",
                    ReportDone),
               arguments);
}

void AddBackups(CLI::App& app, Arguments& arguments) {
  CLI::App* const backup =
      Add(app, arguments, "backup", "Copy databases and settings into a new directory", BackUp);
  AddDirectory(*backup, arguments);
  backup->add_option("TARGET", arguments.backup, "The directory of the backup, which is made")
      ->required()
      ->check(RefuseEmpty);
  CLI::App* const restore =
      Add(app, arguments, "restore", "Put a backup in the place of an installation", Restore);
  restore->add_option("TARGET", arguments.backup, "The directory of the backup")
      ->required()
      ->check(RefuseEmpty);
  AddDirectory(*restore, arguments);
  restore->add_flag("--replace", arguments.replace, "Files that are there may go");
}

void AddJetOption(CLI::App& command, const char* option, std::string& file, const char* help) {
  command.add_option(option, file, help)->required()->check(RefuseEmpty);
}

void AddJet(CLI::App& app, Arguments& arguments) {
  CLI::App* const import =
      Add(app, arguments, "import-jet", "Take an older installation's Jet databases over",
          ImportJetDatabases);
  AddJetOption(*import, "--reports", arguments.jet.reports, "The old Reports.mdb");
  AddJetOption(*import, "--history", arguments.jet.history, "The old History.mdb");
  AddJetOption(*import, "--settings", arguments.jet.settings, "The old Quillon.mdb");
  import->add_flag("--replace", arguments.replace, "Rows that are there may go");
  import->add_flag("--dry-run", arguments.dryRun, "Tell what would be taken, and keep nothing");
  AddDirectory(*import, arguments);
  CLI::App* const sync =
      Add(app, arguments, "sync-jet",
          "Take the statistics of today from a Jet database, and mark the report as ended",
          SyncJetDatabase);
  AddJetOption(*sync, "--reports", arguments.jet.reports, "The Reports.mdb of today");
  sync->add_flag("--dry-run", arguments.dryRun, "Tell what would be taken, and keep nothing");
  AddDirectory(*sync, arguments);
}

int Main(int argc, char** argv) {
  CLI::App app("Databases of Quillon Web.", "quillondb");
  app.set_version_flag("--version", std::string(kVersion));
  app.require_subcommand(1);
  Arguments arguments;
  AddInstallation(app, arguments);
  AddStatistics(app, arguments);
  AddBackups(app, arguments);
  AddJet(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitDone : kExitWrongUsage;
  }
  try {
    return arguments.action(arguments);
  } catch (const std::exception& error) {
    std::cerr << "quillondb: " << TerminalLines(error.what()) << "\n";
    return kExitFailed;
  }
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  return quillon::Main(argc, argv);
}
