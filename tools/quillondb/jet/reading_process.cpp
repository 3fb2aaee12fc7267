// The child writes frames into a pipe: a kind, a length, the bytes. Its standard error is a file in
// memory, because the library's only sign of some damage is a line there.
#include "quillondb/jet/reading_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <exception>
#include <optional>
#include <vector>

#include "platform/descriptor.h"
#include "platform/terminal_text.h"
#include "quillondb/jet/reading_failure.h"

namespace quillon {
namespace {

enum class Kind : char { kBytes = 'B', kFailure = 'F', kEnd = 'E' };

struct FrameHead {
  Kind kind = Kind::kEnd;
  std::uint32_t length = 0;
};

// More than any row can have; a length beyond it is a sign of a process gone astray.
constexpr std::uint32_t kLongestFrame = 64U << 20;

constexpr std::size_t kPipePiece = 64 << 10;

// What is read of standard error, and what is told of one of its lines.
constexpr std::size_t kMostComplaints = 64 << 10;
constexpr std::size_t kShownOfComplaint = 200;

// ---- in the child ----

void WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) _exit(1);  // nobody reads any more
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Gathers frames, as a write for each row would take most of the time.
class FrameSender {
 public:
  explicit FrameSender(int descriptor) : descriptor_(descriptor) {}

  void Send(Kind kind, std::string_view bytes) {
    const FrameHead head{kind, static_cast<std::uint32_t>(bytes.size())};
    buffer_.append(reinterpret_cast<const char*>(&head), sizeof head);
    buffer_ += bytes;
    if (buffer_.size() >= kPipePiece) Flush();
  }

  void Flush() {
    WriteAll(descriptor_, buffer_);
    buffer_.clear();
  }

 private:
  int descriptor_;
  std::string buffer_;
};

// A damaged file can name sizes of its own; no core of the mail password's file is left either.
void LimitItself() {
  const rlimit noCore{0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  const rlimit complaints{kMostComplaints, kMostComplaints};  // beyond them it is killed
  setrlimit(RLIMIT_FSIZE, &complaints);
#ifndef __SANITIZE_ADDRESS__
  constexpr rlim_t kMost = 1U << 30;
  const rlimit memory{kMost, kMost};
  setrlimit(RLIMIT_AS, &memory);
#endif
}

// The first line on standard error that tells of damage; empty where there is none.
std::string FirstComplaint(int descriptor, const ReadingLimits& limits) {
  std::string text(kMostComplaints, '\0');
  const ssize_t length = pread(descriptor, text.data(), text.size(), 0);
  std::string_view rest =
      std::string_view(text).substr(0, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    if (!limits.isHarmless(line)) return TerminalText(line.substr(0, kShownOfComplaint));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  }
  return "";
}

[[noreturn]] void RunChild(const ReadingWork& work, const ReadingLimits& limits, int pipe) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);  // a hanging child would keep the lock of a killed import
  LimitItself();
  FrameSender sender(pipe);
  const int complaints = memfd_create("complaints", MFD_CLOEXEC);
  try {
    if (complaints < 0 || dup2(complaints, STDERR_FILENO) < 0) throw Failure("no memory is left");
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);  // the library's dumps of pages
    work([&](std::string_view bytes) { sender.Send(Kind::kBytes, bytes); });
    const std::string complaint = FirstComplaint(complaints, limits);
    if (!complaint.empty()) throw Failure("the file is damaged (" + complaint + ")");
    sender.Send(Kind::kEnd, "");
  } catch (const std::exception& failure) {
    sender.Send(Kind::kFailure, failure.what());
  }
  sender.Flush();
  _exit(0);  // and not exit: what this process inherited is not its own to end
}

// ---- in the parent ----

// The child, killed at the end of the scope if it has not ended.
class Child {
 public:
  explicit Child(pid_t process) : process_(process) {}
  ~Child() {
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

 private:
  pid_t process_;
};

// The frames that come out of the pipe.
class FrameReceiver {
 public:
  FrameReceiver(int descriptor, std::chrono::milliseconds longestSilence)
      : descriptor_(descriptor), longestSilence_(longestSilence) {}

  // The bytes of the frame are valid until the next call.
  std::pair<Kind, std::string_view> Next() {
    FrameHead head;
    std::memcpy(static_cast<void*>(&head), Take(sizeof head).data(), sizeof head);
    if (head.length > kLongestFrame) throw ReadingFailure("the file is damaged");
    return {head.kind, Take(head.length)};
  }

 private:
  std::string_view Take(std::size_t count) {
    while (buffer_.size() - taken_ < count) Receive();
    const std::string_view bytes = std::string_view(buffer_).substr(taken_, count);
    taken_ += count;
    return bytes;
  }

  void Receive() {
    buffer_.erase(0, taken_);
    taken_ = 0;
    AwaitBytes();
    std::array<char, kPipePiece> piece{};
    const ssize_t length = read(descriptor_, piece.data(), piece.size());
    if (length < 0 && errno == EINTR) return;
    if (length <= 0) throw ReadingFailure("the file is damaged: reading it came to a bad end");
    buffer_.append(piece.data(), static_cast<std::size_t>(length));
  }

  void AwaitBytes() const {
    pollfd wait{descriptor_, POLLIN, 0};
    const int ready = poll(&wait, 1, static_cast<int>(longestSilence_.count()));
    if (ready == 0) throw ReadingFailure("the file is damaged: reading it does not come to an end");
  }

  int descriptor_;
  std::chrono::milliseconds longestSilence_;
  std::string buffer_;
  std::size_t taken_ = 0;
};

void HandleFrames(FrameReceiver& receiver, const BytesHandler& handler) {
  while (true) {
    const auto [kind, bytes] = receiver.Next();
    if (kind == Kind::kEnd) return;
    if (kind == Kind::kFailure) throw ReadingFailure(std::string(bytes));
    handler(bytes);
  }
}

}  // namespace

void RunReadingProcess(const ReadingWork& work, const BytesHandler& handler,
                       const ReadingLimits& limits) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw Failure(std::string("no pipe: ") + std::strerror(errno));
  std::optional<Descriptor> out(ends[0]);
  std::optional<Descriptor> in(ends[1]);
  const pid_t process = fork();
  if (process < 0) throw Failure(std::string("no process: ") + std::strerror(errno));
  if (process == 0) {
    out.reset();  // else it would wait for itself where nobody reads any more
    RunChild(work, limits, in->get());
  }
  const Child child(process);
  in.reset();
  FrameReceiver receiver(out->get(), limits.longestSilence);
  HandleFrames(receiver, handler);
}

}  // namespace quillon
