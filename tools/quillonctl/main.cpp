// quillonctl: the operator's console. Here is the command line alone; each command stands in a file
// of its own.
#include <CLI/CLI.hpp>
#include <iostream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "exit_codes.h"
#include "platform/terminal_text.h"
#include "queries/disk_table.h"
#include "queries/switch_lists.h"
#include "quillonctl/form/console.h"
#include "quillonctl/job_commands.h"
#include "quillonctl/place.h"
#include "quillonctl/receiver_commands.h"
#include "quillonctl/report_commands.h"
#include "quillonctl/row_commands.h"
#include "quillonctl/settings_commands.h"
#include "quillonctl/site_fields.h"
#include "quillonctl/status_command.h"
#include "quillonctl/test_mail.h"
#include "service/console_protocol.h"
#include "service/version.h"

namespace quillon {
namespace {

struct Arguments;

// What is to be done, in an installation.
using Action = int (*)(const std::string& directory, const Arguments& arguments);

// What was typed.
struct Arguments {
  Action action = nullptr;  // of the innermost command
  std::string directory;
  bool json = false;
  bool csv = false;
  SettingChange fields;  // of a table of settings
  std::string theme;
  std::string date;
  std::string metric = std::string(kSwitchMetrics[0].name);
  std::string diskClass;
  std::string sort = "usedpercent";
  std::string direction = "desc";
  std::string device;
  std::string pattern = "*";  // of ports, aliases or disks
  std::string address;
  int rows = kDefaultRows;
  std::int64_t number = 0;
  bool askPassword = false;

