// The objects, and what fails on them.
#include "quillonctl/desk.h"

#include "service/connection_strings.h"

namespace quillon {
namespace {

constexpr int kNotice = static_cast<int>(EventType::kNotice);

}  // namespace

Desk::Desk(const std::string& directory, DeskEvents events) {
  settings.AppPath = directory;
  settings.ConnMain = ConnectionString(settings, "\\Quillon.mdb");
  settings.ConnReports = ConnectionString(settings, "\\Reports.mdb");
  settings.ConnHistory = ConnectionString(settings, "\\History.mdb");
  settings.CharSet = "UTF-8";
  // Without a folder of its own, an event is told to the watch and nowhere else.
  if (events == DeskEvents::kOnlyHere) settings.AppPath.clear();
  watch_.event = [this](int type, std::string_view, std::string_view text) {
    if (type != kNotice) failures_.emplace_back(text);
  };
}

}  // namespace quillon
