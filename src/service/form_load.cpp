// The command line and the messages of the process.
#include "service/form_load.h"

#include <cstdio>
#include <filesystem>

#include "platform/files.h"
#include "platform/instance_lock.h"
#include "platform/program_path.h"
#include "service/connection_strings.h"
#include "service/error_exit.h"
#include "service/exit_status.h"
#include "service/lifecycle.h"

namespace quillon {
namespace {

constexpr const char* kServiceName = "Quillon Web";
constexpr std::string_view kModule = "frmQuillonWeb";
constexpr std::string_view kProcedure = "Form_Load";

// How far the command line has been carried out, for the message of a failure.
enum class Phase { kEmpty, kInstall, kUninstall };

constexpr const char* kDatabaseMessage =
    "Error when accessing the Database.\n"
    "\n"
    "The Microsoft Data Access Components (MDAC) 2.5 or greater must be\n"
    "installed on the computer. The MDAC 2.5 could be found on:\n"
    "\n"
    "https://quillon.example/database\n"
    "\n"
    "or on the Quillon CD-ROM in the MDAC directory.\n";

// A message box is a line on the terminal, behind its title where it has one.
constexpr const char* kTitle = "Quillon: ";

int Refuse(const std::string& message) {
  std::fputs((message + '\n').c_str(), stderr);
  return kExitFailed;
}

int Confirm(const std::string& message) {
  std::puts(message.c_str());
  std::fflush(stdout);
  return kExitDone;
}

std::string FailureMessage(Phase phase) {
  switch (phase) {
    case Phase::kInstall:
      return "Quillon Web Service Failed To Install.";
    case Phase::kUninstall:
      return "Quillon Web Service Failed To Uninstall.";
    case Phase::kEmpty:
      break;
  }
  return kDatabaseMessage;
}

void Notice(const ServiceContext& context, std::string_view text) {
  AppEvent(context.diagnostics, kModule, kProcedure, text, EventType::kNotice);
}

int Install(ServiceContext& context, const std::string& commandLine, Phase& phase) {
  Settings& settings = context.settings;
  settings.AppPath = ProgramDirectory();
  std::filesystem::current_path(settings.AppPath);
  if (!FileExists(PathBelow(settings, "\\Quillon.mdb"))) {
    return Refuse("Quillon.mdb does not exits.");
  }
  settings.ConnMain = ConnectionString(settings, "\\Quillon.mdb");
  phase = Phase::kInstall;
  context.registry.InstallService(kServiceName, settings.AppPath);
  Notice(context, "Service Installed");
  if (commandLine == "-install_noMsg") return kExitDone;
  return Confirm(std::string(kTitle) + "Quillon Web Service Installed Successfully.");
}

// AppPath stays empty here, so the notice of it goes nowhere.
int Uninstall(const ServiceContext& context, Phase& phase) {
  phase = Phase::kUninstall;
  context.registry.UninstallService(kServiceName);
  Notice(context, "Service Uninstalled");
  return Confirm(std::string(kTitle) + "The Quillon Web Service Uninstalled Successfully.");
}

// Hands the process over; its exit status is what the states leave.
int Serve(ServiceContext& context) {
  context.settings.AppPath = ProgramDirectory();
  context.dartSvc.RunService(
      {[&context](ServiceState state) { dartSvc_State(context, state); },
       [&context](int code, const std::string& text) { dartSvc_Error(context, code, text); }});
  return context.exitStatus;
}

int CarryOut(ServiceContext& context, const std::string& commandLine, Phase& phase) {
  const InstanceLock lock(ProgramDirectory());
  if (!lock.held()) return Refuse("The Quillon Web Service is already running.");
  if (commandLine.starts_with("-install")) return Install(context, commandLine, phase);
  if (commandLine == "-uninstall") return Uninstall(context, phase);
  if (!commandLine.empty()) return Refuse(std::string(kTitle) + "Invalid command option.");
  return Serve(context);
}

}  // namespace

int Form_Load(ServiceContext& context, const std::string& commandLine) {
  Phase phase = Phase::kEmpty;
  int status = kExitFailed;
  std::string reason;
  const bool ended = ErrorExit(
      context.diagnostics, kModule, kProcedure,
      [&] { status = CarryOut(context, commandLine, phase); },
      [&](const std::exception& failure) {
        reason = failure.what();
        return FailureText(context.settings, failure);
      });
  if (ended) return status;
  Refuse(kTitle + FailureMessage(phase));
  return Refuse(reason);  // the event of it may have had no file to go to
}

}  // namespace quillon