  OutputForm form() const {
    if (json) return OutputForm::kJson;
    return csv ? OutputForm::kCsv : OutputForm::kPlain;
  }
};

// Of receivers; a typed number beyond the range of its type comes out as the largest of the type.
constexpr std::int64_t kLargestNumber = std::numeric_limits<std::int64_t>::max() - 1;

constexpr const char* kExamples =
    "Examples:\n"
    "  quillonctl status                          is the service well?\n"
    "  quillonctl save --port 80                  settings, for the next start\n"
    "  quillonctl apply-changes Gold              the site in another theme, at once\n"
    "  quillonctl import                          import a report that has just ended\n"
    "  quillonctl report access involume          the busiest access ports\n"
    "  quillonctl report port-alias '*' 'Printer*'\n"
    "  quillonctl receivers add --name Ann --recipient ann@example.org --report1 'Access "
    "InVolume'\n"
    "  quillonctl smtp set --server mail.example.org --login yes --account quillon --password\n"
    "  quillonctl test-mail ann@example.org\n"
    "  quillonctl console                         settings and jobs in a form on the terminal\n"
    "\n"
    "Each command tells its options: quillonctl save --help. All of them: quillonctl --help-all.\n"
    "Exit status: 0 done, 1 failed or refused, 2 wrong usage.";

// Where a command stands inside another one, the inner one's callback comes first.
CLI::App* Add(CLI::App& parent, Arguments& arguments, const char* name, const char* help,
              Action action) {
  CLI::App* const command = parent.add_subcommand(name, help);
  command->fallthrough();  // --directory may stand behind it
  command->callback([&arguments, action] {
    if (arguments.action == nullptr) arguments.action = action;
  });
  return command;
}

CLI::Option* AddJson(CLI::App& command, Arguments& arguments) {
  return command.add_flag("--json", arguments.json, "Print JSON, for programs");
}

void AddTableForms(CLI::App& command, Arguments& arguments) {
  CLI::Option* const json = AddJson(command, arguments);
  command.add_flag("--csv", arguments.csv, "Print comma-separated values")->excludes(json);
}

// Passwords have no option: a command line is seen by everybody on the machine.
void AddFields(CLI::App& command, Arguments& arguments, const SettingFieldList& fields) {
  for (const SettingField& field : fields) {
    if (field.kind == SettingField::Kind::kSecret) continue;
    CLI::Option* const option = command.add_option_function<std::string>(
        std::string("--") + field.option,
        [&arguments, &field](const std::string& text) { arguments.fields[field.option] = text; },
        field.help);
    if (field.kind != SettingField::Kind::kTruth) continue;
    option->check(CLI::IsMember({"yes", "no"}))->option_text("yes|no");
  }
}

void AddSettings(CLI::App& app, Arguments& arguments) {
  CLI::App* const read = Add(app, arguments, "read", "Read from DB: show the settings of the site",
                             [](const auto& directory, const auto& typed) {
                               return ReadSettings(directory, typed.form());
                             });
  AddJson(*read, arguments);

  CLI::App* const save = Add(app, arguments, "save", "Save to DB: change settings of the site",
                             [](const auto& directory, const auto& typed) {
                               return SaveSettings(directory, typed.fields, typed.form());
                             });
  AddFields(*save, arguments, GeneralFields());
  AddFields(*save, arguments, WebServerFields());
  AddJson(*save, arguments);

  CLI::App* const apply =
      Add(app, arguments, "apply-changes", "Apply Changes: write the stylesheet of a colour theme",
          [](const auto& directory, const auto& typed) {
            return ApplyTheme(directory, typed.theme, typed.form());
          });
  apply->add_option("THEME", arguments.theme, "Black, Blue, Gold, Gray or Kestrel")->required();
  AddJson(*apply, arguments);
}

void AddJobs(CLI::App& app, Arguments& arguments) {
  const auto add = [&](const char* name, const char* help, Action action) {
    CLI::App* const job = Add(app, arguments, name, help, action);
    AddJson(*job, arguments);
    return job;
  };
  add("import", "Import: mark a report as ended, and import the day where that is due",
      [](const auto& directory, const auto& typed) {
        return RunJob(directory, std::string(console::kImport), typed.form());
      });
  add("auto-create", "Auto Create: build all pages of the site anew",
      [](const auto& directory, const auto& typed) {
        return RunJob(directory, std::string(console::kAutoCreate), typed.form());
      });
  add("mail-create", "Mail Create: mail the reports that are due today",
      [](const auto& directory, const auto& typed) {
        return RunJob(directory, std::string(console::kMailCreate), typed.form());
      });
  add("set-rep-date", "Set Rep Date: the report period of a day that is being replayed",
      [](const auto& directory, const auto& typed) {
        return SetReportDate(directory, typed.date, typed.form());
      })
      ->add_option("DATE", arguments.date, "YYYY-MM-DD")
      ->required();
  add("status", "What the service does, where it listens, what it imported last",
      [](const auto& directory, const auto& typed) { return ShowStatus(directory, typed.form()); });
}

CLI::App* AddReport(CLI::App& report, Arguments& arguments, const char* name, const char* help,
                    Action action) {
  CLI::App* const command = Add(report, arguments, name, help, action);
  command->add_option("--rows", arguments.rows, "Rows at the most")
      ->check(CLI::Range(1, kMostRows))
      ->capture_default_str();
  AddTableForms(*command, arguments);
  return command;
}

template <typename Entries, typename Field>
std::vector<std::string> Names(const Entries& entries, Field field) {
  std::vector<std::string> names;
  for (const auto& entry : entries) names.emplace_back(entry.*field);
  return names;
}

void AddOrder(CLI::App& command, Arguments& arguments) {
  command.add_option("--by", arguments.sort, "Sort by this figure")
      ->check(CLI::IsMember(Names(kDiskSorts, &DiskSort::word)))
      ->capture_default_str();
  command.add_option("--order", arguments.direction, "Direction")
      ->check(CLI::IsMember({"asc", "desc"}))
      ->capture_default_str();
}

void AddLists(CLI::App& report, Arguments& arguments) {
  const auto addPorts = [&](const char* name, const char* help, Action action) {
    AddReport(report, arguments, name, help, action)
        ->add_option("METRIC", arguments.metric, "The figure that counts")
        ->check(CLI::IsMember(Names(kSwitchMetrics, &SwitchMetric::name)))
        ->capture_default_str();
  };
  addPorts("access", "The access ports with the largest figures of today",
           [](const auto& directory, const auto& typed) {
             return ReportPorts(directory, "access", typed.metric, typed.rows, typed.form());
           });
  addPorts("trunk", "The trunk ports with the largest figures of today",
           [](const auto& directory, const auto& typed) {
             return ReportPorts(directory, "trunk", typed.metric, typed.rows, typed.form());
           });
  CLI::App* const disks =
      AddReport(report, arguments, "disks", "The disks or memories of a class, in an order",
                [](const auto& directory, const auto& typed) {
                  return ReportDisks(directory, typed.diskClass, typed.sort, typed.direction,
                                     typed.rows, typed.form());
                });
  disks->add_option("CLASS", arguments.diskClass, "Class of the disks or memories")
      ->required()
      ->check(CLI::IsMember({"physical", "virtual", "windows", "unix"}));
  AddOrder(*disks, arguments);
}

void AddSearches(CLI::App& report, Arguments& arguments) {
  const auto add = [&](const char* name, const char* help, const char* pattern,
                       const char* patternHelp, Action action) {
    CLI::App* const search = AddReport(report, arguments, name, help, action);
    search->add_option("DEVICE", arguments.device, "Name or address of the device; * for any text")
        ->required();
    search->add_option(pattern, arguments.pattern, patternHelp)->capture_default_str();
    return search;
  };
  add("port-name", "Ports by device and port", "PORT", "Name of the port",
      [](const auto& directory, const auto& typed) {
        return SearchPorts(directory, typed.device, typed.pattern, "IfDescr", typed.rows,
                           typed.form());
      });
  add("port-alias", "Ports by device and alias", "ALIAS", "Alias of the port",
      [](const auto& directory, const auto& typed) {
        return SearchPorts(directory, typed.device, typed.pattern, "IfAlias", typed.rows,
                           typed.form());
      });
  AddReport(report, arguments, "mac-ip", "The port on which an address was last seen",
            [](const auto& directory, const auto& typed) {
              return SearchAddresses(directory, typed.address, typed.rows, typed.form());
            })
      ->add_option("ADDRESS", arguments.address, "MAC or IP address; * for any text")
      ->required();
  CLI::App* const disks =
      add("disk-search", "Disks and memories by device and disk", "DISK", "Name of the disk",
          [](const auto& directory, const auto& typed) {
            return SearchDisks(directory, typed.device, typed.pattern, typed.sort, typed.direction,
                               typed.rows, typed.form());
          });
  AddOrder(*disks, arguments);
}

void AddNumber(CLI::App& command, Arguments& arguments) {
  command.add_option("NUMBER", arguments.number, "Number of the receiver, as the list has it")
      ->required()
      ->check(CLI::Range(std::int64_t{1}, kLargestNumber));
}

void AddReceivers(CLI::App& app, Arguments& arguments) {
  const Action list = [](const auto& directory, const auto& typed) {
    return ListReceivers(directory, typed.form());
  };
  CLI::App* const receivers =
      Add(app, arguments, "receivers", "Who gets report mails; without a further word, their list",
          list);
  AddTableForms(*Add(*receivers, arguments, "list", "List the receivers", list), arguments);

  CLI::App* const add = Add(*receivers, arguments, "add", "Add a receiver",
                            [](const auto& directory, const auto& typed) {
                              return AddReceiver(directory, typed.fields);
                            });
  AddFields(*add, arguments, ReceiverFields());
  add->get_option("--name")->required();
  add->get_option("--recipient")->required();

  CLI::App* const change = Add(*receivers, arguments, "change", "Change a receiver",
                               [](const auto& directory, const auto& typed) {
                                 return ChangeReceiver(directory, typed.number, typed.fields);
                               });
  AddNumber(*change, arguments);
  AddFields(*change, arguments, ReceiverFields());

  AddNumber(*Add(*receivers, arguments, "remove", "Remove a receiver",
                 [](const auto& directory, const auto& typed) {
                   return RemoveReceiver(directory, typed.number);
                 }),
            arguments);
}

// A table of one row: shown by the bare word or "show", changed by "set".
CLI::App* AddRow(CLI::App& app, Arguments& arguments, const char* name, const char* help,
                 const SettingFieldList& fields, Action show, Action set) {
  CLI::App* const row = Add(app, arguments, name, help, show);
  AddJson(*Add(*row, arguments, "show", "Show the settings", show), arguments);
  CLI::App* const change = Add(*row, arguments, "set", "Change settings", set);
  AddFields(*change, arguments, fields);
  change->require_option();
  return change;
}

void AddMailAndTraps(CLI::App& app, Arguments& arguments) {
  AddRow(
      app, arguments, "smtp", "The mail server; without a further word, its settings", SmtpFields(),
      [](const auto& directory, const auto& typed) { return ShowSmtp(directory, typed.form()); },
      [](const auto& directory, const auto& typed) {
        return SetSmtp(directory, typed.fields, typed.askPassword);
      })
      ->add_flag("--password", arguments.askPassword,
                 "Ask for the password; without a terminal it is the first line of the input")
      ->disable_flag_override();  // whose complaint would repeat a password that stands there
  AddRow(
      app, arguments, "snmp", "The traps; without a further word, their settings", SnmpFields(),
      [](const auto& directory, const auto& typed) { return ShowSnmp(directory, typed.form()); },
      [](const auto& directory, const auto& typed) { return SetSnmp(directory, typed.fields); });
  AddRow(
      app, arguments, "morvane", "The management product; without a further word, where it is",
      MorvaneFields(),
      [](const auto& directory, const auto& typed) { return ShowMorvane(directory, typed.form()); },
      [](const auto& directory, const auto& typed) { return SetMorvane(directory, typed.fields); });
  Add(app, arguments, "test-mail", "Send one mail by the settings of the mail server",
      [](const auto& directory, const auto& typed) {
        return SendTestMail(directory, typed.address);
      })
      ->add_option("ADDRESS", arguments.address, "Mail address")
      ->required();
}

void AddCommands(CLI::App& app, Arguments& arguments) {
  app.add_option("-C,--directory", arguments.directory,
                 "The installation; otherwise the directory of this program");
  app.require_subcommand(1);
  Add(app, arguments, "console", "Settings and jobs in a form on the terminal",
      [](const auto& directory, const auto&) { return RunConsole(directory); });
  AddSettings(app, arguments);
  AddJobs(app, arguments);
  CLI::App* const report =
      Add(app, arguments, "report", "The lists and searches of the site", nullptr);
  report->require_subcommand(1);
  AddLists(*report, arguments);
  AddSearches(*report, arguments);
  AddReceivers(app, arguments);
  AddMailAndTraps(app, arguments);
}

// What is unknown is named first: the parser may complain of what it misses instead.
std::string UsageComplaint(const CLI::App* app, const CLI::Error& error) {
  const std::vector<std::string> unknown = app->remaining(true);
  const std::string what = unknown.empty() ? error.what() : "unknown here: " + unknown.front();
  return "quillonctl: " + TerminalText(what) + "\nRun it with --help to see what it takes.\n";
}

int Main(int argc, char** argv) {
  CLI::App app("The operator's console of Quillon Web.", "quillonctl");
  app.set_version_flag("--version", std::string(kVersion));
  app.set_help_all_flag("--help-all", "Print the help of every command and exit");
  Arguments arguments;
  AddCommands(app, arguments);
  app.failure_message(UsageComplaint);
  app.footer(kExamples);  // now, or every command would inherit it
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitDone : kExitWrongUsage;
  }
  try {
    return arguments.action(EnterInstallation(arguments.directory), arguments);
  } catch (const std::exception& failure) {
    Complain(failure.what());
    return kExitFailed;
  }
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  return quillon::Main(argc, argv);
}
