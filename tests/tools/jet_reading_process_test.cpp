// Work in a process of its own, and what becomes of work that goes wrong.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "quillondb/jet/reading_failure.h"
#include "quillondb/jet/reading_process.h"

namespace quillon {
namespace {

using std::chrono::milliseconds;

std::string FailureOf(const ReadingWork& work, const ReadingLimits& limits = {}) {
  try {
    RunReadingProcess(
        work, [](std::string_view) {}, limits);
  } catch (const ReadingFailure& failure) {
    return failure.what();
  }
  return "no failure";
}

bool HasChildren() {
  return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

TEST(JetReadingProcess, PiecesArriveWholeAndInOrder) {
  const std::vector<std::string> kPieces = {"", "a", std::string(300'000, 'x'), "end"};
  std::vector<std::string> arrived;
  RunReadingProcess(
      [&](const SendBytes& send) {
        for (const std::string& piece : kPieces) send(piece);
      },
      [&](std::string_view bytes) { arrived.emplace_back(bytes); });
  EXPECT_EQ(arrived, kPieces);
  EXPECT_FALSE(HasChildren());
}

TEST(JetReadingProcess, WorkThatGoesWrongIsAFailureHere) {
  struct Case {
    const char* name;
    ReadingWork work;
    const char* text;
  };
  const Case kCases[] = {
      {"throws", [](const SendBytes&) { throw ReadingFailure("no catalog"); }, "no catalog"},
      {"is killed", [](const SendBytes&) { raise(SIGKILL); }, "bad end"},
      {"aborts", [](const SendBytes&) { kill(getpid(), SIGABRT); }, "bad end"},
      {"leaves", [](const SendBytes&) { _exit(0); }, "bad end"},
      {"complains without end",
       [](const SendBytes&) {
         while (true) (void)!write(STDERR_FILENO, "wrong\n", 6);
       },
       "bad end"},
      {"complains",
       [](const SendBytes&) {
         constexpr std::string_view kWords = "page 7 is wrong\nand more\n";
         (void)!write(STDERR_FILENO, kWords.data(), kWords.size());
       },
       "damaged (page 7 is wrong)"},
  };
  for (const Case& each : kCases) {
    EXPECT_NE(FailureOf(each.work).find(each.text), std::string::npos)
        << each.name << ": " << FailureOf(each.work);
    EXPECT_FALSE(HasChildren()) << each.name;
  }
}

TEST(JetReadingProcess, SilentWorkIsEnded) {
  const std::string failure =
      FailureOf([](const SendBytes&) { pause(); }, {.longestSilence = milliseconds(200)});
  EXPECT_NE(failure.find("does not come to an end"), std::string::npos) << failure;
  EXPECT_FALSE(HasChildren());
}

TEST(JetReadingProcess, HarmlessWordsAreNoFailureUnlessOthersFollow) {
  const auto saying = [](std::string_view words) {
    return [words](const SendBytes&) { (void)!write(STDERR_FILENO, words.data(), words.size()); };
  };
  const ReadingLimits kLimits{.isHarmless = [](std::string_view line) { return line == "hm"; }};
  EXPECT_EQ(FailureOf(saying("hm\nhm\n"), kLimits), "no failure");
  EXPECT_EQ(FailureOf(saying("hm\nah"), kLimits), "the file is damaged (ah)");
}

TEST(JetReadingProcess, AFailureOfTheHandlerEndsTheWork) {
  const auto endless = [](const SendBytes& send) {
    while (true) send(std::string(1000, 'x'));
  };
  EXPECT_THROW(RunReadingProcess(endless, [](std::string_view) { throw Failure("enough"); }),
               Failure);
  EXPECT_FALSE(HasChildren());
}

TEST(JetReadingProcess, TheWordsOfTheWorkStayOffTheTerminal) {
  testing::internal::CaptureStderr();
  FailureOf([](const SendBytes&) { (void)!write(STDERR_FILENO, "x\n", 2); });
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace quillon
