// Who watches the job that runs. An operator watches the jobs that he starts; nobody watches those
// of the hourly pass.
#pragma once

#include <functional>
#include <string_view>

namespace quillon {

// What a job counts while it runs, each with its number from 1 on.
enum class JobUnit { kStep, kPage, kReceiver };

struct JobWatch {
  // `total` is what is expected, of pages about.
  std::function<void(JobUnit unit, int number, int total)> progress = nullptr;
  // An application event that was raised outside of all requests. `type` is its number, `source`
  // "<module>_<procedure>"; both texts are bytes of the pages' charset, one line each.
  std::function<void(int type, std::string_view source, std::string_view text)> event = nullptr;
};

}  // namespace quillon
