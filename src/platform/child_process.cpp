// posix_spawn, which leaves signals and descriptors of the caller alone.
#include "platform/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/failure.h"

namespace quillon {
namespace {

// Standard output away, the rest as the caller has it.
class FileActions {
 public:
  FileActions() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

std::string Joined(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
  return line;
}

}  // namespace

void RunProgram(const std::vector<std::string>& programAndArguments) {
  std::vector<char*> arguments;
  arguments.reserve(programAndArguments.size() + 1);
  for (const std::string& word : programAndArguments) {
    arguments.push_back(const_cast<char*>(word.c_str()));  // the call takes them so, and reads only
  }
  arguments.push_back(nullptr);

  const FileActions actions;
  pid_t process = 0;
  const int error =
      posix_spawnp(&process, arguments[0], actions.get(), nullptr, arguments.data(), environ);
  const std::string line = Joined(programAndArguments);
  if (error != 0) throw Failure("cannot run " + line + ": " + std::strerror(error));
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) throw Failure("cannot wait for " + line + ": " + std::strerror(errno));
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
  throw Failure(line + (WIFEXITED(status)
                            ? " ended with the status " + std::to_string(WEXITSTATUS(status))
                            : " was killed"));
}

}  // namespace quillon
