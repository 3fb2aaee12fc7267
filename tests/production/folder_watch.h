// What happens to the files of a folder, in its order: which names are deleted, and which come into
// being whole, by the move of a finished file to its place.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillon {

class FolderWatch {
 public:
  using Names = std::vector<std::string>;

  explicit FolderWatch(const std::string& folder) : events_(inotify_init1(IN_NONBLOCK)) {
    // Two moves to the same name in a row would be told as one: the moves of their temporary files
    // keep them apart.
    if (inotify_add_watch(events_, folder.c_str(), IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE) < 0) {
      throw std::runtime_error("cannot watch " + folder);
    }
  }
  ~FolderWatch() { close(events_); }
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  // All so far: "written a.htm", "deleted b.htm".
  const Names& Changes() {
    alignas(inotify_event) std::array<char, 65536> buffer;
    for (ssize_t size = 0; (size = read(events_, buffer.data(), buffer.size())) > 0;) {
      for (ssize_t at = 0; at < size;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
        // Beyond the system's limit nothing could be told of the order.
        if ((event->mask & IN_Q_OVERFLOW) != 0) throw std::runtime_error("too many changes");
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        if ((event->mask & IN_MOVED_FROM) != 0) continue;
        changes_.push_back(((event->mask & IN_DELETE) != 0 ? "deleted " : "written ") +
                           std::string(event->name));
      }
    }
    return changes_;
  }

  // The names that were written.
  Names Written() {
    const std::string verb = "written ";
    Names names;
    for (const std::string& change : Changes()) {
      if (change.rfind(verb, 0) == 0) names.push_back(change.substr(verb.size()));
    }
    return names;
  }

 private:
  int events_;
  Names changes_;
};

}  // namespace quillon
