// quillondb: creates, fills and judges the databases of an installation. Here is the command
// line alone; each command stands in a file of its own.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "exit_codes.h"
#include "platform/clock.h"
#include "quillondb/check.h"
#include "quillondb/demo/demo.h"
#include "quillondb/demo/receiver.h"
#include "quillondb/installation.h"
#include "quillondb/report_marks.h"
#include "service/version.h"

namespace quillon {
namespace {

struct Arguments {
  std::string directory;
  bool replace = false;
  int port = 0;      // of the listener; 0 leaves the setting as it is
  int mailPort = 0;  // of a mail server on this machine; 0 for a demonstration without mails
};

int Create(const Arguments& arguments) {
  CreateInstallation(arguments.directory);
  std::cout << "Created an installation in " << arguments.directory << "\n";
  return kExitDone;
}

int Demo(const Arguments& arguments) {
  std::cout << FillDemo(arguments.directory, arguments.replace, SystemClock().Now()) << "\n";
  if (arguments.port != 0) SetListenerPort(arguments.directory, arguments.port);
  SetDemoReceiver(arguments.directory, arguments.mailPort);
  return kExitDone;
}

int Check(const Arguments& arguments) {
  const std::vector<std::string> findings = CheckInstallation(arguments.directory);
  for (const std::string& finding : findings) std::cout << finding << "\n";
  if (findings.empty()) {
    std::cout << "ok\n";
    return kExitDone;
  }
  std::cerr << "quillondb: " << arguments.directory << " needs the repairs listed\n";
  return kExitFailed;
}

int ReportDone(const Arguments& arguments) {
  MarkReportDone(arguments.directory, SystemClock().Now());
  std::cout << "The report of today is marked as done\n";
  return kExitDone;
}

struct Command {
  const char* name;
  const char* help;
  int (*run)(const Arguments& arguments);
};

constexpr Command kCommands[] = {
    {"create", "Make the directory with new databases, folders and a Morvane.ini", Create},
    {"demo", "Fill the databases with a network of 30 switches and 15 servers", Demo},
    {"check", "Say what is missing or wrong in an installation", Check},
    {"report-done", "Set the marks of a report that has just ended", ReportDone},
};

// A complaint about an empty text, as the parser wants it; empty where there is none.
std::string RefuseEmpty(const std::string& directory) {
  return directory.empty() ? "it is empty; name a directory" : "";
}

int RunChosen(const CLI::App& app, const Arguments& arguments) {
  for (const Command& command : kCommands) {
    if (app.got_subcommand(command.name)) return command.run(arguments);
  }
  return kExitWrongUsage;
}

int Main(int argc, char** argv) {
  CLI::App app("Databases of Quillon Web.", "quillondb");
  app.set_version_flag("--version", std::string(kVersion));
  app.require_subcommand(1);
  Arguments arguments;
  for (const Command& command : kCommands) {
    CLI::App* sub = app.add_subcommand(command.name, command.help);
    sub->add_option("DIR", arguments.directory, "The installation directory")
        ->required()
        ->check(RefuseEmpty);
  }
  CLI::App* demo = app.get_subcommand("demo");
  demo->add_flag("--replace", arguments.replace, "Empty the statistics and the history first");
  demo->add_option("--port", arguments.port, "Let the site listen on this port")
      ->check(CLI::Range(1, 65535));
  demo->add_option("--mail-port", arguments.mailPort,
                   "Mail the reports of each day to a mail server on this port of 127.0.0.1")
      ->check(CLI::Range(1, 65535));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitDone : kExitWrongUsage;
  }
  try {
    return RunChosen(app, arguments);
  } catch (const std::exception& error) {
    std::cerr << "quillondb: " << error.what() << "\n";
    return kExitFailed;
  }
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  return quillon::Main(argc, argv);
}
