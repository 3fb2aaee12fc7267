// A record dump of DebugMode: lines gathered and appended to their file in one step.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "service/settings.h"

namespace quillon {

class DebugDump {
 public:
  // `backslashPath` is the file below AppPath, "\Debug\WebSqlTop10.txt".
  DebugDump(const Settings& settings, std::string_view backslashPath)
      : path_(PathBelow(settings, backslashPath)) {}

  // "<name>=<value>"
  void Field(std::string_view name, std::string_view value) {
    text_.append(name).append("=").append(value).append(kLineEnd);
  }
  // "Exec Time=<n> ms": what the report took.
  void ExecTime(std::int64_t milliseconds) {
    Field("Exec Time", std::to_string(milliseconds) + " ms");
  }
  void Row(std::string_view row) { text_.append(row).append(kLineEnd); }
  void Write() const { AppendToFile(path_, text_); }

 private:
  std::string path_;
  std::string text_;
};

}  // namespace quillon
