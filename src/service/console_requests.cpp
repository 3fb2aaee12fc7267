// Requests of the console: its state at any time, its jobs one at a time.
#include "service/console_requests.h"

#include <fmt/format.h>

#include "platform/failure.h"
#include "platform/scoped_flag.h"
#include "platform/text_encoding.h"
#include "service/console_protocol.h"
#include "service/version.h"

namespace quillon {
namespace {

using Words = std::vector<std::string>;
using LocalAnswer = LocalServer::Answer;

constexpr std::string_view kHourlyPass = "hourly pass";

// Of a job that tells by its events whether all went well.
constexpr const char* kEnded = "ended";

struct Job {
  std::string_view request;
  // What is to be shown when the job has ended.
  std::string (*run)(OperatorContext& context, const Words& words);
};

std::string RunImport(OperatorContext& context, const Words&) {
  return cmdImport(context);
}

std::string RunAutoCreate(OperatorContext& context, const Words&) {
  cmdAutoCreate(context);
  return kEnded;
}

std::string RunMailCreate(OperatorContext& context, const Words&) {
  cmdMailCreate(context);
  return kEnded;
}

std::string RunSetRepDate(OperatorContext& context, const Words& words) {
  const std::string date = words.size() > 1 ? words[1] : "";
  if (!ParseDateTime(date)) throw ConversionFailure("not a date: \"" + date + "\"");
  context.settings.txtRepDate = date;
  if (cmdSetRepDate(context)) return "ok";
  return context.settings.RepDateOverride ? "nothing was done: the report has a period already"
                                          : "nothing was done: no report day is being replayed";
}

constexpr Job kJobs[] = {
    {console::kImport, RunImport},
    {console::kAutoCreate, RunAutoCreate},
    {console::kMailCreate, RunMailCreate},
    {console::kSetRepDate, RunSetRepDate},
};

const Job* FindJob(std::string_view request) {
  for (const Job& job : kJobs) {
    if (job.request == request) return &job;
  }
  return nullptr;
}

// What the service is at: its start, its stop, a job, or nothing.
std::string Activity(const ServiceContext& service) {
  if (service.stopping) return "stopping";
  if (service.jobRunning) {
    return service.jobName.empty() ? std::string(kHourlyPass) : service.jobName;
  }
  return service.socketsOpened ? "idle" : "starting";
}

// Why no job can begin now; empty where one can.
std::string Hindrance(const ServiceContext& service) {
  if (service.stopping) return "the service is stopping";
  if (service.jobRunning) {
    return service.jobName.empty() ? "the hourly pass is running; try again when it has ended"
                                   : service.jobName + " is running; try again when it has ended";
  }
  if (!service.socketsOpened) {
    return "the service is starting: its site and its jobs open 30 seconds after the start";
  }
  return "";
}

std::string_view UnitName(JobUnit unit) {
  switch (unit) {
    case JobUnit::kStep:
      return console::kStep;
    case JobUnit::kPage:
      return console::kPage;
    case JobUnit::kReceiver:
      break;
  }
  return console::kReceiver;
}

// Tells the answer's client of the job, while it lives.
class Watching {
 public:
  Watching(JobWatch& watch, const Settings& settings, const LocalAnswer& answer) : watch_(watch) {
    watch_.progress = [&answer](JobUnit unit, int number, int total) {
      answer(console::Line(
          {console::kProgress, UnitName(unit), std::to_string(number), std::to_string(total)}));
    };
    watch_.event = [&answer, &settings](int type, std::string_view source, std::string_view text) {
      answer(console::Line({console::kEvent, std::to_string(type),
                            DatabaseText(source, settings.CharSet),
                            DatabaseText(text, settings.CharSet)}));
    };
  }
  ~Watching() { watch_ = {}; }
  Watching(const Watching&) = delete;
  Watching& operator=(const Watching&) = delete;

 private:
  JobWatch& watch_;
};

void RunJob(ServiceContext& service, OperatorContext& context, JobWatch& watch, const Job& job,
            const Words& words, const LocalAnswer& answer) {
  const ScopedFlag running(service.jobRunning, true);
  const ScopedValue<std::string> name(service.jobName, std::string(job.request));
  const Watching watching(watch, service.settings, answer);
  answer(console::Line({console::kDone, job.run(context, words)}));
}

void TellState(const ServiceContext& service, const OperatorContext& context,
               const LocalAnswer& answer) {
  const Settings& settings = service.settings;
  const bool listens = service.tcpServer.Listening();
  const auto state = [&](std::string_view name, std::string_view value) {
    answer(console::Line({console::kState, name, value}));
  };
  state("version", kVersion);
  state("activity", Activity(service));
  state("started", DateTimeText(settings.StartTime));
  state("address", listens ? service.tcpServer.LocalHost() : "");
  state("port", std::to_string(listens ? service.tcpServer.LocalPort() : 0));
  state("debug-mode", settings.DebugMode ? "yes" : "no");
  state("report-start", DatabaseText(context.period.ReportStart, settings.CharSet));
  state("report-end", DatabaseText(context.period.ReportEnd, settings.CharSet));
  answer(console::Line({console::kDone, ""}));
}

void Refuse(const LocalAnswer& answer, std::string_view reason) {
  answer(console::Line({console::kRefused, reason}));
}

void CarryOut(ServiceContext& service, OperatorContext& context, JobWatch& watch,
              const std::string& request, const LocalAnswer& answer) {
  const Words words = console::Words(request);
  if (words[0] == console::kStatus) return TellState(service, context, answer);
  const Job* const job = FindJob(words[0]);
  if (job == nullptr) return Refuse(answer, "no such request");
  const std::string hindrance = Hindrance(service);
  if (!hindrance.empty()) return Refuse(answer, hindrance);
  RunJob(service, context, watch, *job, words, answer);
}

}  // namespace

void AnswerConsole(ServiceContext& service, OperatorContext& context, JobWatch& watch,
                   const std::string& request, const LocalServer::Answer& answer) {
  // The operations have no error exits: whoever started one is told of its failure.
  try {
    CarryOut(service, context, watch, request, answer);
  } catch (const std::exception& failure) {
    Refuse(answer, failure.what());
  }
}

}  // namespace quillon
